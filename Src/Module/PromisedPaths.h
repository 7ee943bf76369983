#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QHash>

// A path as a key: one for all ways to write it. Case is ignored everywhere, since a download folder may lie on a file
// system that ignores it, on any platform. Sharing the path's text, a key costs no memory of its own.
struct PathKey
{
    explicit PathKey(const QString& strPath);

    QString strPath;

    friend bool operator==(const PathKey& a, const PathKey& b)
    {
        return a.strPath.compare(b.strPath, Qt::CaseInsensitive) == 0;
    }
};
uint qHash(const PathKey& key, uint uSeed = 0);

// Which target path belongs to which task, so that two tasks never write one file. A path stays promised as long as its
// task lives, paused or failed ones included, or until it is released.
//
// Thread: one, not locked. Ownership: none; tasks are held weakly.
class PromisedPaths
{
public:
    // True when the path is promised to a task.
    bool IsTaken(const QString& strPath) const;
    // True when the task's own target path is promised to it.
    bool IsHeldBy(const DownloadRecordInfoPtr& pTask) const;
    // Promises the task's own target path to it. An empty path is never promised.
    void Hold(const DownloadRecordInfoPtr& pTask);
    // Ends the promise of a path to the task of that record id.
    void Release(const QString& strPath, const QString& strRecordId);

private:
    void ForgetDeadTasks();

    QHash<PathKey, std::weak_ptr<KXDownLoadList::DownloadRecordInfo>> m_tasks;
    int m_iSweepAt = 1024; // entries at which dead ones are looked for; grows with the number of living ones
};
