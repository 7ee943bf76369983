#include "Host/KXGui/KeyIndex.h"

#include <QtWidgets/QGraphicsItem>

namespace KXHost {

KeyIndex::KeyIndex(int iRole)
    : m_iRole(iRole)
{}

QString KeyIndex::KeyOf(const QGraphicsItem* pItem) const
{
    return pItem->data(m_iRole).toString();
}

void KeyIndex::Insert(QGraphicsItem* pItem)
{
    if (pItem->data(m_iRole).isValid())
        File(pItem);
    else
        m_keyless.insert(pItem);
}

void KeyIndex::File(QGraphicsItem* pItem)
{
    const QString strKey = KeyOf(pItem);
    m_items.insert(strKey, pItem);
    m_keys.insert(pItem, strKey);
}

void KeyIndex::Remove(QGraphicsItem* pItem)
{
    m_keyless.remove(pItem);
    const auto it = m_keys.find(pItem);
    if (it == m_keys.end())
        return;
    m_items.remove(it.value(), pItem);
    m_keys.erase(it);
}

QList<QGraphicsItem*> KeyIndex::Find(const QString& strKey)
{
    for (auto it = m_keyless.begin(); it != m_keyless.end();) {
        if ((*it)->data(m_iRole).isValid()) {
            File(*it);
            it = m_keyless.erase(it);
        } else {
            ++it;
        }
    }
    return m_items.values(strKey);
}

} // namespace KXHost
