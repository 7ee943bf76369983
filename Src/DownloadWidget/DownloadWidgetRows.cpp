// The panel's rows: what the engine's signals and the user's clicks do to them.

#include "DownloadWidget/DownloadWidget.h"

#include "ui_DownloadWidget.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/ListAccess.h"
#include "DownloadWidget/PanelLog.h"
#include "DownloadWidget/RowLook.h"
#include "DownloadWidget/RowNews.h"
#include "Module/PicturePath.h"
#include "Module/RecordDownloadModule.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTimerEvent>
#include <QtCore/QtMath>
#include <QtGui/QScreen>
#include <QtGui/QWindow>

#include <algorithm>
#include <utility>

namespace {

void RemoveFile(const QString& strPath, int iDoneLine, int iFailedLine)
{
    if (!QFile::exists(strPath))
        return;
    const bool bRemoved = QFile::remove(strPath);
    KX_PANEL_LOG(bRemoved ? iDoneLine : iFailedLine, bRemoved ? PanelLogEvent : PanelLogFailure,
                 "DownloadWidget::ClearPauseRecordFile", "remove file[%s]", strPath.toUtf8().constData());
}

// A picture that the host made and the thumbnail thread is to copy beside the recording.
bool HasDevicePicture(const KXDownLoadList::DownloadRecordInfo& record)
{
    return record.iRecordType == KXDownLoadList::DeviceRecord && !record.strPicturePath.isEmpty();
}

} // namespace

DownloadItem* DownloadWidget::RowOf(const QString& strRecordId) const
{
    return dynamic_cast<DownloadItem*>(ui->downloadListView->GetItem(strRecordId));
}

QList<DownloadItem*> DownloadWidget::Rows() const
{
    QList<DownloadItem*> rows;
    const QList<QGraphicsItem*> items = ui->downloadListView->GetAllItem();
    rows.reserve(items.size());
    for (QGraphicsItem* pItem : items)
        rows.append(static_cast<DownloadItem*>(pItem)); // the view holds nothing else
    return rows;
}

void DownloadWidget::AddDownloadInfo(DownloadRecordInfoPtr pInfo)
{
    if (DownloadItem* pShown = RowOf(pInfo->strRecordId))
        return AskedAgain(*pShown, pInfo);
    KeepPicture(*pInfo);
    const QPointer<DownloadItem> pRow = new DownloadItem(this, m_mapButtonPixmap);
    pRow->SetRecord(pInfo);
    pRow->SetAwaitsPicture(HasDevicePicture(*pInfo));
    // By name: each connection by address keeps an object of its own, and there may be very many rows.
    connect(pRow, SIGNAL(SgnDeleteRecord(QString)), this, SLOT(OnDeleteRecord(QString)));
    connect(pRow, SIGNAL(SgnChangeDownloadState(bool)), this, SLOT(OnChangeDownloadState(bool)));
    ui->downloadListView->AddItem(pRow, true);
    ++m_iRowCount;
    m_pListAccess->OnRowAdded(*pRow);
    RefreshCount();
    if (pRow && HasDevicePicture(*pInfo)) // the client may have deleted the row when it heard the count
        RequestThumbnail(*pRow, pInfo->strPicturePath);
    // The values stand crosswise; tools that read the log expect them so.
    KX_PANEL_LOG(200, PanelLogEvent, "DownloadWidget::AddDownloadInfo", "strRecordId[%s],strBeginTime[%s]",
                 pInfo->strStartTime.toUtf8().constData(), pInfo->strRecordId.toUtf8().constData());
}

// A recording is shown once. Its row is left alone as long as the engine works on the record that it stands for, and
// stands for the new one from then on: no transfer runs behind a row that is paused or has failed.
void DownloadWidget::AskedAgain(DownloadItem& row, const DownloadRecordInfoPtr& pRecord)
{
    if (m_pEngine->StateOf(pRecord) == TaskState::Outside)
        return;
    const bool bIdle = row.State() == RowState::Paused || row.State() == RowState::Failed;
    if (row.Record() == pRecord ? bIdle : m_pEngine->StateOf(row.Record()) == TaskState::Outside)
        GoOver(row, pRecord, bIdle);
    else if (row.Record() != pRecord)
        m_mapOtherRecords.insert(pRecord->strRecordId, pRecord);
}

