// How the engine stops tasks: for the client, which drops them, and for itself, when a transfer has ended.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicModules.h"

#include <algorithm>

using namespace KXDownLoadList;

void RecordDownloadModule::StopCloudDownload(const QString& strRecordId, StopCode code, const QString& strPath)
{
    StopDownload(Sources[CloudRecord], strRecordId, code, strPath);
}

void RecordDownloadModule::StopDeviceDownload(const QString& strRecordId, StopCode code, const QString& strPath)
{
    StopDownload(Sources[DeviceRecord], strRecordId, code, strPath);
}

void RecordDownloadModule::StopIOTLanDownload(const QString& strRecordId, StopCode code, const QString& strPath)
{
    StopDownload(Sources[IOTLanRecord], strRecordId, code, strPath);
}

void RecordDownloadModule::StopLanModuleDownload(const QString& strRecordId, StopCode code, const QString& strPath)
{
    StopDownload(Sources[LanModuleRecord], strRecordId, code, strPath);
}

// Stops the transfer of that id and takes out its tasks, those that wait, too.
void RecordDownloadModule::StopDownload(const Source& source, const QString& strRecordId, StopCode code,
                                        const QString& strPath)
{
    DownloadTasks tasks = (this->*source.pWaiting).TasksOf(strRecordId) + (this->*source.pRunning).TasksOf(strRecordId);
    const auto isLeft = [this](const DownloadTaskPtr& pTask) {
        pTask->bRemovesFile = pTask->bRemovesFile || pTask->state == TaskState::Starting; // nobody will resume it
        return !TakeToStop(pTask);
    };
    tasks.erase(std::remove_if(tasks.begin(), tasks.end(), isLeft), tasks.end());
    StopTasks(source, strRecordId, tasks, code, strPath);
}

// Takes a task away from where it is. True when the caller has to stop it: one whose start is on the stack is stopped
// when that returns, and one that is being stopped is in good hands.
bool RecordDownloadModule::TakeToStop(const DownloadTaskPtr& pTask)
{
    switch (pTask->state) {
    case TaskState::Held:
    case TaskState::Entering:
    case TaskState::Waiting:
        Move(pTask, TaskState::Outside);
        return false;
    case TaskState::Starting:
        Move(pTask, TaskState::Stopping);
        return false;
    case TaskState::Running:
    case TaskState::Ending:
        Move(pTask, TaskState::Stopping);
        return true;
    case TaskState::Outside:
    case TaskState::Stopping:
        return false;
    }
    return false;
}

// The same for the client.
bool RecordDownloadModule::Drop(const DownloadTaskPtr& pTask, bool bRemovesFile)
{
    if (pTask->bArrived && !bRemovesFile)
        return false;
    pTask->bDropped = true;
    pTask->bRemovesFile = pTask->bRemovesFile || bRemovesFile;
    return TakeToStop(pTask);
}

DownloadTasks RecordDownloadModule::DropAll(const DownloadTasks& tasks, bool bRemovesFile)
{
    DownloadTasks toStop;
    for (const DownloadTaskPtr& pTask : tasks) {
        if (Drop(pTask, bRemovesFile))
            toStop.append(pTask);
    }
    return toStop;
}

// Stops tasks of one id, which were taken for that, and takes them out. `code` decides whether a file goes: Deleted
// removes `strPath`, Failed the task's own where the source does not keep it. What other records of a row left is the
// panel's.
void RecordDownloadModule::StopTasks(const Source& source, const QString& strRecordId, const DownloadTasks& tasks,
                                     StopCode code, const QString& strPath)
{
    const DownloadTasks others = StoppedElsewhere(source, strRecordId, tasks);
    if (!tasks.isEmpty() || (others.isEmpty() && !m_listHostStop.contains({&source, strRecordId})))
        StopInHost(source, strRecordId, m_pDownloadLogic);
    const auto writes = [&strPath](const DownloadTaskPtr& pTask) { return pTask->pRecord->strDownloadPath == strPath; };
    if (code == StopCode::Deleted && std::none_of(others.begin(), others.end(), writes))
        RemoveFileJpg(strPath);
    const bool bFailed = code == StopCode::Failed && !source.Has(KeepsFailed);
    for (const DownloadTaskPtr& pTask : tasks) {
        if (bFailed || (pTask->bRemovesFile && code != StopCode::Deleted)) // or it was deleted while it was stopped
            RemoveFileJpg(pTask->pRecord->strDownloadPath);
    }
    (this->*source.pFinish)(tasks, code);
}

// Tasks of that id that a start or another stop on the stack has in hand.
DownloadTasks RecordDownloadModule::StoppedElsewhere(const Source& source, const QString& strRecordId,
                                                     const DownloadTasks& tasks) const
{
    DownloadTasks others;
    for (const DownloadTaskPtr& pTask : (this->*source.pRunning).TasksOf(strRecordId)) {
        if (pTask->state == TaskState::Stopping && !tasks.contains(pTask))
            others.append(pTask);
    }
    return others;
}

void RecordDownloadModule::StopInHost(const Source& source, const QString& strRecordId, KXLogic::IDownloadLogic* pLogic)
{
    if (!pLogic)
        return;
    m_listHostStop.append({&source, strRecordId});
    source.pHostStop(*pLogic, strRecordId);
    m_listHostStop.removeLast(); // those made inside it have returned
}

// True while a stop of that id is due or on the stack: what started now would be stopped with it.
bool RecordDownloadModule::IsBeingStopped(const Source& source, const QString& strRecordId) const
{
    return m_listHostStop.contains({&source, strRecordId}) || !StoppedElsewhere(source, strRecordId, {}).isEmpty();
}

void RecordDownloadModule::FinishDownload(const Source& source, const DownloadTasks& tasks, StopCode code)
{
    for (const DownloadTaskPtr& pTask : tasks) {
        const bool bAgain = code == StopCode::Retry && !pTask->bDropped;
        Move(pTask, bAgain ? TaskState::Entering : TaskState::Outside);
    }
    (this->*source.pStartNext)();
}

void RecordDownloadModule::FinishCloudDownload(const DownloadTasks& tasks, StopCode code)
{
    FinishDownload(Sources[CloudRecord], tasks, code);
}

void RecordDownloadModule::FinishDeviceDownload(const DownloadTasks& tasks, StopCode code)
{
    FinishDownload(Sources[DeviceRecord], tasks, code);
}

void RecordDownloadModule::FinishIOTLanDownload(const DownloadTasks& tasks, StopCode code)
{
    FinishDownload(Sources[IOTLanRecord], tasks, code);
}

void RecordDownloadModule::FinishLanModuleDownload(const DownloadTasks& tasks, StopCode code)
{
    FinishDownload(Sources[LanModuleRecord], tasks, code);
}
