#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

namespace KXHost {

// Positions `iFirst` to `iEnd` - 1.
struct IndexRange
{
    int iFirst = 0;
    int iEnd = 0;

    bool operator==(const IndexRange& other) const { return iFirst == other.iFirst && iEnd == other.iEnd; }
};

// Where the cells of a grid lie, in pixels from its top left corner.
class GridGeometry
{
public:
    // `itemSize` is taken as at least one pixel each way.
    GridGeometry(const QSizeF& itemSize, const QSize& spacing, qreal dWidth);

    QRectF CellAt(int iIndex) const;
    QSizeF Extent(int iCount) const;
    // The first `iCount` cells whose row overlaps the stripe from `dTop` down to `dBottom`.
    IndexRange RowsBetween(qreal dTop, qreal dBottom, int iCount) const;
    qreal RowHeight() const { return m_itemSize.height() + m_iVerticalSpacing; }

private:
    qreal ColumnWidth() const { return m_itemSize.width() + m_iHorizontalSpacing; }

    QSizeF m_itemSize;
    int m_iHorizontalSpacing;
    int m_iVerticalSpacing;
    int m_iColumns;
};

} // namespace KXHost
