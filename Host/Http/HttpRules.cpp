#include "Host/Http/HttpRules.h"

#include <QtCore/QRegularExpression>

namespace KXHost {

namespace {

bool IsHttps(const QUrl& url)
{
    return url.scheme() == QLatin1String("https");
}

int PortOf(const QUrl& url)
{
    return url.port(IsHttps(url) ? 443 : 80);
}

} // namespace

bool IsLoopback(const QUrl& url)
{
    static const QRegularExpression ipv4(QStringLiteral("^127(?:\\.\\d{1,3}){3}$"));
    const QString strHost = url.host();
    return strHost == QLatin1String("localhost") || strHost == QLatin1String("::1") || ipv4.match(strHost).hasMatch();
}

bool IsSameOrigin(const QUrl& one, const QUrl& other)
{
    return one.scheme() == other.scheme() && one.host() == other.host() && PortOf(one) == PortOf(other);
}

QString HostText(const QUrl& url)
{
    QString strHost = url.host();
    if (strHost.contains(QLatin1Char(':')))
        strHost = QLatin1Char('[') + strHost + QLatin1Char(']');
    return url.port() < 0 ? strHost : QStringLiteral("%1:%2").arg(strHost).arg(url.port());
}

QString RedirectProblem(const QUrl& from, const QUrl& to)
{
    if (!to.isValid() || to.host().isEmpty())
        return QStringLiteral("%1 redirects to what is no address").arg(HostText(from));
    if (to.scheme() != QLatin1String("http") && !IsHttps(to))
        return QStringLiteral("%1 redirects to %2, which is neither http nor https").arg(HostText(from), to.scheme());
    if (IsHttps(from) && !IsHttps(to))
        return QStringLiteral("%1 redirects from https to http, where anyone could read along").arg(HostText(from));
    return QString();
}

bool MaySendReadable(const QUrl& url, bool bInsecure)
{
    return bInsecure || IsHttps(url) || IsLoopback(url);
}

} // namespace KXHost
