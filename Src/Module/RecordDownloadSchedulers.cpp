// The engine's schedulers: which waiting task starts next, and how it is started.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicModules.h"
#include "Module/EngineLog.h"
#include "Module/UnixTime.h"

#include <limits>

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

constexpr int NoModule = -1; // result of a start on a host without transfers
// Result of a start that the host was not asked for: what stands in its way is logged already.
constexpr int NotAsked = std::numeric_limits<int>::min();

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
    pTask->bHeard = false;
    pTask->codesWhileStarting.clear();
    // What was posted before belongs to an earlier transfer of the id.
    QMetaObject::invokeMethod(
        this, [pTask] { pTask->bHeard = true; }, Qt::QueuedConnection);
    KXLogic::IDownloadLogic* pLogic = m_pDownloadLogic;
    const int iResult = pLogic ? (this->*source.pStart)(pTask->pRecord) : NoModule;
    if (pTask->state == TaskState::Starting)
        Move(pTask, iResult == 0 ? TaskState::Running : TaskState::Outside);
    else
        EndDroppedStart(source, pTask, iResult == 0 ? pLogic : nullptr);
    // Nobody else hears of a start that failed, and its row goes on waiting.
    if (iResult != 0 && iResult != NotAsked)
        KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::StartNextDownload",
                      "The transfer could not be started.strRecordId[%s],iCode[%d]",
                      pTask->strRecordId.toUtf8().constData(), iResult);
    while (pTask->state == TaskState::Running && !pTask->codesWhileStarting.isEmpty())
        (this->*source.pHandleState)(pTask, pTask->codesWhileStarting.takeFirst());
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

// True when the task's folder is there. The client may end the plug-in when a folder is logged.
bool RecordDownloadModule::CanStart(const DownloadRecordInfo& record)
{
    return EnsureDownloadPathExists(record.strDownloadPath) && m_pDownloadLogic;
}

int RecordDownloadModule::StartCloudDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return NotAsked;
    KXLogic::CloudDownloadRequest request;
    FillRequest(request, *pRecord);
    request.lRecordId = pRecord->strRecordId.toLongLong(nullptr, 10);
    request.lChannelId = pRecord->lValue1;
    request.iStorageId = static_cast<qint32>(pRecord->lValue2 & 0xFFFFFFFF);
    request.iCloudKind = pRecord->iCloudValue;
    request.strKeyText = pRecord->strCloudText2.toStdString();
    request.strCloudAddress = pRecord->strCloudText3.toStdString();
    return m_pDownloadLogic->StartCloudRecordDownload(request);
}

int RecordDownloadModule::StartDeviceDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return NotAsked;
    KXLogic::DeviceDownloadRequest request;
    FillRequest(request, *pRecord);
    request.iStream = pRecord->iDeviceValue;
    return pRecord->bUseAltStart ? m_pDownloadLogic->StartDeviceRecordDownloadAlt(request)
                                 : m_pDownloadLogic->StartDeviceRecordDownload(request);
}

int RecordDownloadModule::StartIOTLanDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return NotAsked;
    return m_pDownloadLogic->StartIOTLanRecordDownload(LanRequestOf(*pRecord));
}

int RecordDownloadModule::StartLanModuleDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pTask);
    if (!pRecord || !CanStart(*pRecord))
        return NotAsked;
    return m_pDownloadLogic->StartLanModuleRecordDownload(LanRequestOf(*pRecord));
}
