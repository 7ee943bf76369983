#include "KXGui/GraphicsGridView.h"

#include "Host/KXGui/GridGeometry.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QScrollBar>

#include <algorithm>

namespace {

// Rows kept in the scene above and below those in view, so that scrolling a little finds them there.
constexpr int MarginRows = 2;

} // namespace

struct GraphicsGridView::Grid
{
    QList<QGraphicsItem*> items;
    QMultiHash<QString, QGraphicsItem*> byKey;
    QSet<QGraphicsItem*> keyless; // or had no key when they were looked at last: an item does not tell
    QSize spacing{0, 0};
    QList<QGraphicsItem*> shown; // those in the scene
    KXHost::IndexRange shownRange;
    bool bMoved = false;           // positions in the shown range changed
    bool bRelayoutPending = false; // posted to the event loop
    int iEventDepth = 0;           // events of the viewport being delivered
    QList<QGraphicsItem*> removed; // out of the grid, deleted when the event is through

    KXHost::GridGeometry Geometry(const QWidget* pViewport) const
    {
        const QGraphicsItem* pFirst = items.value(0);
        return {pFirst ? pFirst->boundingRect().size() : QSizeF(), spacing, qreal(pViewport->width())};
    }
    static QString KeyOf(const QGraphicsItem* pItem) { return pItem->data(KeyRole).toString(); }
    bool Contains(QGraphicsItem* pItem) const { return keyless.contains(pItem) || byKey.contains(KeyOf(pItem), pItem); }
    void FileKeys();
};

// Those that have got their key since.
void GraphicsGridView::Grid::FileKeys()
{
    for (auto it = keyless.begin(); it != keyless.end();) {
        if ((*it)->data(KeyRole).isValid()) {
            byKey.insert(KeyOf(*it), *it);
            it = keyless.erase(it);
        } else {
            ++it;
        }
    }
}

GraphicsGridView::GraphicsGridView(QWidget* pParent)
    : QGraphicsView(pParent)
    , m_pGrid(new Grid)
{
    auto* pScene = new QGraphicsScene(this);
    // The few items of the scene change all the time: an index would cost more than it finds.
    pScene->setItemIndexMethod(QGraphicsScene::NoIndex);
    pScene->setSceneRect(0, 0, 0, 0);
    setScene(pScene);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFrameShape(QFrame::NoFrame);
    setBackgroundBrush(Qt::NoBrush);
    viewport()->setAutoFillBackground(false);
}

GraphicsGridView::~GraphicsGridView()
{
    const QList<QGraphicsItem*> list = m_pGrid->items + m_pGrid->removed;
    m_pGrid.reset(new Grid); // the items say good-bye to an empty grid
    qDeleteAll(list);
}

void GraphicsGridView::AddItem(QGraphicsItem* pItem, bool bRefresh)
{
    if (!pItem || m_pGrid->Contains(pItem))
        return;
    m_pGrid->items.append(pItem);
    m_pGrid->keyless.insert(pItem);
    if (pItem->scene())
        pItem->scene()->removeItem(pItem);
    Watch(pItem);
    if (!bRefresh)
        return RelayoutLater();
    UpdateExtent();
    ShowItemsInView();
}

void GraphicsGridView::Watch(QGraphicsItem* pItem)
{
    if (const auto* pObject = dynamic_cast<QObject*>(pItem))
        connect(pObject, &QObject::destroyed, this, [this, pItem] { Forget(pItem); });
}

// Only the address of the item may be used.
void GraphicsGridView::Forget(QGraphicsItem* pItem)
{
    m_pGrid->removed.removeOne(pItem);
    if (!m_pGrid->items.removeOne(pItem))
        return;
    m_pGrid->keyless.remove(pItem);
    const auto key = std::find(m_pGrid->byKey.begin(), m_pGrid->byKey.end(), pItem);
    if (key != m_pGrid->byKey.end())
        m_pGrid->byKey.erase(key);
    m_pGrid->shown.removeOne(pItem);
    RelayoutLater();
}

QGraphicsItem* GraphicsGridView::GetItem(const QString& strKey) const
{
    m_pGrid->FileKeys();
    const QList<QGraphicsItem*> list = m_pGrid->byKey.values(strKey);
    if (list.size() < 2)
        return list.value(0);
    return *std::min_element(list.cbegin(), list.cend(),
                             [this](const QGraphicsItem* pLeft, const QGraphicsItem* pRight) {
                                 return IndexOfItem(pLeft) < IndexOfItem(pRight);
                             });
}

int GraphicsGridView::IndexOfItem(const QGraphicsItem* pItem) const
{
    return m_pGrid->items.indexOf(const_cast<QGraphicsItem*>(pItem));
}

void GraphicsGridView::DeleteItem(int iIndex)
{
    if (iIndex < 0 || iIndex >= m_pGrid->items.size())
        return;
    QGraphicsItem* pItem = m_pGrid->items.takeAt(iIndex);
    m_pGrid->keyless.remove(pItem);
    m_pGrid->byKey.remove(Grid::KeyOf(pItem), pItem);
    if (m_pGrid->shown.removeOne(pItem))
        scene()->removeItem(pItem);
    if (m_pGrid->iEventDepth > 0)
        m_pGrid->removed.append(pItem);
    else
        delete pItem;
    RelayoutLater(); // not at once: deleting many would drag each of the others through the scene
}

