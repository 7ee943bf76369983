#include "DownloadWidget/PressGuard.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

namespace {

// No two rows have a button that near to each other.
constexpr int ButtonSize = 30;

} // namespace

// A press without a time was made by a program, which knows what it presses.
bool PressGuard::IsMeantForAnother(const QMouseEvent& press, const QString& strRecordId)
{
    const ulong uInterval = static_cast<ulong>(QApplication::doubleClickInterval());
    const bool bQuick = press.timestamp() && m_uTime && press.timestamp() - m_uTime <= uInterval;
    const QPoint distance = press.pos() - m_pos;
    const bool bSamePlace = qAbs(distance.x()) < ButtonSize && qAbs(distance.y()) < ButtonSize;
    m_pos = press.pos();
    m_uTime = press.timestamp();
    if (bQuick && bSamePlace && strRecordId != m_strRecordId)
        return true;
    m_strRecordId = strRecordId;
    return false;
}