// `bLeavesFile`: the row's own record has left a partial file that goes when the row is deleted.
void DownloadWidget::GoOver(DownloadItem& row, const DownloadRecordInfoPtr& pRecord, bool bLeavesFile)
{
    const DownloadRecordInfoPtr pOld = row.Record();
    m_mapOtherRecords.remove(pRecord->strRecordId, pRecord);
    if (pOld != pRecord && bLeavesFile)
        m_mapOtherRecords.insert(pOld->strRecordId, pOld);
    row.SetRecord(pRecord);
    RestartRow(row);
    ForgetPaused(pRecord->strRecordId);
    if (pOld == pRecord || !HasDevicePicture(*pRecord))
        return;
    row.SetAwaitsPicture(true);
    RequestThumbnail(row, pRecord->strPicturePath);
}

// A record of the row's id that the engine works on, when it no longer works on the row's own; else null.
DownloadRecordInfoPtr DownloadWidget::NextRecord(const DownloadItem& row) const
{
    if (m_pEngine->StateOf(row.Record()) != TaskState::Outside)
        return nullptr;
    const QList<DownloadRecordInfoPtr> others = m_mapOtherRecords.values(row.Record()->strRecordId);
    const auto isQueued = [this](const DownloadRecordInfoPtr& pRecord) {
        return m_pEngine->StateOf(pRecord) != TaskState::Outside;
    };
    const auto next = std::find_if(others.begin(), others.end(), isQueued);
    return next == others.end() ? nullptr : *next;
}

bool DownloadWidget::GoOverToNext(DownloadItem& row, bool bLeavesFile)
{
    const DownloadRecordInfoPtr pNext = NextRecord(row);
    if (pNext)
        GoOver(row, pNext, bLeavesFile);
    return pNext != nullptr;
}

// Forgets the other records of the id that the engine does not work on.
void DownloadWidget::ForgetEnded(const QString& strRecordId, bool bRemovesFiles)
{
    for (const DownloadRecordInfoPtr& pRecord : m_mapOtherRecords.values(strRecordId)) {
        if (m_pEngine->StateOf(pRecord) != TaskState::Outside)
            continue;
        m_mapOtherRecords.remove(strRecordId, pRecord);
        if (!bRemovesFiles)
            continue;
        DropPicture(*pRecord);
        m_pEngine->RemoveFileJpg(pRecord->strDownloadPath);
    }
}

void DownloadWidget::ForgetPaused(const QString& strRecordId)
{
    m_listPausedRecordIds.removeAll(strRecordId);
    SetAllStartText();
}

void DownloadWidget::RequestThumbnail(const DownloadItem& row, const QString& strSource)
{
    const DownloadRecordInfoPtr pRecord = row.Record();
    ++m_mapThumbnailRequests[pRecord->strRecordId];
    emit SignalStartWork(strSource, PicturePathOf(pRecord->strDownloadPath), pRecord->strRecordId);
}

// A thumbnail that is still on its way would be left beside a recording that is gone.
void DownloadWidget::DropPicture(const KXDownLoadList::DownloadRecordInfo& record)
{
    const QString strPicturePath = PicturePathOf(record.strDownloadPath);
    if (m_mapThumbnailRequests.contains(record.strRecordId) && strPicturePath != record.strDownloadPath)
        m_mapDroppedPictures.insert(record.strRecordId, strPicturePath);
}

void DownloadWidget::KeepPicture(const KXDownLoadList::DownloadRecordInfo& record)
{
    m_mapDroppedPictures.remove(record.strRecordId, PicturePathOf(record.strDownloadPath));
}

