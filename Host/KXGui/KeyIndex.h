#pragma once

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>

class QGraphicsItem;

namespace KXHost {

// Items by the text under their data key. An item tells nobody that its data changed: those without a key yet are
// looked at again when a key is asked for.
class KeyIndex
{
public:
    explicit KeyIndex(int iRole);

    void Insert(QGraphicsItem* pItem);
    // Also for an item of which only the address is left.
    void Remove(QGraphicsItem* pItem);
    // The items of that key, in no order.
    QList<QGraphicsItem*> Find(const QString& strKey);

private:
    QString KeyOf(const QGraphicsItem* pItem) const;
    void File(QGraphicsItem* pItem);

    int m_iRole;
    QMultiHash<QString, QGraphicsItem*> m_items;
    QHash<QGraphicsItem*, QString> m_keys;
    QSet<QGraphicsItem*> m_keyless;
};

} // namespace KXHost
