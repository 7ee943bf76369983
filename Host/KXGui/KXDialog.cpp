#include "KXGui/KXDialog.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

namespace KXGui {

KXDialog::KXDialog(QWidget* pParent, int iStyle)
    : QDialog(pParent)
    , m_bFrameless(iStyle == 1)
    , m_bMovable(m_bFrameless)
{
    if (m_bFrameless)
        setWindowFlag(Qt::FramelessWindowHint);
}

KXDialog::~KXDialog() = default;

void KXDialog::setDialogMovable(bool bMovable, const QRect& area)
{
    m_bMovable = bMovable;
    m_movableArea = area;
    m_bDragging = false;
}

void KXDialog::paintEvent(QPaintEvent* pEvent)
{
    QDialog::paintEvent(pEvent);
    if (!m_bFrameless)
        return;
    // Qt leaves the background of a translucent window to the window.
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void KXDialog::mousePressEvent(QMouseEvent* pEvent)
{
    QDialog::mousePressEvent(pEvent);
    const bool bInside = m_movableArea.isEmpty() || m_movableArea.contains(pEvent->pos());
    if (!m_bMovable || !bInside || pEvent->button() != Qt::LeftButton)
        return;
    m_bDragging = true;
    m_pressOffset = pEvent->globalPos() - pos();
    pEvent->accept();
}

void KXDialog::mouseMoveEvent(QMouseEvent* pEvent)
{
    QDialog::mouseMoveEvent(pEvent);
    if (!m_bDragging || !(pEvent->buttons() & Qt::LeftButton))
        return;
    move(pEvent->globalPos() - m_pressOffset);
    pEvent->accept();
}

void KXDialog::mouseReleaseEvent(QMouseEvent* pEvent)
{
    QDialog::mouseReleaseEvent(pEvent);
    if (pEvent->button() == Qt::LeftButton)
        m_bDragging = false;
}

} // namespace KXGui
