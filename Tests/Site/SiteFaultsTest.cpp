#include "SiteClient.h"
#include "TestMain.h"

#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

namespace {

constexpr char CloudId[] = "4611686018427400102";
constexpr char OtherCloudId[] = "4611686018427400101";
constexpr int TimeLimitMs = 20000;

QString Latin(const char* pText)
{
    return QString::fromLatin1(pText);
}

bool StartWith(KXHost::Site& site, const QStringList& faults)
{
    KXHost::Site::Options options;
    options.faults = faults;
    QString strError;
    const bool bStarted = site.Start(options, &strError);
    if (!bStarted)
        qWarning("%s", qPrintable(strError));
    return bStarted;
}

void Ask(QTcpSocket& socket, const KXHost::Site& site, const char* pPath)
{
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(site.Port()));
    socket.write(QByteArray("GET ") + pPath + " HTTP/1.1\r\nHost: a\r\n\r\n");
}

} // namespace

class SiteFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void BodyOfAFaultyTransfer_data();
    void BodyOfAFaultyTransfer();
    void StatusOfAFaultyAnswer_data();
    void StatusOfAFaultyAnswer();
    void RefusalChallengesLikeTheSource();
    void MoreThanAnnouncedIsSentAndTheConnectionEnds();
    void ASlowTransferComesInPieces();
    void NeverIsNotAnswered();
    void AStalledTransferStaysSilent();
    void FaultHitsOnlyItsRecord();
    void FaultHitsOnlyItsSource();
    void LastFaultOfAKindWins();
    void FaultsOfTheBodyAddUp();
    void CoverFaults_data();
    void CoverFaults();
    void BadFaultIsAnErrorThatNamesIt_data();
    void BadFaultIsAnErrorThatNamesIt();
    void HelpListsEveryFault();
};

void SiteFaultsTest::BodyOfAFaultyTransfer_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<qint64>("announced");
    QTest::addColumn<qint64>("received");
    QTest::newRow("cut in the middle") << QStringLiteral("cut") << 2750003LL << 1375001LL;
    QTest::newRow("cut after a tenth") << QStringLiteral("cut=10") << 2750003LL << 275000LL;
    QTest::newRow("cut before the first byte") << QStringLiteral("cut=0") << 2750003LL << 0LL;
    QTest::newRow("cut at the end") << QStringLiteral("cut=99") << 2750003LL << 2722502LL;
    QTest::newRow("half of it") << QStringLiteral("short") << 1375001LL << 1375001LL;
    QTest::newRow("a fifth of it") << QStringLiteral("short=20") << 550000LL << 550000LL;
    QTest::newRow("nothing of it") << QStringLiteral("short=0") << 0LL << 0LL;
    QTest::newRow("4096 bytes too many announced") << QStringLiteral("wrong-length") << 2754099LL << 2750003LL;
    QTest::newRow("one byte too many announced") << QStringLiteral("wrong-length=1") << 2750004LL << 2750003LL;
}

void SiteFaultsTest::BodyOfAFaultyTransfer()
{
    QFETCH(QString, fault);
    QFETCH(qint64, announced);
    QFETCH(qint64, received);
    KXHost::Site site;
    QVERIFY(StartWith(site, {fault}));
    const Answer answer = GetCloudRecording(site);
    QCOMPARE(answer.iStatus, 200);
    QCOMPARE(answer.lAnnounced, announced);
    QCOMPARE(answer.lReceived, received);
    const Answer device = GetDeviceRecording(site);
    QCOMPARE(device.iStatus, 200);
    QCOMPARE(device.lReceived < device.lAnnounced, received < announced);
}

void SiteFaultsTest::StatusOfAFaultyAnswer_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("status");
    QTest::newRow("refuse") << QStringLiteral("refuse") << 401;
    QTest::newRow("forbidden") << QStringLiteral("forbidden") << 403;
    QTest::newRow("missing") << QStringLiteral("missing") << 404;
    QTest::newRow("busy") << QStringLiteral("busy") << 503;
}

void SiteFaultsTest::StatusOfAFaultyAnswer()
{
    QFETCH(QString, fault);
    QFETCH(int, status);
    KXHost::Site site;
    QVERIFY(StartWith(site, {fault}));
    for (const auto get : {GetCloudRecording, GetDeviceRecording}) {
        const Answer answer = get(site);
        QCOMPARE(answer.iStatus, status);
        QCOMPARE(answer.lReceived, qint64(0));
    }
}

