#include "Module/RecordQueue.h"

#include <QtCore/QHash>

#include <utility>

namespace {

constexpr std::size_t SmallestTable = 16;

// Two texts that share their characters need not be read.
bool IsSame(const QString& a, const QString& b)
{
    return a.constData() == b.constData() || a == b;
}

} // namespace

void RecordQueue::Append(const DownloadRecordInfoPtr& pTask)
{
    if (2 * (m_uIds + 1) > m_table.size())
        GrowTable();
    const int iAdded = NewEntry(pTask);
    Slot& slot = m_table[SlotOf(At(iAdded).strRecordId, At(iAdded).uHash)];
    if (slot.iEntry == None) {
        slot = Slot{iAdded, At(iAdded).uHash};
        ++m_uIds;
    } else {
        At(At(slot.iEntry).iLastSame).iNextSame = iAdded;
    }
    At(slot.iEntry).iLastSame = iAdded;
}

DownloadRecordInfoPtr RecordQueue::First() const
{
    return m_iFirst == None ? nullptr : At(m_iFirst).pTask;
}

DownloadRecordInfoPtr RecordQueue::Find(const QString& strRecordId) const
{
    const int iEntry = FirstOf(strRecordId);
    return iEntry == None ? nullptr : At(iEntry).pTask;
}

bool RecordQueue::RemoveTask(const DownloadRecordInfoPtr& pTask)
{
    if (m_iCount == 0)
        return false;
    // What leaves the queue at its front needs no reading of its text.
    const bool bFront = At(m_iFirst).pTask == pTask;
    const QString strRecordId = bFront ? At(m_iFirst).strRecordId : pTask->strRecordId;
    const std::size_t uSlot = SlotOf(strRecordId, bFront ? At(m_iFirst).uHash : qHash(strRecordId));
    int iBefore = None;
    int iEntry = m_table[uSlot].iEntry;
    while (iEntry != None && At(iEntry).pTask != pTask) {
        iBefore = iEntry;
        iEntry = At(iEntry).iNextSame;
    }
    if (iEntry == None)
        return false;
    UnlinkSame(uSlot, iBefore, iEntry);
    FreeEntry(iEntry);
    return true;
}

// Takes an entry out of those of its id; `iBefore` is the one before it there, None for the oldest.
void RecordQueue::UnlinkSame(std::size_t uSlot, int iBefore, int iEntry)
{
    const int iNextSame = At(iEntry).iNextSame;
    if (iBefore != None) {
        At(iBefore).iNextSame = iNextSame;
        if (iNextSame == None)
            At(m_table[uSlot].iEntry).iLastSame = iBefore;
    } else if (iNextSame != None) {
        At(iNextSame).iLastSame = At(iEntry).iLastSame;
        m_table[uSlot].iEntry = iNextSame;
    } else {
        EraseSlot(uSlot);
    }
}

bool RecordQueue::Remove(const QString& strRecordId)
{
    if (m_iCount == 0)
        return false;
    const std::size_t uSlot = SlotOf(strRecordId, qHash(strRecordId));
    int iEntry = m_table[uSlot].iEntry;
    if (iEntry == None)
        return false;
    EraseSlot(uSlot);
    while (iEntry != None) {
        const int iNextSame = At(iEntry).iNextSame;
        FreeEntry(iEntry);
        iEntry = iNextSame;
    }
    return true;
}

void RecordQueue::Clear()
{
    *this = RecordQueue();
}

QVector<DownloadRecordInfoPtr> RecordQueue::Tasks() const
{
    QVector<DownloadRecordInfoPtr> tasks;
    tasks.reserve(m_iCount);
    for (int iEntry = m_iFirst; iEntry != None; iEntry = At(iEntry).iNext)
        tasks.append(At(iEntry).pTask);
    return tasks;
}

int RecordQueue::FirstOf(const QString& strRecordId) const
{
    return m_iCount == 0 ? None : m_table[SlotOf(strRecordId, qHash(strRecordId))].iEntry;
}

// The slot that holds the id, or the empty one where it belongs. The table is never full.
std::size_t RecordQueue::SlotOf(const QString& strRecordId, uint uHash) const
{
    const std::size_t uMask = m_table.size() - 1;
    std::size_t uSlot = uHash & uMask;
    while (m_table[uSlot].iEntry != None) {
        if (m_table[uSlot].uHash == uHash && IsSame(At(m_table[uSlot].iEntry).strRecordId, strRecordId))
            break;
        uSlot = (uSlot + 1) & uMask;
    }
    return uSlot;
}

void RecordQueue::GrowTable()
{
    const std::vector<Slot> old = std::move(m_table);
    m_table.assign(old.empty() ? SmallestTable : 2 * old.size(), Slot());
    for (const Slot& slot : old) {
        if (slot.iEntry != None)
            m_table[SlotOf(At(slot.iEntry).strRecordId, slot.uHash)] = slot;
    }
}

// Entries behind the emptied slot move up, so that no search stops too early.
void RecordQueue::EraseSlot(std::size_t uSlot)
{
    const std::size_t uMask = m_table.size() - 1;
    std::size_t uHole = uSlot;
    for (std::size_t uNext = (uHole + 1) & uMask; m_table[uNext].iEntry != None; uNext = (uNext + 1) & uMask) {
        const std::size_t uWanted = m_table[uNext].uHash & uMask;
        if (((uNext - uWanted) & uMask) < ((uNext - uHole) & uMask))
            continue;
        m_table[uHole] = m_table[uNext];
        uHole = uNext;
    }
    m_table[uHole] = Slot();
    --m_uIds;
}

int RecordQueue::NewEntry(const DownloadRecordInfoPtr& pTask)
{
    int iEntry = m_iFree;
    if (iEntry == None) {
        iEntry = static_cast<int>(m_entries.size());
        m_entries.emplace_back();
    } else {
        m_iFree = At(iEntry).iNext;
    }
    At(iEntry) = Entry{pTask, pTask->strRecordId, qHash(pTask->strRecordId), m_iLast, None, None, None};
    (m_iLast == None ? m_iFirst : At(m_iLast).iNext) = iEntry;
    m_iLast = iEntry;
    ++m_iCount;
    return iEntry;
}

void RecordQueue::FreeEntry(int iEntry)
{
    const Entry freed = std::exchange(At(iEntry), Entry());
    (freed.iPrevious == None ? m_iFirst : At(freed.iPrevious).iNext) = freed.iNext;
    (freed.iNext == None ? m_iLast : At(freed.iNext).iPrevious) = freed.iPrevious;
    At(iEntry).iNext = m_iFree;
    m_iFree = iEntry;
    --m_iCount;
}
