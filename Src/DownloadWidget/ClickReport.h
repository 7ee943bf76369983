#pragma once

#include <QtCore/QEvent>
#include <QtCore/QString>

// Reports a click on one of an object's buttons to the client's usage log. `strButton` is the button's name; the names
// of `pOwner` and its ancestors are appended to it. Thread: the GUI thread.
void SendClickReport(const QObject* pOwner, const QString& strButton, QEvent::Type type, Qt::MouseButtons buttons);
