#include "Host/Site/SiteAuthenticator.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QHash>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t MostNonces = 1024; // older ones become stale
constexpr std::chrono::minutes NonceLife(5);
const char* const BasicChallenge = "Basic realm=\"KXSite\", charset=\"UTF-8\"";
const char* const Realm = "KXSite";
const char* const Opaque = "6b78736974652d6f7061717565";

using Fields = QHash<QByteArray, QByteArray>;

QByteArray Md5(const QByteArray& text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

QByteArray Joined(const std::initializer_list<QByteArray>& texts)
{
    return QByteArrayList(texts).join(':');
}

// The fields of a Digest header; names in lower case, quotes removed.
Fields ParseDigest(const QByteArray& authorization)
{
    static const QRegularExpression s_field(
        QStringLiteral("([A-Za-z]+)\\s*=\\s*(?:\"((?:[^\"\\\\]|\\\\.)*)\"|([^\\s,\"]+))"));
    static const QRegularExpression s_escaped(QStringLiteral("\\\\(.)"));
    Fields fields;
    if (!authorization.toLower().startsWith("digest "))
        return fields;
    auto it = s_field.globalMatch(QString::fromUtf8(authorization.mid(7)));
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QString strQuoted = match.captured(2).replace(s_escaped, QStringLiteral("\\1"));
        const QString strValue = match.captured(3).isEmpty() ? strQuoted : match.captured(3);
        fields[match.captured(1).toLower().toLatin1()] = strValue.toUtf8();
    }
    return fields;
}

// All but the nonce. The target must be the one of the request line: otherwise a header could be moved to another one.
bool AreRightCredentials(const Fields& fields, const KXHost::SiteAuthenticator::Request& request,
                         const QByteArray& password)
{
    if (fields.value("username") != KXHost::SiteUser || fields.value("realm") != Realm ||
        fields.value("opaque") != Opaque || fields.value("qop") != "auth" || fields.value("uri") != request.target ||
        fields.value("nc").size() != 8 || fields.value("algorithm", "MD5").toUpper() != "MD5")
        return false;
    const QByteArray who = Md5(Joined({KXHost::SiteUser, Realm, password}));
    const QByteArray what = Md5(Joined({request.method, request.target}));
    return fields.value("response") == Md5(Joined({who, fields.value("nonce"), fields.value("nc"),
                                                   fields.value("cnonce"), fields.value("qop"), what}));
}

bool IsRightBasic(const QByteArray& authorization, const QByteArray& password)
{
    return authorization.toLower().startsWith("basic ") &&
           QByteArray::fromBase64(authorization.mid(6).trimmed()) == Joined({KXHost::SiteUser, password});
}

} // namespace

namespace KXHost {

bool SiteAuthenticator::Check(SiteAuth auth, const Request& request, const QByteArray& password, QByteArray& challenge,
                              qint64 lNonceUses)
{
    if (auth == SiteAuth::None || (auth == SiteAuth::Basic && IsRightBasic(request.authorization, password)))
        return true;
    bool bStale = false;
    if (auth == SiteAuth::Digest) {
        const Fields fields = ParseDigest(request.authorization);
        const bool bRight = AreRightCredentials(fields, request, password);
        if (bRight && UseNonce(fields.value("nonce"), lNonceUses))
            return true;
        bStale = bRight; // who knows the password need not be asked for it again
    }
    challenge = bStale ? DigestChallenge(true) : Challenge(auth);
    return false;
}

QByteArray SiteAuthenticator::Challenge(SiteAuth auth)
{
    return auth == SiteAuth::Digest ? DigestChallenge(false) : QByteArray(BasicChallenge);
}

QByteArray SiteAuthenticator::DigestChallenge(bool bStale)
{
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), random.size());
    const void* pRandom = random.data();
    const QByteArray nonce = QByteArray(static_cast<const char*>(pRandom), sizeof(random)).toHex();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_nonces.push_back({nonce, Clock::now()});
        if (m_nonces.size() > MostNonces)
            m_nonces.pop_front();
    }
    return QByteArray("Digest realm=\"") + Realm + "\", qop=\"auth\", algorithm=MD5, nonce=\"" + nonce +
           "\", opaque=\"" + Opaque + '"' + (bStale ? ", stale=true" : "");
}

bool SiteAuthenticator::UseNonce(const QByteArray& text, qint64 lMostUses)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // From the newest: most requests come right after their challenge.
    const auto it =
        std::find_if(m_nonces.rbegin(), m_nonces.rend(), [&](const Nonce& nonce) { return nonce.text == text; });
    return it != m_nonces.rend() && Clock::now() - it->issued < NonceLife && ++it->lUses <= lMostUses;
}

} // namespace KXHost
