// The engine's core: its start and end, and the lists and questions that arrive from the client.

#include "Module/RecordDownloadModule.h"

#include "KXBase/GKXObserver.h"
#include "KXBase/PictureDownloader.h"
#include "KXLogic/KXLogic.h"
#include "KXLogic/KXLogicModules.h"
#include "Model/HostEvents.h"
#include "Module/EngineLog.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QThread>

#include <algorithm>
#include <utility>

using namespace KXDownLoadList;

using Engine = RecordDownloadModule;

namespace {

template <class Record>
DownloadRecordInfoPtr Make()
{
    return std::make_shared<Record>();
}

int StopCloudInHost(KXLogic::IDownloadLogic& logic, const QString& strRecordId)
{
    return logic.StopCloudRecordDownload(strRecordId.toLongLong(nullptr, 10));
}

template <int (KXLogic::IDownloadLogic::*Stop)(const std::string&)>
int StopInHostById(KXLogic::IDownloadLogic& logic, const QString& strRecordId)
{
    return (logic.*Stop)(strRecordId.toStdString());
}

// The step to a parent folder is taken out of a path: behind a folder that is missing it leads nowhere.
QString WithoutParentSteps(const QString& strPath)
{
    return strPath.contains(QLatin1String("/../")) ? QDir::cleanPath(strPath) : strPath;
}

} // namespace

const RecordDownloadModule::Source RecordDownloadModule::Sources[4] = {
    // The cloud ends a finished transfer by itself.
    {CloudRecord, 3, 0, HoldsFirst | RemovesWaiting | Aborts, AfterFinish::Leave, &Make<DownloadCloudRecordInfo>,
     &Engine::m_listWaitCloudRecord, &Engine::m_listRunCloudRecord, &Engine::StartNextCloudDownload,
     &Engine::StartCloudDownload, &StopCloudInHost, &Engine::StopCloudDownload, &Engine::FinishCloudDownload,
     &Engine::RegisterCloudFinishedFile, &Engine::TellThenAct},
    // The client hears of a device's state when it is known whether the task is tried again.
    {DeviceRecord, 2, 1, WaitsForPassword | KeepsFailed | RemovesWaiting, AfterFinish::LeaveThenStop,
     &Make<DownloadDeviceRecordInfo>, &Engine::m_listWaitDeviceRecord, &Engine::m_listRunDeviceRecord,
     &Engine::StartNextDeviceDownload, &Engine::StartDeviceDownload,
     &StopInHostById<&KXLogic::IDownloadLogic::StopDeviceRecordDownload>, &Engine::StopDeviceDownload,
     &Engine::FinishDeviceDownload, &Engine::RegisterDeviceFinishedFile, &Engine::ActThenTell},
    // The client counts recordings over the IOT LAN as the device's own.
    {IOTLanRecord, 1, 1, AnswersQuestions | LogsStates, AfterFinish::Stop, &Make<DownloadLanModuleRecordInfo>,
     &Engine::m_listWaitIOTLanRecord, &Engine::m_listRunIOTLanRecord, &Engine::StartNextIOTLanDownload,
     &Engine::StartIOTLanDownload, &StopInHostById<&KXLogic::IDownloadLogic::StopIOTLanRecordDownload>,
     &Engine::StopIOTLanDownload, &Engine::FinishIOTLanDownload, &Engine::RegisterIOTLanFinishedFile,
     &Engine::TellThenAct},
    {LanModuleRecord, 1, 2, AnswersQuestions, AfterFinish::Stop, &Make<DownloadLanModuleRecordInfo>,
     &Engine::m_listWaitLanModuleRecord, &Engine::m_listRunLanModuleRecord, &Engine::StartNextLanModuleDownload,
     &Engine::StartLanModuleDownload, &StopInHostById<&KXLogic::IDownloadLogic::StopLanModuleRecordDownload>,
     &Engine::StopLanModuleDownload, &Engine::FinishLanModuleDownload, &Engine::RegisterLanModuleFinishedFile,
     &Engine::TellThenAct},
};

