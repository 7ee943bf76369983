#pragma once

#include <QtCore/QPoint>
#include <QtCore/QString>

class QMouseEvent;

// Tells presses apart that were aimed at another row. A second press that follows quickly in the same place was meant
// for the row that was there at the first: when that one has gone and another has moved up, it must not go, too.
class PressGuard
{
public:
    // To be asked once at every press of the left button, with the id of the row under the pointer (none: empty).
    bool IsMeantForAnother(const QMouseEvent& press, const QString& strRecordId);

private:
    QPoint m_pos; // of the last press
    ulong m_uTime = 0;
    QString m_strRecordId; // of the row for which it was meant
};
