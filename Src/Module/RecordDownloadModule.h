#pragma once

#include "KXBase/IPictureDownloaderListener.h"
#include "KXLogic/IKXLogicObserver.h"
#include "Model/DownloadRecordInfo.h"
#include "Module/FolderListing.h"
#include "Module/PictrueDecrypt.h"
#include "Module/PromisedPaths.h"
#include "Module/RecordQueue.h"

#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QVariant>

#include <map>
#include <optional>

class PictureDownloader;

namespace KXLogic {
class ICloudLogic;
class IDeviceLogic;
class IDownloadLogic;
struct DownloadRequest;
} // namespace KXLogic

// What a task is stopped for; decides whether its partial file stays.
namespace StopCode {
constexpr int Retry = 0; // it is queued again, for a password
constexpr int Finished = 2;
constexpr int Failed = 3; // the file goes, where the source does not keep it
constexpr int Refused = 4;
constexpr int Paused = 5;
constexpr int Deleted = 6; // the file goes
} // namespace StopCode

// The download engine: queues the recordings that the client asks for by event, runs a fixed number of transfers per
// source through the host's download module, and tells the panel and the client what becomes of them.
//
// Its sources are one mechanism: a Source names what differs, and the operations named per source (StartCloudDownload
// and so on) are what the mechanism calls. The code lies in six rooms: RecordDownloadCore and -Schedulers, -Callbacks,
// -Passwords, -Storage, -Pictures.
//
// Thread: everything on the thread that made the engine, the host's GUI thread, except where a comment says otherwise.
// Ownership: the engine belongs to the panel. Call Shutdown before destroying it.
class RecordDownloadModule : public QObject, public KXLogic::IKXLogicObserver, public IPictureDownloaderListener
{
    Q_OBJECT

public:
    explicit RecordDownloadModule(QObject* pParent = nullptr);
    ~RecordDownloadModule() override;

    // Queue each task anew: first start, resume and retry.
    void StartRecordDownloads(const QList<DownloadRecordInfoPtr>& list);
    // Take the tasks out of the queues and stop those that run; partial files stay.
    void PauseRecordDownloads(const QList<DownloadRecordInfoPtr>& list);
    // Ends one task and removes its file `strPath` and its picture.
    void DeleteRecordDownload(int iRecordType, const QString& strRecordId, const QString& strPath);
    // Ends all work and leaves the host; nothing is started afterwards. Safe to call again.
    void Shutdown();

    // From IKXLogicObserver. Runs on a host thread; touches the password request list only, under its mutex.
    void OnLogicMessage(const KXLogic::LogicMessage& message) override;
    // From IPictureDownloaderListener.
    void OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath) override;

signals:
    void SignalAddDownloadInfo(DownloadRecordInfoPtr info);
    void SignalUpdateCloudPictureInfo(QString strRecordId, QString strDesPicPath);
    void SignalDownloadRecordStates(QString strRecordId, int iCode, bool bReget);
    void SignalDownloadRecordData(QString strRecordId, int iLength);
    // For the panel's thumbnail worker; the engine itself has no reason to emit it.
    void SignalStartCopyPic(QString strSrcPicture, QString strDstPicture, QString strRecordId);
    // Emitted on a host thread.
    void SignalGetDevicePasswordResponse(int iResult, int64_t lChannelId, QString strUserName, QString strPwd,
                                         QString strUserInfo);
    void SignalStopAllRecord();

public slots:
    void OnGetDownloadList(QVariantList list);
    void OnClearListForRecDiskFull(QVariantList list);
    void OnDownloadRecordPathChanged(QVariantList list);
    void OnGetDownloadStates(QVariantList list);
    void OnPictureDecrptFinished(int iCode, QString strUrl, QString strDecrptLocalPicpath);

