#pragma once

#include "Module/DownloadTask.h"

#include <QtCore/QHash>

#include <list>

// Tasks in the order in which they were appended, with an index by record id. Several tasks may have one id.
//
// Thread: one, not locked. Ownership: shared with whoever has a task in hand.
class RecordQueue
{
public:
    using Iterator = std::list<DownloadTaskPtr>::const_iterator;

    RecordQueue() = default;
    RecordQueue(const RecordQueue&) = delete;
    RecordQueue& operator=(const RecordQueue&) = delete;

    bool IsEmpty() const { return m_tasks.empty(); }
    int Count() const { return static_cast<int>(m_tasks.size()); }
    Iterator begin() const { return m_tasks.begin(); }
    Iterator end() const { return m_tasks.end(); }

    void Append(const DownloadTaskPtr& pTask);
    // Removes just this task, which must be in the queue.
    void Remove(const DownloadTaskPtr& pTask);
    // The tasks of that id, the oldest first.
    DownloadTasks TasksOf(const QString& strRecordId) const;
    // A copy of the order, for whoever calls out while he goes through it.
    DownloadTasks Tasks() const;

private:
    std::list<DownloadTaskPtr> m_tasks;
    QMultiHash<QString, Iterator> m_byId; // of one id the youngest first
};
