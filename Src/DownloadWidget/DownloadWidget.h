#pragma once

#include "KXGui/KXDialog.h"
#include "Model/DownloadRecordInfo.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <memory>

class DownloadItem;
class KXSvgPixmap;
class ListAccess;
class QThread;
class RecordDownloadModule;
class SaveDeviceRecordThumbWorker;
class ThumbnailCache;

namespace Ui {
class DownloadWidget;
}

// The panel: a pop-up list with a row for every download that is not finished. It owns the download engine, the rows
// and the thumbnail thread. Rows ask, the panel forwards, the engine acts.
//
// Thread: the GUI thread. The thumbnail thread is reached by queued signals only; nothing is shared with it.
class DownloadWidget : public KXGui::KXDialog
{
    Q_OBJECT

public:
    explicit DownloadWidget(QWidget* pParent = nullptr);
    ~DownloadWidget() override;

    // Sets the panel's texts anew after a change of language.
    void RefreshTexts();
    // Ends all downloads for good.
    void Stop();
    void StartRecordDownloads(const QList<DownloadRecordInfoPtr>& list);
    void PauseRecordDownloads(const QList<DownloadRecordInfoPtr>& list);
    // Takes the row of a finished download away; an id without a row is logged.
    void FinishDownloadRecord(const QString& strRecordId);

signals:
    void SignalDeleteRecord(int iRecordType, QString strRecordId, QString strDownloadPath);
    void SignalStartWork(QString srcPath, QString dstPath, QString strRecordID);

public slots:
    void OnGetDeviceRecordThumbs(QVariantList list);
    void AddDownloadInfo(DownloadRecordInfoPtr pInfo);
    void UpdateCloudPictureInfo(QString strUrl, QString strDesPath);
    void OnDownloadRecordData(QString strRecordId, int iLength);
    void OnDownloadRecordStates(QString strRecordId, int iCode, bool bReget);
    void OnStopAllDownload();
    void OnClose();
    void OnBtnSetting();
    void OnBtnAllStart();
    void OnDeleteRecord(QString strRecordId);
    void OnChangeDownloadState(bool bStart);
    void OnScrollValueChanged(int iValue);
    void OnCopyPictureFinished(QString strRecordID, QString strPath);

protected:
    void showEvent(QShowEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void timerEvent(QTimerEvent* pEvent) override;

private:
    void SetUpWindow();
    void SetUpForm();
    void ConnectEngine();
    void MakeButtonPixmaps();
    void StartThumbnailThread();
    void SetEmptyText();
    void SetEmptyPicture();
    void SetCountText();
    void RefreshCount();
    void SetAllStartText(bool bResume);
    DownloadItem* RowOf(const QString& strRecordId) const;
    QList<DownloadItem*> Rows() const;
    void PauseRow(DownloadItem& row);
    void RestartRow(DownloadItem& row);
    DownloadRecordInfoPtr NextRecord(const DownloadItem& row) const;
    void GoOver(DownloadItem& row, const DownloadRecordInfoPtr& pRecord, bool bLeavesFile);
    void AskedAgain(DownloadItem& row, const DownloadRecordInfoPtr& pRecord);
    bool GoOverToNext(DownloadItem& row, bool bLeavesFile);
    void KeepRowsThatGoOn();
    void ForgetEnded(const QString& strRecordId, bool bRemovesFiles);
    void ForgetPaused(const QString& strRecordId);
    void SetAllStartText() { SetAllStartText(!m_listPausedRecordIds.isEmpty()); }
    void DropPicture(const KXDownLoadList::DownloadRecordInfo& record);
    void KeepPicture(const KXDownLoadList::DownloadRecordInfo& record);
    void RepaintWithNextFrame(const QString& strRecordId);
    void RequestThumbnail(const DownloadItem& row, const QString& strSource);
    void RemoveRow(DownloadItem& row);
    void ClearPauseRecordFile();
    void RemoveDroppedPictures();

    std::unique_ptr<Ui::DownloadWidget> ui;
    QStringList m_listPausedRecordIds; // in the order in which they were paused; may repeat
    RecordDownloadModule* m_pEngine = nullptr;
    QMap<int, KXSvgPixmap*> m_mapButtonPixmap; // shared with every row
    QThread* m_pThumbnailThread = nullptr;
    SaveDeviceRecordThumbWorker* m_pThumbnailWorker = nullptr;
    QHash<QString, int> m_mapThumbnailRequests;        // on their way, by record id
    QMultiHash<QString, QString> m_mapDroppedPictures; // of those, files that are to go when they come
    // Records that were asked for under the id of a row that stands for another one.
    QMultiHash<QString, DownloadRecordInfoPtr> m_mapOtherRecords;
    int m_iRowCount = 0;
    qreal m_dEmptyPictureRatio = 0; // device pixels in one of ours, for which the empty page's picture was made
    std::unique_ptr<ListAccess> m_pListAccess;
    QSet<QString> m_setProgressed;                 // rows to be repainted with the next frame
    QBasicTimer m_frameTimer;                      // runs until a frame finds none
    std::shared_ptr<ThumbnailCache> m_pThumbnails; // lives as long as a panel does
};
