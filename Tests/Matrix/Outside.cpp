#include "Matrix/Outside.h"

#include "TestMain.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QResizeEvent>

using namespace KXDownLoadList;

namespace {

template <class Record>
QByteArray Stream(const QString& strId, const QString& strPath, const std::function<void(Record&)>& change)
{
    Record record;
    record.iRecordType = static_cast<int>(SourceOf(strId));
    record.strRecordId = strId;
    record.strDeviceId = QStringLiteral("SN");
    record.strDownloadPath = strPath;
    record.strStartTime = QStringLiteral("20200102T030405");
    record.strEndTime = QStringLiteral("20200102T030506");
    record.lFileSize = 1000;
    change(record);
    return EngineRig::Stream(std::vector<Record>{record});
}

} // namespace

Outside::Outside()
    : m_host(World())
{
    World().Pictures().FailAll(false);
    World().Calls().WhenAnyAdded([this](const QString& strLine) { TakeCall(strLine); });
    World().Log().WhenAnyLogged([this](const QString& strLine) { GoOut(strLine); });
    // Room for every row, so that each can be pressed.
    GraphicsGridView& view = m_rig.View();
    QResizeEvent resized(QSize(640, 3000), view.size());
    view.resize(640, 3000);
    QCoreApplication::sendEvent(&view, &resized);
}

Outside::~Outside()
{
    m_wayOut = nullptr;
    World().Cloud().OpenDecryptGate();
    m_rig.Panel().Stop();
    m_rig.Destroy();
}

void Outside::TakeCall(const QString& strLine)
{
    if (std::this_thread::get_id() != m_home)
        return;
    const bool bAsksDevice = strLine.startsWith(QLatin1String("RequestDevicePassword"));
    const std::size_t uCloud = m_uCloudQueries;
    const std::size_t uDevice = m_uDeviceQueries;
    if (strLine.startsWith(QLatin1String("GetCloudRecordPassword")))
        ++m_uCloudQueries;
    if (bAsksDevice) {
        ++m_uDeviceQueries;
        ++m_iAskingDevices;
    }
    m_host.Take(strLine, [&] { GoOut(strLine); });
    // No answer comes inside the call that asks.
    if (strLine.startsWith(QLatin1String("GetCloudRecordPassword")))
        m_cloudQuestions.push_back(uCloud);
    if (bAsksDevice) {
        m_deviceQuestions.push_back(uDevice);
        --m_iAskingDevices;
    }
    if (strLine.startsWith(QLatin1String("get ")))
        m_pictures.append(strLine.mid(4));
}

void Outside::GoOut(const QString& strLine)
{
    if (m_wayOut && std::this_thread::get_id() == m_home)
        m_wayOut(strLine);
}

void Outside::Request(const QString& strId)
{
    const unsigned uKind = m_kinds.value(strId);
    const QString strName =
        uKind & NewFolder ? QStringLiteral("new-%1/%1.mp4").arg(strId) : strId + QStringLiteral(".mp4");
    const QString strPath = World().Path(strName.toUtf8().constData());
    QByteArray bytes;
    switch (SourceOf(strId)) {
    case Source::Cloud:
        bytes = Stream<DownloadCloudRecordInfo>(strId, strPath, [&](DownloadCloudRecordInfo& record) {
            record.strCloudText1 = QStringLiteral("u-") + strId;
            record.strText1 = uKind & Protected ? QStringLiteral("account") : QString();
            record.strCloudText2 = uKind & Protected ? QStringLiteral("key") : QString();
        });
        break;
    case Source::Device:
        bytes = Stream<DownloadDeviceRecordInfo>(strId, strPath, [&](DownloadDeviceRecordInfo& record) {
            record.bNeedPassword = record.bCanGetPassword = (uKind & Protected) != 0;
        });
        break;
    case Source::IOTLan:
    case Source::LanModule:
        bytes = Stream<DownloadLanModuleRecordInfo>(strId, strPath, [](DownloadLanModuleRecordInfo&) {});
        break;
    }
    m_host.Forget(strId);
    World().Bus().Send("EventNotifyDownloadRecordList", {bytes, static_cast<int>(SourceOf(strId))});
}

void Outside::FillDisk(bool bRoomAgain)
{
    ScriptedDisk::SetFreeBytes((bRoomAgain ? 1024 : 1) * ScriptedDisk::MiB);
    World().Bus().Send("EventNotifyDeleteDownloadRecord", {World().Folder()});
}

