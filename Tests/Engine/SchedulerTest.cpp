// How many transfers run per source, in which order they start, and what becomes of one that cannot start.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class SchedulerTest : public QObject
{
    Q_OBJECT

private slots:
    void StartsAsManyAsTheSourceAllows_data();
    void StartsAsManyAsTheSourceAllows();
    void AFreedPlaceIsTakenByTheOldestWaitingTask_data();
    void AFreedPlaceIsTakenByTheOldestWaitingTask();
    void SourcesHaveTheirPlacesEachForItself();
    void ARowIsAnnouncedBeforeItsTransferStarts_data();
    void ARowIsAnnouncedBeforeItsTransferStarts();
    void ATaskThatTheHostRefusesIsDroppedAndLogged_data();
    void ATaskThatTheHostRefusesIsDroppedAndLogged();
    void EveryResultButZeroIsARefusal_data();
    void EveryResultButZeroIsARefusal();
    void AHostWithoutTransfersStartsNothing();
    void ATaskWhoseFolderCannotBeMadeIsDropped_data();
    void ATaskWhoseFolderCannotBeMadeIsDropped();
    void ATaskOfAnotherClassIsDropped_data();
    void ATaskOfAnotherClassIsDropped();
    void AHeldTaskOfAnotherClassIsReleasedByAPassword();
    void AnUnknownRecordTypeIsQueuedNowhere();
    void ARepeatedTaskAddsNothing_data();
    void ARepeatedTaskAddsNothing();
    void ATaskThatIsGoneMayComeAgain();
    void ACloudTaskRepeatedBeforeItsPictureIsAddedTwice();
    void OneRecordIdInTwoSourcesIsTwoTasks();
};

void SchedulerTest::StartsAsManyAsTheSourceAllows_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("started");
    QTest::newRow("cloud, five in one list: do the first three start?")
        << Source::Cloud << Texts({"11", "12", "13", "14", "15"})
        << Texts({"StartCloudRecordDownload 11", "StartCloudRecordDownload 12", "StartCloudRecordDownload 13"});
    QTest::newRow("device, four in one list: do the first two start?")
        << Source::Device << Texts({"a", "b", "c", "d"})
        << Texts({"StartDeviceRecordDownload a", "StartDeviceRecordDownload b"});
    QTest::newRow("IOT LAN, three in one list: does only the first start?")
        << Source::IOTLan << Texts({"a", "b", "c"}) << Texts({"StartIOTLanRecordDownload a"});
    QTest::newRow("LAN module, three in one list: does only the first start?")
        << Source::LanModule << Texts({"a", "b", "c"}) << Texts({"StartLanModuleRecordDownload a"});
    QTest::newRow("cloud, fewer than the limit: do both start?")
        << Source::Cloud << Texts({"2", "1"}) << Texts({"StartCloudRecordDownload 2", "StartCloudRecordDownload 1"});
}

void SchedulerTest::StartsAsManyAsTheSourceAllows()
{
    QFETCH(Source, source);
    QFETCH(QStringList, sent);
    QFETCH(QStringList, started);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, sent);
    QCOMPARE(rig.Calls().Short("Start"), started);
}

void SchedulerTest::AFreedPlaceIsTakenByTheOldestWaitingTask_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("ended"); // "id code"
    QTest::addColumn<QStringList>("started");
    const QStringList four = Texts({"1", "2", "3", "4"});
    const QStringList three = Texts({"1", "2", "3"});
    QTest::newRow("cloud, first of four finished: does the fourth start?")
        << Source::Cloud << four << Texts({"1 2"}) << Texts({"StartCloudRecordDownload 4"});
    QTest::newRow("cloud, last of the running failed: does the fourth start?")
        << Source::Cloud << four << Texts({"3 0"}) << Texts({"StartCloudRecordDownload 4"});
    QTest::newRow("cloud, one refused: does the fourth start?")
        << Source::Cloud << four << Texts({"2 3"}) << Texts({"StartCloudRecordDownload 4"});
    QTest::newRow("cloud, one aborted: does the fourth start?")
        << Source::Cloud << four << Texts({"2 100"}) << Texts({"StartCloudRecordDownload 4"});
    QTest::newRow("cloud, one reports that it runs: does nothing start?")
        << Source::Cloud << four << Texts({"1 1"}) << Texts({});
    QTest::newRow("cloud, one reports an unknown code: does nothing start?")
        << Source::Cloud << four << Texts({"1 77"}) << Texts({});
    QTest::newRow("device, both finished: do two more start in order?")
        << Source::Device << four << Texts({"2 2", "1 2"})
        << Texts({"StartDeviceRecordDownload 3", "StartDeviceRecordDownload 4"});
    QTest::newRow("device, first of three failed: does the third start?")
        << Source::Device << three << Texts({"1 0"}) << Texts({"StartDeviceRecordDownload 3"});
    QTest::newRow("IOT LAN, two end one after the other: do the next two follow in order?")
        << Source::IOTLan << three << Texts({"1 2", "2 0"})
        << Texts({"StartIOTLanRecordDownload 2", "StartIOTLanRecordDownload 3"});
    QTest::newRow("LAN module, two end one after the other: do the next two follow in order?")
        << Source::LanModule << three << Texts({"1 3", "2 2"})
        << Texts({"StartLanModuleRecordDownload 2", "StartLanModuleRecordDownload 3"});
    QTest::newRow("LAN module, all ended: does nothing more start?")
        << Source::LanModule << Texts({"1"}) << Texts({"1 2"}) << Texts({});
}

