// The client sends a record again inside a call of the engine: the new task runs once, the old one leaves nothing
// behind.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class SentAgainTest : public QObject
{
    Q_OBJECT

private slots:
    void InsideItsRegistrationItRunsAnew_data();
    void InsideItsRegistrationItRunsAnew();
    void InsideItsStartItWaitsForTheOldTransferToGo_data();
    void InsideItsStartItWaitsForTheOldTransferToGo();
    void InsideTheStopOfItsDeletionItRunsAnew_data();
    void InsideTheStopOfItsDeletionItRunsAnew();
    void InsideTheStopOfItsFinishItIsOneTask_data();
    void InsideTheStopOfItsFinishItIsOneTask();
    void InsideItsFailureEventOnlyADeviceTakesItAgain_data();
    void InsideItsFailureEventOnlyADeviceTakesItAgain();
    void AShutdownInsideAStartStopsThatTransfer_data();
    void AShutdownInsideAStartStopsThatTransfer();
    void APasswordRequestInsideAStartHoldsTheSource();
    void TwoEndsOfOneIdInOneTurnKeepTheLimit();
    void AnEndFromBeforeItsStartIsNotTheTwins();
    void TwinsThatBothArrivedAreBothKept();
};

namespace {

// Record 1 once more, without a turn of the event loop.
void SendAgain(EngineRig& rig, const SourceCase& of)
{
    rig.World().Bus().Send("EventNotifyDownloadRecordList", {rig.StreamTyped(of.iType, Texts({"1"})), of.iType});
}

void DropFirst(EngineRig& rig, const SourceCase& of, bool bDiskFull)
{
    if (bDiskFull)
        rig.World().Bus().Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
    else
        rig.Engine().DeleteRecordDownload(of.iType, QStringLiteral("1"), rig.Task("1")->strDownloadPath);
}

// Sends the record again inside the host's first stop, which lets events run, too: a start would come too early there,
// for the stop goes by the id. Gives what was started inside it.
std::shared_ptr<QStringList> SendAgainInsideStop(EngineRig& rig, const SourceCase& of)
{
    const auto pStarted = std::make_shared<QStringList>(QStringLiteral("nothing stopped"));
    Once(rig.Calls(), "Stop", [&rig, &of, pStarted] {
        SendAgain(rig, of);
        rig.Settle();
        *pStarted = rig.Calls().Short("Start");
    });
    return pStarted;
}

// What the host was asked for, in order.
QStringList Asked(EngineRig& rig)
{
    return rig.Calls().Short({"Start", "Stop", "Insert", "Report"});
}

// Sends more tasks than the source has places: so many start.
int FreePlaces(EngineRig& rig, Source source)
{
    const int iBefore = rig.Calls().Count("Start");
    SendTasks(rig, source, {"6", "7", "8", "9"});
    return rig.Calls().Count("Start") - iBefore;
}

// True when the engine takes a state of that id for one of its tasks.
bool IsRunning(EngineRig& rig, Source source, const char* pszId)
{
    const QByteArray line = QByteArray("SignalDownloadRecordStates ") + pszId + " 1 false";
    const int iBefore = rig.Calls().Count(line.constData());
    rig.RaiseState(source, pszId, 1);
    return rig.Calls().Count(line.constData()) == iBefore + 1;
}

KXDownLoadList::DownloadDeviceRecordInfo Refusable(const EngineRig& rig, const char* pszId)
{
    auto record = rig.Device(pszId);
    record.bNeedPassword = true;
    record.bCanGetPassword = true;
    return record;
}

} // namespace

void SentAgainTest::InsideItsRegistrationItRunsAnew_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<bool>("diskFull"); // or deleted
    QTest::addColumn<bool>("report");   // inside the report, or inside the insert before it
    for (const SourceCase& of : SourceCases) {
        QTest::addRow("%s, deleted inside the insert", of.pszRow) << of << false << false;
        QTest::addRow("%s, deleted inside the report", of.pszRow) << of << false << true;
        QTest::addRow("%s, disk full inside the insert", of.pszRow) << of << true << false;
        QTest::addRow("%s, disk full inside the report", of.pszRow) << of << true << true;
    }
}

void SentAgainTest::InsideItsRegistrationItRunsAnew()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, diskFull);
    QFETCH(bool, report);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.Calls().Clear();
    Once(rig.Calls(), report ? "ReportRecordDownloaded" : "Insert", [&rig, &of, &diskFull] {
        DropFirst(rig, of, diskFull);
        SendAgain(rig, of);
    });
    rig.RaiseState(of.source, "1", 2);
    QStringList asked = Texts({"Insert ~/1.mp4"});
    if (report)
        asked.append(QStringLiteral("ReportRecordDownloaded 1"));
    QCOMPARE(Asked(rig), asked + QStringList({of.Stop("1"), of.Start("1")}));
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 0); // the new row has nothing to hear of it
    QVERIFY(IsRunning(rig, of.source, "1"));
    QCOMPARE(FreePlaces(rig, of.source), of.iLimit - 1);
}

