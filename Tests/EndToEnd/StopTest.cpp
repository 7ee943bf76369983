#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QFileInfo>
#include <QtTest/QtTest>

#include <csignal>

using namespace EndToEnd;

// How a run ends that does not end by itself: a signal, or the time is out.
class StopTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void ASignalStopsInOrder_data();
    void ASignalStopsInOrder();
    void TimeOutNamesWhatIsOutstanding();
    void AnUnansweredCoverRunsIntoTheTimeOut();
    void TheSiteEndsOnASignal();

private:
    QJsonArray Records() const;

    ServedSite m_slowSite;
};

namespace {

const QString Device = QStringLiteral("KXD2S0048816_1_20240318T071111");
const QString LanModule = QStringLiteral("KXM3G0007719_1_20240402T090000");

} // namespace

// The device's recording arrives at full speed, the module's takes an hour.
void StopTest::initTestCase()
{
    QVERIFY(m_slowSite.Start({"--fault"_s, "slow=500@lanModule"_s, "--fault"_s, "cover-never"_s}));
    QVERIFY(m_slowSite.FetchRecords());
}

QJsonArray StopTest::Records() const
{
    return {m_slowSite.Record(Device), m_slowSite.Record(LanModule)};
}

void StopTest::ASignalStopsInOrder_data()
{
    QTest::addColumn<int>("iSignal");
    QTest::newRow("Ctrl+C") << SIGINT;
    QTest::newRow("termination") << SIGTERM;
}

void StopTest::ASignalStopsInOrder()
{
#if defined(Q_OS_WIN)
    return QTest::qSkip("a console event cannot be sent to one process only", __FILE__, __LINE__);
#endif
    QFETCH(int, iSignal);
    Workplace place;
    RunningClient client;
    QVERIFY(client.Start(place.Download(m_slowSite.Config(), Records())));
    const QString strPartial = place.OutPath("Module camera 1.mp4"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(strPartial).size() > 0, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(client.Out().contains("Stairwell.mp4"_s), 60000);
    client.Signal(iSignal);
    const ClientResult result = client.Finish();
    QVERIFY2(result.iExit == 130, result.Said());
    QCOMPARE(result.LastOutLine(), "2 recordings, 1 whole, 1 failed"_s);
    QVERIFY2(!QFileInfo::exists(strPartial), "what is stopped leaves no half recording behind");
    QCOMPARE(QFileInfo(place.OutPath("Stairwell.mp4"_s)).size(), qint64(102400));
    QCOMPARE(place.Report().value("whole"_s).toInt(), 1);
}

void StopTest::TimeOutNamesWhatIsOutstanding()
{
    Workplace place;
    const QStringList arguments = place.Download(m_slowSite.Config(), Records());
    const ClientResult result = RunClient(arguments + QStringList{"--timeout"_s, "3"_s});
    QVERIFY2(result.iExit == 4, result.Said());
    QVERIFY2(result.strErr.contains("time out: lanModule "_s + LanModule + " is not finished"_s), result.Said());
    QVERIFY2(!result.strErr.contains(Device), result.Said());
    QCOMPARE(result.LastOutLine(), "2 recordings, 1 whole, 1 failed"_s);
}

void StopTest::AnUnansweredCoverRunsIntoTheTimeOut()
{
    Workplace place;
    const QString strCloud = "4611686018427400102"_s;
    const QStringList arguments = place.Download(m_slowSite.Config(), {m_slowSite.Record(strCloud)});
    const ClientResult result = RunClient(arguments + QStringList{"--timeout"_s, "2"_s});
    QVERIFY2(result.iExit == 4, result.Said());
    QVERIFY2(result.strErr.contains("time out: cloud "_s + strCloud + " is not finished"_s), result.Said());
}

void StopTest::TheSiteEndsOnASignal()
{
#if defined(Q_OS_WIN)
    return QTest::qSkip("a console event cannot be sent to one process only", __FILE__, __LINE__);
#endif
    RunningClient site;
    QVERIFY(site.Start({"serve"_s}));
    QTRY_VERIFY_WITH_TIMEOUT(site.Out().contains("serving on http://127.0.0.1:"_s), 60000);
    site.Signal(SIGINT);
    QCOMPARE(site.Finish().iExit, 0);
}

KX_TEST(StopTest, QCoreApplication)
#include "StopTest.moc"
