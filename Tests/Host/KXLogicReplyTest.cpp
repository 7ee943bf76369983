#include "Host/KXLogic/RunningTransfers.h"
#include "TestMain.h"
#include "TransferStage.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QProcess>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <atomic>
#include <memory>

Q_DECLARE_METATYPE(ScriptedServer::Script)

namespace {

constexpr int WaitMs = 20000;

const QByteArray Recording(5000, 'r');

QString HashOf(const QByteArray& body)
{
    return QString::fromLatin1(QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex());
}

// The first `iCount` requests get one answer, those behind them another.
ScriptedServer::Script First(int iCount, const ScriptedServer::Script& script, const ScriptedServer::Script& later)
{
    const auto pSeen = std::make_shared<std::atomic<int>>(0);
    return [=](QTcpSocket& socket, const QByteArray& head) { (++*pSeen <= iCount ? script : later)(socket, head); };
}

} // namespace

// What is taken for a whole recording, what is asked for again, and what each failure is called.
class KXLogicReplyTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void ComparesWithWhatIsExpected_data();
    void ComparesWithWhatIsExpected();
    void AsksAgain_data();
    void AsksAgain();
    void ConnectionsAreUsedAgain();
    void ALimitedTransferLetsAnotherPass();
    void ARefusedStartBeganNothing();
    void AnEndlessErrorPageIsNotRead();
    void ACertificateThatNobodyKnowsIsSaid();
    void AServerWithoutTlsIsSaid();
    void AnUnknownMachineIsSaid();

private:
    QString Reason() const { return m_pStage->ReasonOf(QStringLiteral("r")); }

    std::unique_ptr<TransferStage> m_pStage;
};

void KXLogicReplyTest::init()
{
    m_pStage = std::make_unique<TransferStage>();
    KXHost::ExpectRecording(1, QStringLiteral("r"), {});
}

void KXLogicReplyTest::cleanup()
{
    KXHost::ExpectRecording(1, QStringLiteral("r"), {});
    m_pStage.reset();
}

void KXLogicReplyTest::ComparesWithWhatIsExpected_data()
{
    QTest::addColumn<ScriptedServer::Script>("script");
    QTest::addColumn<int>("iSize");
    QTest::addColumn<QString>("strSha256");
    QTest::addColumn<QString>("strReason");
    const QString strRight = HashOf(Recording);
    const QString strWrong = HashOf("another one");
    const auto row = [](const char* pszName, const ScriptedServer::Script& script, int iSize, const QString& strSha256,
                        const char* pszReason) {
        QTest::newRow(pszName) << script << iSize << strSha256 << QString::fromLatin1(pszReason);
    };
    const auto whole = Answer::Whole(Recording);
    const auto closing = Answer::Closing(Recording);
    const auto chunked = Answer::Chunked(Recording, true);
    row("size and hash fit", whole, 5000, strRight, "");
    row("too short", whole, 5001, QString(), "has 5000 bytes instead of 5001");
    row("too long", whole, 4999, QString(), "more arrives than the 4999 bytes");
    row("another content", whole, 5000, strWrong, "another recording: it has SHA-256");
    row("chunks of the right size", chunked, 5000, QString(), "");
    row("chunks of another size", chunked, 5001, QString(), "has 5000 bytes instead of 5001");
    row("no length, but the right size", closing, 5000, QString(), "");
    row("no length, but the right hash", closing, -1, strRight, "");
    row("no length, too short", closing, 5001, QString(), "has 5000 bytes instead of 5001");
    row("no length, another content", closing, -1, strWrong, "another recording");
    row("no length, and nothing is known", closing, -1, QString(), "without its length");
}

