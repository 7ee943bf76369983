#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <chrono>
#include <cstddef>

namespace KXHost {

enum class Auth {
    None,
    Basic,
    Digest,
};

using HttpClock = std::chrono::steady_clock;

// One GET. Credentials are given when the server asks for them by the scheme named here, and to the URL's own server
// only.
struct HttpRequest
{
    QUrl url; // http or https
    Auth auth = Auth::None;
    QString strUser;
    QString strPassword;
    QString strWhose;           // whose password it is, as reasons call it: "device 12"
    bool bInsecure = false;     // a basic password may go over plain http to another machine
    int iRetries = 0;           // for a busy server and for connections that end without an answer
    qint64 lBytesPerSecond = 0; // 0: as fast as it comes
    int iStallTimeoutMs = 30000;
    int iTimeoutMs = 0; // for all of it; 0: none
};

// What the head of a good answer (status 200, not compressed) says of the body.
struct HttpHead
{
    QString strHost;     // that sends it
    qint64 lLength = -1; // -1 when it is not said
    bool bChunked = false;
    QByteArray strType; // lower case, without its parameters; empty when it is not said
};

enum class HttpResult {
    Whole, // every byte was handed over
    Failed,
    Refused, // by the server: credentials
    GivenUp, // the receiver wanted no more
    Stopped,
};

struct HttpEnd
{
    HttpResult result = HttpResult::Whole;
    QString strReason; // one sentence for people when it failed or was refused
};

// Hears of one request. Thread: that of the client that runs the request.
class HttpReceiver
{
public:
    virtual ~HttpReceiver() = default;

    // Both give false to end the request here.
    virtual bool OnHead(const HttpHead& head) = 0;
    virtual bool OnData(const char* pData, std::size_t uSize) = 0;
    // Once, and the last call.
    virtual void OnEnd(const HttpEnd& end) = 0;

    // When OnDue is to be called, even if nothing arrives.
    virtual HttpClock::time_point Due() const { return HttpClock::time_point::max(); }
    virtual void OnDue() {}
};

} // namespace KXHost
