#pragma once

#include "KXBase/IPictureDownloaderListener.h"
#include "KXLogic/IKXLogicObserver.h"
#include "Model/DownloadRecordInfo.h"
#include "Module/FolderListing.h"
#include "Module/PictrueDecrypt.h"
#include "Module/PromisedPaths.h"
#include "Module/RecordQueue.h"
#include "Module/StopCode.h"

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

// The download engine: queues the recordings that the client asks for by event, runs a fixed number of transfers per
// source through the host's download module, and tells the panel and the client what becomes of them.
//
// Its sources are one mechanism: a Source names all that differs, and the operations named per source
// (StartCloudDownload and so on) are what the mechanism calls. The code lies in seven rooms: RecordDownloadCore and
// -Schedulers, -Callbacks, -Passwords, -Storage, -Pictures.
//
// The host, the client, the panel and the database may call back from inside any call to them. After each such call the
// engine goes on with the task that it has in hand, and only when that task's state is still the one it left, see
// DownloadTask. It must not be destroyed inside such a call.
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
    // Where this very record stands; Outside, too, when it was dropped and the host still has it.
    TaskState StateOf(const DownloadRecordInfoPtr& pRecord) const;
    // Removes a file that no task writes, and the picture beside it.
    void RemoveFileJpg(const QString& strFilePath);

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
    // What a state code says of a transfer. Unknown ones are passed on.
    enum class Outcome { Running, Failed, Finished, Refused, Unknown };
    // What a finished task's transfer gets.
    enum class AfterFinish {
        Leave, // it is taken out
        Stop,  // the host stops it, then it is taken out
        LeaveThenStop
    };
    // What differs between the sources; one row of the table for each.
    enum Trait {
        HoldsFirst = 1,        // a task is held until its password or else its picture is settled
        WaitsForPassword = 2,  // nothing starts while a device password is being fetched
        KeepsFailed = 4,       // a failed transfer's partial file stays
        RemovesWaiting = 8,    // the files of waiting tasks go when all tasks are dropped
        Aborts = 16,           // state code 100 is a failure
        AnswersQuestions = 32, // the client may ask whether a recording is in the list
        LogsStates = 64        // each state is logged
    };
    struct Source
    {
        int iRecordType;
        int iLimit;        // transfers at a time
        int iReportedKind; // source kind of the download report
        int iTraits;
        AfterFinish afterFinish;
        DownloadRecordInfoPtr (*pMakeRecord)();
        RecordQueue RecordDownloadModule::*pWaiting;
        RecordQueue RecordDownloadModule::*pRunning;
        void (RecordDownloadModule::*pStartNext)();
        int (RecordDownloadModule::*pStart)(const DownloadRecordInfoPtr& pRecord); // 0 is success
        int (*pHostStop)(KXLogic::IDownloadLogic& logic, const QString& strRecordId);
        void (RecordDownloadModule::*pStop)(const QString& strRecordId, StopCode code, const QString& strPath);
        void (RecordDownloadModule::*pFinish)(const DownloadTasks& tasks, StopCode code);
        void (RecordDownloadModule::*pRegisterFinished)(const DownloadTaskPtr& pTask);
        void (RecordDownloadModule::*pHandleState)(const DownloadTaskPtr& pTask, int iCode);

        bool Has(Trait trait) const { return (iTraits & trait) != 0; }
    };
    static const Source Sources[4]; // position = record type
    // The row of that record type; null for an unknown type.
    static const Source* SourceOf(int iRecordType);
    static const Source& SourceOf(const DownloadTaskPtr& pTask) { return *SourceOf(pTask->pRecord->iRecordType); }

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
    };
    // The requests for one URL, oldest first; the first `iDecrypting` of them are with the decrypter.
    struct CloudPictures
    {
        QList<CloudPictureInfo> infos;
        int iDecrypting = 0;
    };

    // Core
    void RegisterWithHost();
    void Move(const DownloadTaskPtr& pTask, TaskState to);
    RecordQueue* QueueOf(const Source& source, TaskState state);
    DownloadTasks TasksOf(const Source& source, const QString& strRecordId) const;
    bool IsListed(const Source& source, const QString& strRecordId) const;
    void ReceiveRecords(const Source& source, const QByteArray& bytes);
    void AddDownloadRecord(const DownloadRecordInfoPtr& pRecord);
    DownloadTaskPtr TakeIn(const DownloadRecordInfoPtr& pRecord, bool bHasRow);
    void GoOn(const DownloadTaskPtr& pTask);
    void Enter(const DownloadTaskPtr& pTask);
    void ClearAllDownloads();
    bool IsInDownloadList(int iRecordType, const QString& strRecordId) const;

    // Schedulers: start what waits, as far as places are free
    void StartNextCloudDownload();
    void StartNextDeviceDownload();
    void StartNextIOTLanDownload();
    void StartNextLanModuleDownload();
    void StartNextDownload(const Source& source);
    DownloadTaskPtr NextToStart(const Source& source);
    void StartDownload(const Source& source, const DownloadTaskPtr& pTask);
    void EndDroppedStart(const Source& source, const DownloadTaskPtr& pTask, KXLogic::IDownloadLogic* pStartedBy);
    bool CanStart(const KXDownLoadList::DownloadRecordInfo& record);
    int StartCloudDownload(const DownloadRecordInfoPtr& pRecord);
    int StartDeviceDownload(const DownloadRecordInfoPtr& pRecord);
    int StartIOTLanDownload(const DownloadRecordInfoPtr& pRecord);
    int StartLanModuleDownload(const DownloadRecordInfoPtr& pRecord);

    // Stops
    void StopCloudDownload(const QString& strRecordId, StopCode code, const QString& strPath);
    void StopDeviceDownload(const QString& strRecordId, StopCode code, const QString& strPath);
    void StopIOTLanDownload(const QString& strRecordId, StopCode code, const QString& strPath);
    void StopLanModuleDownload(const QString& strRecordId, StopCode code, const QString& strPath);
    void StopDownload(const Source& source, const QString& strRecordId, StopCode code, const QString& strPath);
    bool TakeToStop(const DownloadTaskPtr& pTask);
    bool Drop(const DownloadTaskPtr& pTask, bool bRemovesFile);
    DownloadTasks DropAll(const DownloadTasks& tasks, bool bRemovesFile);
    void StopTasks(const Source& source, const QString& strRecordId, const DownloadTasks& tasks, StopCode code,
                   const QString& strPath);
    DownloadTasks StoppedElsewhere(const Source& source, const QString& strRecordId, const DownloadTasks& tasks) const;
    void StopInHost(const Source& source, const QString& strRecordId, KXLogic::IDownloadLogic* pLogic);
    bool IsBeingStopped(const Source& source, const QString& strRecordId) const;
    void FinishCloudDownload(const DownloadTasks& tasks, StopCode code);
    void FinishDeviceDownload(const DownloadTasks& tasks, StopCode code);
    void FinishIOTLanDownload(const DownloadTasks& tasks, StopCode code);
    void FinishLanModuleDownload(const DownloadTasks& tasks, StopCode code);
    void FinishDownload(const Source& source, const DownloadTasks& tasks, StopCode code);

    // Callbacks and states
    void HandleState(const Source& source, const QString& strRecordId, int iCode);
    void TellThenAct(const DownloadTaskPtr& pTask, int iCode);
    void ActThenTell(const DownloadTaskPtr& pTask, int iCode);
    static Outcome OutcomeOf(const Source& source, int iCode);
    static bool IsEnd(Outcome outcome);
    bool BeginEnd(const DownloadTaskPtr& pTask, Outcome outcome);
    void TellPanel(const DownloadTaskPtr& pTask, int iCode, bool bReget, const DownloadTasks& before);
    bool ActOnEnd(const Source& source, const DownloadTaskPtr& pTask, Outcome outcome);
    bool EndFinished(const Source& source, const DownloadTaskPtr& pTask);
    void StopTwins(const Source& source, const DownloadTaskPtr& pTask, const DownloadTasks& others);
    void ResetPasswordCount(const KXDownLoadList::DownloadRecordInfo& record);

    // Passwords
    bool RecoverPassword(const DownloadTaskPtr& pTask, KXDownLoadList::DownloadDeviceRecordInfo& record);
    bool GiveUp(const DownloadTaskPtr& pTask, const char* pszWhy);
    bool Requeue(const DownloadTaskPtr& pTask, KXDownLoadList::DownloadDeviceRecordInfo& record, bool bAsks,
                 const char* pszWhy);
    void RequestDevicePassword(const KXDownLoadList::DownloadDeviceRecordInfo& record);
    QString AnsweredDevice(const QString& strUserInfo) const;
    void RequestCloudPassword(const DownloadTaskPtr& pTask, const KXDownLoadList::DownloadCloudRecordInfo& record);
    void ReleaseWithPassword(const DownloadTaskPtr& pTask, const QString& strPassword);
    // Runs on a host thread.
    static int CloudPasswordCallback(int ibGet, const char* strPassword, const char* strDeviceSN, int64_t lChannelId,
                                     const char* strRecordId, const char* strPath, void* pUser);

    // Storage
    bool EnsureDownloadPathExists(const QString& strFilePath);
    bool MakeFolderOf(const QString& strFilePath);
    QString MakeUniqueFilePath(const QString& strFilePath);
    bool IsFreePath(const QString& strFilePath);
    void ForgetTakenNames();
    bool JudgeDiskIsFull();
    void RegisterCloudFinishedFile(const DownloadTaskPtr& pTask);
    void RegisterDeviceFinishedFile(const DownloadTaskPtr& pTask);
    void RegisterIOTLanFinishedFile(const DownloadTaskPtr& pTask);
    void RegisterLanModuleFinishedFile(const DownloadTaskPtr& pTask);
    void RegisterFinishedFile(const Source& source, const DownloadTaskPtr& pTask);

    // Pictures
    // Posted by the decrypter in the place of its signal: the downloaded picture could not be read.
    Q_INVOKABLE void OnPictureUnreadable(QString strUrl, QString strDownloadPath);
    void RequestCloudPicture(const KXDownLoadList::DownloadCloudRecordInfo& record);
    void DecryptPictures(const QString& strUrl, const QString& strLocalPath);
    std::optional<CloudPictureInfo> TakeDecrypted(const QString& strUrl);
    static bool WasListed(const CloudPictureInfo& info);
    bool IsGoingOn(const CloudPictureInfo& info) const;
    void PictureReady(const CloudPictureInfo& info, const QString& strPath);
    void DropWrongKeyTask(const CloudPictureInfo& info);
    DownloadTaskPtr HeldTask(const CloudPictureInfo& info) const;

    QList<int64_t> m_listPwdRequest;             // guarded by m_pwdRequestMutex
    QMutex m_pwdRequestMutex{QMutex::Recursive}; // inside the host's query another device may be asked for
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
    std::map<std::string, int> m_mapDevicePwdCount; // password requests of a device since it last ran; for a debugger
    QSet<QString> m_setGettingPasswordDevice;
    bool m_bDiskGuardArmed = false;
    QString m_strDownloadDir;
    bool m_bShuttingDown = false;
    // The host's stops that are on the stack: a task of such an id starts when the stop has returned.
    QVector<QPair<const Source*, QString>> m_listHostStop;
    PromisedPaths m_promisedPaths;
    // While a list is received or resumed: the names that its folders had, and the counters below which all are taken.
    FolderListing m_folderListing;
    QHash<QString, int> m_mapNextCounter;
};
