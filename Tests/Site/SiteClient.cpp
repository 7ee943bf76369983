#include "SiteClient.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtNetwork/QTcpSocket>

namespace {

constexpr int TimeLimitMs = 60000;
constexpr qint64 MostKept = 32 << 20;
constexpr qint64 ReadBuffer = 4 << 20;

QByteArray Md5(const QByteArrayList& parts)
{
    return QCryptographicHash::hash(parts.join(':'), QCryptographicHash::Md5).toHex();
}

QByteArray HeaderValue(const QByteArray& head, const char* pName)
{
    const QByteArrayList lines = head.split('\n');
    for (const QByteArray& line : lines)
        if (line.toLower().startsWith(QByteArray(pName).toLower() + ':'))
            return line.mid(line.indexOf(':') + 1).trimmed();
    return {};
}

bool HasMore(QTcpSocket& socket)
{
    return socket.bytesAvailable() > 0 || socket.waitForReadyRead(TimeLimitMs);
}

QByteArray ReadHead(QTcpSocket& socket)
{
    QByteArray head;
    while (!head.endsWith("\r\n\r\n") && HasMore(socket))
        head += socket.readLine();
    return head;
}

void ReadBody(QTcpSocket& socket, Answer& answer)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    while (answer.lReceived < answer.lAnnounced && HasMore(socket)) {
        const QByteArray data = socket.read(answer.lAnnounced - answer.lReceived);
        hash.addData(data);
        answer.lReceived += data.size();
        if (answer.lReceived < MostKept)
            answer.body += data;
    }
    answer.sha256 = hash.result().toHex();
}

QByteArray TargetOf(const QUrl& url)
{
    return url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
}

} // namespace

QByteArray Parameter(const QByteArray& challenge, const char* pName)
{
    const QRegularExpression pattern(QString(QString::fromLatin1(pName) + QStringLiteral("=\"([^\"]*)\"")));
    return pattern.match(QString::fromLatin1(challenge)).captured(1).toLatin1();
}

Digest::Digest(const QByteArray& challenge, const QByteArray& devicePassword, const QByteArray& target)
    : realm(Parameter(challenge, "realm"))
    , password(devicePassword)
    , uri(target)
    , nonce(Parameter(challenge, "nonce"))
    , opaque(Parameter(challenge, "opaque"))
{}

QByteArray Digest::Header() const
{
    const QByteArray response = Md5({Md5({user, realm, password}), nonce, nc, cnonce, qop, Md5({method, uri})});
    return "Digest username=\"" + user + "\", realm=\"" + realm + "\", nonce=\"" + nonce + "\", uri=\"" + uri +
           "\", algorithm=MD5, response=\"" + response + "\", opaque=\"" + opaque + "\", qop=" + qop + ", nc=" + nc +
           ", cnonce=\"" + cnonce + '"';
}

Answer Get(const QString& strUrl, const QByteArray& authorization)
{
    const QUrl url(strUrl);
    QTcpSocket socket;
    socket.setReadBufferSize(ReadBuffer);
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    Answer answer;
    if (!socket.waitForConnected(TimeLimitMs))
        return answer;
    const QByteArray credentials =
        authorization.isEmpty() ? QByteArray() : QByteArray("Authorization: " + authorization + "\r\n");
    socket.write("GET " + TargetOf(url) + " HTTP/1.1\r\nHost: " + url.authority().toLatin1() + "\r\n" + credentials +
                 "\r\n");
    const QByteArray head = ReadHead(socket);
    const QByteArray length = HeaderValue(head, "Content-Length");
    answer.iStatus = head.mid(9, 3).toInt();
    answer.lAnnounced = length.isEmpty() ? -1 : length.toLongLong();
    answer.challenge = HeaderValue(head, "WWW-Authenticate");
    ReadBody(socket, answer);
    return answer;
}

Answer GetAs(const QString& strUrl, const QByteArray& password)
{
    Answer first = Get(strUrl);
    if (first.challenge.startsWith("Digest "))
        return Get(strUrl, Digest(first.challenge, password, TargetOf(QUrl(strUrl))).Header());
    if (first.challenge.startsWith("Basic "))
        return Get(strUrl, "Basic " + QByteArray("admin:" + password).toBase64());
    return first;
}

QJsonObject RecordOf(const KXHost::Site& site, const QString& strId)
{
    const QJsonArray catalogue = site.Catalogue(QStringLiteral("/recordings"));
    for (const QJsonValue value : catalogue)
        if (value.toObject().value(QStringLiteral("strRecordId")).toString() == strId)
            return value.toObject();
    return {};
}

QString UrlOf(const KXHost::Site& site, const QJsonObject& record)
{
    const QStringList keys{QStringLiteral("cloud"), QStringLiteral("device"), QStringLiteral("iotLan"),
                           QStringLiteral("lanModule")};
    const QString strKey = keys.at(record.value(QStringLiteral("iRecordType")).toInt());
    QString strUrl = site.ClientConfig().value(strKey).toObject().value(QStringLiteral("url")).toString();
    strUrl.replace(QStringLiteral("{deviceId}"), record.value(QStringLiteral("strDeviceId")).toString());
    strUrl.replace(QStringLiteral("{channel}"), QString::number(record.value(QStringLiteral("iValue5")).toInt()));
    strUrl.replace(QStringLiteral("{recordId}"), record.value(QStringLiteral("strRecordId")).toString());
    strUrl.replace(QStringLiteral("{begin}"), QStringLiteral("1710626400"));
    strUrl.replace(QStringLiteral("{end}"), QStringLiteral("1710628200"));
    return strUrl;
}

Answer GetRecord(const KXHost::Site& site, const QString& strId)
{
    const QJsonObject record = RecordOf(site, strId);
    return GetAs(UrlOf(site, record), record.value(QStringLiteral("strPassword")).toString().toUtf8());
}

Answer GetCloudRecording(const KXHost::Site& site)
{
    return Get(QString(site.BaseUrl() + QStringLiteral("/cloud/4611686018427400102")));
}

Answer GetDeviceRecording(const KXHost::Site& site)
{
    const QString strPath = QStringLiteral("/device/KXD2S0048816/1/KXD2S0048816_1_20240318T071111");
    return GetAs(QString(site.BaseUrl() + strPath), "St41rs");
}
