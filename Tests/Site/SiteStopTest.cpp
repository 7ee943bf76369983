#include "SiteClient.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <memory>
#include <vector>

namespace {

constexpr int TimeLimitMs = 20000;

using Sockets = std::vector<std::unique_ptr<QTcpSocket>>;

Sockets Connect(const KXHost::Site& site, int iCount, const QByteArray& request)
{
    Sockets sockets;
    for (int i = 0; i < iCount; ++i) {
        sockets.push_back(std::make_unique<QTcpSocket>());
        sockets.back()->setReadBufferSize(1024);
        sockets.back()->connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(site.Port()));
        sockets.back()->write(request);
    }
    return sockets;
}

bool AllConnected(const Sockets& sockets)
{
    for (const auto& pSocket : sockets)
        if (!pSocket->waitForConnected(TimeLimitMs) || (pSocket->bytesToWrite() > 0 && !pSocket->waitForBytesWritten()))
            return false;
    return true;
}

bool AllDisconnected(const Sockets& sockets)
{
    for (const auto& pSocket : sockets) {
        pSocket->setReadBufferSize(0); // the end stands behind what was sent
        if (pSocket->state() != QAbstractSocket::UnconnectedState && !pSocket->waitForDisconnected(TimeLimitMs))
            return false;
    }
    return true;
}

#ifdef Q_OS_LINUX
int ThreadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}
#endif

QByteArray Request(const char* pPath)
{
    return QByteArray("GET ") + pPath + " HTTP/1.1\r\nHost: a\r\n\r\n";
}

} // namespace

class SiteStopTest : public QObject
{
    Q_OBJECT

private slots:
    void StopEndsWhateverHangs_data();
    void StopEndsWhateverHangs();
    void StopEndsConnectionsThatStillWaitForAThread();
    void ClientThatLeavesGivesItsThreadBack();
    void StopLeavesNoThread();
    void StopTwiceAndWithoutStart();
    void SiteStartsAgainOnItsPort();
    void PortInUseIsAnError();
    void OnlyLoopbackIsListenedOn();
};

void SiteStopTest::StopEndsWhateverHangs_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QByteArray>("request");
    const QByteArray big = Request("/cloud/4611686018427400104");
    QTest::newRow("clients that never get an answer") << QStringLiteral("never") << big;
    QTest::newRow("clients that get a part") << QStringLiteral("stall=1") << big;
    QTest::newRow("clients that never get a cover")
        << QStringLiteral("cover-never") << Request("/covers/4611686018427400104");
    QTest::newRow("slow transfers") << QStringLiteral("slow=10") << big;
    QTest::newRow("clients that do not read") << QString() << big;
    QTest::newRow("clients that ask for nothing") << QString() << QByteArray();
    QTest::newRow("clients with half a request") << QString() << QByteArray("GET /cloud/46116860");
}

void SiteStopTest::StopEndsWhateverHangs()
{
    QFETCH(QString, fault);
    QFETCH(QByteArray, request);
    KXHost::Site site;
    KXHost::Site::Options options;
    if (!fault.isEmpty())
        options.faults = QStringList{fault};
    QVERIFY(site.Start(options, nullptr));
    const Sockets sockets = Connect(site, 12, request);
    QVERIFY(AllConnected(sockets));
    site.Stop(); // waits for no client: these stay until the end
    QVERIFY(AllDisconnected(sockets));
    QCOMPARE(site.Port(), 0);
    QCOMPARE(site.BaseUrl(), QString());
}

void SiteStopTest::StopEndsConnectionsThatStillWaitForAThread()
{
    KXHost::Site site;
    KXHost::Site::Options options;
    options.faults = QStringList{QStringLiteral("never")};
    QVERIFY(site.Start(options, nullptr));
    const Sockets sockets = Connect(site, 100, Request("/cloud/4611686018427400104"));
    QVERIFY(AllConnected(sockets));
    site.Stop();
    QVERIFY(AllDisconnected(sockets));
}

