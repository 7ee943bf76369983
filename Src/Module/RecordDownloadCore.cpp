// The engine's core: its start and end, and the lists and questions that arrive from the client.

#include "Module/RecordDownloadModule.h"

#include "KXBase/GKXObserver.h"
#include "KXBase/PictureDownloader.h"
#include "KXLogic/KXLogic.h"
#include "Model/HostEvents.h"
#include "Module/EngineLog.h"

#include <QtCore/QDataStream>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QScopedValueRollback>

using namespace KXDownLoadList;

using Engine = RecordDownloadModule;

const RecordDownloadModule::Source RecordDownloadModule::Sources[4] = {
    {CloudRecord, 3, 0, false, false, &Engine::m_listWaitCloudRecord, &Engine::m_listRunCloudRecord,
     &Engine::StartNextCloudDownload, &Engine::StartCloudDownload, &Engine::StopCloudDownload,
     &Engine::FinishCloudDownload, &Engine::RegisterCloudFinishedFile},
    {DeviceRecord, 2, 1, true, true, &Engine::m_listWaitDeviceRecord, &Engine::m_listRunDeviceRecord,
     &Engine::StartNextDeviceDownload, &Engine::StartDeviceDownload, &Engine::StopDeviceDownload,
     &Engine::FinishDeviceDownload, &Engine::RegisterDeviceFinishedFile},
    // The client counts recordings over the IOT LAN as the device's own.
    {IOTLanRecord, 1, 1, false, false, &Engine::m_listWaitIOTLanRecord, &Engine::m_listRunIOTLanRecord,
     &Engine::StartNextIOTLanDownload, &Engine::StartIOTLanDownload, &Engine::StopIOTLanDownload,
     &Engine::FinishIOTLanDownload, &Engine::RegisterIOTLanFinishedFile},
    {LanModuleRecord, 1, 2, false, false, &Engine::m_listWaitLanModuleRecord, &Engine::m_listRunLanModuleRecord,
     &Engine::StartNextLanModuleDownload, &Engine::StartLanModuleDownload, &Engine::StopLanModuleDownload,
     &Engine::FinishLanModuleDownload, &Engine::RegisterLanModuleFinishedFile},
};

const RecordDownloadModule::Source* RecordDownloadModule::SourceOf(int iRecordType)
{
    const bool bKnown = iRecordType >= CloudRecord && iRecordType <= LanModuleRecord;
    return bKnown ? &Sources[iRecordType] : nullptr;
}

RecordDownloadModule::RecordDownloadModule(QObject* pParent)
    : QObject(pParent)
{
    qRegisterMetaType<int64_t>("int64_t"); // queued calls by name carry it
    // The id fixes the class of a module, see KXLogic.h.
    KXLogic::IModuleRegistry* pRegistry = KXLogic::Instance();
    m_pDownloadLogic = static_cast<KXLogic::IDownloadLogic*>(pRegistry->GetLogicMdl(KXLogic::DownloadModule));
    m_pCloudLogic = static_cast<KXLogic::ICloudLogic*>(pRegistry->GetLogicMdl(KXLogic::CloudModule));
    m_pDeviceLogic = static_cast<KXLogic::IDeviceLogic*>(pRegistry->GetLogicMdl(KXLogic::DeviceModule));
    RegisterWithHost();
    m_pPictrueDecrypt = new PictrueDecrypt(m_pCloudLogic, this);
    connect(m_pPictrueDecrypt, &PictrueDecrypt::SignalDecrptPictrueFinished, this,
            &RecordDownloadModule::OnPictureDecrptFinished);
    m_pPictrueDecrypt->Start(); // connected before: a thread that starts reads its connections unlocked
    connect(this, &RecordDownloadModule::SignalGetDevicePasswordResponse, this,
            &RecordDownloadModule::OnGetDevicePassword);
}

RecordDownloadModule::~RecordDownloadModule() = default;

