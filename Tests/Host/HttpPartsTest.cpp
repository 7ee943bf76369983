#include "Host/Http/HttpDigest.h"
#include "Host/Http/HttpReplyHead.h"
#include "Host/Http/HttpRules.h"
#include "TestMain.h"

#include <QtTest/QtTest>

using namespace KXHost;

// The small parts of the HTTP client that need no server.
class HttpPartsTest : public QObject
{
    Q_OBJECT

private slots:
    void AnswersAsTheStandardDoes_data();
    void AnswersAsTheStandardDoes();
    void ReadsAnyChallenge_data();
    void ReadsAnyChallenge();
    void TakesTheBestDigest();
    void KnowsLoopback_data();
    void KnowsLoopback();
    void KnowsBadRedirects_data();
    void KnowsBadRedirects();
    void AReadablePasswordNeedsASafeWay();
    void ReadsHeads();
};

void HttpPartsTest::AnswersAsTheStandardDoes_data()
{
    QTest::addColumn<QByteArray>("strAlgorithm");
    QTest::addColumn<QByteArray>("strResponse");
    QTest::newRow("MD5") << QByteArray("MD5") << QByteArray("8ca523f5e9506fed4657c9700eebdbec");
    QTest::newRow("SHA-256") << QByteArray("SHA-256")
                             << QByteArray("753927fa0e85d155564e2e272a28d1802ca10daf4496794697cf8db5856cb6c1");
}

// The example of RFC 7616, 3.9.1.
void HttpPartsTest::AnswersAsTheStandardDoes()
{
    QFETCH(QByteArray, strAlgorithm);
    QFETCH(QByteArray, strResponse);
    const auto challenges =
        ReadChallenges({"Digest realm=\"http-auth@example.org\", qop=\"auth, auth-int\", algorithm=" + strAlgorithm +
                        ", nonce=\"7ypf/xlj9XXwfDPEoM4URrv/xwf94BcCAzFZH4GiTo0v\", "
                        "opaque=\"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS\""});
    const HttpChallenge* const pChallenge = ChooseDigest(challenges);
    QVERIFY(pChallenge != nullptr);
    const QByteArray answer = DigestAnswer(*pChallenge, {"Mufasa", "Circle of Life"}, "/dir/index.html",
                                           "f2/wE4q74E6zIJEtWaHKaf5wv/H5QzzpXusqGemxURZJ");
    QVERIFY2(answer.contains("response=\"" + strResponse + '"'), answer.constData());
    QVERIFY2(answer.contains("opaque=\"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS\""), answer.constData());
    QVERIFY2(answer.endsWith("algorithm=" + strAlgorithm), answer.constData());
}

void HttpPartsTest::ReadsAnyChallenge_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("schemes");
    QTest::addColumn<QByteArray>("realm"); // of the last
    const auto row = [](const char* pszField, const char* pszSchemes, const char* pszRealm) {
        QTest::newRow(pszField) << QByteArray(pszField) << QByteArray(pszSchemes) << QByteArray(pszRealm);
    };
    row("", "", "");
    row("Basic", "basic", "");
    row("Basic realm=\"a, b\", Digest realm = \"c\\\"d\" , nonce=n", "basic digest", "c\"d");
    row("Negotiate, Digest REALM=x", "negotiate digest", "x");
    row("Digest realm=\"never closed", "digest", "never closed");
    row("Digest realm=\"ends\\", "digest", "ends\\");
    row("realm=\"x\"", "", "");
    row(",,=;\"\"()Basic realm=y", "basic", "y");
}

void HttpPartsTest::ReadsAnyChallenge()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, schemes);
    QFETCH(QByteArray, realm);
    const auto challenges = ReadChallenges({field});
    QList<QByteArray> found;
    for (const HttpChallenge& challenge : challenges)
        found.append(challenge.strScheme);
    QCOMPARE(found.join(' '), schemes);
    QCOMPARE(challenges.isEmpty() ? QByteArray() : challenges.last().parameters.value("realm"), realm);
}

void HttpPartsTest::TakesTheBestDigest()
{
    const auto best = [](const QList<QByteArray>& fields) {
        const auto challenges = ReadChallenges(fields);
        const HttpChallenge* const pBest = ChooseDigest(challenges);
        return pBest == nullptr ? QByteArray("none") : pBest->parameters.value("nonce");
    };
    QCOMPARE(best({"Digest nonce=1", "Digest algorithm=SHA-256, nonce=2"}), QByteArray("2"));
    QCOMPARE(best({"Digest algorithm=SHA-512-256, nonce=1, Digest algorithm=md5, nonce=2"}), QByteArray("2"));
    QCOMPARE(best({"Digest realm=x"}), QByteArray("none"));
    QCOMPARE(best({"Digest nonce=1, qop=\"auth-int\""}), QByteArray("none"));
    QCOMPARE(best({"Basic realm=x"}), QByteArray("none"));
}

