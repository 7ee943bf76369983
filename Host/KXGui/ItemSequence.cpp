#include "Host/KXGui/ItemSequence.h"

namespace KXHost {

namespace {

constexpr int MinSlotsToCompact = 64;

int LowestBit(int iValue)
{
    return iValue & -iValue;
}

std::size_t Position(int iValue)
{
    return static_cast<std::size_t>(iValue);
}

} // namespace

bool ItemSequence::Append(QGraphicsItem* pItem)
{
    if (m_slotOf.contains(pItem))
        return false;
    AppendSlot(pItem);
    return true;
}

void ItemSequence::AppendSlot(QGraphicsItem* pItem)
{
    m_slotOf.insert(pItem, static_cast<int>(m_slots.size()));
    m_slots.push_back(pItem);
    const int iEnd = static_cast<int>(m_slots.size());
    int iSum = 1;
    for (int i = iEnd - 1; i > iEnd - LowestBit(iEnd); i -= LowestBit(i))
        iSum += m_sums[Position(i)];
    m_sums.push_back(iSum);
}

int ItemSequence::Remove(const QGraphicsItem* pItem)
{
    const auto it = m_slotOf.constFind(pItem);
    if (it == m_slotOf.constEnd())
        return -1;
    const int iSlot = it.value();
    const int iIndex = TakenBefore(iSlot);
    const int iSlots = static_cast<int>(m_slots.size());
    m_slotOf.erase(it);
    m_slots[Position(iSlot)] = nullptr;
    for (int i = iSlot + 1; i <= iSlots; i += LowestBit(i))
        --m_sums[Position(i)];
    if (iSlots >= MinSlotsToCompact && Size() < iSlots / 2)
        DropHoles();
    return iIndex;
}

int ItemSequence::IndexOf(const QGraphicsItem* pItem) const
{
    const auto it = m_slotOf.constFind(pItem);
    return it == m_slotOf.constEnd() ? -1 : TakenBefore(it.value());
}

int ItemSequence::TakenBefore(int iSlot) const
{
    int iTaken = 0;
    for (int i = iSlot; i > 0; i -= LowestBit(i))
        iTaken += m_sums[Position(i)];
    return iTaken;
}

QGraphicsItem* ItemSequence::At(int iIndex) const
{
    if (iIndex < 0 || iIndex >= Size())
        return nullptr;
    const int iSlots = static_cast<int>(m_slots.size());
    int iStep = 1;
    while (iStep <= iSlots / 2)
        iStep *= 2;
    int iSlot = 0;
    for (int iLeft = iIndex; iStep > 0; iStep /= 2) {
        if (iSlot + iStep <= iSlots && m_sums[Position(iSlot + iStep)] <= iLeft) {
            iSlot += iStep;
            iLeft -= m_sums[Position(iSlot)];
        }
    }
    return m_slots[Position(iSlot)];
}

QList<QGraphicsItem*> ItemSequence::All() const
{
    QList<QGraphicsItem*> list;
    list.reserve(Size());
    for (QGraphicsItem* pItem : m_slots) {
        if (pItem)
            list.append(pItem);
    }
    return list;
}

void ItemSequence::Clear()
{
    m_slots.clear();
    m_sums.assign(1, 0);
    m_slotOf.clear();
}

void ItemSequence::DropHoles()
{
    const QList<QGraphicsItem*> list = All();
    Clear();
    for (QGraphicsItem* pItem : list)
        AppendSlot(pItem);
}

} // namespace KXHost