void SchedulerTest::AFreedPlaceIsTakenByTheOldestWaitingTask()
{
    QFETCH(Source, source);
    QFETCH(QStringList, sent);
    QFETCH(QStringList, ended);
    QFETCH(QStringList, started);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, sent);
    rig.Calls().Clear();
    for (const QString& strEnd : ended)
        rig.RaiseState(source, strEnd.section(QLatin1Char(' '), 0, 0).toUtf8().constData(),
                       strEnd.section(QLatin1Char(' '), 1, 1).toInt());
    QCOMPARE(rig.Calls().Short("Start"), started);
}

void SchedulerTest::SourcesHaveTheirPlacesEachForItself()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::LanModule, {"1", "2"});
    SendTasks(rig, Source::IOTLan, {"1", "2"});
    SendTasks(rig, Source::Device, {"1", "2", "3"});
    SendTasks(rig, Source::Cloud, {"1", "2", "3", "4"});
    QCOMPARE(rig.Calls().Short("Start"),
             Texts({"StartLanModuleRecordDownload 1", "StartIOTLanRecordDownload 1", "StartDeviceRecordDownload 1",
                    "StartDeviceRecordDownload 2", "StartCloudRecordDownload 1", "StartCloudRecordDownload 2",
                    "StartCloudRecordDownload 3"}));

    rig.Calls().Clear();
    rig.RaiseState(Source::IOTLan, "1", 2); // the LAN module's task of the same id stays where it is
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartIOTLanRecordDownload 2"}));
}

void SchedulerTest::ARowIsAnnouncedBeforeItsTransferStarts_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("cloud: announced when its picture is settled?")
        << Source::Cloud
        << Texts({"get ", "get ", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1", "SignalAddDownloadInfo 2",
                  "StartCloudRecordDownload 2"});
    QTest::newRow("device: announced at once?") << Source::Device
                                                << Texts({"SignalAddDownloadInfo 1", "StartDeviceRecordDownload 1",
                                                          "SignalAddDownloadInfo 2", "StartDeviceRecordDownload 2"});
    QTest::newRow("IOT LAN: is a waiting task announced too?")
        << Source::IOTLan
        << Texts({"SignalAddDownloadInfo 1", "StartIOTLanRecordDownload 1", "SignalAddDownloadInfo 2"});
    QTest::newRow("LAN module: is a waiting task announced too?")
        << Source::LanModule
        << Texts({"SignalAddDownloadInfo 1", "StartLanModuleRecordDownload 1", "SignalAddDownloadInfo 2"});
}

void SchedulerTest::ARowIsAnnouncedBeforeItsTransferStarts()
{
    QFETCH(Source, source);
    QFETCH(QStringList, told);
    EngineRig rig(NoPictures);
    rig.Calls().Clear();
    SendTasks(rig, source, {"1", "2"});
    QCOMPARE(Told(rig), told);
}

