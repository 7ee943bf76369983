#include "DownloadWidget/ListAccess.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/ListAccessible.h"
#include "DownloadWidget/RowNews.h"
#include "KXGui/GraphicsGridView.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>

ListAccess::ListAccess(GraphicsGridView& view)
    : m_focus(view)
{
    view.setFocusPolicy(Qt::StrongFocus);
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
    ListAccessible::Register(m_focus);
}

ListAccess::~ListAccess()
{
    ListAccessible::Unregister(m_focus);
}

void ListAccess::OnRowAdded(DownloadItem& row)
{
    m_focus.Rows().Forget();
    RowNews::Added(row);
}

void ListAccess::OnRowGoes(DownloadItem& row)
{
    RowNews::Goes(row);
    m_focus.OnRowGoes(row);
}

bool ListAccess::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == &m_focus.View())
        return FilterViewEvent(*pEvent);
    if (pEvent->type() != QEvent::MouseButtonPress && pEvent->type() != QEvent::MouseButtonDblClick)
        return false;
    return FilterPress(static_cast<const QMouseEvent&>(*pEvent));
}

bool ListAccess::FilterViewEvent(QEvent& event)
{
    switch (event.type()) {
    case QEvent::FocusIn:
        m_focus.OnFocusIn(static_cast<QFocusEvent&>(event).reason());
        return false;
    case QEvent::FocusOut:
        m_focus.OnFocusOut();
        return false;
    case QEvent::ShortcutOverride: // before a shortcut of the host's takes the key
    case QEvent::KeyPress:
        if (!RowFocus::Takes(static_cast<QKeyEvent&>(event)))
            return false;
        event.accept();
        if (event.type() == QEvent::KeyPress)
            m_focus.OnKey(static_cast<QKeyEvent&>(event));
        return true;
    default:
        return false;
    }
}

// True keeps the press from the rows.
bool ListAccess::FilterPress(const QMouseEvent& press)
{
    DownloadItem* pRow = m_focus.RowAt(press.pos());
    const QString strRecordId = pRow ? pRow->Record()->strRecordId : QString();
    if (press.button() == Qt::LeftButton && m_guard.IsMeantForAnother(press, strRecordId))
        return true;
    m_focus.OnPress(pRow);
    return false;
}
