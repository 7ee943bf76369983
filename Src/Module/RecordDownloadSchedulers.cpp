// The engine's schedulers: which waiting task starts next, and how one transfer is started and stopped.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicModules.h"
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

// The task of that id in the queue as its class; null when it is not there or of another class.
template <class Record>
std::shared_ptr<Record> WaitingTask(const RecordQueue& waiting, const QString& strRecordId)
{
    return std::dynamic_pointer_cast<Record>(waiting.Find(strRecordId));
}

} // namespace

void RecordDownloadModule::StartNextDownload(const Source& source)
{
    RecordQueue& waiting = this->*source.pWaiting;
    RecordQueue& running = this->*source.pRunning;
    if (source.bWaitsPassword && !m_setGettingPasswordDevice.isEmpty())
        return;
    bool& bStarting = m_starting[source.iRecordType];
    if (bStarting)
        return; // called from inside the host's start: the loop below goes on by itself
    while (running.Count() < source.iLimit && !waiting.IsEmpty() && !m_bShuttingDown && !JudgeDiskIsFull()) {
        const DownloadRecordInfoPtr pTask = waiting.First();
        bStarting = true;
        const bool bStarted = (this->*source.pStart)(pTask);
        bStarting = false;
        if (!waiting.RemoveTask(pTask)) { // paused, deleted or cleared while it was started
            if (bStarted)
                (this->*source.pStop)(pTask->strRecordId, StopCode::Paused, QString());
        } else if (bStarted) {
            running.Append(pTask);
        }
    }
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

bool RecordDownloadModule::StartCloudDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = WaitingTask<DownloadCloudRecordInfo>(m_listWaitCloudRecord, pTask->strRecordId);
    if (!pRecord || !m_pDownloadLogic || !EnsureDownloadPathExists(pRecord->strDownloadPath))
        return false;
    KXLogic::CloudDownloadRequest request;
    FillRequest(request, *pRecord);
    request.lRecordId = pRecord->strRecordId.toLongLong(nullptr, 10);
    request.lChannelId = pRecord->lValue1;
    request.iStorageId = static_cast<qint32>(pRecord->lValue2 & 0xFFFFFFFF);
    request.iCloudKind = pRecord->iCloudValue;
    request.strKeyText = pRecord->strCloudText2.toStdString();
    request.strCloudAddress = pRecord->strCloudText3.toStdString();
    return m_pDownloadLogic->StartCloudRecordDownload(request) == 0;
}

bool RecordDownloadModule::StartDeviceDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask);
    if (!pRecord || !m_pDownloadLogic || !EnsureDownloadPathExists(pRecord->strDownloadPath))
        return false;
    KXLogic::DeviceDownloadRequest request;
    FillRequest(request, *pRecord);
    request.iStream = pRecord->iDeviceValue;
    const int iResult = pRecord->bUseAltStart ? m_pDownloadLogic->StartDeviceRecordDownloadAlt(request)
                                              : m_pDownloadLogic->StartDeviceRecordDownload(request);
    return iResult == 0;
}

bool RecordDownloadModule::StartIOTLanDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = WaitingTask<DownloadLanModuleRecordInfo>(m_listWaitIOTLanRecord, pTask->strRecordId);
    if (!pRecord || !m_pDownloadLogic || !EnsureDownloadPathExists(pRecord->strDownloadPath))
        return false;
    return m_pDownloadLogic->StartIOTLanRecordDownload(LanRequestOf(*pRecord)) == 0;
}

bool RecordDownloadModule::StartLanModuleDownload(const DownloadRecordInfoPtr& pTask)
{
    const auto pRecord = WaitingTask<DownloadLanModuleRecordInfo>(m_listWaitLanModuleRecord, pTask->strRecordId);
    if (!pRecord || !m_pDownloadLogic || !EnsureDownloadPathExists(pRecord->strDownloadPath))
        return false;
    return m_pDownloadLogic->StartLanModuleRecordDownload(LanRequestOf(*pRecord)) == 0;
}

void RecordDownloadModule::StopCloudDownload(const QString& strRecordId, int iCode, const QString& strPath)
{
    if (m_pDownloadLogic)
        m_pDownloadLogic->StopCloudRecordDownload(strRecordId.toLongLong(nullptr, 10));
    DropStopped(Sources[CloudRecord], strRecordId, iCode, strPath);
}

void RecordDownloadModule::StopDeviceDownload(const QString& strRecordId, int iCode, const QString& strPath)
{
    if (m_pDownloadLogic)
        m_pDownloadLogic->StopDeviceRecordDownload(strRecordId.toStdString());
    DropStopped(Sources[DeviceRecord], strRecordId, iCode, strPath);
}

void RecordDownloadModule::StopIOTLanDownload(const QString& strRecordId, int iCode, const QString& strPath)
{
    if (m_pDownloadLogic)
        m_pDownloadLogic->StopIOTLanRecordDownload(strRecordId.toStdString());
    DropStopped(Sources[IOTLanRecord], strRecordId, iCode, strPath);
}

void RecordDownloadModule::StopLanModuleDownload(const QString& strRecordId, int iCode, const QString& strPath)
{
    if (m_pDownloadLogic)
        m_pDownloadLogic->StopLanModuleRecordDownload(strRecordId.toStdString());
    DropStopped(Sources[LanModuleRecord], strRecordId, iCode, strPath);
}

// The rest of every stop. `iCode` decides whether the file goes: Deleted removes `strPath`, Failed removes the running
// task's own file where the source does not keep it; all other codes keep it.
void RecordDownloadModule::DropStopped(const Source& source, const QString& strRecordId, int iCode,
                                       const QString& strPath)
{
    if (iCode == StopCode::Deleted) {
        RemoveFileJpg(strPath);
    } else if (iCode == StopCode::Failed && !source.bKeepsFailed) {
        const DownloadRecordInfoPtr pTask = (this->*source.pRunning).Find(strRecordId);
        if (!pTask)
            return;
        RemoveFileJpg(pTask->strDownloadPath);
    }
    (this->*source.pFinish)(strRecordId);
}

void RecordDownloadModule::FinishDownload(const Source& source, const QString& strRecordId)
{
    (this->*source.pRunning).Remove(strRecordId);
    (this->*source.pWaiting).Remove(strRecordId);
    (this->*source.pStartNext)();
}

void RecordDownloadModule::FinishCloudDownload(const QString& strRecordId)
{
    FinishDownload(Sources[CloudRecord], strRecordId);
}

void RecordDownloadModule::FinishDeviceDownload(const QString& strRecordId)
{
    FinishDownload(Sources[DeviceRecord], strRecordId);
}

void RecordDownloadModule::FinishIOTLanDownload(const QString& strRecordId)
{
    FinishDownload(Sources[IOTLanRecord], strRecordId);
}

void RecordDownloadModule::FinishLanModuleDownload(const QString& strRecordId)
{
    FinishDownload(Sources[LanModuleRecord], strRecordId);
}