void RecordDownloadModule::RegisterWithHost()
{
    if (m_pDeviceLogic)
        m_pDeviceLogic->AttachObserver(this);
    m_pPictureDownloader = PictureDownloader::Instance();
    if (m_pPictureDownloader)
        m_pPictureDownloader->Attach(this);
    GKXObserver::attach(HostEvents::DownloadRecordList, this, SLOT(OnGetDownloadList(QVariantList)));
    GKXObserver::attach(HostEvents::DeleteDownloadRecord, this, SLOT(OnClearListForRecDiskFull(QVariantList)));
    GKXObserver::attach(HostEvents::GetRecordDownloading, this, SLOT(OnGetDownloadStates(QVariantList)));
    GKXObserver::attach(HostEvents::DownloadRecordPath, this, SLOT(OnDownloadRecordPathChanged(QVariantList)));
    if (m_pCloudLogic)
        m_pCloudLogic->SetCloudPasswordCallback(this, CloudPasswordCallback);
    if (!m_pDownloadLogic)
        return;
    m_pDownloadLogic->SetCloudDataCallback(this, DownloadReceiveDataCallback);
    m_pDownloadLogic->SetCloudStateCallback(this, DownloadStateCallback);
    m_pDownloadLogic->SetLanModuleDataCallback(this, DownloadLanModuleReceiveDataCallback);
    m_pDownloadLogic->SetLanModuleStateCallback(this, DownloadLanModuleStateCallback);
    m_pDownloadLogic->SetIOTLanDataCallback(this, DownloadIOTLanReceiveDataCallback);
    m_pDownloadLogic->SetIOTLanStateCallback(this, DownloadIOTLanStateCallback);
    m_pDownloadLogic->SetDeviceDataCallback(this, DownloadDeviceReceiveDataCallback);
    m_pDownloadLogic->SetDeviceStateCallback(this, DownloadDeviceStateCallback);
}

// Join our thread, disarm what calls us, then drop the tasks: the host's barriers make sure that nothing writes to the
// files that are removed at the end.
void RecordDownloadModule::Shutdown()
{
    m_bShuttingDown = true;
    delete m_pPictrueDecrypt;
    m_pPictrueDecrypt = nullptr;
    if (m_pDownloadLogic)
        m_pDownloadLogic->UnregisterCallbacks(this);
    m_pDownloadLogic = nullptr;
    if (m_pCloudLogic)
        m_pCloudLogic->UnregisterCloudPasswordCallback(this);
    m_pCloudLogic = nullptr;
    if (m_pDeviceLogic)
        m_pDeviceLogic->DetachObserver(this);
    m_pDeviceLogic = nullptr;
    if (m_pPictureDownloader)
        m_pPictureDownloader->Detach(this);
    m_pPictureDownloader = nullptr;
    ClearAllDownloads();
}

void RecordDownloadModule::OnGetDownloadList(QVariantList list)
{
    if (list.size() < 2)
        return;
    const QByteArray bytes = list[0].toByteArray();
    m_mapNextCounter.clear();
    FolderListing listing;
    const QScopedValueRollback<FolderListing*> listed(m_pFolderListing, &listing);
    switch (list[1].toInt()) {
    case CloudRecord:
        ReceiveRecords<DownloadCloudRecordInfo>(bytes);
        break;
    case DeviceRecord:
        ReceiveRecords<DownloadDeviceRecordInfo>(bytes);
        break;
    case IOTLanRecord:
    case LanModuleRecord:
        ReceiveRecords<DownloadLanModuleRecordInfo>(bytes);
        break;
    default:
        break;
    }
    m_mapNextCounter.clear();
}

