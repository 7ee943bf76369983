#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QVector>

#include <vector>

// Tasks in the order in which they were appended: first in, first out. Append, pop, find and remove by record id take
// constant time, and touch as little memory as can be: a list of 100,000 tasks costs about the same per task as a list
// of 10. Several tasks may have one id; "the first" is then the oldest of them.
//
// Entries lie side by side in one vector, linked by their positions: all in their order, and those of one id in theirs.
// A table with open addressing leads from an id to its oldest entry.
//
// Thread: one, not locked. Ownership: shared with whoever else holds the task.
class RecordQueue
{
public:
    bool IsEmpty() const { return m_iCount == 0; }
    int Count() const { return m_iCount; }

    void Append(const DownloadRecordInfoPtr& pTask);
    // The oldest task; null when the queue is empty.
    DownloadRecordInfoPtr First() const;
    bool Contains(const QString& strRecordId) const { return FirstOf(strRecordId) != None; }
    // The first task of that id; null when there is none.
    DownloadRecordInfoPtr Find(const QString& strRecordId) const;
    // The first task of that id that `accept` takes; null when there is none.
    template <class Predicate>
    DownloadRecordInfoPtr FindIf(const QString& strRecordId, Predicate accept) const;
    // Removes just this task; false when it is not in the queue.
    bool RemoveTask(const DownloadRecordInfoPtr& pTask);
    // Removes every task of that id; false when there was none.
    bool Remove(const QString& strRecordId);
    void Clear();
    QVector<DownloadRecordInfoPtr> Tasks() const;

private:
    static constexpr int None = -1;

    struct Entry
    {
        DownloadRecordInfoPtr pTask;
        QString strRecordId;
        uint uHash = 0;
        int iPrevious = None; // in the order of all
        int iNext = None;     // in the order of all; links the free entries too
        int iNextSame = None; // next younger entry of the same id
        int iLastSame = None; // youngest entry of the same id; kept in the oldest only
    };

    const Entry& At(int iEntry) const { return m_entries[static_cast<std::size_t>(iEntry)]; }
    Entry& At(int iEntry) { return m_entries[static_cast<std::size_t>(iEntry)]; }
    int FirstOf(const QString& strRecordId) const;
    std::size_t SlotOf(const QString& strRecordId, uint uHash) const;
    void GrowTable();
    void EraseSlot(std::size_t uSlot);
    void UnlinkSame(std::size_t uSlot, int iBefore, int iEntry);
    int NewEntry(const DownloadRecordInfoPtr& pTask);
    void FreeEntry(int iEntry);

    std::vector<Entry> m_entries;
    // The oldest entry of an id, or None. The hash stands beside it, so that a search reads no entry in vain.
    struct Slot
    {
        int iEntry = None;
        uint uHash = 0;
    };

    std::vector<Slot> m_table; // its size is a power of two, at most half in use
    std::size_t m_uIds = 0;
    int m_iFree = None;
    int m_iFirst = None;
    int m_iLast = None;
    int m_iCount = 0;
};

template <class Predicate>
DownloadRecordInfoPtr RecordQueue::FindIf(const QString& strRecordId, Predicate accept) const
{
    for (int iEntry = FirstOf(strRecordId); iEntry != None; iEntry = At(iEntry).iNextSame) {
        if (accept(*At(iEntry).pTask))
            return At(iEntry).pTask;
    }
    return nullptr;
}