void SentAgainTest::InsideItsStartItWaitsForTheOldTransferToGo_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<bool>("diskFull");
    QTest::addColumn<bool>("refused"); // by the host, in the end
    for (const SourceCase& of : SourceCases) {
        QTest::addRow("%s, deleted", of.pszRow) << of << false << false;
        QTest::addRow("%s, disk full", of.pszRow) << of << true << false;
        QTest::addRow("%s, deleted and refused", of.pszRow) << of << false << true;
        QTest::addRow("%s, disk full and refused", of.pszRow) << of << true << true;
    }
}

void SentAgainTest::InsideItsStartItWaitsForTheOldTransferToGo()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, diskFull);
    QFETCH(bool, refused);
    EngineRig rig(NoPictures);
    if (refused)
        rig.World().Downloads().SetStartResultOfCall(1, -1);
    Once(rig.Calls(), "Start", [&rig, &of, &diskFull] {
        rig.World().WriteFile("1.mp4");
        DropFirst(rig, of, diskFull);
        SendAgain(rig, of);
    });
    SendTasks(rig, of.source, {"1"});
    QCOMPARE(Asked(rig), refused ? QStringList({of.Start("1"), of.Start("1")})
                                 : QStringList({of.Start("1"), of.Stop("1"), of.Start("1")}));
    QVERIFY(!rig.World().HasFile("1.mp4"));
    QVERIFY(IsRunning(rig, of.source, "1"));
    QCOMPARE(FreePlaces(rig, of.source), of.iLimit - 1);
}

void SentAgainTest::InsideTheStopOfItsDeletionItRunsAnew_data()
{
    AddSourceRows();
}

void SentAgainTest::InsideTheStopOfItsDeletionItRunsAnew()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    rig.Calls().Clear();
    const auto pStartedInside = SendAgainInsideStop(rig, of);
    DropFirst(rig, of, false);
    QCOMPARE(*pStartedInside, Texts({}));
    QCOMPARE(Asked(rig), QStringList({of.Stop("1"), of.Start("1")}));
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String(" path=~/1(1).mp4 ")));
    QVERIFY(!rig.World().HasFile("1.mp4"));
    QVERIFY(IsRunning(rig, of.source, "1"));
    QCOMPARE(FreePlaces(rig, of.source), of.iLimit - 1);
}

void SentAgainTest::InsideTheStopOfItsFinishItIsOneTask_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<bool>("taken"); // the finished task is out already
    QTest::newRow("device") << SourceCases[1] << true;
    QTest::newRow("IOT LAN") << SourceCases[2] << false;
    QTest::newRow("LAN module") << SourceCases[3] << false;
}

void SentAgainTest::InsideTheStopOfItsFinishItIsOneTask()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, taken);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.Calls().Clear();
    const auto pStartedInside = SendAgainInsideStop(rig, of);
    rig.RaiseState(of.source, "1", 2);
    QCOMPARE(*pStartedInside, Texts({}));
    const QStringList ended{QStringLiteral("Insert ~/1.mp4"), QStringLiteral("ReportRecordDownloaded 1"), of.Stop("1")};
    QCOMPARE(Asked(rig), taken ? ended + QStringList(of.Start("1")) : ended);
    QVERIFY(rig.World().HasFile("1.mp4"));
    QCOMPARE(IsRunning(rig, of.source, "1"), taken);
    QCOMPARE(FreePlaces(rig, of.source), taken ? of.iLimit - 1 : of.iLimit);
}

void SentAgainTest::InsideItsFailureEventOnlyADeviceTakesItAgain_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<bool>("taken"); // the event comes after the act
    QTest::newRow("cloud") << SourceCases[0] << false;
    QTest::newRow("device") << SourceCases[1] << true;
    QTest::newRow("IOT LAN") << SourceCases[2] << false;
    QTest::newRow("LAN module") << SourceCases[3] << false;
}

void SentAgainTest::InsideItsFailureEventOnlyADeviceTakesItAgain()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, taken);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.Calls().Clear();
    Once(rig.Calls(), "notify EventNotifyDownloadRecordStates", [&rig, &of] { SendAgain(rig, of); });
    rig.RaiseState(of.source, "1", 0);
    QCOMPARE(Asked(rig), taken ? QStringList({of.Stop("1"), of.Start("1")}) : QStringList(of.Stop("1")));
    QCOMPARE(rig.Calls().Lines("Signal"), // a row that stands for the new task has nothing to hear of the old one
             taken ? Texts({"SignalAddDownloadInfo 1"}) : Texts({"SignalDownloadRecordStates 1 0 false"}));
    QCOMPARE(IsRunning(rig, of.source, "1"), taken);
    QCOMPARE(FreePlaces(rig, of.source), taken ? of.iLimit - 1 : of.iLimit);
}