void DownloadWidget::OnGetDeviceRecordThumbs(QVariantList list)
{
    if (list.size() < 2)
        return;
    if (const DownloadItem* pRow = RowOf(list[0].toString()))
        RequestThumbnail(*pRow, list[1].toString());
}

void DownloadWidget::UpdateCloudPictureInfo(QString strUrl, QString strDesPath)
{
    DownloadItem* pRow = RowOf(strUrl); // the engine sends the record id
    if (!pRow)
        return;
    const DownloadRecordInfoPtr pRecord = pRow->Record();
    pRecord->strPicturePath = strDesPath;
    pRow->SetRecord(pRecord);
    pRow->update(QRectF());
}

void DownloadWidget::OnCopyPictureFinished(QString strRecordID, QString strPath)
{
    if (--m_mapThumbnailRequests[strRecordID] <= 0) {
        m_mapThumbnailRequests.remove(strRecordID);
        for (const QString& strDropped : m_mapDroppedPictures.values(strRecordID))
            QFile::remove(strDropped);
        m_mapDroppedPictures.remove(strRecordID);
    }
    DownloadItem* pRow = RowOf(strRecordID);
    if (!pRow || pRow->Record()->iRecordType != KXDownLoadList::DeviceRecord)
        return;
    pRow->Record()->strPicturePath = strPath;
    pRow->SetAwaitsPicture(false);
    pRow->UpdateRecord(pRow->Record());
}

void DownloadWidget::OnDownloadRecordData(QString strRecordId, int iLength)
{
    DownloadItem* pRow = RowOf(strRecordId);
    if (!pRow) {
        QMessageLogger("Src/DownloadWidget/DownloadWidget", 435,
                       "void __cdecl DownloadWidget::OnDownloadRecordData(class QString,int)")
                .debug()
            << "item is NULL";
        return;
    }
    pRow->Record()->lReceivedSize += iLength;
    RepaintWithNextFrame(strRecordId);
}

// Hosts report progress far more often than a screen shows it.
void DownloadWidget::RepaintWithNextFrame(const QString& strRecordId)
{
    if (!isVisible())
        return; // shown again, all rows are repainted
    m_setProgressed.insert(strRecordId);
    if (m_frameTimer.isActive())
        return;
    const QScreen* pScreen = windowHandle() ? windowHandle()->screen() : nullptr;
    const qreal dFramesPerSecond = pScreen ? qBound(1.0, pScreen->refreshRate(), 1000.0) : 60.0;
    m_frameTimer.start(qCeil(1000 / dFramesPerSecond), Qt::PreciseTimer, this);
}

void DownloadWidget::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() != m_frameTimer.timerId())
        return KXGui::KXDialog::timerEvent(pEvent);
    if (m_setProgressed.isEmpty())
        return m_frameTimer.stop(); // an idle panel sleeps
    // Listeners may let more arrive.
    const QSet<QString> progressed = std::exchange(m_setProgressed, {});
    for (const QString& strRecordId : progressed) {
        DownloadItem* pRow = RowOf(strRecordId);
        if (!pRow)
            continue;
        pRow->UpdateRecord(pRow->Record());
        RowNews::Progressed(*pRow);
    }
}

void DownloadWidget::OnDownloadRecordStates(QString strRecordId, int iCode, bool bReget)
{
    const QByteArray id = strRecordId.toUtf8();
    KX_PANEL_LOG(446, PanelLogEvent, "DownloadWidget::OnDownloadRecordStates",
                 "OnDownloadRecordStates: strRecordId[%s], iCode[%d]", id.constData(), iCode);
    DownloadItem* pRow = RowOf(strRecordId);
    if (!pRow) {
        KX_PANEL_LOG(450, PanelLogEvent, "DownloadWidget::OnDownloadRecordStates",
                     "OnDownloadRecordStates: item not found, strRecordId[%s]", id.constData());
        return;
    }
    const std::optional<RowState> state = RowLook::StateOfCode(iCode, bReget);
    const bool bFinished = state == RowState::Finished;
    const bool bEnded = bFinished || state == RowState::Failed;
    const bool bShared = m_mapOtherRecords.contains(strRecordId);
    if (bFinished)
        ForgetEnded(strRecordId, false);
    if (bEnded && bShared && m_pEngine->StateOf(pRow->Record()) != TaskState::Outside)
        return; // another source's task of this id ended
    if (bEnded && GoOverToNext(*pRow, !bFinished))
        return;
    if (bFinished)
        FinishDownloadRecord(strRecordId);
    else if (state)
        pRow->SetState(*state);
}

