#include "Host/KXGui/GridGeometry.h"

#include <QtCore/QtMath>

namespace KXHost {

GridGeometry::GridGeometry(const QSizeF& itemSize, const QSize& spacing, qreal dWidth)
    : m_itemSize(itemSize.expandedTo(QSizeF(1, 1)))
    , m_iHorizontalSpacing(spacing.width())
    , m_iVerticalSpacing(spacing.height())
    , m_iColumns(qMax(1, qFloor((dWidth + m_iHorizontalSpacing) / ColumnWidth())))
{}

QRectF GridGeometry::CellAt(int iIndex) const
{
    const int iRow = iIndex / m_iColumns;
    const QPointF topLeft((iIndex % m_iColumns) * ColumnWidth(), iRow * RowHeight());
    return QRectF(topLeft, m_itemSize);
}

QSizeF GridGeometry::Extent(int iCount) const
{
    if (iCount == 0)
        return QSizeF();
    const int iRows = (iCount - 1) / m_iColumns + 1;
    return QSizeF(qMin(iCount, m_iColumns) * ColumnWidth() - m_iHorizontalSpacing,
                  iRows * RowHeight() - m_iVerticalSpacing);
}

IndexRange GridGeometry::RowsBetween(qreal dTop, qreal dBottom, int iCount) const
{
    const int iRows = (iCount + m_iColumns - 1) / m_iColumns;
    // A row is above the stripe when its lower edge is: the spacing below it does not count.
    const int iFirstRow = qBound(0, qFloor((dTop - m_itemSize.height()) / RowHeight()) + 1, iRows);
    const int iEndRow = qBound(iFirstRow, qCeil(dBottom / RowHeight()), iRows);
    return {qMin(iFirstRow * m_iColumns, iCount), qMin(iEndRow * m_iColumns, iCount)};
}

} // namespace KXHost