void KXLogicReplyTest::ComparesWithWhatIsExpected()
{
    QFETCH(ScriptedServer::Script, script);
    QFETCH(int, iSize);
    QFETCH(QString, strSha256);
    QFETCH(QString, strReason);
    m_pStage->m_server.Serve("/r", script);
    KXHost::ExpectRecording(1, QStringLiteral("r"), {iSize, strSha256});
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), strReason.isEmpty() ? 2 : 0);
    QVERIFY2(Reason().contains(strReason) && Reason().isEmpty() == strReason.isEmpty(), qPrintable(Reason()));
}

void KXLogicReplyTest::AsksAgain_data()
{
    QTest::addColumn<ScriptedServer::Script>("script");
    QTest::addColumn<int>("iTimes");
    QTest::addColumn<int>("iState");
    QTest::addColumn<int>("iRequests");
    QTest::addColumn<QString>("strReason");
    const auto row = [](const char* pszName, const ScriptedServer::Script& script, int iTimes, int iState,
                        int iRequests, const char* pszReason) {
        QTest::newRow(pszName) << script << iTimes << iState << iRequests << QString::fromLatin1(pszReason);
    };
    const auto hangUp = Answer::HangUp();
    const auto busy = Answer::Status("503 Service Unavailable", "Retry-After: 0\r\n");
    row("two that hang up", hangUp, 2, 2, 3, "");
    row("three that hang up", hangUp, 3, 0, 3, "closed the connection without an answer");
    row("busy twice", busy, 2, 2, 3, "");
    row("busy three times", busy, 3, 0, 3, "is busy (HTTP status 503)");
    row("too many requests", Answer::Status("429 Too Many Requests", "Retry-After: 0\r\n"), 1, 2, 2, "");
    row("busy without saying how long", Answer::Status("503 Service Unavailable"), 1, 0, 1, "is busy");
    row("busy for an hour", Answer::Status("503 Service Unavailable", "Retry-After: 3600\r\n"), 1, 0, 1, "is busy");
    row("a fault of the server", Answer::Status("500 Oops", "Retry-After: 0\r\n"), 1, 0, 1, "has a fault of its own");
}

void KXLogicReplyTest::AsksAgain()
{
    QFETCH(ScriptedServer::Script, script);
    QFETCH(int, iTimes);
    QFETCH(int, iState);
    QFETCH(int, iRequests);
    QFETCH(QString, strReason);
    m_pStage->m_server.Serve("/r", First(iTimes, script, Answer::Whole(Recording)));
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), iState);
    QCOMPARE(static_cast<int>(m_pStage->m_server.Heads().size()), iRequests);
    QVERIFY2(Reason().contains(strReason) && Reason().isEmpty() == strReason.isEmpty(), qPrintable(Reason()));
}

void KXLogicReplyTest::ConnectionsAreUsedAgain()
{
    m_pStage->m_server.Serve("/r", Answer::Whole(Recording));
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(m_pStage->Run(QStringLiteral("r")), 2);
        QTRY_COMPARE_WITH_TIMEOUT(KXHost::RunningTransfers().size(), 0, WaitMs);
    }
    QCOMPARE(m_pStage->m_server.AllConnections(), 1);
}

// The limited one would take minutes, the other one is some hundred times as large and passes it.
void KXLogicReplyTest::ALimitedTransferLetsAnotherPass()
{
    m_pStage->m_server.Serve("/r", Answer::Whole(QByteArray(300000, 's')));
    m_pStage->m_server.Serve("/large", Answer::Whole(QByteArray(30000000, 'l')));
    m_pStage->Source().lBytesPerSecond = 2000;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Start(QStringLiteral("r")), 0);
    QTRY_VERIFY_WITH_TIMEOUT(m_pStage->m_listener.Received(QStringLiteral("1 r")) > 0, WaitMs);
    m_pStage->Source().lBytesPerSecond = 0;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("large")), 2);
    QVERIFY(m_pStage->m_listener.Received(QStringLiteral("1 r")) < 300000);
    QCOMPARE(m_pStage->m_logic.StopDeviceRecordDownload("r"), 0);
}

