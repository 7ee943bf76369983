#pragma once

#include "Host/Http/HttpChallenge.h"

#include <QtCore/QString>

namespace KXHost {

// Digest authentication with MD5 or SHA-256, also their "-sess" forms, for a GET. Computed here and not by libcurl,
// whose Windows form leaves it to the system: so the scheme is the same everywhere, and names and passwords are UTF-8.

// The best of the challenges that can be answered; null when there is none.
const HttpChallenge* ChooseDigest(const QList<HttpChallenge>& challenges);
bool IsStale(const HttpChallenge& challenge);

struct DigestCredentials
{
    QByteArray strUser; // UTF-8
    QByteArray strPassword;
};

// The value of the Authorization field. `strTarget` is path and query as they are sent; `strClientNonce` is new each
// time.
QByteArray DigestAnswer(const HttpChallenge& challenge, const DigestCredentials& credentials,
                        const QByteArray& strTarget, const QByteArray& strClientNonce);

} // namespace KXHost