void Outside::ChangeFolder()
{
    World().Bus().Send("EventNotifyDownloadRecordPath", {World().Path("elsewhere")});
}

bool Outside::Ask(const QString& strId)
{
    const QString strQuestion = QStringLiteral("{\"strRecordId\":\"%1\",\"iType\":%2}")
                                    .arg(strId, QString::number(static_cast<int>(SourceOf(strId))));
    World().Bus().Send("EventNotifyGetRecordDownloading", {strQuestion});
    const QStringList answers = World().Bus().Texts("EventNotifyRecordDownloading");
    return answers.value(answers.size() - 1).contains(QLatin1String("true"));
}

void Outside::Stop()
{
    m_rig.Panel().Stop();
    m_bStopped = true;
    m_host.EngineStopped();
}

// By the view, as a press comes: it keeps a row that goes until its press is through.
void Outside::PressState(const QString& strId)
{
    DownloadItem* pRow = m_rig.Row(strId.toUtf8().constData());
    if (!pRow)
        return;
    m_host.Forget(strId);
    if (m_bPressed)
        SendMouse(QEvent::MouseButtonRelease, m_pressPos);
    SendMouse(QEvent::MouseMove, QPoint()); // the view puts its rows where they belong
    m_bPressed = true;
    m_pressPos = m_rig.View().mapFromScene(pRow->mapToScene(PanelRig::StateButton));
    SendMouse(QEvent::MouseButtonPress, m_pressPos);
    SendMouse(QEvent::MouseButtonRelease, m_pressPos);
    m_bPressed = false;
}

void Outside::SendMouse(QEvent::Type type, const QPoint& pos)
{
    QWidget* pViewport = m_rig.View().viewport();
    QMouseEvent event(type, pos, pViewport->mapToGlobal(pos), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pViewport, &event);
}

void Outside::Delete(const QString& strId)
{
    if (!Rows().contains(strId))
        return;
    m_host.ExpectStop(strId);
    m_rig.Panel().OnDeleteRecord(strId);
}

void Outside::PressAll()
{
    for (const QString& strId : Rows()) {
        if (RowOf(strId) == RowIs::Paused) // all are resumed
            m_host.Forget(strId);
    }
    m_rig.Find<QPushButton>("btnAllStart").click();
}

void Outside::RaiseData(const QString& strId)
{
    World().Downloads().RaiseData(SourceOf(strId), strId.toUtf8().constData(), 100);
}

void Outside::AnswerPictures()
{
    QStringList pictures;
    pictures.swap(m_pictures);
    for (const QString& strUrl : pictures)
        World().Pictures().AnswerFailed(strUrl.toUtf8().constData());
}

// Until the worker's result is on its way to the engine, too.
void Outside::AnswerWithWrongKey(const QString& strId)
{
    const QString strUrl = QStringLiteral("u-") + strId;
    m_pictures.removeOne(strUrl);
    World().Cloud().QueueDecryption(2, QByteArray());
    World().Pictures().AnswerWithFile(strUrl.toUtf8().constData(), QByteArrayLiteral("cover"));
    QTRY_VERIFY(World().Log().Lines("2 RecordDownloadModule::OnPictureDecrptFinished").size() > 0);
}

void Outside::AnswerCloudPasswords()
{
    std::vector<std::size_t> questions;
    questions.swap(m_cloudQuestions);
    for (const std::size_t uQuestion : questions)
        World().Cloud().AnswerPassword(uQuestion, 1, "canary-opened");
}

// Not while one is being asked: the engine holds its list then, and a host thread would wait for the end of the call.
void Outside::AnswerDevicePasswords(int iResult)
{
    if (m_iAskingDevices > 0)
        return;
    std::vector<std::size_t> questions;
    questions.swap(m_deviceQuestions);
    for (const std::size_t uQuestion : questions)
        World().Devices().AnswerPassword(uQuestion, iResult, "opened");
}

void Outside::Rest()
{
    Turn();
    for (int i = 0; i < 20 && !(m_pictures.isEmpty() && m_cloudQuestions.empty() && m_deviceQuestions.empty()); ++i) {
        AnswerPictures();
        AnswerCloudPasswords();
        AnswerDevicePasswords();
        Turn();
    }
}

QStringList Outside::Rows()
{
    QStringList ids;
    for (QGraphicsItem* pItem : m_rig.View().GetAllItem())
        ids.append(pItem->data(GraphicsGridView::KeyRole).toString());
    return ids;
}
