#include "Host/Http/HttpReason.h"

#include "Host/Http/HttpRules.h"

#include <QtCore/QStringList>

namespace KXHost {

namespace {

constexpr struct
{
    CURLcode code;
    const char* pszReason;
} FailureReasons[] = {
    {CURLE_COULDNT_RESOLVE_HOST, "there is no machine of the name {host}; check the address"},
    {CURLE_COULDNT_RESOLVE_PROXY, "the proxy for {host} is not found; check the proxy's name"},
    {CURLE_COULDNT_CONNECT, "nothing answers at {host}; check the address and that the server runs"},
    {CURLE_SSL_CONNECT_ERROR, "{host} does not speak https as it should ({detail})"},
    {CURLE_UNSUPPORTED_PROTOCOL, "{host} does not answer in HTTP as it should ({detail})"},
    {CURLE_WEIRD_SERVER_REPLY, "{host} does not answer in HTTP as it should ({detail})"},
    {CURLE_GOT_NOTHING, "{host} closed the connection without an answer"},
};

// What is wrong with a certificate: by OpenSSL's verify result, or by the words of Schannel.
constexpr struct
{
    long lVerifyResult;
    const char* pszWords;
    const char* pszReason;
} CertificateReasons[] = {
    {9, "NOT_YET_VALID", "the certificate of %1 is not valid yet; check this machine's clock"},
    {10, "EXPIRED", "the certificate of %1 has expired; its owner must renew it"},
    {23, "REVOKED", "the certificate of %1 was revoked; its owner must replace it"},
    {18, "UNTRUSTED_ROOT", "the certificate of %1 is not signed by a known authority; install that of its owner"},
    {19, "UNTRUSTED_ROOT", "the certificate of %1 is not signed by a known authority; install that of its owner"},
    {20, "UNTRUSTED_ROOT", "the certificate of %1 is not signed by a known authority; install that of its owner"},
    {21, "UNTRUSTED_ROOT", "the certificate of %1 is not signed by a known authority; install that of its owner"},
    {62, "WRONG_PRINCIPAL", "the certificate of %1 is made out to another name; check the address"},
    {-1, "does not match", "the certificate of %1 is made out to another name; check the address"},
};

QString CertificateReason(const QUrl& url, const CurlFailure& failure)
{
    for (const auto& known : CertificateReasons) {
        if (failure.lVerifyResult == known.lVerifyResult || failure.strDetail.contains(QLatin1String(known.pszWords)))
            return QString::fromLatin1(known.pszReason).arg(url.host());
    }
    return QStringLiteral("the certificate of %1 cannot be trusted (%2)").arg(url.host(), failure.strDetail);
}

QString CutReason(const QUrl& url, const CurlFailure& failure)
{
    if (failure.lLength >= 0)
        return QStringLiteral("%1 closed the connection after %2 of %3 bytes")
            .arg(HostText(url))
            .arg(failure.lReceived)
            .arg(failure.lLength);
    return QStringLiteral("%1 broke the connection off after %2 bytes").arg(HostText(url)).arg(failure.lReceived);
}

// Digest by its algorithm, as it is the algorithm that may be unknown.
QString OffersText(const QList<HttpChallenge>& challenges)
{
    QStringList offers;
    for (const HttpChallenge& challenge : challenges) {
        QString strOffer = QString::fromLatin1(challenge.strScheme);
        if (challenge.strScheme == "digest")
            strOffer = QString::fromLatin1(challenge.parameters.value("algorithm", "MD5")) + QLatin1String(" digest");
        if (!offers.contains(strOffer))
            offers.append(strOffer);
    }
    return offers.isEmpty() ? QStringLiteral("a password, but not how") : offers.join(QLatin1String(" or "));
}

} // namespace

QString ReasonOf(const QUrl& url, const CurlFailure& failure)
{
    if (failure.code == CURLE_PEER_FAILED_VERIFICATION)
        return CertificateReason(url, failure);
    if (failure.code == CURLE_PARTIAL_FILE || failure.code == CURLE_RECV_ERROR || failure.code == CURLE_SEND_ERROR)
        return CutReason(url, failure);
    const char* pszReason = "the transfer from {host} failed ({detail})";
    for (const auto& known : FailureReasons) {
        if (known.code == failure.code)
            pszReason = known.pszReason;
    }
    const QString strDetail =
        failure.strDetail.isEmpty() ? QString::fromLatin1(curl_easy_strerror(failure.code)) : failure.strDetail;
    return QString::fromLatin1(pszReason)
        .replace(QLatin1String("{host}"), HostText(url))
        .replace(QLatin1String("{detail}"), strDetail);
}

QString ReasonOfStatus(const QUrl& url, int iStatus)
{
    const auto say = [&url, iStatus](const char* pszText) {
        return QString::fromLatin1(pszText).arg(HostText(url)).arg(iStatus);
    };
    if (iStatus == 403)
        return say("%1 forbids it (HTTP status %2); the user needs more rights there");
    if (iStatus == 404 || iStatus == 410)
        return say("%1 does not have it (HTTP status %2)");
    if (iStatus == 429 || iStatus == 503)
        return say("%1 is busy (HTTP status %2); try again later");
    if (iStatus >= 500)
        return say("%1 has a fault of its own (HTTP status %2); try again later");
    return say("%1 sends no recording, but HTTP status %2");
}

QString ReasonOfRefusal(const HttpRequest& request, const QUrl& url, const QList<HttpChallenge>& challenges,
                        bool bCredentialsGiven)
{
    const QString strHost = HostText(url);
    if (!IsSameOrigin(request.url, url))
        return QStringLiteral("%1, to which %2 redirects, asks for a password, and the password is for %2 only")
            .arg(strHost, HostText(request.url));
    if (request.auth == Auth::None)
        return QStringLiteral("%1 asks for a password, but the source's \"auth\" is none").arg(strHost);
    if (request.strPassword.isEmpty())
        return QStringLiteral("no password is configured for %1, and %2 asks for one").arg(request.strWhose, strHost);
    if (bCredentialsGiven)
        return QStringLiteral("%1 does not take the user name \"%2\" with the password of %3")
            .arg(strHost, request.strUser, request.strWhose);
    const QString strOwn = request.auth == Auth::Basic ? QStringLiteral("basic") : QStringLiteral("digest");
    return QStringLiteral("%1 asks for %2, but the source's \"auth\" is %3")
        .arg(strHost, OffersText(challenges), strOwn);
}

} // namespace KXHost
