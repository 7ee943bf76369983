#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

const char GoodConfig[] = R"({"cloud": {"url": "http://127.0.0.1:9/{recordId}"}})";
const char GoodRecords[] = R"([{"iRecordType": 0, "strRecordId": "1", "strDownloadPath": "a.mp4"}])";

} // namespace

// What the client says about files that it cannot work with. Nothing of this reaches the plug-in.
class ClientInputTest : public QObject
{
    Q_OBJECT

private slots:
    void ABadConfigurationNamesTheKey_data();
    void ABadConfigurationNamesTheKey();
    void ABadRecordNamesIndexAndKey_data();
    void ABadRecordNamesIndexAndKey();

private:
    static void Refuses(const QByteArray& config, const QByteArray& records, const QString& strSaid);
};

void ClientInputTest::Refuses(const QByteArray& config, const QByteArray& records, const QString& strSaid)
{
    Workplace place;
    QStringList arguments = place.Download({}, {});
    place.Write("config.json"_s, config);
    place.Write("records.json"_s, records);
    const ClientResult result = RunClient(arguments);
    QVERIFY2(result.iExit == 2, result.Said());
    QVERIFY2(result.strErr.contains(strSaid), result.Said());
    QVERIFY2(!QFileInfo::exists(place.Path("report.json"_s)), result.Said());
}