private slots:
    void OnGetCloudPasswordFinished(int ibGet, QString strPassword, QString strDeviceSN, int64_t lChannelId,
                                    QString strRecordId, QString strPath);
    // The static callbacks run on host threads: they copy their values, post them to the slot below, and touch no
    // engine state. `pUser` is the engine; -1 when it is null.
    static int DownloadStateCallback(qint64 iRecordID, int iCode, void* pUser);
    static int DownloadReceiveDataCallback(qint64 iRecordID, int iLength, void* pUser);
    void OnDownloadCloudRecordState(int64_t iRecordId, int iCode);
    void OnDownloadCloudRecordData(int64_t iRecordId, int iLength);
    static int DownloadLanModuleStateCallback(const char* strRecordID, int iCode, void* pUser);
    static int DownloadLanModuleReceiveDataCallback(const char* strRecordID, int iLength, void* pUser);
    void OnDownloadLanModuleRecordState(QString strRecordID, int iCode);
    void OnDownloadLanModuleRecordData(QString strRecordID, int iLength);
    static int DownloadIOTLanStateCallback(const char* strRecordID, int iCode, void* pUser);
    static int DownloadIOTLanReceiveDataCallback(const char* strRecordID, int iLength, void* pUser);
    void OnDownloadIOTLanRecordState(QString strRecordID, int iCode);
    void OnDownloadIOTLanRecordData(QString strRecordID, int iLength);
    static int DownloadDeviceStateCallback(const char* strRecordID, int iCode, void* pUser);
    static int DownloadDeviceReceiveDataCallback(const char* strRecordID, int iLength, void* pUser);
    void OnDownloadDeviceRecordState(QString strRecordID, int iCode);
    void OnDownloadDeviceRecordData(QString strRecordID, int iLength);
    void OnGetDevicePassword(int iResult, int64_t lChannelId, QString strUserName, QString strPwd, QString strUserInfo);

