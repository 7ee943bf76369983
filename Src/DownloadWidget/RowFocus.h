#pragma once

#include "DownloadWidget/RowOrder.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <optional>

class DownloadItem;
class GraphicsGridView;
class QKeyEvent;

// The row on which the keyboard acts, remembered by its record id: rows above it may come and go. It has a frame while
// the list has the focus and was last used by the keyboard; Space and Delete press the buttons of a row that shows its
// frame, and of no other, nor of one that has only just got it because the row before it ended.
//
// Thread: the GUI thread. The view outlives this.
class RowFocus : public QObject
{
public:
    explicit RowFocus(GraphicsGridView& view);

    GraphicsGridView& View() const { return m_view; }
    RowOrder& Rows() { return m_rows; }
    // The row, or null.
    DownloadItem* Current() const;
    bool IsOn(const DownloadItem& row) const;
    // The row at a point of the view's viewport, or null.
    DownloadItem* RowAt(const QPoint& pos) const;
    // Makes a row the current one and brings it into view.
    void MoveTo(DownloadItem& row);

    // Whether the list does something with that key.
    static bool Takes(const QKeyEvent& event);
    void OnKey(const QKeyEvent& event);
    void OnFocusIn(Qt::FocusReason reason);
    void OnFocusOut();
    // The pointer pressed on a row, or beside all.
    void OnPress(DownloadItem* pRow);
    // That row is about to be removed.
    void OnRowGoes(const DownloadItem& row);

private:
    void Press(DownloadItem& row, const QKeyEvent& event);
    void SetCurrent(DownloadItem* pRow);
    void ShowFrame();
    void ScrollTo(const DownloadItem& row);
    void ScrollLater();
    bool IsInView(const DownloadItem& row) const;
    DownloadItem* FirstInView() const;
    DownloadItem* Target(int iKey) const;
    int RowsInPage() const;

    GraphicsGridView& m_view;
    RowOrder m_rows;
    std::optional<QString> m_recordId;
    QPointer<DownloadItem> m_pFramed;
    bool m_bByKeys = false; // the last input was by the keyboard
    bool m_bPressing = false;
    bool m_bScrollPending = false;
    QDeadlineTimer m_meantForAnother; // until then, a press was aimed at the row that ended
};