void SiteFaultsTest::RefusalChallengesLikeTheSource()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("refuse")}));
    QVERIFY(GetDeviceRecording(site).challenge.startsWith("Digest "));
    QVERIFY(GetCloudRecording(site).challenge.startsWith("Basic "));
}

void SiteFaultsTest::MoreThanAnnouncedIsSentAndTheConnectionEnds()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("wrong-length=-2000000")}));
    QTcpSocket socket;
    Ask(socket, site, "/cloud/4611686018427400102");
    QVERIFY(socket.waitForConnected(TimeLimitMs));
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::UnconnectedState, TimeLimitMs);
    const QByteArray reply = socket.readAll();
    const int iHead = reply.indexOf("\r\n\r\n") + 4;
    QVERIFY(reply.left(iHead).contains("Content-Length: 750003\r\n"));
    QCOMPARE(reply.size() - iHead, 2750003);
}

void SiteFaultsTest::ASlowTransferComesInPieces()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("slow=204800")}));
    QCOMPARE(GetDeviceRecording(site).lReceived, qint64(102400));
    // Nearly ten minutes at this rate: after its first bytes, most of it is still to come.
    QVERIFY(StartWith(site, {QStringLiteral("slow=5000")}));
    QTcpSocket socket;
    Ask(socket, site, "/cloud/4611686018427400102");
    QByteArray received;
    QTRY_VERIFY_WITH_TIMEOUT((received += socket.readAll()).size() > 2000, TimeLimitMs);
    QVERIFY2(received.size() < 1000000, qPrintable(QString::number(received.size())));
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
}

void SiteFaultsTest::NeverIsNotAnswered()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {Latin("never@") + Latin(CloudId)}));
    QTcpSocket socket;
    Ask(socket, site, "/cloud/4611686018427400102");
    QVERIFY(socket.waitForConnected(TimeLimitMs));
    QVERIFY(!socket.waitForReadyRead(500));
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
    QCOMPARE(GetRecord(site, Latin(OtherCloudId)).iStatus, 200);
    site.Stop();
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::UnconnectedState, TimeLimitMs);
    QCOMPARE(socket.readAll(), QByteArray());
}

void SiteFaultsTest::AStalledTransferStaysSilent()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("stall=10")}));
    QTcpSocket socket;
    Ask(socket, site, "/cloud/4611686018427400102");
    QByteArray received;
    QVERIFY(socket.waitForConnected(TimeLimitMs));
    const auto hasATenth = [&] {
        received += socket.readAll();
        return received.size() - received.indexOf("\r\n\r\n") - 4 >= 275000;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasATenth(), TimeLimitMs);
    QVERIFY(received.contains("Content-Length: 2750003\r\n"));
    QVERIFY(!socket.waitForReadyRead(500));
    QCOMPARE(received.size() - received.indexOf("\r\n\r\n") - 4, 275000);
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
    site.Stop();
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::UnconnectedState, TimeLimitMs);
}

void SiteFaultsTest::FaultHitsOnlyItsRecord()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {Latin("busy@") + Latin(CloudId)}));
    QCOMPARE(GetCloudRecording(site).iStatus, 503);
    QCOMPARE(GetRecord(site, Latin(OtherCloudId)).iStatus, 200);
    QCOMPARE(GetDeviceRecording(site).iStatus, 200);
}

void SiteFaultsTest::FaultHitsOnlyItsSource()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("forbidden@device")}));
    QCOMPARE(GetCloudRecording(site).iStatus, 200);
    QCOMPARE(GetDeviceRecording(site).iStatus, 403);
    QVERIFY(StartWith(site, {QStringLiteral("forbidden@lanModule"), QStringLiteral("busy@iotLan")}));
    QCOMPARE(GetDeviceRecording(site).iStatus, 200);
    QCOMPARE(GetRecord(site, QStringLiteral("KXM3G0007719_1_20240402T090000")).iStatus, 403);
    QCOMPARE(GetRecord(site, QStringLiteral("KXB1L6600342_1_20240401T074500")).iStatus, 503);
}

void SiteFaultsTest::LastFaultOfAKindWins()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("short=50"), Latin("short=10@") + Latin(CloudId)}));
    QCOMPARE(GetCloudRecording(site).lReceived, qint64(275000));
    QCOMPARE(GetDeviceRecording(site).lReceived, qint64(51200));
}

