#include "TestMain.h"
#include "TransferStage.h"

#include <QtTest/QtTest>

#include <memory>

Q_DECLARE_METATYPE(ScriptedServer::Script)

using KXHost::Auth;

// Who is told a password, and how.
class KXLogicCredentialsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_pStage = std::make_unique<TransferStage>(); }
    void cleanup() { m_pStage.reset(); }

    void AnyNameAndPasswordWork_data();
    void AnyNameAndPasswordWork();
    void OnlyTheConfiguredSchemeIsAnswered_data();
    void OnlyTheConfiguredSchemeIsAnswered();
    void ANonceThatIsTooOldIsReplaced();
    void AServerThatIsNeverContentIsGivenUp();
    void AMissingPasswordIsSaid();
    void AReadablePasswordLeavesThisMachineOnlyWhenAllowed();

private:
    bool WasAuthorizationSent() const;

    std::unique_ptr<TransferStage> m_pStage;
};

bool KXLogicCredentialsTest::WasAuthorizationSent() const
{
    for (const QByteArray& head : m_pStage->m_server.Heads()) {
        if (head.toLower().contains("\r\nauthorization:"))
            return true;
    }
    return false;
}

void KXLogicCredentialsTest::AnyNameAndPasswordWork_data()
{
    QTest::addColumn<QString>("strUser");
    QTest::addColumn<QString>("strPassword");
    QTest::addColumn<QByteArray>("strScheme");
    for (const char* pszScheme : {"Basic", "MD5", "MD5-sess", "SHA-256", "SHA-256-sess"}) {
        const auto row = [pszScheme](const char* pszName, const QString& strUser, const QString& strPassword) {
            QTest::addRow("%s, %s", pszScheme, pszName) << strUser << strPassword << QByteArray(pszScheme);
        };
        row("plain", QStringLiteral("viewer"), QStringLiteral("p:w"));
        row("of other scripts", QStringLiteral(u"pä密"), QStringLiteral(u"密 ü"));
        row("a domain", QStringLiteral("DOM\\bob"), QStringLiteral("a\\b"));
        row("quotes and commas", QStringLiteral("b\"ob, x=1"), QStringLiteral("x\"y, z"));
    }
}

void KXLogicCredentialsTest::AnyNameAndPasswordWork()
{
    QFETCH(QString, strUser);
    QFETCH(QString, strPassword);
    QFETCH(QByteArray, strScheme);
    const QByteArray user = strUser.toUtf8();
    const QByteArray password = strPassword.toUtf8();
    const bool bBasic = strScheme == "Basic";
    m_pStage->m_server.Serve("/r", bBasic ? Answer::Basic(user, password, "recording")
                                          : Answer::Digest(user, password, "recording", strScheme));
    m_pStage->Source().auth = bBasic ? Auth::Basic : Auth::Digest;
    m_pStage->Source().strUser = strUser;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), strPassword), 2);
    QCOMPARE(m_pStage->Content(QStringLiteral("r.mp4")), QByteArray("recording"));
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), strPassword + QLatin1Char('x')), 3);
    QVERIFY2(m_pStage->ReasonOf(QStringLiteral("r")).contains(QStringLiteral("with the password of device D1")),
             qPrintable(m_pStage->ReasonOf(QStringLiteral("r"))));
}

void KXLogicCredentialsTest::OnlyTheConfiguredSchemeIsAnswered_data()
{
    QTest::addColumn<int>("iAuth");
    QTest::addColumn<QByteArray>("strOffers");
    QTest::addColumn<QString>("strReason");
    const auto row = [](const char* pszName, Auth auth, const QByteArray& strOffers, const char* pszReason) {
        QTest::newRow(pszName) << static_cast<int>(auth) << strOffers << QString::fromLatin1(pszReason);
    };
    row("digest, but basic is offered", Auth::Digest, "Basic realm=\"x\"", "asks for basic, but");
    row("digest, but NTLM or Negotiate are offered", Auth::Digest, "NTLM, Negotiate",
        "asks for ntlm or negotiate, but");
    row("digest, but another algorithm", Auth::Digest, "Digest realm=\"x\", nonce=\"n\", algorithm=SHA-512-256",
        "asks for SHA-512-256 digest, but");
    row("digest, but for the body too", Auth::Digest, "Digest realm=\"x\", nonce=\"n\", qop=\"auth-int\"",
        "asks for MD5 digest, but");
    row("basic, but digest is offered", Auth::Basic, "Digest realm=\"x\", nonce=\"n\"", "asks for MD5 digest, but");
    row("none, but basic is offered", Auth::None, "Basic realm=\"x\"", "asks for a password, but");
}