const RecordDownloadModule::Source* RecordDownloadModule::SourceOf(int iRecordType)
{
    const bool bKnown = iRecordType >= 0 && iRecordType < static_cast<int>(std::size(Sources));
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
    // By way of the decrypter, so that Shutdown can have its last answers and nothing else that is on its way.
    connect(m_pPictrueDecrypt, &PictrueDecrypt::SignalDecrptPictrueFinished, m_pPictrueDecrypt,
            [this](int iCode, const QString& strUrl, const QString& strPath) {
                OnPictureDecrptFinished(iCode, strUrl, strPath);
            });
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
    if (std::exchange(m_bShuttingDown, true))
        return;
    m_pPictrueDecrypt->Stop();
    QCoreApplication::sendPostedEvents(m_pPictrueDecrypt, QEvent::MetaCall); // covers that were saved just now
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

// The one place where a task changes its state, and with it its queue.
void RecordDownloadModule::Move(const DownloadTaskPtr& pTask, TaskState to)
{
    Q_ASSERT(QThread::currentThread() == thread());
    Q_ASSERT(IsTaskArrow(pTask->state, to));
    RecordQueue* pFrom = QueueOf(SourceOf(pTask), pTask->state);
    RecordQueue* pTo = QueueOf(SourceOf(pTask), to);
    pTask->state = to;
    if (pFrom == pTo)
        return;
    if (pFrom)
        pFrom->Remove(pTask);
    if (pTo)
        pTo->Append(pTask);
}

RecordQueue* RecordDownloadModule::QueueOf(const Source& source, TaskState state)
{
    switch (state) {
    case TaskState::Outside:
        return nullptr;
    case TaskState::Held:
        return &m_listPendingCloudRecord;
    case TaskState::Entering:
    case TaskState::Waiting:
    case TaskState::Starting:
        return &(this->*source.pWaiting);
    case TaskState::Running:
    case TaskState::Ending:
    case TaskState::Stopping:
        return &(this->*source.pRunning);
    }
    return nullptr;
}

// All tasks of that id and source, held, waiting and running.
DownloadTasks RecordDownloadModule::TasksOf(const Source& source, const QString& strRecordId) const
{
    DownloadTasks tasks = (this->*source.pWaiting).TasksOf(strRecordId) + (this->*source.pRunning).TasksOf(strRecordId);
    if (source.Has(HoldsFirst))
        tasks += m_listPendingCloudRecord.TasksOf(strRecordId);
    return tasks;
}

// True when the id waits or runs. What the client dropped leaves its id free, also while the host still has it.
bool RecordDownloadModule::IsListed(const Source& source, const QString& strRecordId) const
{
    const DownloadTasks tasks = TasksOf(source, strRecordId);
    return std::any_of(tasks.begin(), tasks.end(), [](const DownloadTaskPtr& pTask) {
        return pTask->state != TaskState::Held && !pTask->bDropped;
    });
}

TaskState RecordDownloadModule::StateOf(const DownloadRecordInfoPtr& pRecord) const
{
    const Source* pSource = SourceOf(pRecord->iRecordType);
    const DownloadTasks tasks = pSource ? TasksOf(*pSource, pRecord->strRecordId) : DownloadTasks();
    for (const DownloadTaskPtr& pTask : tasks) {
        if (pTask->pRecord == pRecord && !pTask->bDropped)
            return pTask->state;
    }
    return TaskState::Outside;
}

void RecordDownloadModule::OnGetDownloadList(QVariantList list)
{
    if (list.size() < 2)
        return;
    const Source* pSource = SourceOf(list[1].toInt());
    if (!pSource)
        return;
    ReceiveRecords(*pSource, list[0].toByteArray());
    ForgetTakenNames();
}

// A short stream leaves its last record partly filled, and that record is queued like the others. A stream that is
// corrupt cannot be trusted from there on. A record that is ignored takes no path.
void RecordDownloadModule::ReceiveRecords(const Source& source, const QByteArray& bytes)
{
    QDataStream stream(bytes);
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        const DownloadRecordInfoPtr pRecord = source.pMakeRecord();
        pRecord->Deserialize(stream);
        if (stream.status() == QDataStream::ReadCorruptData) {
            KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::OnGetDownloadList",
                          "The record list is corrupt, it is read no further.");
            return;
        }
        const Source* pOwn = SourceOf(pRecord->iRecordType);
        if (!pOwn || IsListed(*pOwn, pRecord->strRecordId))
            continue;
        pRecord->strFileName = QFileInfo(pRecord->strDownloadPath).fileName();
        pRecord->strDownloadPath = MakeUniqueFilePath(WithoutParentSteps(pRecord->strDownloadPath));
        m_promisedPaths.Hold(pRecord);
        AddDownloadRecord(pRecord);
    }
}

void RecordDownloadModule::AddDownloadRecord(const DownloadRecordInfoPtr& pRecord)
{
    if (const DownloadTaskPtr pTask = TakeIn(pRecord, false))
        GoOn(pTask);
}

// All are taken in before the first goes on: what drops them meanwhile finds them all.
void RecordDownloadModule::StartRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    DownloadTasks tasks;
    for (const DownloadRecordInfoPtr& pRecord : list) {
        if (!m_promisedPaths.IsHeldBy(pRecord)) // given away meanwhile, or the file is whole and registered
            pRecord->strDownloadPath = MakeUniqueFilePath(pRecord->strDownloadPath);
        m_promisedPaths.Hold(pRecord);
        if (const DownloadTaskPtr pTask = TakeIn(pRecord, true))
            tasks.append(pTask);
    }
    ForgetTakenNames();
    for (const DownloadTaskPtr& pTask : qAsConst(tasks))
        GoOn(pTask);
}

