#include "DownloadWidget/RowAccessible.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/RowFocus.h"
#include "DownloadWidget/RowLook.h"
#include "KXGui/GraphicsGridView.h"
#include "Model/NameText.h"

#include <QtGui/QKeySequence>

#include <utility>

namespace {

struct Action
{
    const char* pszName;
    const char* pszTextKey;
};
constexpr Action Pause{"pause", QT_TRANSLATE_NOOP("DownloadItem", "row_action_pause")};
constexpr Action Resume{"resume", QT_TRANSLATE_NOOP("DownloadItem", "row_action_resume")};
constexpr Action Retry{"retry", QT_TRANSLATE_NOOP("DownloadItem", "row_action_retry")};
constexpr Action Delete{"delete", QT_TRANSLATE_NOOP("DownloadItem", "row_action_delete")};

// What the state button offers.
const Action& StateAction(const DownloadItem& row)
{
    switch (RowLook::StateIcon(row.State())) {
    case RowLook::IconRetry:
        return Retry;
    case RowLook::IconResume:
        return Resume;
    default:
        return Pause;
    }
}

bool Is(const QString& strAction, const Action& action)
{
    return strAction == QLatin1String(action.pszName);
}

} // namespace

RowAccessible::RowAccessible(DownloadItem& row, RowFocus& list)
    : QAccessibleObject(&row)
    , m_pList(&list)
{
    row.SetAskedFor();
}

DownloadItem& RowAccessible::Row() const
{
    return *static_cast<DownloadItem*>(object());
}

bool RowAccessible::TakeNewValue()
{
    const int iOld = std::exchange(m_iTold, Row().ShownPercent());
    return iOld != m_iTold;
}

QAccessibleInterface* RowAccessible::parent() const
{
    return m_pList ? QAccessible::queryAccessibleInterface(&m_pList->View()) : nullptr;
}

QAccessibleInterface* RowAccessible::child(int) const
{
    return nullptr;
}

int RowAccessible::childCount() const
{
    return 0;
}

int RowAccessible::indexOfChild(const QAccessibleInterface*) const
{
    return -1;
}

QString RowAccessible::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return NameText::Shown(Row().Record()->strFileName);
    case QAccessible::Description:
        return Row().StateText();
    case QAccessible::Value:
        return Row().State() == RowState::Downloading ? Row().StateText() : QString();
    default:
        return QString();
    }
}

// On the screen; empty far outside the view.
QRect RowAccessible::rect() const
{
    if (!m_pList || !Row().scene())
        return QRect();
    const GraphicsGridView& view = m_pList->View();
    const QPoint place = view.mapFromScene(Row().scenePos());
    return QRect(view.viewport()->mapToGlobal(place), Row().boundingRect().size().toSize());
}

QAccessible::Role RowAccessible::role() const
{
    return QAccessible::ListItem;
}

QAccessible::State RowAccessible::state() const
{
    QAccessible::State state;
    if (!m_pList) {
        state.invalid = true;
        return state;
    }
    const QWidget* pViewport = m_pList->View().viewport();
    state.focusable = true;
    state.focused = m_pList->IsOn(Row());
    state.invisible = !pViewport->isVisible();
    state.offscreen = !rect().intersects(QRect(pViewport->mapToGlobal(QPoint()), pViewport->size()));
    return state;
}

void* RowAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

QStringList RowAccessible::actionNames() const
{
    return {QLatin1String(StateAction(Row()).pszName), QLatin1String(Delete.pszName), setFocusAction()};
}

QString RowAccessible::localizedActionName(const QString& strAction) const
{
    for (const Action& action : {Pause, Resume, Retry, Delete}) {
        if (Is(strAction, action))
            return DownloadItem::tr(action.pszTextKey);
    }
    return QAccessibleActionInterface::localizedActionName(strAction);
}

// The row, and this with it, may be gone when a button has done its work.
void RowAccessible::doAction(const QString& strAction)
{
    if (!m_pList)
        return;
    if (Is(strAction, StateAction(Row()))) {
        Row().PressStateButton(QEvent::None, Qt::NoButton);
    } else if (Is(strAction, Delete)) {
        Row().PressDeleteButton(QEvent::None, Qt::NoButton);
    } else if (strAction == setFocusAction()) {
        m_pList->View().setFocus(Qt::OtherFocusReason);
        m_pList->MoveTo(Row());
    }
}

QStringList RowAccessible::keyBindingsForAction(const QString& strAction) const
{
    if (Is(strAction, StateAction(Row())))
        return {QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText)};
    if (Is(strAction, Delete))
        return {QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText)};
    return QStringList();
}

QVariant RowAccessible::currentValue() const
{
    return Row().ShownPercent();
}

// Progress is only shown.
void RowAccessible::setCurrentValue(const QVariant&)
{}

QVariant RowAccessible::minimumValue() const
{
    return 0;
}

QVariant RowAccessible::maximumValue() const
{
    return 100;
}

QVariant RowAccessible::minimumStepSize() const
{
    return 1;
}