void HttpPartsTest::KnowsLoopback_data()
{
    QTest::addColumn<QString>("strUrl");
    QTest::addColumn<bool>("bLoopback");
    const auto row = [](const char* pszUrl, bool bLoopback) {
        QTest::newRow(pszUrl) << QString::fromLatin1(pszUrl) << bLoopback;
    };
    row("http://127.0.0.1/", true);
    row("http://127.9.8.7:80/", true);
    row("http://localhost/", true);
    row("http://LOCALHOST/", true);
    row("http://[::1]/", true);
    row("http://127.0.0.1.example.com/", false);
    row("http://127.example.com/", false);
    row("http://localhost.example.com/", false);
    row("http://10.127.0.1/", false);
    row("http://0.0.0.0/", false);
    row("http://[::2]/", false);
}

void HttpPartsTest::KnowsLoopback()
{
    QFETCH(QString, strUrl);
    QFETCH(bool, bLoopback);
    QCOMPARE(IsLoopback(QUrl(strUrl)), bLoopback);
}

void HttpPartsTest::KnowsBadRedirects_data()
{
    QTest::addColumn<QString>("strFrom");
    QTest::addColumn<QString>("strTo");
    QTest::addColumn<QString>("strProblem");
    const auto row = [](const char* pszName, const char* pszFrom, const char* pszTo, const char* pszProblem) {
        QTest::newRow(pszName) << QString::fromLatin1(pszFrom) << QString::fromLatin1(pszTo)
                               << QString::fromLatin1(pszProblem);
    };
    row("to another server", "http://a/", "http://b/", "");
    row("upwards", "http://a/", "https://a/", "");
    row("downwards", "https://a:8443/", "http://a/",
        "a:8443 redirects from https to http, where anyone could read along");
    row("to a file", "http://a/", "file:///etc/passwd", "a redirects to what is no address");
    row("to another protocol", "http://a/", "ftp://b/", "a redirects to ftp, which is neither http nor https");
    row("nowhere", "http://a/", "http://", "a redirects to what is no address");
}

void HttpPartsTest::KnowsBadRedirects()
{
    QFETCH(QString, strFrom);
    QFETCH(QString, strTo);
    QFETCH(QString, strProblem);
    QCOMPARE(RedirectProblem(QUrl(strFrom), QUrl(strTo)), strProblem);
}

void HttpPartsTest::AReadablePasswordNeedsASafeWay()
{
    QVERIFY(MaySendReadable(QUrl(QStringLiteral("https://a/")), false));
    QVERIFY(MaySendReadable(QUrl(QStringLiteral("http://127.0.0.1/")), false));
    QVERIFY(!MaySendReadable(QUrl(QStringLiteral("http://a/")), false));
    QVERIFY(MaySendReadable(QUrl(QStringLiteral("http://a/")), true));
    QVERIFY(!IsSameOrigin(QUrl(QStringLiteral("http://a/")), QUrl(QStringLiteral("https://a/"))));
    QVERIFY(!IsSameOrigin(QUrl(QStringLiteral("http://a/")), QUrl(QStringLiteral("http://a:81/"))));
    QVERIFY(IsSameOrigin(QUrl(QStringLiteral("http://a/x")), QUrl(QStringLiteral("http://A:80/y"))));
}

void HttpPartsTest::ReadsHeads()
{
    HttpReplyHead head;
    const auto add = [&head](const char* pszLine) { return head.Add(pszLine, qstrlen(pszLine)); };
    for (const char* pszLine : {"HTTP/1.1 103 Early Hints\r\n", "Content-Length: 1\r\n", "\r\n"})
        QVERIFY(add(pszLine));
    QVERIFY(!head.IsComplete());
    for (const char* pszLine : {"HTTP/1.1 200 OK\r\n", "content-length: 7, 7\r\n", "Content-Length:7\r\n", "\r\n"})
        QVERIFY(add(pszLine));
    QVERIFY(head.IsComplete());
    QCOMPARE(head.Status(), 200);
    QCOMPARE(head.Length(), qint64(7));
    QVERIFY(!head.HasDifferingLengths());
    QVERIFY(add("Content-Length: 9\r\n")); // a trailer
    QVERIFY(!head.HasDifferingLengths());
    const QByteArray large(static_cast<int>(HttpReplyHead::MostBytes), 'x');
    QVERIFY(!head.Add(large.constData(), static_cast<std::size_t>(large.size())));
}

KX_TEST(HttpPartsTest, QCoreApplication)
#include "HttpPartsTest.moc"
