// The engine's schedulers: which waiting task starts next, and how it is started.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicModules.h"
#include "Module/EngineLog.h"
#include "Module/UnixTime.h"

using namespace KXDownLoadList;

namespace {

void FillRequest(KXLogic::DownloadRequest& request, const DownloadRecordInfo& record)
{
    request.strRecordId = record.strRecordId.toStdString();
    request.strDeviceId = record.strDeviceId.toStdString();
    request.strDeviceAccount = record.strText1.toStdString();
    request.strAddress = record.strText3.toStdString();
    request.strPassword = record.strPassword.toStdString();
    request.iChannelNo = record.iValue5;
    request.strFilePath = record.strDownloadPath.toStdString();
    request.lBeginTime = UnixTimeOf(record.strStartTime);
    request.lEndTime = UnixTimeOf(record.strEndTime);
}

KXLogic::LanModuleDownloadRequest LanRequestOf(const DownloadLanModuleRecordInfo& record)
{
    KXLogic::LanModuleDownloadRequest request;
    FillRequest(request, record);
    request.strModuleSerial = record.strLanText1.toStdString();
    request.strModuleAddress = record.strLanText2.toStdString();
    request.strModuleToken = record.strLanText3.toStdString();
    request.iModulePort = record.iLanValue1;
    request.strSubModule = record.strLanText4.toStdString();
    request.iStream = record.iLanValue2;
    request.iKind = record.iLanValue3;
    request.bEncrypted = record.bLanFlag;
    return request;
}

// Nobody else hears of a start that failed, and its row goes on waiting. True when it succeeded.
bool HasStarted(const DownloadRecordInfo& record, int iResult)
{
    if (iResult != 0)
        KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::StartNextDownload",
                      "The transfer could not be started.strRecordId[%s],iCode[%d]",
                      record.strRecordId.toUtf8().constData(), iResult);
    return iResult == 0;
}

} // namespace

// What a full disk held back is started at the other sources, too, once there is room again.
void RecordDownloadModule::StartNextDownload(const Source& source)
{
    const bool bGuarded = m_bDiskGuardArmed;
    while (const DownloadTaskPtr pTask = NextToStart(source))
        StartDownload(source, pTask);
    if (!bGuarded || m_bDiskGuardArmed)
        return;
    for (const Source& other : Sources) {
        if (&other != &source)
            (this->*other.pStartNext)();
    }
}

// The oldest task that may start now; null when none may. While the host's start of one is on the stack none may: the
// loop below it goes on by itself.
DownloadTaskPtr RecordDownloadModule::NextToStart(const Source& source)
{
    const RecordQueue& waiting = this->*source.pWaiting;
    const bool bNoPassword = source.Has(WaitsForPassword) && !m_setGettingPasswordDevice.isEmpty();
    if (m_bShuttingDown || bNoPassword || (this->*source.pRunning).Count() >= source.iLimit)
        return nullptr;
    for (const DownloadTaskPtr& pTask : waiting) {
        if (pTask->state == TaskState::Starting)
            return nullptr;
        if (pTask->state == TaskState::Waiting && !IsBeingStopped(source, pTask->strRecordId))
            return JudgeDiskIsFull() ? nullptr : pTask;
    }
    return nullptr;
}

void RecordDownloadModule::StartDownload(const Source& source, const DownloadTaskPtr& pTask)
{
    Move(pTask, TaskState::Starting);
    const int iStart = ++pTask->iStarts;
    pTask->bHeard = false;
    pTask->codesWhileStarting.clear();
    // What was posted before belongs to an earlier transfer of the id.
    QMetaObject::invokeMethod(
        this, [pTask] { pTask->bHeard = true; }, Qt::QueuedConnection);
    KXLogic::IDownloadLogic* pLogic = m_pDownloadLogic;
    const bool bStarted = (this->*source.pStart)(pTask->pRecord);
    if (pTask->state != TaskState::Starting)
        return EndDroppedStart(source, pTask, bStarted ? pLogic : nullptr);
    Move(pTask, bStarted ? TaskState::Running : TaskState::Outside);
    for (const int iCode : QVector<int>(pTask->codesWhileStarting)) {
        if (pTask->state == TaskState::Running && pTask->iStarts == iStart)
            (this->*source.pHandleState)(pTask, iCode);
    }
}

// The client dropped the task inside its start. `pStartedBy`: who runs its transfer now; null when nobody does.
void RecordDownloadModule::EndDroppedStart(const Source& source, const DownloadTaskPtr& pTask,
                                           KXLogic::IDownloadLogic* pStartedBy)
{
    StopInHost(source, pTask->strRecordId, pStartedBy);
    if (pTask->bRemovesFile)
        RemoveFileJpg(pTask->pRecord->strDownloadPath);
    Move(pTask, TaskState::Outside);
}

void RecordDownloadModule::StartNextCloudDownload()
{
    StartNextDownload(Sources[CloudRecord]);
}

void RecordDownloadModule::StartNextDeviceDownload()
{
    StartNextDownload(Sources[DeviceRecord]);
}

void RecordDownloadModule::StartNextIOTLanDownload()
{
    StartNextDownload(Sources[IOTLanRecord]);
}

void RecordDownloadModule::StartNextLanModuleDownload()
{
    StartNextDownload(Sources[LanModuleRecord]);
}

// True when the host is there and the task's folder, too. The client may end the plug-in when a folder is logged.
bool RecordDownloadModule::CanStart(const DownloadRecordInfo& record)
{
    constexpr int NoModule = -1;
    return HasStarted(record, m_pDownloadLogic ? 0 : NoModule) && EnsureDownloadPathExists(record.strDownloadPath) &&
           m_pDownloadLogic;
}

bool RecordDownloadModule::StartCloudDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return false;
    KXLogic::CloudDownloadRequest request;
    FillRequest(request, *pRecord);
    request.lRecordId = pRecord->strRecordId.toLongLong(nullptr, 10);
    request.lChannelId = pRecord->lValue1;
    request.iStorageId = static_cast<qint32>(pRecord->lValue2 & 0xFFFFFFFF);
    request.iCloudKind = pRecord->iCloudValue;
    request.strKeyText = pRecord->strCloudText2.toStdString();
    request.strCloudAddress = pRecord->strCloudText3.toStdString();
    return HasStarted(*pRecord, m_pDownloadLogic->StartCloudRecordDownload(request));
}

bool RecordDownloadModule::StartDeviceDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return false;
    KXLogic::DeviceDownloadRequest request;
    FillRequest(request, *pRecord);
    request.iStream = pRecord->iDeviceValue;
    return HasStarted(*pRecord, pRecord->bUseAltStart ? m_pDownloadLogic->StartDeviceRecordDownloadAlt(request)
                                                      : m_pDownloadLogic->StartDeviceRecordDownload(request));
}

bool RecordDownloadModule::StartIOTLanDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pTask);
    return pRecord && CanStart(*pRecord) &&
           HasStarted(*pRecord, m_pDownloadLogic->StartIOTLanRecordDownload(LanRequestOf(*pRecord)));
}

bool RecordDownloadModule::StartLanModuleDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pTask);
    return pRecord && CanStart(*pRecord) &&
           HasStarted(*pRecord, m_pDownloadLogic->StartLanModuleRecordDownload(LanRequestOf(*pRecord)));
}