void SchedulerTest::ATaskThatTheHostRefusesIsDroppedAndLogged_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QString>("log");
    QTest::newRow("cloud, refused with -1: do the three after it start?")
        << Source::Cloud << -1
        << Texts({"get ", "get ", "get ", "get ", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1",
                  "SignalAddDownloadInfo 2", "StartCloudRecordDownload 2", "SignalAddDownloadInfo 3",
                  "StartCloudRecordDownload 3", "SignalAddDownloadInfo 4", "StartCloudRecordDownload 4"})
        << QStringLiteral("6 RecordDownloadModule::StartNextDownload The transfer could not be "
                          "started.strRecordId[1],iCode[-1]");
    QTest::newRow("device, refused with 1: do the two after it start?")
        << Source::Device << 1
        << Texts({"SignalAddDownloadInfo 1", "StartDeviceRecordDownload 1", "SignalAddDownloadInfo 2",
                  "StartDeviceRecordDownload 2", "SignalAddDownloadInfo 3", "StartDeviceRecordDownload 3",
                  "SignalAddDownloadInfo 4"})
        << QStringLiteral("6 RecordDownloadModule::StartNextDownload The transfer could not be "
                          "started.strRecordId[1],iCode[1]");
    QTest::newRow("IOT LAN, refused with -7: does the next start?")
        << Source::IOTLan << -7
        << Texts({"SignalAddDownloadInfo 1", "StartIOTLanRecordDownload 1", "SignalAddDownloadInfo 2",
                  "StartIOTLanRecordDownload 2", "SignalAddDownloadInfo 3", "SignalAddDownloadInfo 4"})
        << QStringLiteral("6 RecordDownloadModule::StartNextDownload The transfer could not be "
                          "started.strRecordId[1],iCode[-7]");
    QTest::newRow("LAN module, refused with 500: does the next start?")
        << Source::LanModule << 500
        << Texts({"SignalAddDownloadInfo 1", "StartLanModuleRecordDownload 1", "SignalAddDownloadInfo 2",
                  "StartLanModuleRecordDownload 2", "SignalAddDownloadInfo 3", "SignalAddDownloadInfo 4"})
        << QStringLiteral("6 RecordDownloadModule::StartNextDownload The transfer could not be "
                          "started.strRecordId[1],iCode[500]");
}

void SchedulerTest::ATaskThatTheHostRefusesIsDroppedAndLogged()
{
    QFETCH(Source, source);
    QFETCH(int, result);
    QFETCH(QStringList, told);
    QFETCH(QString, log);
    EngineRig rig([result](FakeWorld& world) {
        NoPictures(world);
        world.Downloads().SetStartResult("1", result);
    });
    rig.Calls().Clear();
    SendTasks(rig, source, {"1", "2", "3", "4"});
    QCOMPARE(Told(rig), told);
    QCOMPARE(rig.World().Log().Lines(), QStringList{log});

    rig.Calls().Clear();
    rig.RaiseState(source, "1", 2); // nobody's transfer
    QCOMPARE(Told(rig), Texts({}));
}

void SchedulerTest::EveryResultButZeroIsARefusal_data()
{
    AddSourceRows();
}

void SchedulerTest::EveryResultButZeroIsARefusal()
{
    QFETCH(SourceCase, of);
    for (const int iResult : {-2147483647, -1, 1, 2147483647}) {
        EngineRig rig([iResult](FakeWorld& world) {
            NoPictures(world);
            world.Downloads().SetStartResult(iResult);
        });
        SendTasks(rig, of.source, {"1"});
        QCOMPARE(rig.Calls().Count("Start"), 1);
        rig.RaiseState(of.source, "1", 1);
        QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 0); // it does not run
    }
}

void SchedulerTest::AHostWithoutTransfersStartsNothing()
{
    EngineRig rig([](FakeWorld& world) {
        NoPictures(world);
        world.TakeModuleAway(5);
    });
    rig.Calls().Clear();
    SendTasks(rig, Source::Cloud, {"1"});
    SendTasks(rig, Source::Device, {"2"});
    SendTasks(rig, Source::IOTLan, {"3"});
    SendTasks(rig, Source::LanModule, {"4"});
    QCOMPARE(Told(rig), Texts({"get ", "SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2", "SignalAddDownloadInfo 3",
                               "SignalAddDownloadInfo 4"}));

    rig.Calls().Clear();
    SendTasks(rig, Source::Device, {"2"}); // it was dropped, so it is no repetition
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1", "2", "3", "4"}));
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("2"), QString());
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 2"}));
}

void SchedulerTest::ATaskWhoseFolderCannotBeMadeIsDropped_data()
{
    AddSourceRows();
}

void SchedulerTest::ATaskWhoseFolderCannotBeMadeIsDropped()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    rig.World().WriteFile("file"); // no folder can be made below a file
    SendTasks(rig, of.source, {"file/b/1", "2"});
    QCOMPARE(rig.Calls().Short("Signal"), Texts({"SignalAddDownloadInfo file/b/1", "SignalAddDownloadInfo 2"}));
    QCOMPARE(rig.Calls().Short({"Start", "Stop", "notify"}), QStringList(of.Start("2")));
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String("path=~/2.mp4")));
    QCOMPARE(rig.World().Log().Lines(), Texts({"6 RecordDownloadModule::EnsureDownloadPathExists Failed to create "
                                               "download directory: ~/file/b"}));
}

