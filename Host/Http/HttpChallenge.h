#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>

namespace KXHost {

// One way of authentication that a server offers.
struct HttpChallenge
{
    QByteArray strScheme;                    // lower case
    QMap<QByteArray, QByteArray> parameters; // names in lower case; values without quotes
};

// All challenges of the WWW-Authenticate fields: a field may hold several. What cannot be read is left out.
QList<HttpChallenge> ReadChallenges(const QList<QByteArray>& fields);

} // namespace KXHost
