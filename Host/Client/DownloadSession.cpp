#include "Host/Client/DownloadSession.h"

#include "Host/KXLogic/RunningTransfers.h"
#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace KXClient {

namespace {

// Codes of a state event; 1 (running) is never sent.
constexpr int CodeFailed = 0;
constexpr int CodeFinished = 2;
constexpr int CodeRefused = 3;
constexpr int CodeAborted = 100;

// What a state event means for its task; a refusal that the plug-in recovers from settles nothing.
TaskState StateOf(int iCode, bool bReget)
{
    switch (iCode) {
    case CodeFinished:
        return TaskState::Finished;
    case CodeFailed:
    case CodeAborted:
        return TaskState::Failed;
    case CodeRefused:
        return bReget ? TaskState::Outstanding : TaskState::Refused;
    default:
        return TaskState::Outstanding;
    }
}

} // namespace

DownloadSession::DownloadSession(const QVector<RequestedRecord>& records, QObject* pParent)
    : QObject(pParent)
    , m_iOutstanding(records.size())
{
    m_tasks.reserve(records.size());
    for (const RequestedRecord& request : records) {
        m_indexes.insert({request.pRecord->iRecordType, request.pRecord->strRecordId}, m_tasks.size());
        m_tasks.append(Task{request, TaskState::Outstanding, QString(), 0});
    }
    GKXObserver::attach(HostEvents::DownloadRecordStates, this, SLOT(OnDownloadRecordStates(QVariantList)));
}

void DownloadSession::Send(const QString& strFolder)
{
    m_clock.start();
    GKXObserver::notify(HostEvents::DownloadRecordPath, QVariantList{strFolder});
    for (int iType = KXDownLoadList::CloudRecord; iType <= KXDownLoadList::LanModuleRecord; ++iType) {
        const QByteArray records = Serialized(iType);
        if (!records.isEmpty())
            GKXObserver::notify(HostEvents::DownloadRecordList, QVariantList{records, iType});
    }
}

QByteArray DownloadSession::Serialized(int iRecordType) const
{
    QByteArray records;
    QDataStream stream(&records, QIODevice::WriteOnly);
    for (const Task& task : m_tasks) {
        if (task.request.pRecord->iRecordType == iRecordType)
            task.request.pRecord->Serialize(stream);
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
    if (iIndex < 0 || m_tasks.at(iIndex).state != TaskState::Outstanding)
        return;
    TaskState reached = StateOf(state.value(HostEvents::KeyCode).toInt(-1), state.value(HostEvents::KeyReget).toBool());
    const auto& record = *m_tasks.at(iIndex).request.pRecord;
    if (reached == TaskState::Refused && !KXHost::WasTransferStarted(record.iRecordType, record.strRecordId))
        reached = TaskState::Dropped;
    if (reached != TaskState::Outstanding)
        Settle(iIndex, reached, state.value(HostEvents::KeyDownloadPath).toString());
}

void DownloadSession::Settle(int iIndex, TaskState state, const QString& strPath)
{
    Task& task = m_tasks[iIndex];
    task.state = state;
    task.strPath = strPath;
    task.lMilliseconds = m_clock.elapsed();
    --m_iOutstanding;
    emit SignalSettled(iIndex);
}

} // namespace KXClient