void ClientInputTest::ABadConfigurationNamesTheKey_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QString>("strSaid");
    const auto row = [](const char* pszName, const char* pszConfig, const char* pszSaid) {
        QTest::newRow(pszName) << QByteArray(pszConfig) << QString::fromUtf8(pszSaid);
    };
    row("no JSON", "{\"cloud\": ", "config.json: not JSON");
    row("nothing", "", "config.json: not JSON");
    row("text after the value", "{} {}", "config.json: not JSON");
    row("not UTF-8", "{\"cloud\": {\"url\": \"http://h/\xff\"}}", "config.json: not JSON");
    row("an array", "[]", "config.json: it must be an object");
    row("unknown key", R"({"clowd": {}})", "config.json: clowd: unknown key");
    row("unknown key of a source", R"({"iotLan": {"url": "http://h/", "pass": "x"}})", "iotLan.pass: unknown key");
    row("source is a text", R"({"device": "http://h/"})", "device must be an object");
    row("source without URL", R"({"lanModule": {"auth": "none"}})", "lanModule.url: is missing");
    row("URL is a number", R"({"cloud": {"url": 7}})", "cloud.url: must be a text");
    row("URL is of another kind", R"({"cloud": {"url": "file:///etc/hostname"}})",
        "cloud.url: must be an http or https");
    row("URL with an unknown field", R"({"cloud": {"url": "http://h/{record}"}})", "has the unknown field {record}");
    row("unknown authentication", R"({"cloud": {"url": "http://h/", "auth": "ntlm"}})",
        "cloud.auth: must be none, basic");
    row("insecure is a text", R"({"cloud": {"url": "http://h/", "insecure": "yes"}})",
        "cloud.insecure: must be true or false");
    row("a limit of nothing", R"({"cloud": {"url": "http://h/", "limitRate": 0}})",
        "cloud.limitRate: must be at least 1000 bytes a second");
    row("fewer than no retries", R"({"cloud": {"url": "http://h/", "retries": -1}})",
        "cloud.retries: must be 0 to 100");
    row("user is an array", R"({"cloud": {"url": "http://h/", "user": []}})", "cloud.user: must be a text");
    row("passwords are a list", R"({"devicePasswords": ["x"]})", "devicePasswords must be an object");
    row("password is a number", R"({"devicePasswords": {"SN1": 1234}})", "devicePasswords.SN1: must be a text");
    row("key twice", R"({"cloud": {"url": "http://a/", "url": "http://b/"}})", "the key \"url\" stands twice");
    row("source that the records need is missing", R"({"device": {"url": "http://h/"}})",
        "record 1 needs the source \"cloud\"");
}

void ClientInputTest::ABadConfigurationNamesTheKey()
{
    QFETCH(QByteArray, config);
    QFETCH(QString, strSaid);
    Refuses(config, GoodRecords, strSaid);
}

void ClientInputTest::ABadRecordNamesIndexAndKey_data()
{
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("strSaid");
    const auto row = [](const char* pszName, const char* pszRecords, const char* pszSaid) {
        QTest::newRow(pszName) << QByteArray(pszRecords) << QString::fromUtf8(pszSaid);
    };
    // One record with the members that every record needs, behind a good one.
    const auto second = [](const char* pszName, const QByteArray& members, const char* pszSaid) {
        QTest::newRow(pszName) << QByteArray(
                                      R"([{"iRecordType": 0, "strRecordId": "1", "strDownloadPath": "a.mp4"}, {)") +
                                      members + "}]"
                               << QString::fromUtf8(pszSaid);
    };
    row("an object", "{}", "records.json: must be an array of at least one record");
    row("no record", "[]", "records.json: must be an array of at least one record");
    row("record is a number", "[1]", "[0] must be an object");
    row("no type", R"([{"strRecordId": "1"}])", "[0].iRecordType: must be a number from 0 to 3");
    second("unknown type", R"("iRecordType": 4)", "[1].iRecordType: must be a number from 0 to 3");
    second("type is a text", R"("iRecordType": "0")", "[1].iRecordType: must be a 32-bit number");
    second("no id", R"("iRecordType": 1, "strDownloadPath": "b.mp4")", "[1].strRecordId: is missing");
    second("no target", R"("iRecordType": 1, "strRecordId": "b")", "[1].strDownloadPath: is missing");
    second("unknown key", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "strText6": "")",
           "[1].strText6: unknown key");
    second("key of another source",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "iCloudValue": 1)",
           "[1].iCloudValue: unknown key");
    second("key that is never sent",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "lReceivedSize": 1)",
           "[1].lReceivedSize: unknown key");
    second("text for a flag",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "bUseAltStart": "no")",
           "[1].bUseAltStart: must be true or false");
    second("fraction for a size",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "lFileSize": 1.5)",
           "[1].lFileSize: must be a 64-bit number");
    second("number too large",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "iValue5": 2147483648)",
           "[1].iValue5: must be a 32-bit number");
    second("64-bit number too large",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "lValue1": 9223372036854775808)",
           "[1].lValue1: must be a 64-bit number");
    second("negative cookie", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "uValue3": -1)",
           "[1].uValue3: must be a number of 0 or more");
    second("name with a NUL", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b\u0000.mp4")",
           "[1].strDownloadPath: must be a text");
    second("cloud id that is no number", R"("iRecordType": 0, "strRecordId": "b", "strDownloadPath": "b.mp4")",
           "[1].strRecordId: must be a decimal 64-bit number");
    second("cloud id that is written otherwise",
           R"("iRecordType": 0, "strRecordId": "007", "strDownloadPath": "b.mp4")",
           "[1].strRecordId: must be a decimal 64-bit number");
    second("the same recording again", R"("iRecordType": 0, "strRecordId": "1", "strDownloadPath": "b.mp4")",
           "[1].strRecordId: this source has a record of that id before");
    second("target above the folder", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "x/../../b.mp4")",
           "[1].strDownloadPath: must name a file in");
    second("target elsewhere", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "/tmp/b.mp4")",
           "[1].strDownloadPath: must name a file in");
    second("target is the folder", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": ".")",
           "[1].strDownloadPath: must name a file in");
    second("target is a folder", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b/")",
           "[1].strDownloadPath: must name a file in");
    second("time is none",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "strEndTime": "20241301T000000")",
           "[1].strEndTime: must be a time like");
    second("checksum too short", R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "sha256": "ab")",
           "[1].sha256: must be 64 hexadecimal digits");
    second("unknown expectation",
           R"("iRecordType": 1, "strRecordId": "b", "strDownloadPath": "b.mp4", "expect": "luck")",
           "[1].expect: must be finished");
}

void ClientInputTest::ABadRecordNamesIndexAndKey()
{
    QFETCH(QByteArray, records);
    QFETCH(QString, strSaid);
    Refuses(GoodConfig, records, strSaid);
}

KX_TEST(ClientInputTest, QCoreApplication)
#include "ClientInputTest.moc"