// A short stream leaves its last record partly filled, and that record is queued like the others. A stream that is
// corrupt cannot be trusted from there on.
template <class Record>
void RecordDownloadModule::ReceiveRecords(const QByteArray& bytes)
{
    QDataStream stream(bytes);
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        const auto pTask = std::make_shared<Record>();
        pTask->Deserialize(stream);
        if (stream.status() == QDataStream::ReadCorruptData) {
            KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::OnGetDownloadList",
                          "The record list is corrupt, it is read no further.");
            return;
        }
        pTask->strFileName = QFileInfo(pTask->strDownloadPath).fileName();
        pTask->strDownloadPath = MakeUniqueFilePath(pTask->strDownloadPath);
        m_promisedPaths.Hold(pTask);
        AddDownloadRecord(pTask, false);
    }
}

void RecordDownloadModule::StartRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    const quint64 uClears = m_uClears;
    for (const DownloadRecordInfoPtr& pTask : list) {
        if (uClears != m_uClears)
            break; // the client cleared everything inside a start, and the rest with it
        if (m_promisedPaths.IsTaken(pTask->strDownloadPath, pTask))
            pTask->strDownloadPath = MakeUniqueFilePath(pTask->strDownloadPath);
        m_promisedPaths.Hold(pTask);
        AddDownloadRecord(pTask, true);
    }
    m_mapNextCounter.clear();
}

void RecordDownloadModule::AddDownloadRecord(const DownloadRecordInfoPtr& pTask, bool bHasRow)
{
    const Source* pSource = SourceOf(pTask->iRecordType);
    if (!pSource)
        return;
    RecordQueue& waiting = this->*pSource->pWaiting;
    const RecordQueue& running = this->*pSource->pRunning;
    const auto isListed = [&] {
        return waiting.Contains(pTask->strRecordId) || running.Contains(pTask->strRecordId) ||
               (pSource->iRecordType == DeviceRecord && m_listRequeueDeviceRecord.Contains(pTask->strRecordId));
    };
    if (isListed())
        return;
    if (pSource->iRecordType == CloudRecord) {
        AddCloudRecord(pTask, bHasRow);
        return;
    }
    const quint64 uClears = m_uClears;
    emit SignalAddDownloadInfo(pTask);
    if (uClears != m_uClears || isListed())
        return; // the client hears of the row at once, and may have cleared everything or sent the record again
    waiting.Append(pTask);
    (this->*pSource->pStartNext)();
}

// A cloud task is held until its password or else its picture is settled.
void RecordDownloadModule::AddCloudRecord(const DownloadRecordInfoPtr& pTask, bool bHasRow)
{
    const auto isThis = [&pTask](const DownloadRecordInfo& record) { return &record == pTask.get(); };
    if (m_listPendingCloudRecord.FindIf(pTask->strRecordId, isThis))
        return; // resumed twice; a repeated request is a task of its own
    m_listPendingCloudRecord.Append(pTask);
    const auto pRecord = std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask);
    if (!pRecord)
        return;
    if (!pRecord->strCloudText2.isEmpty() && !pRecord->strText1.isEmpty())
        RequestCloudPassword(*pRecord);
    else
        RequestCloudPicture(*pRecord, bHasRow);
}

void RecordDownloadModule::PauseRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    for (const DownloadRecordInfoPtr& pTask : list) {
        const Source* pSource = SourceOf(pTask->iRecordType);
        if (!pSource)
            continue;
        (this->*pSource->pWaiting).Remove(pTask->strRecordId);
        if (pSource->iRecordType == CloudRecord)
            m_listPendingCloudRecord.Remove(pTask->strRecordId); // or it would come back by itself
        if (pSource->iRecordType == DeviceRecord)
            m_listRequeueDeviceRecord.Remove(pTask->strRecordId); // and so would this
    }
    for (const DownloadRecordInfoPtr& pTask : list) {
        const Source* pSource = SourceOf(pTask->iRecordType);
        if (pSource && (this->*pSource->pRunning).Contains(pTask->strRecordId))
            (this->*pSource->pStop)(pTask->strRecordId, StopCode::Paused, QString());
    }
}

