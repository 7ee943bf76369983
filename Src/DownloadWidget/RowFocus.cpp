#include "DownloadWidget/RowFocus.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/RowNews.h"
#include "KXGui/GraphicsGridView.h"

#include <QtCore/QScopedValueRollback>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>

#include <algorithm>

RowFocus::RowFocus(GraphicsGridView& view)
    : m_view(view)
    , m_rows(view)
{}

DownloadItem* RowFocus::Current() const
{
    return m_recordId ? dynamic_cast<DownloadItem*>(m_view.GetItem(*m_recordId)) : nullptr;
}

bool RowFocus::IsOn(const DownloadItem& row) const
{
    return m_view.hasFocus() && Current() == &row;
}

DownloadItem* RowFocus::RowAt(const QPoint& pos) const
{
    QGraphicsItem* pItem = m_view.itemAt(pos);
    return pItem ? dynamic_cast<DownloadItem*>(pItem->topLevelItem()) : nullptr;
}

void RowFocus::MoveTo(DownloadItem& row)
{
    SetCurrent(&row);
    ScrollTo(row);
}

void RowFocus::SetCurrent(DownloadItem* pRow)
{
    const DownloadItem* pOld = Current();
    m_recordId.reset();
    if (pRow)
        m_recordId = pRow->Record()->strRecordId;
    ShowFrame();
    if (pRow && pRow != pOld && m_view.hasFocus())
        RowNews::Focused(*pRow);
}

void RowFocus::ShowFrame()
{
    DownloadItem* pRow = m_bByKeys && m_view.hasFocus() ? Current() : nullptr;
    if (m_pFramed && m_pFramed != pRow)
        m_pFramed->SetFocusFrame(false);
    m_pFramed = pRow;
    if (pRow)
        pRow->SetFocusFrame(true);
}

bool RowFocus::Takes(const QKeyEvent& event)
{
    if (event.modifiers() & ~Qt::KeypadModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Space:
    case Qt::Key_Delete:
        return true;
    default:
        return false;
    }
}

// A key that is held down moves on and on, but presses a button once.
void RowFocus::OnKey(const QKeyEvent& event)
{
    const bool bFramed = m_pFramed;
    m_bByKeys = true;
    DownloadItem* pRow = Current();
    const bool bPresses = event.key() == Qt::Key_Space || event.key() == Qt::Key_Delete;
    if (!pRow || (bPresses && !bFramed)) {
        pRow = pRow ? pRow : FirstInView();
        if (pRow)
            MoveTo(*pRow);
    } else if (!bPresses) {
        m_meantForAnother = QDeadlineTimer();
        MoveTo(*Target(event.key()));
    } else if (!event.isAutoRepeat() && m_meantForAnother.hasExpired()) {
        Press(*pRow, event);
    }
}

void RowFocus::Press(DownloadItem& row, const QKeyEvent& event)
{
    const QScopedValueRollback<bool> pressing(m_bPressing, true);
    ScrollTo(row);
    if (event.key() == Qt::Key_Space)
        row.PressStateButton(event.type(), Qt::NoButton);
    else
        row.PressDeleteButton(event.type(), Qt::NoButton);
}

DownloadItem* RowFocus::Target(int iKey) const
{
    const int iLast = m_rows.Count() - 1;
    int iRow = m_rows.IndexOf(Current());
    if (iKey == Qt::Key_Home)
        iRow = 0;
    else if (iKey == Qt::Key_End)
        iRow = iLast;
    else if (iKey == Qt::Key_Up || iKey == Qt::Key_PageUp)
        iRow -= iKey == Qt::Key_Up ? 1 : RowsInPage();
    else
        iRow += iKey == Qt::Key_Down ? 1 : RowsInPage();
    return m_rows.At(qBound(0, iRow, iLast));
}

int RowFocus::RowsInPage() const
{
    const DownloadItem* pRow = Current();
    return qMax(1, static_cast<int>(m_view.viewport()->height() / pRow->boundingRect().height()));
}

void RowFocus::OnFocusIn(Qt::FocusReason reason)
{
    if (reason == Qt::MouseFocusReason)
        m_bByKeys = false;
    else if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        m_bByKeys = true;
    DownloadItem* pRow = Current() ? Current() : FirstInView();
    if (!pRow)
        return;
    if (m_bByKeys)
        MoveTo(*pRow);
    // The system is told of the view itself when this event is through.
    QTimer::singleShot(0, this, [this] {
        if (DownloadItem* pCurrent = m_view.hasFocus() ? Current() : nullptr)
            RowNews::Focused(*pCurrent);
    });
}

void RowFocus::OnFocusOut()
{
    ShowFrame();
}

void RowFocus::OnPress(DownloadItem* pRow)
{
    m_bByKeys = false;
    SetCurrent(pRow ? pRow : Current());
}

void RowFocus::OnRowGoes(const DownloadItem& row)
{
    const DownloadItem* pCurrent = Current();
    if (!pCurrent)
        return m_rows.Forget();
    if (m_pFramed && (pCurrent == &row || IsInView(*pCurrent)))
        ScrollLater();
    if (pCurrent == &row) {
        const int iRow = m_rows.IndexOf(&row);
        DownloadItem* pNext = m_rows.At(iRow + 1);
        SetCurrent(pNext ? pNext : m_rows.At(iRow - 1));
        if (!m_bPressing)
            m_meantForAnother.setRemainingTime(QApplication::doubleClickInterval());
    }
    m_rows.Forget();
}

// When the others have closed up.
void RowFocus::ScrollLater()
{
    if (m_bScrollPending)
        return;
    m_bScrollPending = true;
    QTimer::singleShot(0, this, [this] {
        m_bScrollPending = false;
        if (const DownloadItem* pRow = Current())
            ScrollTo(*pRow);
    });
}

// A row far away is in no scene. Its place follows from one in view: the panel's rows stand one below the other
// without a gap. The width does not count, so that nothing moves sideways.
void RowFocus::ScrollTo(const DownloadItem& row)
{
    const DownloadItem* pSeen = FirstInView();
    if (!pSeen)
        return;
    QRectF place = pSeen->sceneBoundingRect();
    place.translate(0, (m_rows.IndexOf(&row) - m_rows.IndexOf(pSeen)) * place.height());
    m_view.ensureVisible(QRectF(m_view.mapToScene(QPoint()).x(), place.top(), 1, place.height()), 0, 0);
}

bool RowFocus::IsInView(const DownloadItem& row) const
{
    QList<QGraphicsItem*> seen;
    m_view.GetItemsInViewPort(seen, true);
    return std::any_of(seen.cbegin(), seen.cend(), [&row](const QGraphicsItem* pItem) { return pItem == &row; });
}

DownloadItem* RowFocus::FirstInView() const
{
    QList<QGraphicsItem*> seen;
    m_view.GetItemsInViewPort(seen, true);
    return static_cast<DownloadItem*>(seen.value(0));
}
