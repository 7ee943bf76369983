#include "Host/Client/Window/PanelRows.h"

#include "KXGui/GraphicsGridView.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGraphicsItem>

namespace KXClient {

PanelRows::PanelRows(QWidget* pPanel)
    : m_pPanel(pPanel)
    , m_pGrid(pPanel->findChild<GraphicsGridView*>())
{}

bool PanelRows::Has(const QString& strRecordId) const
{
    return m_pGrid && m_pGrid->GetItem(strRecordId);
}

QStringList PanelRows::InView() const
{
    QStringList ids;
    if (!m_pGrid)
        return ids;
    QList<QGraphicsItem*> rows;
    m_pGrid->GetItemsInViewPort(rows, true);
    for (const QGraphicsItem* pRow : rows) {
        // The panel is a little narrower than its rows: their height counts.
        const QRectF row = m_pGrid->mapFromScene(pRow->sceneBoundingRect()).boundingRect();
        if (row.top() >= 0 && row.bottom() <= m_pGrid->viewport()->height())
            ids.append(pRow->data(GraphicsGridView::KeyRole).toString());
    }
    return ids;
}

QRect PanelRows::PlaceOf(const QString& strRecordId, const QRect& part) const
{
    const QGraphicsItem* pRow = m_pGrid ? m_pGrid->GetItem(strRecordId) : nullptr;
    if (!pRow)
        return QRect();
    const QRect inGrid = m_pGrid->mapFromScene(pRow->mapToScene(QRectF(part))).boundingRect();
    return QRect(m_pGrid->viewport()->mapTo(m_pPanel, inGrid.topLeft()), part.size());
}

bool PanelRows::Click(const QString& strRecordId, const QPoint& point) const
{
    if (!InView().contains(strRecordId))
        return false;
    QWidget* pViewport = m_pGrid->viewport();
    const QPoint place = m_pGrid->mapFromScene(m_pGrid->GetItem(strRecordId)->mapToScene(point));
    const QPoint global = pViewport->mapToGlobal(place);
    QMouseEvent press(QEvent::MouseButtonPress, place, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, place, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    const QPoint aside = m_pGrid->mapFromScene(m_pGrid->GetItem(strRecordId)->mapToScene(QPoint()));
    QMouseEvent move(QEvent::MouseMove, aside, pViewport->mapToGlobal(aside), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    for (QMouseEvent* pEvent : {&press, &release, &move})
        QCoreApplication::sendEvent(pViewport, pEvent);
    return true;
}

} // namespace KXClient