void KXLogicReplyTest::ARefusedStartBeganNothing()
{
    m_pStage->Source().strUrl = QString();
    m_pStage->Configure();
    QVERIFY(m_pStage->Start(QStringLiteral("never")) != 0);
    QVERIFY(!KXHost::WasTransferBegun(1, QStringLiteral("never")));
    QCOMPARE(m_pStage->ReasonOf(QStringLiteral("never")), QStringLiteral("the source has no URL"));
    m_pStage->m_server.Serve("/r", Answer::Status("404 Not Found"));
    m_pStage->Source().strUrl = m_pStage->m_server.Url(QStringLiteral("/{recordId}"));
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), 0);
    QVERIFY(KXHost::WasTransferBegun(1, QStringLiteral("r")));
}

void KXLogicReplyTest::AnEndlessErrorPageIsNotRead()
{
    m_pStage->m_server.Serve("/r", Answer::Endless(65536, "404 Not Found"));
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), 0);
    QVERIFY2(Reason().contains(QStringLiteral("does not have it (HTTP status 404)")), qPrintable(Reason()));
    QTRY_COMPARE_WITH_TIMEOUT(m_pStage->m_server.OpenConnections(), 0, WaitMs);
}

void KXLogicReplyTest::ACertificateThatNobodyKnowsIsSaid()
{
    QProcess openssl;
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    const QString strKey = m_pStage->Path(QStringLiteral("key.pem"));
    const QString strCertificate = m_pStage->Path(QStringLiteral("certificate.pem"));
    openssl.start(
        QStringLiteral("openssl"),
        QStringLiteral("req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1").split(QLatin1Char(' ')) +
            QStringList{QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                        QStringLiteral("-keyout"), strKey, QStringLiteral("-out"), strCertificate});
    if (!openssl.waitForStarted() || !openssl.waitForFinished() || openssl.exitCode() != 0)
        QSKIP("there is no openssl to make a certificate with", "");
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("s_server"), QStringLiteral("-accept"), QStringLiteral("127.0.0.1:0"),
                   QStringLiteral("-www"), QStringLiteral("-key"), strKey, QStringLiteral("-cert"), strCertificate});
    QByteArray said;
    const QRegularExpression accepts(QStringLiteral("ACCEPT 127\\.0\\.0\\.1:(\\d+)"));
    QTRY_VERIFY_WITH_TIMEOUT((said += openssl.readAll()).contains("ACCEPT 127.0.0.1:"), WaitMs);
    const QString strPort = accepts.match(QString::fromLatin1(said)).captured(1);
    m_pStage->Source().strUrl = QStringLiteral("https://127.0.0.1:%1/{recordId}").arg(strPort);
    m_pStage->Configure();
    const int iState = m_pStage->Run(QStringLiteral("r"));
    openssl.kill();
    openssl.waitForFinished();
    QCOMPARE(iState, 0);
    QVERIFY2(Reason().startsWith(QStringLiteral("the certificate of 127.0.0.1 is not signed by a known authority")),
             qPrintable(Reason()));
}

void KXLogicReplyTest::AServerWithoutTlsIsSaid()
{
    m_pStage->Source().strUrl.replace(QStringLiteral("http:"), QStringLiteral("https:"));
    m_pStage->Configure();
    m_pStage->m_server.AnswerAll("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), 0);
    QVERIFY2(Reason().contains(QStringLiteral("does not speak https as it should")), qPrintable(Reason()));
}

void KXLogicReplyTest::AnUnknownMachineIsSaid()
{
    m_pStage->Source().strUrl = QStringLiteral("http://no-such-machine.invalid/{recordId}");
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), 0);
    QVERIFY2(Reason().contains(QStringLiteral("no machine of the name no-such-machine.invalid")), qPrintable(Reason()));
}

KX_TEST(KXLogicReplyTest, QCoreApplication)
#include "KXLogicReplyTest.moc"
