#pragma once

#include "Host/Site/SiteSources.h"

#include <QtCore/QByteArray>

#include <chrono>
#include <deque>
#include <limits>
#include <mutex>

namespace KXHost {

// Checks the credentials of a request: HTTP Basic, and HTTP Digest (MD5, qop "auth") with nonces of its own. Thread:
// any.
class SiteAuthenticator
{
public:
    struct Request
    {
        QByteArray method;
        QByteArray target;        // path and query as the request line has them
        QByteArray authorization; // value of the header; empty when there is none
    };

    // True when the request may pass. Otherwise `challenge` is the value for WWW-Authenticate. A nonce is good for
    // five minutes and `lNonceUses` requests.
    bool Check(SiteAuth auth, const Request& request, const QByteArray& password, QByteArray& challenge,
               qint64 lNonceUses = std::numeric_limits<qint64>::max());
    // A refusal whatever the credentials.
    QByteArray Challenge(SiteAuth auth);

private:
    using Clock = std::chrono::steady_clock;

    struct Nonce
    {
        QByteArray text;
        Clock::time_point issued;
        qint64 lUses = 0;
    };

    QByteArray DigestChallenge(bool bStale);
    bool UseNonce(const QByteArray& text, qint64 lMostUses);

    std::mutex m_mutex;
    std::deque<Nonce> m_nonces; // oldest first
};

} // namespace KXHost