void KXLogicCredentialsTest::OnlyTheConfiguredSchemeIsAnswered()
{
    QFETCH(int, iAuth);
    QFETCH(QByteArray, strOffers);
    QFETCH(QString, strReason);
    m_pStage->m_server.Serve("/r", Answer::Status("401 Unauthorized", "WWW-Authenticate: " + strOffers + "\r\n"));
    m_pStage->Source().auth = static_cast<Auth>(iAuth);
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), QStringLiteral("p:w")), 3);
    QVERIFY(!WasAuthorizationSent());
    QVERIFY2(m_pStage->ReasonOf(QStringLiteral("r")).contains(strReason),
             qPrintable(m_pStage->ReasonOf(QStringLiteral("r"))));
}

void KXLogicCredentialsTest::ANonceThatIsTooOldIsReplaced()
{
    const auto whole = Answer::Whole("recording");
    const auto challenge = [](const char* pszNonce, const char* pszStale) {
        return Answer::Status("401 Unauthorized", QByteArray("WWW-Authenticate: Digest realm=\"site\", qop=\"auth\"") +
                                                      ", nonce=\"" + pszNonce + "\"" + pszStale + "\r\n");
    };
    m_pStage->m_server.Serve("/r", [=](QTcpSocket& socket, const QByteArray& head) {
        if (head.contains("nonce=\"second\""))
            whole(socket, head);
        else if (head.contains("nonce=\"first\""))
            challenge("second", ", stale=TRUE")(socket, head);
        else
            challenge("first", "")(socket, head);
    });
    m_pStage->Source().auth = Auth::Digest;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), QStringLiteral("p:w")), 2);
    QCOMPARE(static_cast<int>(m_pStage->m_server.Heads().size()), 3);
}

void KXLogicCredentialsTest::AServerThatIsNeverContentIsGivenUp()
{
    m_pStage->m_server.Serve(
        "/r", Answer::Status("401 Unauthorized",
                             "WWW-Authenticate: Digest realm=\"site\", qop=\"auth\", nonce=\"n\", stale=true\r\n"));
    m_pStage->Source().auth = Auth::Digest;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), QStringLiteral("p:w")), 3);
}

void KXLogicCredentialsTest::AMissingPasswordIsSaid()
{
    m_pStage->m_server.Serve("/r", Answer::Digest("viewer", "p:w", "x"));
    m_pStage->Source().auth = Auth::Digest;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r")), 3);
    QVERIFY2(
        m_pStage->ReasonOf(QStringLiteral("r")).startsWith(QStringLiteral("no password is configured for device D1")),
        qPrintable(m_pStage->ReasonOf(QStringLiteral("r"))));
}

// The address 0.0.0.0 leads to this machine and is no loopback address.
void KXLogicCredentialsTest::AReadablePasswordLeavesThisMachineOnlyWhenAllowed()
{
#ifdef Q_OS_LINUX
    m_pStage->m_server.Serve("/r", Answer::Basic("viewer", "p:w", "recording"));
    m_pStage->Source().auth = Auth::Basic;
    m_pStage->Source().strUrl.replace(QStringLiteral("127.0.0.1"), QStringLiteral("0.0.0.0"));
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), QStringLiteral("p:w")), 0);
    QVERIFY(!WasAuthorizationSent());
    QVERIFY2(m_pStage->ReasonOf(QStringLiteral("r")).contains(QStringLiteral("\"insecure\"")),
             qPrintable(m_pStage->ReasonOf(QStringLiteral("r"))));
    m_pStage->Source().bInsecure = true;
    m_pStage->Configure();
    QCOMPARE(m_pStage->Run(QStringLiteral("r"), QStringLiteral("p:w")), 2);
#else
    QSKIP("here 0.0.0.0 leads nowhere", "");
#endif
}

KX_TEST(KXLogicCredentialsTest, QCoreApplication)
#include "KXLogicCredentialsTest.moc"