void SentAgainTest::AShutdownInsideAStartStopsThatTransfer_data()
{
    AddSourceRows();
}

void SentAgainTest::AShutdownInsideAStartStopsThatTransfer()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "Start", [&rig] {
        rig.World().WriteFile("1.mp4");
        rig.Engine().Shutdown();
    });
    SendTasks(rig, of.source, {"1", "2"});
    QCOMPARE(Asked(rig), QStringList({of.Start("1"), of.Stop("1")}));
    QVERIFY(!rig.World().HasFile("1.mp4"));
}

// The host lets events run inside a start, and with them comes the refusal of another transfer.
void SentAgainTest::APasswordRequestInsideAStartHoldsTheSource()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Refusable(rig, "1"), Refusable(rig, "2"), Refusable(rig, "3")});
    rig.Calls().Clear();
    Once(rig.Calls(), "StartDeviceRecordDownload 3", [&rig] { rig.RaiseState(Source::Device, "1", 3); });
    rig.RaiseState(Source::Device, "2", 2);
    QCOMPARE(rig.Calls().Short({"Start", "Stop", "Request"}),
             Texts({"StopDeviceRecordDownload 2", "StartDeviceRecordDownload 3", "StopDeviceRecordDownload 1",
                    "RequestDevicePassword SN-1"}));
    rig.Calls().Clear();
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1"}));
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String(" password=canary-sealed ")));
}

void SentAgainTest::TwoEndsOfOneIdInOneTurnKeepTheLimit()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"1", "1", "2", "3", "4"});
    QCOMPARE(rig.Calls().Short("Start"),
             Texts({"StartCloudRecordDownload 1", "StartCloudRecordDownload 1", "StartCloudRecordDownload 2"}));
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1(1).mp4");
    rig.Calls().Clear();
    for (int i = 0; i < 2; ++i)
        rig.World().Downloads().RaiseState(Source::Cloud, "1", 2);
    rig.Settle();
    QCOMPARE(Asked(rig), Texts({"Insert ~/1.mp4", "ReportRecordDownloaded 1", "StopCloudRecordDownload 1",
                                "StartCloudRecordDownload 3", "StartCloudRecordDownload 4"}));
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1(1).mp4"}), Texts({"1.mp4"}));
    for (const char* pszId : {"2", "3", "4"})
        QVERIFY(IsRunning(rig, Source::Cloud, pszId));
    QVERIFY(!IsRunning(rig, Source::Cloud, "1"));
    QCOMPARE(FreePlaces(rig, Source::Cloud), 0);
}

// The second end was on its way when the twin still waited.
void SentAgainTest::AnEndFromBeforeItsStartIsNotTheTwins()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"2", "3", "1", "1"});
    rig.Calls().Clear();
    for (int i = 0; i < 2; ++i)
        rig.World().Downloads().RaiseState(Source::Cloud, "1", 2);
    rig.Settle();
    QCOMPARE(Asked(rig), Texts({"Insert ~/1.mp4", "ReportRecordDownloaded 1", "StartCloudRecordDownload 1"}));
    for (const char* pszId : {"1", "2", "3"})
        QVERIFY(IsRunning(rig, Source::Cloud, pszId));
    QCOMPARE(FreePlaces(rig, Source::Cloud), 0);
    rig.RaiseState(Source::Cloud, "1", 2);
    QCOMPARE(rig.Calls().Short("Insert"), Texts({"Insert ~/1.mp4", "Insert ~/1(1).mp4"}));
}

// The second end comes while the client hears of the first.
void SentAgainTest::TwinsThatBothArrivedAreBothKept()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"1", "1"});
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1(1).mp4");
    rig.Calls().Clear();
    Once(rig.Calls(), "notify EventNotifyDownloadRecordStates", [&rig] { rig.RaiseState(Source::Cloud, "1", 2); });
    rig.RaiseState(Source::Cloud, "1", 2);
    QCOMPARE(Asked(rig),
             Texts({"Insert ~/1(1).mp4", "ReportRecordDownloaded 1", "Insert ~/1.mp4", "ReportRecordDownloaded 1"}));
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1(1).mp4"}), Texts({"1.mp4", "1(1).mp4"}));
}

KX_TEST(SentAgainTest, QCoreApplication)
#include "SentAgainTest.moc"
