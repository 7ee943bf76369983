#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

// Where a request may go, and with what.
namespace KXHost {

bool IsLoopback(const QUrl& url);
bool IsSameOrigin(const QUrl& one, const QUrl& other);
// "host" or, with a port of its own, "host:port".
QString HostText(const QUrl& url);
// Why a redirect must not be followed; empty when nothing speaks against it.
QString RedirectProblem(const QUrl& from, const QUrl& to);
// Whether a password may be sent there so that anyone on the way can read it.
bool MaySendReadable(const QUrl& url, bool bInsecure);

} // namespace KXHost
