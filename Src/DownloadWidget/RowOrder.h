#pragma once

#include <QtCore/QList>

class DownloadItem;
class GraphicsGridView;
class QGraphicsItem;

// The rows of a view by their position. A view gives its rows only all at once, so they are kept until one comes or
// goes; who never asks for a row by position keeps nothing.
class RowOrder
{
public:
    explicit RowOrder(const GraphicsGridView& view)
        : m_view(view)
    {}

    int Count() const { return Rows().size(); }
    // Null for a position outside the list.
    DownloadItem* At(int iIndex) const;
    // -1 when it is not in the view.
    int IndexOf(const DownloadItem* pRow) const;
    // A row has come, or one goes.
    void Forget();

private:
    const QList<QGraphicsItem*>& Rows() const;

    const GraphicsGridView& m_view;
    mutable QList<QGraphicsItem*> m_rows;
    mutable bool m_bKnown = false;
};
