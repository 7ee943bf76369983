#pragma once

#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtCore/QStringList>

class GraphicsGridView;
class QWidget;

namespace KXClient {

// What the host sees of the panel's rows: they are items of the host's own grid, keyed by the record id.
// Thread: the GUI thread.
class PanelRows
{
public:
    // `pPanel` outlives this. Without a grid in it there are no rows.
    explicit PanelRows(QWidget* pPanel);

    bool Has(const QString& strRecordId) const;
    // The record ids of the rows that are wholly in view, from the top.
    QStringList InView() const;
    // A part of a row, given in the row's coordinates, in those of the panel.
    QRect PlaceOf(const QString& strRecordId, const QRect& part) const;
    // Presses and releases the left mouse button at a point of a row and moves the pointer off the buttons. False when
    // the row is not in view.
    bool Click(const QString& strRecordId, const QPoint& point) const;

private:
    QWidget* m_pPanel;
    GraphicsGridView* m_pGrid;
};

} // namespace KXClient
