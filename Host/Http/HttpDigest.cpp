#include "Host/Http/HttpDigest.h"

#include <QtCore/QCryptographicHash>

namespace KXHost {

namespace {

struct Algorithm
{
    const char* pszName; // lower case; the better ones first
    QCryptographicHash::Algorithm hash;
    bool bSession;
};

constexpr Algorithm Algorithms[] = {
    {"sha-256", QCryptographicHash::Sha256, false},
    {"sha-256-sess", QCryptographicHash::Sha256, true},
    {"md5", QCryptographicHash::Md5, false},
    {"md5-sess", QCryptographicHash::Md5, true},
};

bool HasAlgorithm(const HttpChallenge& challenge, const Algorithm& algorithm)
{
    return challenge.parameters.value("algorithm", "md5").toLower() == algorithm.pszName;
}

// A server that names no quality of protection expects the old form of the answer.
bool OffersQop(const HttpChallenge& challenge)
{
    for (const QByteArray& qop : challenge.parameters.value("qop").split(',')) {
        if (qop.trimmed().toLower() == "auth")
            return true;
    }
    return false;
}

bool CanAnswer(const HttpChallenge& challenge, const Algorithm& algorithm)
{
    return challenge.strScheme == "digest" && challenge.parameters.contains("nonce") &&
           HasAlgorithm(challenge, algorithm) && (OffersQop(challenge) || !challenge.parameters.contains("qop"));
}

QByteArray Quoted(QByteArray value)
{
    return '"' + value.replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

QByteArray Response(const HttpChallenge& challenge, const Algorithm& algorithm, const DigestCredentials& credentials,
                    const QByteArray& strTarget, const QByteArray& strClientNonce)
{
    const auto hash = [&algorithm](const QByteArray& text) {
        return QCryptographicHash::hash(text, algorithm.hash).toHex();
    };
    const QByteArray nonce = challenge.parameters.value("nonce");
    QByteArray secret =
        hash(credentials.strUser + ':' + challenge.parameters.value("realm") + ':' + credentials.strPassword);
    if (algorithm.bSession)
        secret = hash(secret + ':' + nonce + ':' + strClientNonce);
    const QByteArray count = OffersQop(challenge) ? "00000001:" + strClientNonce + ":auth:" : QByteArray();
    return hash(secret + ':' + nonce + ':' + count + hash("GET:" + strTarget));
}

} // namespace

const HttpChallenge* ChooseDigest(const QList<HttpChallenge>& challenges)
{
    for (const Algorithm& algorithm : Algorithms) {
        for (const HttpChallenge& challenge : challenges) {
            if (CanAnswer(challenge, algorithm))
                return &challenge;
        }
    }
    return nullptr;
}

bool IsStale(const HttpChallenge& challenge)
{
    return challenge.parameters.value("stale").toLower() == "true";
}

QByteArray DigestAnswer(const HttpChallenge& challenge, const DigestCredentials& credentials,
                        const QByteArray& strTarget, const QByteArray& strClientNonce)
{
    QByteArray response;
    for (const Algorithm& algorithm : Algorithms) {
        if (HasAlgorithm(challenge, algorithm))
            response = Response(challenge, algorithm, credentials, strTarget, strClientNonce);
    }
    QByteArray answer = "Digest username=" + Quoted(credentials.strUser) +
                        ", realm=" + Quoted(challenge.parameters.value("realm")) +
                        ", nonce=" + Quoted(challenge.parameters.value("nonce")) + ", uri=" + Quoted(strTarget) +
                        ", cnonce=" + Quoted(strClientNonce);
    if (OffersQop(challenge))
        answer += ", nc=00000001, qop=auth";
    answer += ", response=" + Quoted(response);
    if (challenge.parameters.contains("opaque"))
        answer += ", opaque=" + Quoted(challenge.parameters.value("opaque"));
    if (challenge.parameters.contains("algorithm"))
        answer += ", algorithm=" + challenge.parameters.value("algorithm");
    return answer;
}

} // namespace KXHost
