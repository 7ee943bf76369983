#include "DownloadWidget/RowNews.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/RowAccessible.h"

#include <QtCore/QTimer>

namespace {

// Null when there is nobody to tell.
RowAccessible* Heard(DownloadItem& row)
{
    if (!QAccessible::isActive() || !(row.scene() || row.WasAskedFor()))
        return nullptr;
    return dynamic_cast<RowAccessible*>(QAccessible::queryAccessibleInterface(&row));
}

void Tell(DownloadItem& row, QAccessible::Event type)
{
    if (!Heard(row))
        return;
    QAccessibleEvent event(&row, type);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void RowNews::Added(DownloadItem& row)
{
    Tell(row, QAccessible::ObjectCreated);
}

void RowNews::Goes(DownloadItem& row)
{
    Tell(row, QAccessible::ObjectDestroyed);
}

// A moment later: listeners may act when they hear of it, and the panel may have more rows in hand.
void RowNews::StateChanged(DownloadItem& row)
{
    if (!Heard(row))
        return;
    QTimer::singleShot(0, &row, [&row] { Tell(row, QAccessible::DescriptionChanged); });
    QTimer::singleShot(0, &row, [&row] { Progressed(row); });
}

void RowNews::Progressed(DownloadItem& row)
{
    RowAccessible* pAccessible = Heard(row);
    if (!pAccessible || !pAccessible->TakeNewValue())
        return;
    QAccessibleValueChangeEvent event(&row, row.ShownPercent());
    QAccessible::updateAccessibility(&event);
}

void RowNews::Focused(DownloadItem& row)
{
    Tell(row, QAccessible::Focus);
}
