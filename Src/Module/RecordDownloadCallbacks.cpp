// The engine's transfer callbacks and what a state of a transfer means for its task.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicCallbacks.h"
#include "Model/HostEvents.h"
#include "Module/EngineLog.h"
#include "Module/StateEvent.h"

#include <QtCore/QThread>

using namespace KXDownLoadList;
namespace StateCode = KXLogic::StateCode;

namespace {

// Runs on a host thread: posts one value to a slot of the engine.
int Post(void* pUser, const char* pszSlot, QGenericArgument recordId, int iValue)
{
    if (!pUser)
        return -1;
    auto* pEngine = static_cast<RecordDownloadModule*>(pUser);
    return QMetaObject::invokeMethod(pEngine, pszSlot, Qt::QueuedConnection, recordId, Q_ARG(int, iValue));
}

int Post(void* pUser, const char* pszSlot, const char* pszRecordId, int iValue)
{
    return Post(pUser, pszSlot, Q_ARG(QString, QString::fromUtf8(pszRecordId)), iValue);
}

} // namespace

bool RecordDownloadModule::IsEnd(Outcome outcome)
{
    return outcome != Outcome::Running && outcome != Outcome::Unknown;
}

int RecordDownloadModule::DownloadStateCallback(qint64 iRecordID, int iCode, void* pUser)
{
    const int64_t lRecordId = iRecordID;
    return Post(pUser, "OnDownloadCloudRecordState", Q_ARG(int64_t, lRecordId), iCode);
}

int RecordDownloadModule::DownloadReceiveDataCallback(qint64 iRecordID, int iLength, void* pUser)
{
    const int64_t lRecordId = iRecordID;
    return Post(pUser, "OnDownloadCloudRecordData", Q_ARG(int64_t, lRecordId), iLength);
}

int RecordDownloadModule::DownloadLanModuleStateCallback(const char* strRecordID, int iCode, void* pUser)
{
    return Post(pUser, "OnDownloadLanModuleRecordState", strRecordID, iCode);
}

int RecordDownloadModule::DownloadLanModuleReceiveDataCallback(const char* strRecordID, int iLength, void* pUser)
{
    return Post(pUser, "OnDownloadLanModuleRecordData", strRecordID, iLength);
}

int RecordDownloadModule::DownloadIOTLanStateCallback(const char* strRecordID, int iCode, void* pUser)
{
    return Post(pUser, "OnDownloadIOTLanRecordState", strRecordID, iCode);
}

int RecordDownloadModule::DownloadIOTLanReceiveDataCallback(const char* strRecordID, int iLength, void* pUser)
{
    return Post(pUser, "OnDownloadIOTLanRecordData", strRecordID, iLength);
}

int RecordDownloadModule::DownloadDeviceStateCallback(const char* strRecordID, int iCode, void* pUser)
{
    return Post(pUser, "OnDownloadDeviceRecordState", strRecordID, iCode);
}

int RecordDownloadModule::DownloadDeviceReceiveDataCallback(const char* strRecordID, int iLength, void* pUser)
{
    return Post(pUser, "OnDownloadDeviceRecordData", strRecordID, iLength);
}

void RecordDownloadModule::OnDownloadCloudRecordData(int64_t iRecordId, int iLength)
{
    emit SignalDownloadRecordData(QString::number(iRecordId, 10), iLength);
}

void RecordDownloadModule::OnDownloadLanModuleRecordData(QString strRecordID, int iLength)
{
    emit SignalDownloadRecordData(strRecordID, iLength);
}

void RecordDownloadModule::OnDownloadIOTLanRecordData(QString strRecordID, int iLength)
{
    emit SignalDownloadRecordData(strRecordID, iLength);
}

void RecordDownloadModule::OnDownloadDeviceRecordData(QString strRecordID, int iLength)
{
    emit SignalDownloadRecordData(strRecordID, iLength);
}

void RecordDownloadModule::OnDownloadCloudRecordState(int64_t iRecordId, int iCode)
{
    HandleState(Sources[CloudRecord], QString::number(iRecordId, 10), iCode);
}

void RecordDownloadModule::OnDownloadLanModuleRecordState(QString strRecordID, int iCode)
{
    HandleState(Sources[LanModuleRecord], strRecordID, iCode);
}

void RecordDownloadModule::OnDownloadIOTLanRecordState(QString strRecordID, int iCode)
{
    HandleState(Sources[IOTLanRecord], strRecordID, iCode);
}

void RecordDownloadModule::OnDownloadDeviceRecordState(QString strRecordID, int iCode)
{
    HandleState(Sources[DeviceRecord], strRecordID, iCode);
}

// A state belongs to the oldest running task of the id. One that comes inside the host's start is kept until that has
// returned.
void RecordDownloadModule::HandleState(const Source& source, const QString& strRecordId, int iCode)
{
    Q_ASSERT(QThread::currentThread() == thread());
    for (const DownloadTaskPtr& pTask : (this->*source.pRunning).TasksOf(strRecordId)) {
        if (pTask->bHeard && pTask->state == TaskState::Running)
            return (this->*source.pHandleState)(pTask, iCode);
    }
    for (const DownloadTaskPtr& pTask : (this->*source.pWaiting).TasksOf(strRecordId)) {
        if (pTask->bHeard && pTask->state == TaskState::Starting)
            pTask->codesWhileStarting.append(iCode);
    }
}

