#pragma once

#include "Host/Client/RecordsReader.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QVariant>

namespace KXClient {

enum class TaskState {
    NotAsked,
    Outstanding, // asked for, not yet settled
    Finished,
    Failed,
    Refused,
    Dropped, // by the plug-in, before any transfer
};

struct Task
{
    RequestedRecord request;
    TaskState state = TaskState::NotAsked;
    QString strPath;   // where the plug-in wrote it; known when it is settled
    QString strReason; // why it failed, was refused or dropped, for people
    qint64 lMilliseconds = 0;
};

// Asks the plug-in for recordings over the event bus and hears how each ended. Thread: the GUI thread.
class DownloadSession : public QObject
{
    Q_OBJECT

public:
    explicit DownloadSession(const QVector<RequestedRecord>& records, QObject* pParent = nullptr);

    // Names the download folder, then sends one list per record type. States may arrive before it returns.
    void Send(const QString& strFolder);
    // The same for some of the tasks, for which the plug-in must have no row.
    void Send(const QString& strFolder, const QVector<int>& indexes);
    // The plug-in let go of a task without a word.
    void Forget(int iIndex);

    const QVector<Task>& Tasks() const { return m_tasks; }
    // Of those that were asked for.
    int OutstandingCount() const { return m_iOutstanding; }
    // Index of a task, -1 when it was not asked for here.
    int IndexOf(int iRecordType, const QString& strRecordId) const;

signals:
    // Comes again for a task that did not arrive and that the user then had retried.
    void SignalSettled(int iIndex);

private slots:
    void OnDownloadRecordStates(QVariantList list);

private:
    QByteArray Serialized(int iRecordType, const QVector<int>& indexes) const;
    void Settle(int iIndex, TaskState state, const QString& strPath);

    QVector<Task> m_tasks;
    QHash<QPair<int, QString>, int> m_indexes;
    QElapsedTimer m_clock;
    int m_iOutstanding = 0;
};

} // namespace KXClient
