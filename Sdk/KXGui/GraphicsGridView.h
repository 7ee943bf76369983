#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtWidgets/QGraphicsView>

class QGraphicsItem;

// A scrolling grid of graphics items of one size (that of the first), filled row by row. There are as many columns as
// fit the viewport, at least one. Only items in view, and some beside them, are in the scene; the others have none.
//
// Thread: the GUI thread. Ownership: the view owns the items added to it. One that is a QObject too may be deleted by
// somebody else and leaves the view by that; any other is deleted through the view only. Items are keyed by the text
// that each holds under data key 99, which is set before or after it is added and then stays.
class KX_HOST_EXPORT GraphicsGridView : public QGraphicsView
{
    Q_OBJECT

public:
    static constexpr int KeyRole = 99;

    explicit GraphicsGridView(QWidget* pParent = nullptr);
    ~GraphicsGridView() override;

    // Appends an item; null and an item that is in the view already are ignored. `bRefresh` lays the grid out at
    // once, otherwise it is laid out before the view gets its next event.
    void AddItem(QGraphicsItem* pItem, bool bRefresh);
    // The item of that key (the first of several), or null.
    QGraphicsItem* GetItem(const QString& strKey) const;
    // Position of an item, -1 when it is not in the view.
    int IndexOfItem(const QGraphicsItem* pItem) const;
    // Removes and deletes the item at that position; a position outside the grid is ignored. The others close up
    // before the view gets its next event. Called while the view delivers an event to an item, it removes at once and
    // deletes when the event has been delivered.
    void DeleteItem(int iIndex);
    // All items in their order.
    QList<QGraphicsItem*> GetAllItem() const;
    // Puts the items in view into `list`, in place of what it held; `bPartly` takes those in that are only partly in
    // view.
    void GetItemsInViewPort(QList<QGraphicsItem*>& list, bool bPartly) const;
    // Pixels between neighbours, at least 0; 0 until set.
    void SetVerticalSpacing(int iSpacing);
    void SetHorizontalSpacing(int iSpacing);

protected:
    bool viewportEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void scrollContentsBy(int iDx, int iDy) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    struct Grid;

    void Watch(QGraphicsItem* pItem);
    void Forget(QGraphicsItem* pItem);
    void Relayout();
    void RelayoutLater();
    void UpdateExtent();
    void ShowItemsInView();

    QScopedPointer<Grid> m_pGrid;
};
