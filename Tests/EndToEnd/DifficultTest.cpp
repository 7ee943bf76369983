#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

const QString Attic = QStringLiteral("KXD2S0061174_1_20240506T120000");

int CountOf(const QByteArray& log, const char* pszText)
{
    return log.count(QByteArray(pszText));
}

} // namespace

// The second half of the demonstration: refusals, recovered passwords, encrypted recordings, covers of every kind.
class DifficultTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void EachRecordingEndsAsItMust();
    void TheExpectedFailuresAreNamedBeforeAndAfter();
    void OneQueryServesAllRecordingsOfADevice();
    void AWrongNewPasswordIsTriedOnce();
    void SoundCoversLieBesideTheirRecordings();
    void AFailureThatDoesNotHappenIsAFailure();

private:
    Workplace m_place;
    ClientResult m_result;
    QByteArray m_log;
};

void DifficultTest::initTestCase()
{
    m_result =
        RunClient({"download"_s, "--difficult"_s, "--out"_s, m_place.Path("out"_s), "--json"_s,
                   m_place.Path("report.json"_s), "--log"_s, m_place.Path("client.log"_s), "--timeout"_s, "300"_s});
    m_log = m_place.Read("client.log"_s);
}

void DifficultTest::EachRecordingEndsAsItMust()
{
    QVERIFY2(m_result.iExit == 0, m_result.Said());
    QCOMPARE(m_result.LastOutLine(), "10 recordings, 7 whole, 3 failed"_s);
    QVERIFY2(!m_result.strErr.contains("did not end as expected"_s), m_result.Said());
    QMap<QString, QString> states;
    for (const QJsonValue value : m_place.Report().value("list"_s).toArray()) {
        const QJsonObject entry = value.toObject();
        states[entry.value("strRecordId"_s).toString()] = entry.value("state"_s).toString();
    }
    QCOMPARE(states, (QMap<QString, QString>{{"KXD2S0059903_1_20240505T101500"_s, "whole"_s},
                                             {"KXD2S0059903_2_20240505T101500"_s, "whole"_s},
                                             {"KXD2S0061174_1_20240506T120000"_s, "refused"_s},
                                             {"KXD2S0061174_2_20240505T110000"_s, "refused"_s},
                                             {"4611686018427400201"_s, "dropped"_s},
                                             {"4611686018427400202"_s, "whole"_s},
                                             {"4611686018427400203"_s, "whole"_s},
                                             {"4611686018427400204"_s, "whole"_s},
                                             {"4611686018427400205"_s, "whole"_s},
                                             {"4611686018427400206"_s, "whole"_s}}));
    QCOMPARE(QDir(m_place.Path("out"_s)).entryList({"*.mp4"_s}, QDir::Files),
             QStringList({"Garage 1.mp4"_s, "Garage 2.mp4"_s, "Quay 2.mp4"_s, "Quay 3.mp4"_s, "Quay 4 later.mp4"_s,
                          "Quay 4.mp4"_s, "Quay 5.mp4"_s}));
}

void DifficultTest::TheExpectedFailuresAreNamedBeforeAndAfter()
{
    const int iTable = m_result.strOut.indexOf("\nsource "_s);
    QVERIFY2(iTable > 0, m_result.Said());
    for (const auto& [strRecord, strState] : {qMakePair("device KXD2S0061174_1_20240506T120000"_s, "refused"_s),
                                              qMakePair("device KXD2S0061174_2_20240505T110000"_s, "refused"_s),
                                              qMakePair("cloud 4611686018427400201"_s, "dropped"_s)}) {
        const int iBefore = m_result.strOut.indexOf("expected to fail: "_s + strRecord + ", "_s + strState);
        const int iAfter = m_result.strOut.indexOf("as expected: "_s + strRecord + " "_s + strState);
        QVERIFY2(iBefore >= 0 && iBefore < iTable, m_result.Said());
        QVERIFY2(iAfter > iTable, m_result.Said());
    }
    QCOMPARE(m_result.strOut.count("expected to fail: "_s), 3);
    QCOMPARE(m_result.strOut.count("as expected: "_s), 3);
}

// The plug-in logs this line once per query that it sends, and one of the others when it sends none.
void DifficultTest::OneQueryServesAllRecordingsOfADevice()
{
    QVERIFY(!m_log.isEmpty());
    QCOMPARE(CountOf(m_log, "Get the password and download again.Recordname:Garage"), 1);
    QCOMPARE(CountOf(m_log, "this device is getting password.Recordname:Garage") +
                 CountOf(m_log, "Not been retried with the new password.Recordname:Garage"),
             1);
    QCOMPARE(CountOf(m_log, "Get the password and download again.Recordname:"), 2);
}

void DifficultTest::AWrongNewPasswordIsTriedOnce()
{
    QCOMPARE(CountOf(m_log, "Get the password and download again.Recordname:Attic, "), 1);
    QCOMPARE(CountOf(m_log, "the current record has been tried again with the new password.Recordname:Attic, "), 1);
    QCOMPARE(CountOf(m_log, "the current record can not get password.Recordname:Attic 2"), 1);
    QCOMPARE(CountOf(m_log, "Decrpt picture DecKeyError."), 1);
}

// Two recordings share the cover of the first one; a text and a missing cover leave no picture.
void DifficultTest::SoundCoversLieBesideTheirRecordings()
{
    QCOMPARE(QDir(m_place.Path("out"_s)).entryList({"*.jpg"_s}, QDir::Files),
             QStringList({"Quay 4 later.jpg"_s, "Quay 4.jpg"_s}));
    for (const QString& strName : {"Quay 4 later.jpg"_s, "Quay 4.jpg"_s})
        QCOMPARE(QImage(m_place.OutPath(strName), "JPG").size(), QSize(120, 68));
}

// The device's true password in the configuration: nothing stands in the way of its recording any more.
void DifficultTest::AFailureThatDoesNotHappenIsAFailure()
{
    ServedSite site;
    QVERIFY(site.Start({"--difficult"_s}));
    QVERIFY(site.FetchRecords());
    QJsonObject config = site.Config();
    QJsonObject passwords = config.value("devicePasswords"_s).toObject();
    passwords["KXD2S0061174"_s] = "Attic true"_s;
    config["devicePasswords"_s] = passwords;
    Workplace place;
    const ClientResult result = RunClient(place.Download(config, {site.Record(Attic)}));
    QVERIFY2(result.iExit == 1, result.Said());
    QCOMPARE(result.LastOutLine(), "1 recordings, 1 whole, 0 failed"_s);
    QVERIFY2(result.strErr.contains("device "_s + Attic + " did not end as expected: whole"_s), result.Said());
}

KX_TEST(DifficultTest, QCoreApplication)
#include "DifficultTest.moc"