void RecordDownloadModule::DeleteRecordDownload(int iRecordType, const QString& strRecordId, const QString& strPath)
{
    const Source* pSource = SourceOf(iRecordType);
    if (!pSource)
        return;
    if (iRecordType == CloudRecord)
        m_listPendingCloudRecord.Remove(strRecordId);
    if (iRecordType == DeviceRecord)
        m_listRequeueDeviceRecord.Remove(strRecordId);
    (this->*pSource->pStop)(strRecordId, StopCode::Deleted, strPath);
    m_promisedPaths.Release(strPath, strRecordId);
}

// Waiting LAN module and IOT LAN tasks are dropped without touching files, unlike the other two.
void RecordDownloadModule::ClearAllDownloads()
{
    ++m_uClears;
    const auto runningLanModule = m_listRunLanModuleRecord.Tasks();
    const auto runningIOTLan = m_listRunIOTLanRecord.Tasks();
    const auto runningDevice = m_listRunDeviceRecord.Tasks();
    const auto runningCloud = m_listRunCloudRecord.Tasks();
    const auto waitingDevice = m_listWaitDeviceRecord.Tasks();
    const auto waitingCloud = m_listWaitCloudRecord.Tasks();
    m_listWaitLanModuleRecord.Clear();
    m_listWaitIOTLanRecord.Clear();
    m_listWaitDeviceRecord.Clear();
    m_listRequeueDeviceRecord.Clear();
    m_listWaitCloudRecord.Clear();
    for (const auto& pTask : runningLanModule)
        StopLanModuleDownload(pTask->strRecordId, StopCode::Deleted, pTask->strDownloadPath);
    for (const auto& pTask : runningIOTLan)
        StopIOTLanDownload(pTask->strRecordId, StopCode::Deleted, pTask->strDownloadPath);
    for (const auto& pTask : waitingDevice)
        RemoveFileJpg(pTask->strDownloadPath);
    for (const auto& pTask : runningDevice)
        StopDeviceDownload(pTask->strRecordId, StopCode::Deleted, pTask->strDownloadPath);
    for (const auto& pTask : waitingCloud)
        RemoveFileJpg(pTask->strDownloadPath);
    for (const auto& pTask : runningCloud)
        StopCloudDownload(pTask->strRecordId, StopCode::Deleted, pTask->strDownloadPath);
}

void RecordDownloadModule::OnClearListForRecDiskFull(QVariantList list)
{
    if (list.isEmpty())
        return;
    m_strDownloadDir = list[0].toString();
    m_bDiskGuardArmed = true;
    ClearAllDownloads();
    emit SignalStopAllRecord();
}

void RecordDownloadModule::OnDownloadRecordPathChanged(QVariantList list)
{
    if (!list.isEmpty())
        m_strDownloadDir = list[0].toString();
}

void RecordDownloadModule::OnGetDownloadStates(QVariantList list)
{
    if (list.size() != 1)
        return;
    const QByteArray text = list[0].toString().toUtf8();
    KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnGetDownloadStates", "strJson:%s", text.constData());
    const QJsonDocument question = QJsonDocument::fromJson(text);
    if (!question.isObject())
        return;
    const QString strRecordId = question.object().value(HostEvents::KeyRecordId).toString();
    const int iType = question.object().value(HostEvents::KeyType).toInt();
    const QJsonObject answer{{HostEvents::KeyRecordId, strRecordId},
                             {HostEvents::KeyDownloadList, IsInDownloadList(iType, strRecordId)}};
    GKXObserver::notify(HostEvents::RecordDownloading, QVariant(QString::fromUtf8(QJsonDocument(answer).toJson())));
}

// The client asks this of the LAN sources only; for the others the answer is always no.
bool RecordDownloadModule::IsInDownloadList(int iRecordType, const QString& strRecordId) const
{
    if (iRecordType != IOTLanRecord && iRecordType != LanModuleRecord)
        return false;
    const Source& source = Sources[iRecordType];
    return (this->*source.pWaiting).Contains(strRecordId) || (this->*source.pRunning).Contains(strRecordId);
}
