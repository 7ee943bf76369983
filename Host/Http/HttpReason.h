#pragma once

#include "Host/Http/HttpChallenge.h"
#include "Host/Http/HttpTypes.h"

#include <curl/curl.h>

// Why a request failed, in one sentence for people: what happened and, where it helps, what to do.
namespace KXHost {

// What curl knows of a request that it gave up.
struct CurlFailure
{
    CURLcode code = CURLE_OK;
    long lVerifyResult = 0; // of the server's certificate, where the TLS library gives one
    QString strDetail;      // curl's own words
    qint64 lReceived = 0;   // bytes of the body
    qint64 lLength = -1;    // of the body, when it was said
};

QString ReasonOf(const QUrl& url, const CurlFailure& failure);
// For an answer that is neither 200 nor 401.
QString ReasonOfStatus(const QUrl& url, int iStatus);
// Why no credentials were given to a server that asks for them, or what it thinks of those that it got.
QString ReasonOfRefusal(const HttpRequest& request, const QUrl& url, const QList<HttpChallenge>& challenges,
                        bool bCredentialsGiven);

} // namespace KXHost