// A new task of that record; null when its id waits or runs, or when it is held already and resumed once more.
// `bHasRow`: the panel shows it.
DownloadTaskPtr RecordDownloadModule::TakeIn(const DownloadRecordInfoPtr& pRecord, bool bHasRow)
{
    const Source* pSource = SourceOf(pRecord->iRecordType);
    if (!pSource || IsListed(*pSource, pRecord->strRecordId) || StateOf(pRecord) != TaskState::Outside)
        return nullptr;
    const auto pTask = std::make_shared<DownloadTask>(pRecord);
    pTask->bHasRow = bHasRow;
    Move(pTask, pSource->Has(HoldsFirst) ? TaskState::Held : TaskState::Entering);
    return pTask;
}

void RecordDownloadModule::GoOn(const DownloadTaskPtr& pTask)
{
    if (pTask->state == TaskState::Entering)
        return Enter(pTask);
    const auto pRecord = std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask->pRecord);
    if (pTask->state != TaskState::Held || !pRecord)
        return;
    if (!pRecord->strCloudText2.isEmpty() && !pRecord->strText1.isEmpty())
        RequestCloudPassword(pTask, *pRecord);
    else
        RequestCloudPicture(*pRecord);
}

// The panel makes its row, and the task may start.
void RecordDownloadModule::Enter(const DownloadTaskPtr& pTask)
{
    emit SignalAddDownloadInfo(pTask->pRecord);
    if (pTask->state != TaskState::Entering)
        return;
    Move(pTask, TaskState::Waiting);
    (this->*SourceOf(pTask).pStartNext)();
}

// All are dropped before the first is stopped: what the client resumes meanwhile is a new task.
void RecordDownloadModule::PauseRecordDownloads(const QList<DownloadRecordInfoPtr>& list)
{
    QVector<DownloadTasks> dropped;
    for (const DownloadRecordInfoPtr& pRecord : list) {
        if (const Source* pSource = SourceOf(pRecord->iRecordType))
            dropped.append(DropAll(TasksOf(*pSource, pRecord->strRecordId), false));
    }
    for (const DownloadTasks& tasks : qAsConst(dropped)) {
        if (!tasks.isEmpty())
            StopTasks(SourceOf(tasks.first()), tasks.first()->strRecordId, tasks, StopCode::Paused, QString());
    }
}

void RecordDownloadModule::DeleteRecordDownload(int iRecordType, const QString& strRecordId, const QString& strPath)
{
    const Source* pSource = SourceOf(iRecordType);
    if (!pSource)
        return;
    const DownloadTasks tasks = DropAll(TasksOf(*pSource, strRecordId), true);
    StopTasks(*pSource, strRecordId, tasks, StopCode::Deleted, strPath);
    const DownloadTasks left = TasksOf(*pSource, strRecordId);
    const auto writes = [&strPath](const DownloadTaskPtr& pTask) { return pTask->pRecord->strDownloadPath == strPath; };
    if (std::none_of(left.begin(), left.end(), writes))
        m_promisedPaths.Release(strPath, strRecordId);
}

// All are dropped before the first is stopped. Those of the source that stands last in the table go first.
void RecordDownloadModule::ClearAllDownloads()
{
    DownloadTasks waiting[std::size(Sources)];
    DownloadTasks running[std::size(Sources)];
    for (const Source& source : Sources) {
        waiting[source.iRecordType] = (this->*source.pWaiting).Tasks();
        running[source.iRecordType] = DropAll((this->*source.pRunning).Tasks(), true);
        DropAll(waiting[source.iRecordType], true);
    }
    for (int iType = static_cast<int>(std::size(Sources)) - 1; iType >= 0; --iType) {
        const Source& source = Sources[iType];
        for (const DownloadTaskPtr& pTask : qAsConst(waiting[iType])) {
            const bool bGone = pTask->state == TaskState::Outside && StateOf(pTask->pRecord) == TaskState::Outside;
            if (source.Has(RemovesWaiting) && bGone)
                RemoveFileJpg(pTask->pRecord->strDownloadPath);
        }
        for (const DownloadTaskPtr& pTask : qAsConst(running[iType]))
            StopTasks(source, pTask->strRecordId, {pTask}, StopCode::Deleted, pTask->pRecord->strDownloadPath);
    }
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
    const Source* pSource = SourceOf(iRecordType);
    if (!pSource || !pSource->Has(AnswersQuestions))
        return false;
    const DownloadTasks tasks = TasksOf(*pSource, strRecordId);
    return std::any_of(tasks.begin(), tasks.end(),
                       [](const DownloadTaskPtr& pTask) { return pTask->state != TaskState::Entering; });
}