// The view may keep a row until an event is through; it says nothing more of a recording that may be another's by then.
void DownloadWidget::RemoveRow(DownloadItem& row)
{
    const QPointer<DownloadItem> pRow(&row);
    m_pListAccess->OnRowGoes(row); // assistive technology may take rows away when it hears of it, this one, too
    const int iIndex = ui->downloadListView->IndexOfItem(pRow);
    if (iIndex < 0)
        return;
    pRow->blockSignals(true);
    ui->downloadListView->DeleteItem(iIndex);
    --m_iRowCount;
    RefreshCount();
}

void DownloadWidget::FinishDownloadRecord(const QString& strRecordId)
{
    const QByteArray id = strRecordId.toUtf8();
    DownloadItem* pRow = RowOf(strRecordId);
    if (!pRow) {
        KX_PANEL_LOG(272, PanelLogEvent, "DownloadWidget::FinishDownloadRecord",
                     "FinishDownloadRecord: item not found for strRecordId[%s]", id.constData());
        return;
    }
    const int iIndex = ui->downloadListView->IndexOfItem(pRow);
    KX_PANEL_LOG(277, PanelLogEvent, "DownloadWidget::FinishDownloadRecord",
                 "FinishDownloadRecord: strRecordId[%s], index[%d]", id.constData(), iIndex);
    RemoveRow(*pRow);
    OnScrollValueChanged(0);
}

void DownloadWidget::OnDeleteRecord(QString strRecordId)
{
    DownloadItem* pRow = RowOf(strRecordId);
    if (!pRow) {
        KX_PANEL_LOG(505, PanelLogEvent, "DownloadWidget::OnDeleteRecord",
                     "OnDeleteRecord: item not found for strRecordId[%s]", strRecordId.toUtf8().constData());
        return;
    }
    const DownloadRecordInfoPtr pRecord = pRow->Record();
    DropPicture(*pRecord);
    m_pEngine->DeleteRecordDownload(pRecord->iRecordType, pRecord->strRecordId, pRecord->strDownloadPath);
    // Rows may have gone meanwhile, this one too: a host may let events run while it stops a transfer. And the
    // recording may have been asked for again.
    ForgetEnded(strRecordId, true);
    DownloadItem* pLeft = RowOf(strRecordId);
    const bool bGone = m_pEngine->StateOf(pRecord) == TaskState::Outside;
    if (pLeft && pLeft->Record() == pRecord && bGone && !GoOverToNext(*pLeft, false))
        RemoveRow(*pLeft);
    pLeft = RowOf(strRecordId);
    if (!pLeft || pLeft->State() != RowState::Paused)
        ForgetPaused(strRecordId);
}

// A paused download starts over when it is resumed.
void DownloadWidget::PauseRow(DownloadItem& row)
{
    const DownloadRecordInfoPtr pRecord = row.Record();
    pRecord->lReceivedSize = 0;
    row.UpdateRecord(pRecord);
    row.SetState(RowState::Paused);
    m_listPausedRecordIds.append(pRecord->strRecordId);
}

// It counts from nothing: what the old transfer reported last may have been added after the pause.
void DownloadWidget::RestartRow(DownloadItem& row)
{
    row.Record()->lReceivedSize = 0;
    row.SetState(RowState::Waiting);
    KeepPicture(*row.Record());
}

