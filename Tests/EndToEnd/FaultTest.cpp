#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

const QString Cloud = QStringLiteral("4611686018427400102");
const QString Device = QStringLiteral("KXD2S0048816_1_20240318T071111");
const QString IOTLan = QStringLiteral("KXB1L6600342_1_20240401T074500");
const QString LanModule = QStringLiteral("KXM3G0007719_1_20240402T090000");

} // namespace

// What the client makes of a site that misbehaves, one fault at a time.
class FaultTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void AFaultEndsInAState_data();
    void AFaultEndsInAState();
    void OnlyTheRecordWithTheFaultFails();
    void ExpectedFailuresAreNoFailure();
    void AnExpectedFailureThatSucceedsIsOne();

private:
    static void VerifyReason(const Workplace& place, const ClientResult& result, const QJsonObject& entry);
    // The record as that site has it: its cover is there, too.
    QJsonObject RecordOf(const ServedSite& site, const QString& strRecordId) const;

    ServedSite m_soundSite;
};

void FaultTest::initTestCase()
{
    QVERIFY(m_soundSite.Start({"--difficult"_s}));
    QVERIFY(m_soundSite.FetchRecords());
}

QJsonObject FaultTest::RecordOf(const ServedSite& site, const QString& strRecordId) const
{
    QByteArray text = QJsonDocument(m_soundSite.Record(strRecordId)).toJson();
    text.replace(m_soundSite.BaseUrl().toUtf8(), site.BaseUrl().toUtf8());
    return QJsonDocument::fromJson(text).object();
}

void FaultTest::AFaultEndsInAState_data()
{
    QTest::addColumn<QString>("strFault");
    QTest::addColumn<QString>("strRecordId");
    QTest::addColumn<int>("iExit");
    QTest::addColumn<QString>("strState");
    const auto row = [](const char* pszName, const char* pszFault, const QString& strRecordId, int iExit,
                        const char* pszState) {
        QTest::newRow(pszName) << QString::fromUtf8(pszFault) << strRecordId << iExit << QString::fromUtf8(pszState);
    };
    row("connection cut, cloud", "cut", Cloud, 1, "failed");
    row("connection cut, device", "cut=10", Device, 1, "failed");
    row("connection cut, IOT LAN", "cut=99", IOTLan, 1, "failed");
    row("connection cut, LAN module", "cut=0", LanModule, 1, "failed");
    row("a shorter file", "short", Cloud, 1, "failed");
    row("slow, but whole", "slow=200000", Device, 0, "whole");
    row("announces more than it sends", "wrong-length=1000", LanModule, 1, "failed");
    row("announces less than it sends", "wrong-length=-1000", IOTLan, 1, "");
    row("refused, cloud", "refuse", Cloud, 1, "refused");
    row("refused, device", "refuse", Device, 1, "refused");
    row("refused, IOT LAN", "refuse", IOTLan, 1, "refused");
    row("refused, LAN module", "refuse", LanModule, 1, "refused");
    row("forbidden", "forbidden", Cloud, 1, "refused");
    row("missing", "missing", Device, 1, "failed");
    row("busy", "busy", LanModule, 1, "failed");
    row("a nonce that goes stale", "stale-nonce", Device, 0, "whole");
    row("no cover", "cover-missing", Cloud, 0, "whole");
    row("a cover that is garbage", "cover-garbage", Cloud, 0, "whole");
    row("a cover that is no picture", "cover-no-picture", Cloud, 0, "whole");
    row("a cover with another key", "cover-wrong-key", Cloud, 1, "dropped");
}

