#pragma once

#include <QtCore/QEvent>
#include <QtCore/QString>

class QObject;

// What stands behind a button's name in a report: the name of its owner and of each of the owner's ancestors, after a
// dot each.
QString ElementPath(const QObject* pOwner);

// Reports a click to the client's usage log. `strElement` is the button's name and its path; `type` and `buttons` are
// those of the event that clicked. Thread: the GUI thread.
void SendClickReport(const QString& strElement, QEvent::Type type, Qt::MouseButtons buttons);
