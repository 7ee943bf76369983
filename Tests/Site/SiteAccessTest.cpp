#include "SiteClient.h"
#include "TestMain.h"

#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

namespace {

constexpr char DevicePath[] = "/device/KXD2S0048816/1/KXD2S0048816_1_20240318T071111";
constexpr char ModulePath[] = "/lanmodule/KXM3G0007719/1/KXM3G0007719_1_20240402T090000";
constexpr int ReplyTimeoutMs = 20000;

QString Latin(const char* pText)
{
    return QString::fromLatin1(pText);
}

// Sends bytes as they are and gives what comes back until `stop` was seen or the connection ended.
QByteArray Exchange(QTcpSocket& socket, const QByteArray& request, const QByteArray& stop)
{
    QByteArray reply;
    socket.write(request);
    while (!reply.contains(stop) && socket.state() == QAbstractSocket::ConnectedState &&
           socket.waitForReadyRead(ReplyTimeoutMs))
        reply += socket.readAll();
    return reply;
}

} // namespace

class SiteAccessTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void DigestLetsTheRightPasswordPass();
    void DigestRefusesTheWrongPassword();
    void DigestChallengesWhoBringsNothing();
    void DigestMadeByHandPasses();
    void DigestWithAWrongPartIsRefused_data();
    void DigestWithAWrongPartIsRefused();
    void DigestWithAnUnknownNonceIsStale();
    void NonceIsStaleAfterItsUses();
    void BasicWantsTheToken_data();
    void BasicWantsTheToken();
    void PathMustNameDeviceAndChannel_data();
    void PathMustNameDeviceAndChannel();
    void WishForARangeGetsTheWholeRecording();
    void HeadTellsTheLength();
    void ConnectionServesManyRequests();
    void OtherMethodsAreNotServed();
    void MalformedRequestIsAnswered();

private:
    Answer GetDevice(const QByteArray& authorization);

    KXHost::Site m_site;
};

void SiteAccessTest::initTestCase()
{
    QString strError;
    QVERIFY2(m_site.Start({}, &strError), qPrintable(strError));
}

Answer SiteAccessTest::GetDevice(const QByteArray& authorization)
{
    return Get(QString(m_site.BaseUrl() + Latin(DevicePath)), authorization);
}

void SiteAccessTest::DigestLetsTheRightPasswordPass()
{
    const Answer answer = GetDeviceRecording(m_site);
    QCOMPARE(answer.iStatus, 200);
    QCOMPARE(answer.lReceived, qint64(102400));
}

void SiteAccessTest::DigestRefusesTheWrongPassword()
{
    const Answer answer = GetAs(QString(m_site.BaseUrl() + Latin(DevicePath)), "st41rs");
    QCOMPARE(answer.iStatus, 401);
    QCOMPARE(answer.lReceived, qint64(0));
}

void SiteAccessTest::DigestChallengesWhoBringsNothing()
{
    const Answer answer = GetDevice({});
    QCOMPARE(answer.iStatus, 401);
    QVERIFY(answer.challenge.startsWith("Digest "));
    QVERIFY(answer.challenge.contains("qop=\"auth\"") && answer.challenge.contains("algorithm=MD5"));
    QVERIFY(!answer.challenge.contains("stale"));
    QCOMPARE(Parameter(answer.challenge, "realm"), QByteArray("KXSite"));
    QVERIFY(Parameter(answer.challenge, "nonce").size() >= 16);
    QVERIFY(!Parameter(answer.challenge, "opaque").isEmpty());
    QVERIFY(Parameter(answer.challenge, "nonce") != Parameter(GetDevice({}).challenge, "nonce"));
}

void SiteAccessTest::DigestMadeByHandPasses()
{
    const Digest digest(GetDevice({}).challenge, "St41rs", DevicePath);
    QCOMPARE(GetDevice(digest.Header()).iStatus, 200);
}

void SiteAccessTest::DigestWithAWrongPartIsRefused_data()
{
    QTest::addColumn<int>("part");
    QTest::newRow("another user") << 0;
    QTest::newRow("another realm") << 1;
    QTest::newRow("another password") << 2;
    QTest::newRow("another method") << 3;
    QTest::newRow("another target") << 4;
    QTest::newRow("another opaque") << 5;
    QTest::newRow("without quality of protection") << 6;
    QTest::newRow("count of another form") << 7;
}

void SiteAccessTest::DigestWithAWrongPartIsRefused()
{
    QFETCH(int, part);
    Digest digest(GetDevice({}).challenge, "St41rs", DevicePath);
    QByteArray* const parts[] = {&digest.user, &digest.realm,  &digest.password, &digest.method,
                                 &digest.uri,  &digest.opaque, &digest.qop,      &digest.nc};
    *parts[part] = "other";
    const Answer answer = GetDevice(digest.Header());
    QCOMPARE(answer.iStatus, 401);
    QVERIFY(!answer.challenge.contains("stale=true"));
}

void SiteAccessTest::DigestWithAnUnknownNonceIsStale()
{
    Digest digest(GetDevice({}).challenge, "St41rs", DevicePath);
    digest.nonce = "00112233445566778899aabbccddeeff";
    const Answer answer = GetDevice(digest.Header());
    QCOMPARE(answer.iStatus, 401);
    QVERIFY(answer.challenge.contains("stale=true"));
    Digest fresh(answer.challenge, "St41rs", DevicePath);
    QCOMPARE(GetDevice(fresh.Header()).iStatus, 200);
}

