#include "Module/RecordQueue.h"

#include <algorithm>

void RecordQueue::Append(const DownloadTaskPtr& pTask)
{
    m_byId.insert(pTask->strRecordId, m_tasks.insert(m_tasks.end(), pTask));
}

void RecordQueue::Remove(const DownloadTaskPtr& pTask)
{
    auto entry = m_byId.find(pTask->strRecordId);
    while (**entry != pTask)
        ++entry;
    m_tasks.erase(*entry);
    m_byId.erase(entry);
}

DownloadTasks RecordQueue::TasksOf(const QString& strRecordId) const
{
    DownloadTasks tasks;
    for (auto entry = m_byId.constFind(strRecordId); entry != m_byId.constEnd() && entry.key() == strRecordId; ++entry)
        tasks.append(**entry);
    std::reverse(tasks.begin(), tasks.end());
    return tasks;
}

DownloadTasks RecordQueue::Tasks() const
{
    DownloadTasks tasks;
    tasks.reserve(Count());
    std::copy(begin(), end(), std::back_inserter(tasks));
    return tasks;
}
