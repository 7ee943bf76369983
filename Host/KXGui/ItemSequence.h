#pragma once

#include <QtCore/QHash>
#include <QtCore/QList>

#include <vector>

class QGraphicsItem;

namespace KXHost {

// Items in order. Appending takes constant time in the mean; removing, the position of an item and the item at a
// position take the logarithm of their number. Items stand in slots that are never reordered; sums over ranges of slots
// (a Fenwick tree) say how many of the slots before one are taken.
class ItemSequence
{
public:
    // False when the item is in the sequence already.
    bool Append(QGraphicsItem* pItem);
    // The position that the item had; -1 when it was not in the sequence.
    int Remove(const QGraphicsItem* pItem);
    int IndexOf(const QGraphicsItem* pItem) const;
    // Null for a position outside the sequence.
    QGraphicsItem* At(int iIndex) const;
    int Size() const { return m_slotOf.size(); }
    QList<QGraphicsItem*> All() const;
    void Clear();

private:
    void AppendSlot(QGraphicsItem* pItem);
    int TakenBefore(int iSlot) const;
    void DropHoles();

    std::vector<QGraphicsItem*> m_slots; // null: a hole
    std::vector<int> m_sums = {0};       // [i]: taken slots among the lowest-bit-of-i slots that end before slot i
    QHash<const QGraphicsItem*, int> m_slotOf;
};

} // namespace KXHost