void SchedulerTest::ATaskOfAnotherClassIsDropped_data()
{
    QTest::addColumn<int>("recordType");
    QTest::newRow("read as a cloud record, meant for the device source") << 1;
    QTest::newRow("read as a cloud record, meant for the IOT LAN source") << 2;
    QTest::newRow("read as a cloud record, meant for the LAN module source") << 3;
}

// The list's type tells the class that is read, the record's own type the source that it goes to.
void SchedulerTest::ATaskOfAnotherClassIsDropped()
{
    QFETCH(int, recordType);
    EngineRig rig;
    rig.Calls().Clear();
    auto record = rig.Cloud("1");
    record.iRecordType = recordType;
    rig.SendList(0, std::vector{record, record});
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 1"}));

    rig.Calls().Clear();
    rig.RaiseState(recordType == 1 ? Source::Device : recordType == 2 ? Source::IOTLan : Source::LanModule, "1", 3);
    QCOMPARE(Told(rig), Texts({}));
}

// It has no picture to be asked for, and the cloud source cannot start it.
void SchedulerTest::AHeldTaskOfAnotherClassIsReleasedByAPassword()
{
    EngineRig rig(NoPictures);
    rig.Calls().Clear();
    auto record = rig.Device("1");
    record.iRecordType = 0;
    rig.SendList(1, std::vector{record});
    QCOMPARE(Told(rig), Texts({}));
    for (const char* pszDevice : {"SN-other", "SN-1", "SN-1"}) {
        rig.World().Cloud().RaisePassword(1, "canary-secret", {pszDevice, -1, "1", ""});
        rig.Settle();
    }
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1"}));
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-secret"));
}

void SchedulerTest::AnUnknownRecordTypeIsQueuedNowhere()
{
    EngineRig rig(NoPictures);
    rig.Calls().Clear();
    for (int iType : {-1, 4, 1000}) {
        auto record = rig.LanModule("1");
        record.iRecordType = iType;
        rig.SendList(3, std::vector{record});
    }
    QCOMPARE(Told(rig), Texts({}));
}

void SchedulerTest::ARepeatedTaskAddsNothing_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("again");
    QTest::newRow("cloud, running") << Source::Cloud << Texts({"1"}) << Texts({"1"});
    QTest::newRow("cloud, waiting") << Source::Cloud << Texts({"1", "2", "3", "4", "5"}) << Texts({"5", "4"});
    QTest::newRow("device, running") << Source::Device << Texts({"1", "2"}) << Texts({"2", "1"});
    QTest::newRow("device, waiting") << Source::Device << Texts({"1", "2", "3"}) << Texts({"3"});
    QTest::newRow("IOT LAN, running and waiting") << Source::IOTLan << Texts({"1", "2"}) << Texts({"1", "2"});
    QTest::newRow("LAN module, running and waiting") << Source::LanModule << Texts({"1", "2"}) << Texts({"1", "2"});
    QTest::newRow("LAN module, twice in one list") << Source::LanModule << Texts({"1"}) << Texts({"1", "1"});
}

void SchedulerTest::ARepeatedTaskAddsNothing()
{
    QFETCH(Source, source);
    QFETCH(QStringList, first);
    QFETCH(QStringList, again);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, first);
    rig.Calls().Clear();
    SendTasks(rig, source, again);
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void SchedulerTest::ATaskThatIsGoneMayComeAgain()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.RaiseState(Source::LanModule, "1", 2);
    rig.Calls().Clear();
    SendTasks(rig, Source::LanModule, {"1"});
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartLanModuleRecordDownload 1"}));
}

void SchedulerTest::ACloudTaskRepeatedBeforeItsPictureIsAddedTwice()
{
    EngineRig rig;
    rig.Calls().Clear();
    SendTasks(rig, Source::Cloud, {"1"});
    SendTasks(rig, Source::Cloud, {"1"});
    rig.World().Pictures().AnswerFailed("");
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 1"}));
}

void SchedulerTest::OneRecordIdInTwoSourcesIsTwoTasks()
{
    EngineRig rig;
    rig.Calls().Clear();
    SendTasks(rig, Source::IOTLan, {"1"});
    SendTasks(rig, Source::LanModule, {"1"});
    SendTasks(rig, Source::Device, {"1"});
    QCOMPARE(rig.Calls().Short("Start"),
             Texts({"StartIOTLanRecordDownload 1", "StartLanModuleRecordDownload 1", "StartDeviceRecordDownload 1"}));
}

KX_TEST(SchedulerTest, QCoreApplication)
#include "SchedulerTest.moc"