void SiteFaultsTest::FaultsOfTheBodyAddUp()
{
    KXHost::Site site;
    QVERIFY(StartWith(site, {QStringLiteral("short=50"), QStringLiteral("cut=50"), QStringLiteral("slow=1000000")}));
    const Answer answer = GetDeviceRecording(site);
    QCOMPARE(answer.lAnnounced, qint64(51200));
    QCOMPARE(answer.lReceived, qint64(25600));
}

void SiteFaultsTest::CoverFaults_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("magic");
    QTest::newRow("missing") << QStringLiteral("cover-missing") << 404 << QByteArray();
    QTest::newRow("garbage") << QStringLiteral("cover-garbage") << 200 << QByteArray("ZZZZZZZZ");
    QTest::newRow("no picture") << QStringLiteral("cover-no-picture@cloud") << 200 << QByteArray("KXPIC001");
    QTest::newRow("wrong key") << QStringLiteral("cover-wrong-key") << 200 << QByteArray("KXPIC001");
    QTest::newRow("of another recording")
        << Latin("cover-missing@") + Latin(OtherCloudId) << 200 << QByteArray("KXPIC001");
}

void SiteFaultsTest::CoverFaults()
{
    QFETCH(QString, fault);
    QFETCH(int, status);
    QFETCH(QByteArray, magic);
    KXHost::Site site;
    QVERIFY(StartWith(site, {fault}));
    const Answer answer = Get(QString(site.BaseUrl() + QStringLiteral("/covers/") + Latin(CloudId)));
    QCOMPARE(answer.iStatus, status);
    QCOMPARE(answer.body.left(8), magic);
    QCOMPARE(GetCloudRecording(site).iStatus, 200);
}

void SiteFaultsTest::BadFaultIsAnErrorThatNamesIt_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("named");
    QTest::newRow("unknown name") << QStringLiteral("explode") << QStringLiteral("explode");
    QTest::newRow("empty") << QString() << QStringLiteral("\"\"");
    QTest::newRow("name in capitals") << QStringLiteral("CUT") << QStringLiteral("CUT");
    QTest::newRow("no number") << QStringLiteral("cut=many") << QStringLiteral("many");
    QTest::newRow("empty value") << QStringLiteral("slow=") << QStringLiteral("slow");
    QTest::newRow("whole as a part") << QStringLiteral("cut=100") << QStringLiteral("100");
    QTest::newRow("negative part") << QStringLiteral("short=-1") << QStringLiteral("-1");
    QTest::newRow("a stall that never comes") << QStringLiteral("stall=100") << QStringLiteral("100");
    QTest::newRow("no speed at all") << QStringLiteral("slow=0") << QStringLiteral("slow");
    QTest::newRow("right length") << QStringLiteral("wrong-length=0") << QStringLiteral("wrong-length");
    QTest::newRow("value for none") << QStringLiteral("busy=3") << QStringLiteral("busy");
    QTest::newRow("unknown place") << QStringLiteral("busy@nowhere") << QStringLiteral("nowhere");
    QTest::newRow("empty place") << QStringLiteral("busy@") << QStringLiteral("busy");
}

void SiteFaultsTest::BadFaultIsAnErrorThatNamesIt()
{
    QFETCH(QString, fault);
    QFETCH(QString, named);
    KXHost::Site site;
    KXHost::Site::Options options;
    options.faults = QStringList{QStringLiteral("slow=1000"), fault};
    QString strError;
    QVERIFY(!site.Start(options, &strError));
    QVERIFY2(strError.contains(named), qPrintable(strError));
    QCOMPARE(site.Port(), 0);
    QVERIFY(!site.Start(options, nullptr));
}

void SiteFaultsTest::HelpListsEveryFault()
{
    const QString strHelp = KXHost::Site::FaultHelp().join(QLatin1Char('\n'));
    QCOMPARE(KXHost::Site::FaultHelp().size(), 16);
    for (const char* pName :
         {"cut[=PERCENT]", "short[=PERCENT]", "slow[=BYTES_PER_SECOND]", "stall[=PERCENT]", "wrong-length[=BYTES]",
          "never", "refuse", "forbidden", "missing", "busy", "stale-nonce[=USES]", "cover-missing", "cover-garbage",
          "cover-no-picture", "cover-wrong-key", "cover-never"})
        QVERIFY2(strHelp.contains(Latin(pName)), pName);
}

KX_TEST(SiteFaultsTest, QCoreApplication)
#include "SiteFaultsTest.moc"
