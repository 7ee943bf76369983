#include "Host/Client/DownloadSession.h"

#include "Host/KXLogic/RunningTransfers.h"
#include "KXBase/GKXObserver.h"
#include "KXLogic/KXLogicCallbacks.h"
#include "Model/HostEvents.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <numeric>

namespace StateCode = KXLogic::StateCode;

namespace KXClient {

namespace {

// What a state event means for its task; a refusal that the plug-in recovers from settles nothing.
TaskState StateOf(int iCode, bool bReget)
{
    switch (iCode) {
    case StateCode::Finished:
        return TaskState::Finished;
    case StateCode::Failed:
    case StateCode::CloudAbort:
        return TaskState::Failed;
    case StateCode::Refused:
        return bReget ? TaskState::Outstanding : TaskState::Refused;
    default:
        return TaskState::Outstanding;
    }
}

// What the host said of it; of a task that never got so far as a transfer it may know nothing.
QString ReasonOf(const Task& task)
{
    if (task.state == TaskState::Finished)
        return QString();
    const auto& record = *task.request.pRecord;
    const QString strReason = KXHost::TransferReason(record.iRecordType, record.strRecordId);
    return strReason.isEmpty() ? QStringLiteral("its cover cannot be opened with the key that its record gives")
                               : strReason;
}

} // namespace

DownloadSession::DownloadSession(const QVector<RequestedRecord>& records, QObject* pParent)
    : QObject(pParent)
{
    m_tasks.reserve(records.size());
    for (const RequestedRecord& request : records) {
        m_indexes.insert({request.pRecord->iRecordType, request.pRecord->strRecordId}, m_tasks.size());
        m_tasks.append(Task{request, TaskState::NotAsked, QString(), QString(), 0});
        KXHost::ExpectRecording(request.pRecord->iRecordType, request.pRecord->strRecordId,
                                {request.pRecord->lFileSize, request.strSha256});
    }
    GKXObserver::attach(HostEvents::DownloadRecordStates, this, SLOT(OnDownloadRecordStates(QVariantList)));
}

void DownloadSession::Send(const QString& strFolder)
{
    QVector<int> indexes(m_tasks.size());
    std::iota(indexes.begin(), indexes.end(), 0);
    Send(strFolder, indexes);
}

void DownloadSession::Send(const QString& strFolder, const QVector<int>& indexes)
{
    m_clock.start();
    for (int iIndex : indexes) {
        m_iOutstanding += m_tasks.at(iIndex).state == TaskState::Outstanding ? 0 : 1;
        m_tasks[iIndex].state = TaskState::Outstanding;
        m_tasks[iIndex].strPath.clear();
        m_tasks[iIndex].strReason.clear();
    }
    GKXObserver::notify(HostEvents::DownloadRecordPath, QVariantList{strFolder});
    for (int iType = KXDownLoadList::CloudRecord; iType <= KXDownLoadList::LanModuleRecord; ++iType) {
        const QByteArray records = Serialized(iType, indexes);
        if (!records.isEmpty())
            GKXObserver::notify(HostEvents::DownloadRecordList, QVariantList{records, iType});
    }
}

void DownloadSession::Forget(int iIndex)
{
    Task& task = m_tasks[iIndex];
    m_iOutstanding -= task.state == TaskState::Outstanding ? 1 : 0;
    task.state = TaskState::NotAsked;
}

QByteArray DownloadSession::Serialized(int iRecordType, const QVector<int>& indexes) const
{
    QByteArray records;
    QDataStream stream(&records, QIODevice::WriteOnly);
    for (int iIndex : indexes) {
        const auto& record = *m_tasks.at(iIndex).request.pRecord;
        if (record.iRecordType == iRecordType)
            record.Serialize(stream);
    }
    return records;
}

int DownloadSession::IndexOf(int iRecordType, const QString& strRecordId) const
{
    return m_indexes.value({iRecordType, strRecordId}, -1);
}

void DownloadSession::OnDownloadRecordStates(QVariantList list)
{
    const QJsonObject state = QJsonDocument::fromJson(list.value(0).toString().toUtf8()).object();
    const int iIndex =
        IndexOf(state.value(HostEvents::KeyRecordType).toInt(-1), state.value(HostEvents::KeyRecordId).toString());
    if (iIndex < 0)
        return;
    TaskState reached = StateOf(state.value(HostEvents::KeyCode).toInt(-1), state.value(HostEvents::KeyReget).toBool());
    const auto& record = *m_tasks.at(iIndex).request.pRecord;
    if (reached == TaskState::Refused && !KXHost::WasTransferBegun(record.iRecordType, record.strRecordId))
        reached = TaskState::Dropped;
    // The first end counts, unless the user had it retried and it arrived after all.
    const TaskState known = m_tasks.at(iIndex).state;
    const bool bArrived = reached == TaskState::Finished && known != TaskState::Finished;
    if (bArrived || (reached != TaskState::Outstanding && known == TaskState::Outstanding))
        Settle(iIndex, reached, state.value(HostEvents::KeyDownloadPath).toString());
}

void DownloadSession::Settle(int iIndex, TaskState state, const QString& strPath)
{
    Task& task = m_tasks[iIndex];
    m_iOutstanding -= task.state == TaskState::Outstanding ? 1 : 0;
    task.state = state;
    task.strPath = strPath;
    task.strReason = ReasonOf(task);
    task.lMilliseconds = m_clock.elapsed();
    emit SignalSettled(iIndex);
}

} // namespace KXClient