// A row is told before the engine is: inside a start the host may report a full disk, which pauses it again.
void DownloadWidget::OnChangeDownloadState(bool bStart)
{
    auto* pRow = qobject_cast<DownloadItem*>(sender());
    if (!pRow)
        return;
    const DownloadRecordInfoPtr pRecord = pRow->Record();
    if (bStart) {
        RestartRow(*pRow);
        m_listPausedRecordIds.removeAll(pRecord->strRecordId);
        StartRecordDownloads({pRecord});
    } else {
        PauseRecordDownloads({pRecord});
        pRow = RowOf(pRecord->strRecordId); // it may have gone, or the recording was asked for again
        if (pRow && !GoOverToNext(*pRow, true) && m_pEngine->StateOf(pRow->Record()) == TaskState::Outside)
            PauseRow(*pRow);
    }
    SetAllStartText();
}

// The button acts on the list of paused ids, not on the states of the rows.
void DownloadWidget::OnBtnAllStart()
{
    QList<DownloadRecordInfoPtr> records;
    if (m_listPausedRecordIds.isEmpty()) {
        SetAllStartText(true);
        for (DownloadItem* pRow : Rows()) {
            PauseRow(*pRow);
            records.append(pRow->Record());
        }
        PauseRecordDownloads(records);
        return;
    }
    SetAllStartText(false);
    QStringList pausedRecordIds;
    pausedRecordIds.swap(m_listPausedRecordIds);
    for (const QString& strRecordId : qAsConst(pausedRecordIds)) {
        DownloadItem* pRow = RowOf(strRecordId);
        if (!pRow)
            continue;
        records.append(pRow->Record());
        RestartRow(*pRow);
    }
    StartRecordDownloads(records);
}

// The engine has stopped every transfer already; the rows only follow.
void DownloadWidget::OnStopAllDownload()
{
    SetAllStartText(true);
    for (DownloadItem* pRow : Rows()) {
        PauseRow(*pRow);
        DropPicture(*pRow->Record());
    }
}

// What was asked for or resumed while all others were stopped goes on.
void DownloadWidget::KeepRowsThatGoOn()
{
    for (DownloadItem* pRow : Rows()) {
        const TaskState state = m_pEngine->StateOf(pRow->Record());
        if (state != TaskState::Outside && state != TaskState::Held)
            GoOver(*pRow, pRow->Record(), false);
        else
            GoOverToNext(*pRow, true);
    }
}

// Thumbnails that were written since the last paint appear on the rows that came into view.
void DownloadWidget::OnScrollValueChanged(int)
{
    QList<QGraphicsItem*> visible;
    ui->downloadListView->GetItemsInViewPort(visible, true);
    for (QGraphicsItem* pItem : qAsConst(visible)) {
        auto* pRow = static_cast<DownloadItem*>(pItem);
        if (!pRow->Record()->strPicturePath.isEmpty())
            pRow->update(QRectF());
    }
}

// What is still paused when the panel goes starts over another time: its partial files go.
void DownloadWidget::ClearPauseRecordFile()
{
    for (const QString& strRecordId : qAsConst(m_listPausedRecordIds)) {
        const DownloadItem* pRow = RowOf(strRecordId);
        if (!pRow)
            continue;
        QList<DownloadRecordInfoPtr> records = m_mapOtherRecords.values(strRecordId);
        records.append(pRow->Record());
        for (const DownloadRecordInfoPtr& pRecord : qAsConst(records)) {
            RemoveFile(pRecord->strDownloadPath, 306, 310);
            RemoveFile(PicturePathOf(pRecord->strDownloadPath), 319, 323);
        }
        DropPicture(*pRow->Record());
    }
    m_listPausedRecordIds.clear();
}

void DownloadWidget::RemoveDroppedPictures()
{
    for (const QString& strPath : qAsConst(m_mapDroppedPictures))
        RemoveFile(strPath, 319, 323);
}
