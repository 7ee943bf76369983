#include "DownloadWidget/ListAccessible.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/RowAccessible.h"
#include "DownloadWidget/RowFocus.h"
#include "KXGui/GraphicsGridView.h"

#include <QtCore/QCoreApplication>

namespace {

QList<RowFocus*>& Lists()
{
    static QList<RowFocus*> s_lists;
    return s_lists;
}

QAccessibleInterface* Make(const QString&, QObject* pObject)
{
    const auto* pRow = qobject_cast<DownloadItem*>(pObject);
    for (RowFocus* pList : qAsConst(Lists())) {
        if (pObject == &pList->View())
            return new ListAccessible(*pList);
        if (pRow && pList->Rows().IndexOf(pRow) >= 0)
            return new RowAccessible(*static_cast<DownloadItem*>(pObject), *pList);
    }
    return nullptr;
}

QAccessibleInterface* Of(DownloadItem* pRow)
{
    return pRow ? QAccessible::queryAccessibleInterface(pRow) : nullptr;
}

} // namespace

ListAccessible::ListAccessible(RowFocus& list)
    : QAccessibleWidget(&list.View(), QAccessible::List)
    , m_pList(&list)
{}

void ListAccessible::Register(RowFocus& list)
{
    Lists().append(&list);
    QAccessible::installFactory(&Make);
    // While the view was being built, somebody may have got the accessible object of an ordinary one.
    if (QAccessible::isActive())
        QAccessible::deleteAccessibleInterface(
            QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&list.View())));
}

void ListAccessible::Unregister(RowFocus& list)
{
    Lists().removeOne(&list);
    if (Lists().isEmpty())
        QAccessible::removeFactory(&Make);
}

int ListAccessible::childCount() const
{
    return m_pList ? m_pList->Rows().Count() : 0;
}

QAccessibleInterface* ListAccessible::child(int iIndex) const
{
    return m_pList ? Of(m_pList->Rows().At(iIndex)) : nullptr;
}

int ListAccessible::indexOfChild(const QAccessibleInterface* pChild) const
{
    const auto* pRow = pChild ? qobject_cast<DownloadItem*>(pChild->object()) : nullptr;
    return m_pList && pRow ? m_pList->Rows().IndexOf(pRow) : -1;
}

QAccessibleInterface* ListAccessible::childAt(int iX, int iY) const
{
    if (!m_pList)
        return nullptr;
    return Of(m_pList->RowAt(m_pList->View().viewport()->mapFromGlobal(QPoint(iX, iY))));
}

QAccessibleInterface* ListAccessible::focusChild() const
{
    return m_pList && m_pList->View().hasFocus() ? Of(m_pList->Current()) : nullptr;
}

QString ListAccessible::text(QAccessible::Text kind) const
{
    const QString strText = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Name || !strText.isEmpty())
        return strText;
    return QCoreApplication::translate("DownloadWidget", "common_download_list");
}