RecordDownloadModule::Outcome RecordDownloadModule::OutcomeOf(const Source& source, int iCode)
{
    switch (iCode) {
    case StateCode::Running:
        return Outcome::Running;
    case StateCode::Failed:
        return Outcome::Failed;
    case StateCode::Finished:
        return Outcome::Finished;
    case StateCode::Refused:
        return Outcome::Refused;
    case StateCode::CloudAbort:
        return source.Has(Aborts) ? Outcome::Failed : Outcome::Unknown;
    default:
        return Outcome::Unknown;
    }
}

void RecordDownloadModule::TellThenAct(const DownloadTaskPtr& pTask, int iCode)
{
    const Source& source = SourceOf(pTask);
    const Outcome outcome = OutcomeOf(source, iCode);
    const DownloadTasks before = TasksOf(source, pTask->strRecordId);
    if (source.Has(LogsStates))
        KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnDownloadIOTLanRecordState", "lan local:iCode[%d]", iCode);
    if (!BeginEnd(pTask, outcome))
        return; // the client dropped it when it read the log
    const TaskState told = pTask->state;
    if (outcome != Outcome::Running)
        NotifyState(StateEventOf(*pTask->pRecord, iCode));
    if (pTask->state != told || (IsEnd(outcome) && !ActOnEnd(source, pTask, outcome)))
        return (this->*source.pStartNext)(); // the client dropped it when it heard of the state
    TellPanel(pTask, iCode, false, before);
    if (outcome != Outcome::Running)
        (this->*source.pStartNext)();
}

// For a source whose event says whether the task is tried again: that is known only after the act.
void RecordDownloadModule::ActThenTell(const DownloadTaskPtr& pTask, int iCode)
{
    const Source& source = SourceOf(pTask);
    const Outcome outcome = OutcomeOf(source, iCode);
    const DownloadTasks before = TasksOf(source, pTask->strRecordId);
    const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask->pRecord);
    if ((outcome == Outcome::Refused && !pRecord) || !BeginEnd(pTask, outcome))
        return;
    const bool bActed = outcome == Outcome::Refused ? RecoverPassword(pTask, *pRecord)
                                                    : !IsEnd(outcome) || ActOnEnd(source, pTask, outcome);
    if (!bActed)
        return (this->*source.pStartNext)(); // the client dropped it meanwhile
    const TaskState told = pTask->state;
    const bool bReget = told == TaskState::Entering;
    if (outcome == Outcome::Running) {
        ResetPasswordCount(*pTask->pRecord);
    } else {
        QJsonObject event = StateEventOf(*pTask->pRecord, iCode);
        event.insert(HostEvents::KeyReget, bReget);
        NotifyState(event);
    }
    if (pTask->state == told)
        TellPanel(pTask, iCode, bReget, before);
    if (bReget && pTask->state == told)
        Move(pTask, TaskState::Waiting); // all know that it waits again
    if (outcome != Outcome::Running)
        (this->*source.pStartNext)();
}

// False when the task is no longer running.
bool RecordDownloadModule::BeginEnd(const DownloadTaskPtr& pTask, Outcome outcome)
{
    if (pTask->state != TaskState::Running)
        return false;
    pTask->bArrived = outcome == Outcome::Finished;
    if (IsEnd(outcome))
        Move(pTask, TaskState::Ending);
    return true;
}

// A row stands for the youngest task of its id. One that came while the client was told is not what the state is about.
void RecordDownloadModule::TellPanel(const DownloadTaskPtr& pTask, int iCode, bool bReget, const DownloadTasks& before)
{
    for (const DownloadTaskPtr& pNow : TasksOf(SourceOf(pTask), pTask->strRecordId)) {
        if (!before.contains(pNow))
            return;
    }
    emit SignalDownloadRecordStates(pTask->strRecordId, iCode, bReget);
}

// What the end of a transfer leads to. False when the client dropped the task meanwhile.
bool RecordDownloadModule::ActOnEnd(const Source& source, const DownloadTaskPtr& pTask, Outcome outcome)
{
    if (outcome == Outcome::Finished)
        return EndFinished(source, pTask);
    const StopCode code = outcome == Outcome::Refused ? StopCode::Refused : StopCode::Failed;
    (this->*source.pStop)(pTask->strRecordId, code, QString());
    return !pTask->bDropped;
}

bool RecordDownloadModule::EndFinished(const Source& source, const DownloadTaskPtr& pTask)
{
    const DownloadTasks others = (this->*source.pRunning).TasksOf(pTask->strRecordId);
    (this->*source.pRegisterFinished)(pTask);
    if (pTask->state != TaskState::Ending)
        return false;
    m_promisedPaths.Release(pTask->pRecord->strDownloadPath, pTask->strRecordId);
    ForgetTakenNames(); // of the lists that are being received; they do not know this file
    if (source.afterFinish != AfterFinish::Stop)
        Move(pTask, TaskState::Outside);
    if (source.afterFinish != AfterFinish::Leave)
        (this->*source.pStop)(pTask->strRecordId, StopCode::Finished, QString());
    else
        StopTwins(source, pTask, others);
    return !pTask->bDropped;
}

// A recording that was asked for twice has arrived: the host has one transfer of an id, and it has ended.
void RecordDownloadModule::StopTwins(const Source& source, const DownloadTaskPtr& pTask, const DownloadTasks& others)
{
    for (const DownloadTaskPtr& pOther : others) {
        if (pOther != pTask && pOther->state == TaskState::Running && TakeToStop(pOther))
            StopTasks(source, pOther->strRecordId, {pOther}, StopCode::Deleted, pOther->pRecord->strDownloadPath);
    }
}

void RecordDownloadModule::ResetPasswordCount(const DownloadRecordInfo& record)
{
    const auto count = m_mapDevicePwdCount.find(record.strDeviceId.toStdString());
    if (count != m_mapDevicePwdCount.end())
        count->second = 0;
}