private:
    // What differs between the sources; one row of the table for each.
    struct Source
    {
        int iRecordType;
        int iLimit;          // transfers at a time
        int iReportedKind;   // source kind of the download report
        bool bKeepsFailed;   // a failed transfer's partial file stays
        bool bWaitsPassword; // nothing starts while a device password is being fetched
        RecordQueue RecordDownloadModule::*pWaiting;
        RecordQueue RecordDownloadModule::*pRunning;
        void (RecordDownloadModule::*pStartNext)();
        bool (RecordDownloadModule::*pStart)(const DownloadRecordInfoPtr& pTask);
        void (RecordDownloadModule::*pStop)(const QString& strRecordId, int iCode, const QString& strPath);
        void (RecordDownloadModule::*pFinish)(const QString& strRecordId);
        void (RecordDownloadModule::*pRegisterFinished)(const QString& strRecordId);
    };
    static const Source Sources[4]; // position = record type
    // The row of that record type; null for an unknown type.
    static const Source* SourceOf(int iRecordType);

    // What became of a refused device task.
    enum class Recovery {
        Requeued,
        GivenUp,
        Dropped // the client paused, deleted or cleared it meanwhile
    };

    // What a cover picture was asked for with.
    struct CloudPictureInfo
    {
        QString strRecordId;
        QString strDeviceId;
        QString strDeviceAccount;
        QString strPassword;
        QString strPictureKey;
        QString strDownloadPath;
        QString strKeyText;
        bool bHasRow;
    };
    // The requests for one URL, oldest first; the first `iDecrypting` of them are with the decrypter.
    struct CloudPictures
    {
        QList<CloudPictureInfo> infos;
        int iDecrypting = 0;
    };

    // Core
    void RegisterWithHost();
    template <class Record>
    void ReceiveRecords(const QByteArray& bytes);
    // `bHasRow`: the panel shows the task already.
    void AddDownloadRecord(const DownloadRecordInfoPtr& pTask, bool bHasRow);
    void AddCloudRecord(const DownloadRecordInfoPtr& pTask, bool bHasRow);
    void ClearAllDownloads();
    bool IsInDownloadList(int iRecordType, const QString& strRecordId) const;

    // Schedulers
    void StartNextCloudDownload();
    void StartNextDeviceDownload();
    void StartNextIOTLanDownload();
    void StartNextLanModuleDownload();
    void StartNextDownload(const Source& source);
    bool StartCloudDownload(const DownloadRecordInfoPtr& pTask);
    bool StartDeviceDownload(const DownloadRecordInfoPtr& pTask);
    bool StartIOTLanDownload(const DownloadRecordInfoPtr& pTask);
    bool StartLanModuleDownload(const DownloadRecordInfoPtr& pTask);
    void StopCloudDownload(const QString& strRecordId, int iCode, const QString& strPath);
    void StopDeviceDownload(const QString& strRecordId, int iCode, const QString& strPath);
    void StopIOTLanDownload(const QString& strRecordId, int iCode, const QString& strPath);
    void StopLanModuleDownload(const QString& strRecordId, int iCode, const QString& strPath);
    void DropStopped(const Source& source, const QString& strRecordId, int iCode, const QString& strPath);
    void FinishCloudDownload(const QString& strRecordId);
    void FinishDeviceDownload(const QString& strRecordId);
    void FinishIOTLanDownload(const QString& strRecordId);
    void FinishLanModuleDownload(const QString& strRecordId);
    void FinishDownload(const Source& source, const QString& strRecordId);

    // Callbacks and states
    void HandleState(const Source& source, const QString& strRecordId, int iCode);
    void ActOnState(const Source& source, const DownloadRecordInfoPtr& pTask, int iCode);
    void TellDeviceState(const KXDownLoadList::DownloadRecordInfo& record, int iCode, bool bReget);

    // Passwords
    Recovery RecoverPassword(const std::shared_ptr<KXDownLoadList::DownloadDeviceRecordInfo>& pTask);
    Recovery GiveUp(const KXDownLoadList::DownloadDeviceRecordInfo& record, const char* pszWhy);
    Recovery Requeue(const std::shared_ptr<KXDownLoadList::DownloadDeviceRecordInfo>& pTask, bool bAsks,
                     const char* pszWhy);
    void RequestDevicePassword(const KXDownLoadList::DownloadDeviceRecordInfo& record);
    QString AnsweredDevice(const QString& strUserInfo) const;
    void RequestCloudPassword(const KXDownLoadList::DownloadCloudRecordInfo& record);
    void ReleaseWithPassword(const QString& strRecordId, const QString& strDeviceId, const QString& strPassword);
    // Runs on a host thread.
    static int CloudPasswordCallback(int ibGet, const char* strPassword, const char* strDeviceSN, int64_t lChannelId,
                                     const char* strRecordId, const char* strPath, void* pUser);

    // Storage
    bool EnsureDownloadPathExists(const QString& strFilePath);
    QString MakeUniqueFilePath(const QString& strFilePath);
    bool IsFreePath(const QString& strFilePath) const;
    bool JudgeDiskIsFull();
    void RemoveFileJpg(const QString& strFilePath);
    void RegisterCloudFinishedFile(const QString& strRecordId);
    void RegisterDeviceFinishedFile(const QString& strRecordId);
    void RegisterIOTLanFinishedFile(const QString& strRecordId);
    void RegisterLanModuleFinishedFile(const QString& strRecordId);
    void RegisterFinishedFile(const Source& source, const QString& strRecordId);

    // Pictures
    void RequestCloudPicture(const KXDownLoadList::DownloadCloudRecordInfo& record, bool bHasRow);
    std::optional<CloudPictureInfo> TakeDecrypted(const QString& strUrl);
    static bool WasListed(const CloudPictureInfo& info);
    void PictureReady(const CloudPictureInfo& info, const QString& strPath);
    void DropWrongKeyTask(const CloudPictureInfo& info);
    DownloadRecordInfoPtr HeldTask(const CloudPictureInfo& info) const;

    QList<int64_t> m_listPwdRequest; // guarded by m_pwdRequestMutex
    QMutex m_pwdRequestMutex;
    KXLogic::IDownloadLogic* m_pDownloadLogic = nullptr;
    KXLogic::ICloudLogic* m_pCloudLogic = nullptr;
    KXLogic::IDeviceLogic* m_pDeviceLogic = nullptr;
    PictureDownloader* m_pPictureDownloader = nullptr;
    QHash<QString, CloudPictures> m_mapCloudPicture; // by URL
    PictrueDecrypt* m_pPictrueDecrypt = nullptr;     // owned
    RecordQueue m_listPendingCloudRecord;            // held until password or picture is settled; no row yet
    RecordQueue m_listWaitCloudRecord;
    RecordQueue m_listRunCloudRecord;
    RecordQueue m_listWaitLanModuleRecord;
    RecordQueue m_listRunLanModuleRecord;
    RecordQueue m_listWaitIOTLanRecord;
    RecordQueue m_listRunIOTLanRecord;
    RecordQueue m_listWaitDeviceRecord;
    RecordQueue m_listRunDeviceRecord;
    RecordQueue m_listRequeueDeviceRecord; // between running and waiting, while the host's stop is on the stack
    std::map<std::string, int> m_mapDevicePwdCount; // password requests of a device since it last ran; for a debugger
    QSet<QString> m_setGettingPasswordDevice;
    bool m_bDiskGuardArmed = false;
    QString m_strDownloadDir;
    bool m_bShuttingDown = false;
    bool m_starting[4] = {}; // by record type: the host's start operation of that source is on the stack
    quint64 m_uClears = 0;   // how often all tasks were dropped
    FolderListing* m_pFolderListing = nullptr; // while a list is received
    PromisedPaths m_promisedPaths;
    QHash<QString, int> m_mapNextCounter; // within one received list: counters below it are taken
};