void SiteStopTest::ClientThatLeavesGivesItsThreadBack()
{
    KXHost::Site site;
    KXHost::Site::Options options;
    options.faults = QStringList{QStringLiteral("never@4611686018427400104")};
    QVERIFY(site.Start(options, nullptr));
    for (int iRound = 0; iRound < 3; ++iRound) {
        const Sockets sockets = Connect(site, 50, Request("/cloud/4611686018427400104"));
        QVERIFY(AllConnected(sockets));
    }
    QCOMPARE(GetCloudRecording(site).lReceived, qint64(2750003));
}

void SiteStopTest::StopLeavesNoThread()
{
#ifdef Q_OS_LINUX
    // The first client of the process starts threads of its own, which stay.
    KXHost::Site first;
    QVERIFY(first.Start({}, nullptr));
    QCOMPARE(GetCloudRecording(first).iStatus, 200);
    first.Stop();
    QTRY_VERIFY(ThreadCount() < 10);
    const int iBefore = ThreadCount();
    KXHost::Site site;
    QVERIFY(site.Start({}, nullptr));
    QVERIFY(ThreadCount() > iBefore);
    const Sockets sockets = Connect(site, 12, Request("/cloud/4611686018427400104"));
    QVERIFY(AllConnected(sockets));
    site.Stop();
    QCOMPARE(ThreadCount(), iBefore);
#else
    QSKIP("Threads are counted on Linux only", "");
#endif
}

void SiteStopTest::StopTwiceAndWithoutStart()
{
    KXHost::Site site;
    site.Stop();
    QCOMPARE(site.Catalogue(QStringLiteral("/a")).size(), 0);
    QVERIFY(site.ClientConfig().isEmpty());
    QVERIFY(site.Start({}, nullptr));
    site.Stop();
    site.Stop();
    QCOMPARE(site.Port(), 0);
}

void SiteStopTest::SiteStartsAgainOnItsPort()
{
    KXHost::Site site;
    QVERIFY(site.Start({}, nullptr));
    KXHost::Site::Options options;
    options.iPort = site.Port();
    QCOMPARE(GetCloudRecording(site).iStatus, 200);
    QString strError;
    QVERIFY2(site.Start(options, &strError), qPrintable(strError));
    QCOMPARE(site.Port(), options.iPort);
    QCOMPARE(site.BaseUrl(), QStringLiteral("http://127.0.0.1:%1").arg(options.iPort));
    QCOMPARE(GetCloudRecording(site).iStatus, 200);
}

void SiteStopTest::PortInUseIsAnError()
{
    KXHost::Site site;
    QVERIFY(site.Start({}, nullptr));
    KXHost::Site::Options options;
    options.iPort = site.Port();
    KXHost::Site second;
    QString strError;
    QVERIFY(!second.Start(options, &strError));
    QVERIFY2(strError.contains(QString::number(options.iPort)), qPrintable(strError));
    QCOMPARE(GetCloudRecording(site).iStatus, 200);
}

void SiteStopTest::OnlyLoopbackIsListenedOn()
{
    // Another loopback address that reaches this machine: whoever listens on all addresses would take this too.
    const QHostAddress other(QStringLiteral("127.0.0.2"));
    QTcpServer everywhere;
    QVERIFY(everywhere.listen(QHostAddress::AnyIPv4));
    QTcpSocket proof;
    proof.connectToHost(other, everywhere.serverPort());
    QVERIFY(proof.waitForConnected(TimeLimitMs));
    KXHost::Site site;
    QVERIFY(site.Start({}, nullptr));
    QTcpSocket socket;
    socket.connectToHost(other, static_cast<quint16>(site.Port()));
    QVERIFY(!socket.waitForConnected(TimeLimitMs));
    QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(site.Port()));
    QVERIFY(socket.waitForConnected(TimeLimitMs));
}

KX_TEST(SiteStopTest, QCoreApplication)
#include "SiteStopTest.moc"