void FaultTest::AFaultEndsInAState()
{
    QFETCH(QString, strFault);
    QFETCH(QString, strRecordId);
    QFETCH(int, iExit);
    QFETCH(QString, strState);
    ServedSite site;
    QVERIFY(site.Start({"--fault"_s, strFault}));
    Workplace place;
    const ClientResult result = RunClient(place.Download(site.Config(), {RecordOf(site, strRecordId)}));
    QVERIFY2(result.iExit == iExit, result.Said());
    QCOMPARE(result.LastOutLine(),
             iExit == 0 ? "1 recordings, 1 whole, 0 failed"_s : "1 recordings, 0 whole, 1 failed"_s);
    const QJsonObject entry = place.Report().value("list"_s).toArray().at(0).toObject();
    QCOMPARE(entry.value("strRecordId"_s).toString(), strRecordId);
    QVERIFY2(entry.value("state"_s).toString().startsWith(strState), result.Said());
    QVERIFY2(result.strOut.contains(strRecordId), result.Said());
    VerifyReason(place, result, entry);
}

// The same sentence in report, table and log; a task that the plug-in drops has no transfer that the log could tell of.
void FaultTest::VerifyReason(const Workplace& place, const ClientResult& result, const QJsonObject& entry)
{
    const QString strReason = entry.value("reason"_s).toString();
    const QString strState = entry.value("state"_s).toString();
    QCOMPARE(strReason.isEmpty(), strState == "whole"_s);
    if (strReason.isEmpty())
        return;
    QVERIFY2(!strReason.contains("nknown error"_s), result.Said());
    QVERIFY2(result.strOut.contains(strState + ": "_s + strReason), result.Said());
    if (strState != "dropped"_s)
        QVERIFY2(place.Read("out/.kxclient/kxclient.log"_s).contains(("reason:"_s + strReason).toUtf8()),
                 result.Said());
}

void FaultTest::OnlyTheRecordWithTheFaultFails()
{
    ServedSite site;
    QVERIFY(site.Start({"--fault"_s, "busy@"_s + IOTLan, "--fault"_s, "refuse@lanModule"_s}));
    QJsonArray records;
    for (const QString& strRecordId : {Cloud, Device, IOTLan, LanModule})
        records.append(RecordOf(site, strRecordId));
    Workplace place;
    const ClientResult result = RunClient(place.Download(site.Config(), records));
    QVERIFY2(result.iExit == 1, result.Said());
    QCOMPARE(result.LastOutLine(), "4 recordings, 2 whole, 2 failed"_s);
    QStringList states;
    for (const QJsonValue entry : place.Report().value("list"_s).toArray())
        states.append(entry.toObject().value("state"_s).toString());
    QCOMPARE(states, QStringList({"whole"_s, "whole"_s, "failed"_s, "refused"_s}));
}

void FaultTest::ExpectedFailuresAreNoFailure()
{
    const QStringList difficult{"KXD2S0059903_1_20240505T101500"_s,
                                "KXD2S0059903_2_20240505T101500"_s,
                                "KXD2S0061174_1_20240506T120000"_s,
                                "KXD2S0061174_2_20240505T110000"_s,
                                "4611686018427400201"_s,
                                "4611686018427400202"_s,
                                "4611686018427400203"_s,
                                "4611686018427400204"_s,
                                "4611686018427400205"_s,
                                "4611686018427400206"_s};
    QJsonArray records;
    for (const QString& strRecordId : difficult)
        records.append(m_soundSite.Record(strRecordId));
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_soundSite.Config(), records));
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(result.LastOutLine(), "10 recordings, 7 whole, 3 failed"_s);
    QVERIFY2(result.strOut.contains("as expected: device KXD2S0061174_1_20240506T120000 refused"_s), result.Said());
    QVERIFY2(result.strOut.contains("as expected: device KXD2S0061174_2_20240505T110000 refused"_s), result.Said());
    QVERIFY2(result.strOut.contains("as expected: cloud 4611686018427400201 dropped"_s), result.Said());
}

void FaultTest::AnExpectedFailureThatSucceedsIsOne()
{
    QJsonObject record = m_soundSite.Record(Device);
    record["expect"_s] = "refused"_s;
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_soundSite.Config(), {record}));
    QVERIFY2(result.iExit == 1, result.Said());
    QCOMPARE(result.LastOutLine(), "1 recordings, 1 whole, 0 failed"_s);
    QVERIFY2(result.strErr.contains("device "_s + Device + " did not end as expected"_s), result.Said());
}

KX_TEST(FaultTest, QCoreApplication)
#include "FaultTest.moc"