QList<QGraphicsItem*> GraphicsGridView::GetAllItem() const
{
    return m_pGrid->items;
}

void GraphicsGridView::GetItemsInViewPort(QList<QGraphicsItem*>& list, bool bPartly) const
{
    list.clear();
    const QRectF view(mapToScene(QPoint()), QSizeF(viewport()->size()));
    const KXHost::GridGeometry geometry = m_pGrid->Geometry(viewport());
    const auto range = geometry.RowsBetween(view.top(), view.bottom(), m_pGrid->items.size());
    for (int i = range.iFirst; i < range.iEnd; ++i) {
        const QRectF cell = geometry.CellAt(i);
        if (bPartly ? view.intersects(cell) : view.contains(cell))
            list.append(m_pGrid->items.at(i));
    }
}

void GraphicsGridView::SetVerticalSpacing(int iSpacing)
{
    m_pGrid->spacing.setHeight(qMax(0, iSpacing));
    Relayout();
}

void GraphicsGridView::SetHorizontalSpacing(int iSpacing)
{
    m_pGrid->spacing.setWidth(qMax(0, iSpacing));
    Relayout();
}

bool GraphicsGridView::viewportEvent(QEvent* pEvent)
{
    if (m_pGrid->bRelayoutPending && m_pGrid->iEventDepth == 0)
        Relayout();
    ++m_pGrid->iEventDepth;
    const bool bHandled = QGraphicsView::viewportEvent(pEvent);
    if (--m_pGrid->iEventDepth == 0) {
        while (!m_pGrid->removed.isEmpty())
            delete m_pGrid->removed.takeFirst();
    }
    return bHandled;
}

void GraphicsGridView::resizeEvent(QResizeEvent* pEvent)
{
    QGraphicsView::resizeEvent(pEvent);
    Relayout();
}

void GraphicsGridView::scrollContentsBy(int iDx, int iDy)
{
    // First the items, then the base: it tells the item that is now below the pointer.
    ShowItemsInView();
    QGraphicsView::scrollContentsBy(iDx, iDy);
}

void GraphicsGridView::keyPressEvent(QKeyEvent* pEvent)
{
    QGraphicsView::keyPressEvent(pEvent);
    if (pEvent->isAccepted())
        return;
    if (pEvent->key() != Qt::Key_Home && pEvent->key() != Qt::Key_End)
        return;
    pEvent->accept();
    verticalScrollBar()->triggerAction(pEvent->key() == Qt::Key_Home ? QAbstractSlider::SliderToMinimum
                                                                     : QAbstractSlider::SliderToMaximum);
}

void GraphicsGridView::Relayout()
{
    m_pGrid->bRelayoutPending = false;
    m_pGrid->bMoved = true;
    UpdateExtent();
    ShowItemsInView();
}

void GraphicsGridView::RelayoutLater()
{
    m_pGrid->bMoved = true;
    if (m_pGrid->bRelayoutPending)
        return;
    m_pGrid->bRelayoutPending = true;
    QMetaObject::invokeMethod(
        this, [this] { Relayout(); }, Qt::QueuedConnection);
}

// The scroll bars follow the scene's rectangle, wherever its items are.
void GraphicsGridView::UpdateExtent()
{
    QSizeF extent = m_pGrid->Geometry(viewport()).Extent(m_pGrid->items.size());
    // Without its bar there is no way back from a sideways scroll.
    if (horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff)
        extent.setWidth(qMin(extent.width(), qreal(viewport()->width())));
    scene()->setSceneRect(QRectF(QPointF(), extent));
}

void GraphicsGridView::ShowItemsInView()
{
    const KXHost::GridGeometry geometry = m_pGrid->Geometry(viewport());
    const qreal dMargin = MarginRows * geometry.RowHeight();
    const qreal dTop = verticalScrollBar()->value();
    const auto range =
        geometry.RowsBetween(dTop - dMargin, dTop + viewport()->height() + dMargin, m_pGrid->items.size());
    if (range == m_pGrid->shownRange && !m_pGrid->bMoved)
        return;
    m_pGrid->shownRange = range;
    m_pGrid->bMoved = false;
    QList<QGraphicsItem*> shown = m_pGrid->items.mid(range.iFirst, range.iEnd - range.iFirst);
    shown.swap(m_pGrid->shown);
    for (QGraphicsItem* pItem : qAsConst(shown)) {
        if (!m_pGrid->shown.contains(pItem))
            scene()->removeItem(pItem);
    }
    for (int i = 0; i < m_pGrid->shown.size(); ++i) {
        QGraphicsItem* pItem = m_pGrid->shown.at(i);
        pItem->setPos(geometry.CellAt(range.iFirst + i).topLeft() - pItem->boundingRect().topLeft());
        if (pItem->scene() != scene())
            scene()->addItem(pItem);
    }
}