void SiteAccessTest::NonceIsStaleAfterItsUses()
{
    KXHost::Site site;
    KXHost::Site::Options options;
    options.faults = QStringList{QStringLiteral("stale-nonce=1")};
    QVERIFY(site.Start(options, nullptr));
    const QString strUrl = site.BaseUrl() + Latin(DevicePath);
    const QByteArray challenge = Get(strUrl).challenge;
    Digest digest(challenge, "St41rs", DevicePath);
    QCOMPARE(Get(strUrl, digest.Header()).iStatus, 200);
    digest.nc = "00000002";
    const Answer second = Get(strUrl, digest.Header());
    QCOMPARE(second.iStatus, 401);
    QVERIFY(second.challenge.contains("stale=true"));
}

void SiteAccessTest::BasicWantsTheToken_data()
{
    QTest::addColumn<QByteArray>("authorization");
    QTest::addColumn<int>("status");
    QTest::newRow("nothing") << QByteArray() << 401;
    QTest::newRow("admin and the token") << QByteArray("Basic YWRtaW46dG9rLTc3MTktZTRjMg==") << 200;
    QTest::newRow("scheme in lower case") << QByteArray("basic YWRtaW46dG9rLTc3MTktZTRjMg==") << 200;
    QTest::newRow("admin and no token") << QByteArray("Basic YWRtaW46") << 401;
    QTest::newRow("another user") << QByteArray("Basic cm9vdDp0b2stNzcxOS1lNGMy") << 401;
    QTest::newRow("another scheme") << QByteArray("Bearer tok-7719-e4c2") << 401;
}

void SiteAccessTest::BasicWantsTheToken()
{
    QFETCH(QByteArray, authorization);
    QFETCH(int, status);
    const Answer answer = Get(QString(m_site.BaseUrl() + Latin(ModulePath)), authorization);
    QCOMPARE(answer.iStatus, status);
    QCOMPARE(answer.challenge.startsWith("Basic realm="), status == 401);
}

void SiteAccessTest::PathMustNameDeviceAndChannel_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("unknown record") << QStringLiteral("/cloud/4611686018427499999");
    QTest::newRow("record of another source") << QStringLiteral("/cloud/KXD2S0048816_1_20240318T071111");
    QTest::newRow("another channel") << QStringLiteral("/device/KXD2S0048816/2/KXD2S0048816_1_20240318T071111");
    QTest::newRow("another device") << QStringLiteral("/device/KXN8R5120907/1/KXD2S0048816_1_20240318T071111");
    QTest::newRow("no device") << QStringLiteral("/device/KXD2S0048816_1_20240318T071111");
    QTest::newRow("another folder") << QStringLiteral("/iotlan/KXD2S0048816/1/KXD2S0048816_1_20240318T071111");
    QTest::newRow("way out of the tree") << QStringLiteral("/covers/..%2f..%2fetc%2fpasswd");
    QTest::newRow("root") << QStringLiteral("/");
}

void SiteAccessTest::PathMustNameDeviceAndChannel()
{
    QFETCH(QString, path);
    QCOMPARE(Get(QString(m_site.BaseUrl() + path)).iStatus, 404);
}

void SiteAccessTest::WishForARangeGetsTheWholeRecording()
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_site.Port()));
    QVERIFY(socket.waitForConnected(ReplyTimeoutMs));
    const QByteArray reply = Exchange(socket,
                                      "GET /cloud/4611686018427400102 HTTP/1.1\r\nHost: a\r\n"
                                      "Range: bytes=100-199\r\n\r\n",
                                      "\r\n\r\n");
    QVERIFY(reply.startsWith("HTTP/1.1 200 "));
    QVERIFY(reply.contains("Content-Length: 2750003\r\n"));
}

void SiteAccessTest::HeadTellsTheLength()
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_site.Port()));
    QVERIFY(socket.waitForConnected(ReplyTimeoutMs));
    const QByteArray reply =
        Exchange(socket, "HEAD /cloud/4611686018427400104 HTTP/1.1\r\nHost: a\r\n\r\n", "\r\n\r\n");
    QVERIFY(reply.startsWith("HTTP/1.1 200 "));
    QVERIFY(reply.contains("Content-Length: 224395264\r\n"));
    QVERIFY(reply.endsWith("\r\n\r\n"));
}

void SiteAccessTest::ConnectionServesManyRequests()
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_site.Port()));
    QVERIFY(socket.waitForConnected(ReplyTimeoutMs));
    const QByteArray request = "GET /cloud/nobody HTTP/1.1\r\nHost: a\r\n\r\n";
    for (int i = 0; i < 200; ++i)
        QVERIFY(Exchange(socket, request, "\r\n\r\n").startsWith("HTTP/1.1 404 "));
    const QByteArray twoAtOnce =
        Exchange(socket, request + "GET /config.json HTTP/1.1\r\nHost: a\r\n\r\n", "devicePasswords");
    QVERIFY(twoAtOnce.startsWith("HTTP/1.1 404 ") && twoAtOnce.contains("HTTP/1.1 200 "));
}

void SiteAccessTest::OtherMethodsAreNotServed()
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_site.Port()));
    QVERIFY(socket.waitForConnected(ReplyTimeoutMs));
    const QByteArray reply = Exchange(
        socket, "DELETE /cloud/4611686018427400104 HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n", "\r\n\r\n");
    QVERIFY2(reply.startsWith("HTTP/1.1 40"), reply.constData());
}

void SiteAccessTest::MalformedRequestIsAnswered()
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_site.Port()));
    QVERIFY(socket.waitForConnected(ReplyTimeoutMs));
    const QByteArray reply = Exchange(socket, "nonsense\r\n\r\n", "\r\n\r\n");
    QVERIFY2(reply.startsWith("HTTP/1.1 400 "), reply.constData());
    QCOMPARE(GetDeviceRecording(m_site).iStatus, 200);
}

KX_TEST(SiteAccessTest, QCoreApplication)
#include "SiteAccessTest.moc"
