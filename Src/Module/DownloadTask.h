#pragma once

#include "Model/DownloadRecordInfo.h"
#include "Module/TaskState.h"

#include <QtCore/QVector>

// One stay of a record in the engine, from the moment it is asked for to its end. A record that is asked for or resumed
// after that is a new task, also under the same id; one that waits again for a password is the same.
//
// Every call that leaves the engine may come back to it. Whoever makes one keeps the task and goes on only when its
// state is still the one that he left it in; that state is the one place that tells.
//
// Thread: the engine's. Ownership: shared by the engine's queues and by whoever has it in hand.
struct DownloadTask
{
    explicit DownloadTask(const DownloadRecordInfoPtr& pTaken)
        : pRecord(pTaken)
        , strRecordId(pTaken->strRecordId)
    {}

    const DownloadRecordInfoPtr pRecord;
    const QString strRecordId;
    TaskState state = TaskState::Outside; // changed by the engine's Move only
    bool bHasRow = false;                 // resumed: the panel has shown it before
    bool bArrived = false;                // its file is whole: to pause it changes nothing any more
    bool bDropped = false;                // the client paused, deleted or cleared it; its id is free again
    bool bRemovesFile = false;            // dropped for good: its file goes once the host has let go of it
    bool bHeard = false;                  // what arrives from now on was posted after its start, by its own transfer
    QVector<int> codesWhileStarting;      // state codes that arrived inside the host's start, in order
};

using DownloadTaskPtr = std::shared_ptr<DownloadTask>;
using DownloadTasks = QVector<DownloadTaskPtr>;
