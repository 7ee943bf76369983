#pragma once

#include <QtCore/QString>

// What this process holds at the moment, as the system counts it.
struct ProcessUse
{
    int iThreads = 0;
    int iHandles = 0;        // open files, and what else the system hands out
    qint64 lMemoryBytes = 0; // taken from the heap
};
ProcessUse UseOfThisProcess();

// How far the heap's count may move although nothing was kept: more where freed blocks that a thread keeps for itself
// count as taken.
qint64 MemorySlackBytes();

// True while the library of that file lies in this process's memory.
bool IsMapped(const QString& strLibraryFile);
