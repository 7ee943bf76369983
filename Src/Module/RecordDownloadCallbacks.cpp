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

void RecordDownloadModule::HandleState(const Source& source, const QString& strRecordId, int iCode)
{
    Q_ASSERT(QThread::currentThread() == thread());
    const DownloadRecordInfoPtr pTask = (this->*source.pRunning).Find(strRecordId);
    if (!pTask)
        return;
    if (source.iRecordType == IOTLanRecord)
        KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnDownloadIOTLanRecordState", "lan local:iCode[%d]", iCode);
    if (iCode != StateCode::Running)
        NotifyState(StateEventOf(*pTask, iCode));
    const DownloadRecordInfoPtr pNow = (this->*source.pRunning).Find(strRecordId);
    if (pNow ? pNow != pTask : (this->*source.pWaiting).Contains(strRecordId))
        return; // the client put another task in its place when it heard of the state
    ActOnState(source, pTask, iCode);
    emit SignalDownloadRecordStates(strRecordId, iCode, false);
    if (iCode != StateCode::Running)
        (this->*source.pStartNext)();
}

void RecordDownloadModule::ActOnState(const Source& source, const DownloadRecordInfoPtr& pTask, int iCode)
{
    const QString strRecordId = pTask->strRecordId;
    const bool bAborted = iCode == StateCode::CloudAbort && source.iRecordType == CloudRecord;
    if (iCode == StateCode::Failed || bAborted) {
        (this->*source.pStop)(strRecordId, StopCode::Failed, QString());
    } else if (iCode == StateCode::Refused) {
        (this->*source.pStop)(strRecordId, StopCode::Refused, QString());
    } else if (iCode == StateCode::Finished) {
        (this->*source.pRegisterFinished)(strRecordId);
        m_promisedPaths.Release(pTask->strDownloadPath, strRecordId);
        if (source.iRecordType != LanModuleRecord && source.iRecordType != IOTLanRecord)
            (this->*source.pRunning).Remove(strRecordId);
        if (source.iRecordType != CloudRecord) // the cloud ends a finished transfer by itself
            (this->*source.pStop)(strRecordId, StopCode::Finished, QString());
    }
}

// The device source tells the client after it acted, because only then it is known whether the task is tried again.
void RecordDownloadModule::OnDownloadDeviceRecordState(QString strRecordID, int iCode)
{
    Q_ASSERT(QThread::currentThread() == thread());
    const DownloadRecordInfoPtr pTask = m_listRunDeviceRecord.Find(strRecordID);
    if (!pTask)
        return;
    Recovery recovery = Recovery::GivenUp;
    if (iCode != StateCode::Refused)
        ActOnState(Sources[DeviceRecord], pTask, iCode);
    else if (const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask))
        recovery = RecoverPassword(pRecord);
    else
        return;
    if (recovery != Recovery::Dropped)
        TellDeviceState(*pTask, iCode, recovery == Recovery::Requeued);
    if (iCode != StateCode::Running)
        StartNextDeviceDownload();
}

void RecordDownloadModule::TellDeviceState(const DownloadRecordInfo& record, int iCode, bool bReget)
{
    if (iCode == StateCode::Running) {
        const auto count = m_mapDevicePwdCount.find(record.strDeviceId.toStdString());
        if (count != m_mapDevicePwdCount.end())
            count->second = 0;
    } else {
        QJsonObject event = StateEventOf(record, iCode);
        event.insert(HostEvents::KeyReget, bReget);
        NotifyState(event);
    }
    emit SignalDownloadRecordStates(record.strRecordId, iCode, bReget);
}
