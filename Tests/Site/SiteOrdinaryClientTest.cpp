#include "Host/Site/Site.h"
#include "TestMain.h"

#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QtTest>

// The site as Qt's own HTTP client sees it, with its connections kept and its credentials remembered.
class SiteOrdinaryClientTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void EverySourceLetsTheRightPasswordPass_data();
    void EverySourceLetsTheRightPasswordPass();
    void WrongPasswordIsRefused();
    void StaleNonceIsRenewedWithoutAskingAgain();
    void ConnectionsAreKept();

private:
    void Start(const QStringList& faults);
    void Get(const QString& strPath, const QString& strPassword);

    KXHost::Site m_site;
    QScopedPointer<QNetworkAccessManager> m_pNetwork;
    QNetworkReply::NetworkError m_error = QNetworkReply::NoError;
    int m_iStatus = 0;
    int m_iSize = 0;
    int m_iAsked = 0; // how often the client asked for a password
};

void SiteOrdinaryClientTest::init()
{
    m_pNetwork.reset(new QNetworkAccessManager);
    m_pNetwork->setProxy(QNetworkProxy::NoProxy);
    m_iAsked = 0;
}

void SiteOrdinaryClientTest::cleanup()
{
    m_pNetwork.reset();
    m_site.Stop();
}

void SiteOrdinaryClientTest::Start(const QStringList& faults)
{
    KXHost::Site::Options options;
    options.faults = faults;
    QVERIFY(m_site.Start(options, nullptr));
}

void SiteOrdinaryClientTest::Get(const QString& strPath, const QString& strPassword)
{
    const QNetworkRequest request{QUrl(QString(m_site.BaseUrl() + strPath))};
    const QScopedPointer<QNetworkReply> pReply(m_pNetwork->get(request));
    const int iAskedBefore = m_iAsked;
    connect(m_pNetwork.data(), &QNetworkAccessManager::authenticationRequired, pReply.data(),
            [&](QNetworkReply*, QAuthenticator* pAuthenticator) {
                if (++m_iAsked > iAskedBefore + 1)
                    return;
                pAuthenticator->setUser(QStringLiteral("admin"));
                pAuthenticator->setPassword(strPassword);
            });
    QTRY_VERIFY_WITH_TIMEOUT(pReply->isFinished(), 20000);
    m_error = pReply->error();
    m_iStatus = pReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_iSize = pReply->readAll().size();
}

void SiteOrdinaryClientTest::EverySourceLetsTheRightPasswordPass_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("size");
    QTest::newRow("cloud") << QStringLiteral("/cloud/4611686018427400102") << QString() << 0 << 2750003;
    QTest::newRow("device") << QStringLiteral("/device/KXN8R5120907/4/KXN8R5120907_4_20240317T061230?begin=1&end=2")
                            << QStringLiteral("rec8 Pass") << 1 << 1310720;
    QTest::newRow("IOT LAN") << QStringLiteral("/iotlan/KXB1L6600342/1/KXB1L6600342_1_20240401T074500")
                             << QStringLiteral("d0or:bell") << 1 << 655360;
    QTest::newRow("LAN module") << QStringLiteral("/lanmodule/KXM3G0007719/1/KXM3G0007719_1_20240402T090000")
                                << QStringLiteral("tok-7719-e4c2") << 1 << 2097153;
}

void SiteOrdinaryClientTest::EverySourceLetsTheRightPasswordPass()
{
    QFETCH(QString, path);
    QFETCH(QString, password);
    QFETCH(int, asked);
    QFETCH(int, size);
    Start({});
    Get(path, password);
    QCOMPARE(m_error, QNetworkReply::NoError);
    QCOMPARE(m_iStatus, 200);
    QCOMPARE(m_iAsked, asked);
    QCOMPARE(m_iSize, size);
}

void SiteOrdinaryClientTest::WrongPasswordIsRefused()
{
    Start({});
    Get(QStringLiteral("/device/KXD2S0048816/1/KXD2S0048816_1_20240318T071111"), QStringLiteral("st41rs"));
    QCOMPARE(m_error, QNetworkReply::AuthenticationRequiredError);
    QCOMPARE(m_iStatus, 401);
    QCOMPARE(m_iSize, 0);
}

void SiteOrdinaryClientTest::StaleNonceIsRenewedWithoutAskingAgain()
{
    Start({QStringLiteral("stale-nonce=1")});
    for (int i = 0; i < 4; ++i) {
        Get(QStringLiteral("/device/KXD2S0048816/1/KXD2S0048816_1_20240318T071111"), QStringLiteral("St41rs"));
        QCOMPARE(m_iStatus, 200);
        QCOMPARE(m_iSize, 102400);
    }
    QCOMPARE(m_iAsked, 1);
}

void SiteOrdinaryClientTest::ConnectionsAreKept()
{
    Start({});
    for (int i = 0; i < 50; ++i) {
        Get(QStringLiteral("/thumbs/4611686018427400101.jpg"), QString());
        QCOMPARE(m_iStatus, 200);
    }
}

KX_TEST(SiteOrdinaryClientTest, QCoreApplication)
#include "SiteOrdinaryClientTest.moc"
