// What the panel's buttons do: pause, resume, delete.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class ControlTest : public QObject
{
    Q_OBJECT

private slots:
    void PauseStopsARunningTaskAndKeepsItsFiles_data();
    void PauseStopsARunningTaskAndKeepsItsFiles();
    void PauseTakesAWaitingTaskOutOfItsQueue_data();
    void PauseTakesAWaitingTaskOutOfItsQueue();
    void PauseFindsATaskByItsId_data();
    void PauseFindsATaskByItsId();
    void PauseOfAllStartsNothingInBetween();
    void PauseOfTasksThatAreNowhereDoesNothing();
    void APlaceFreedByPauseIsTaken();
    void ALateStateOfAPausedTaskIsDropped();
    void ResumeQueuesATaskAnew_data();
    void ResumeQueuesATaskAnew();
    void ResumeOfAQueuedTaskAddsNothing();
    void DeleteStopsTheTaskAndRemovesItsFiles_data();
    void DeleteStopsTheTaskAndRemovesItsFiles();
    void DeleteRemovesTheFilesOfThePathItIsGiven_data();
    void DeleteRemovesTheFilesOfThePathItIsGiven();
    void DeleteOfAWaitingTaskTakesItOutOfItsQueue_data();
    void DeleteOfAWaitingTaskTakesItOutOfItsQueue();
    void DeleteOfATaskOfNoSourceDoesNothing();
    void APlaceFreedByDeleteIsTaken();
    void AHeldCloudTaskThatWasTakenOutDoesNotComeBack_data();
    void AHeldCloudTaskThatWasTakenOutDoesNotComeBack();
    void ATaskWaitingForADevicePasswordThatWasTakenOutDoesNotComeBack_data();
    void ATaskWaitingForADevicePasswordThatWasTakenOutDoesNotComeBack();
};

void ControlTest::PauseStopsARunningTaskAndKeepsItsFiles_data()
{
    AddSourceRows();
}

void ControlTest::PauseStopsARunningTaskAndKeepsItsFiles()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1.jpg");
    rig.Calls().Clear();
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    rig.Settle();
    QCOMPARE(Told(rig), QStringList(of.Stop("1")));
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1.jpg"}), Texts({"1.mp4", "1.jpg"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void ControlTest::PauseTakesAWaitingTaskOutOfItsQueue_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QString>("paused");
    QTest::addColumn<QStringList>("started");
    QTest::newRow("cloud, fourth of five: does the fifth start when one ends?")
        << Source::Cloud << Texts({"1", "2", "3", "4", "5"}) << QStringLiteral("4")
        << Texts({"StartCloudRecordDownload 5"});
    QTest::newRow("device, third of four: does the fourth start when one ends?")
        << Source::Device << Texts({"1", "2", "3", "4"}) << QStringLiteral("3")
        << Texts({"StartDeviceRecordDownload 4"});
    QTest::newRow("IOT LAN, second of two: does nothing start when the first ends?")
        << Source::IOTLan << Texts({"1", "2"}) << QStringLiteral("2") << Texts({});
    QTest::newRow("LAN module, second of three: does the third start when the first ends?")
        << Source::LanModule << Texts({"1", "2", "3"}) << QStringLiteral("2")
        << Texts({"StartLanModuleRecordDownload 3"});
}

void ControlTest::PauseTakesAWaitingTaskOutOfItsQueue()
{
    QFETCH(Source, source);
    QFETCH(QStringList, sent);
    QFETCH(QString, paused);
    QFETCH(QStringList, started);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, sent);
    rig.Calls().Clear();
    rig.Engine().PauseRecordDownloads({rig.Task(paused.toUtf8().constData())});
    QCOMPARE(Told(rig), Texts({}));
    rig.RaiseState(source, "1", 2);
    QCOMPARE(rig.Calls().Short("Start"), started);
}

void ControlTest::PauseFindsATaskByItsId_data()
{
    QTest::addColumn<QString>("paused");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("running") << QStringLiteral("1")
                             << Texts({"StopDeviceRecordDownload 1", "StartDeviceRecordDownload 3"});
    QTest::newRow("waiting") << QStringLiteral("3") << Texts({});
}

// A record that the client sent again is another object, and the row that is paused may hold the one or the other.
void ControlTest::PauseFindsATaskByItsId()
{
    QFETCH(QString, paused);
    QFETCH(QStringList, told);
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1", "2", "3"});
    rig.Calls().Clear();
    const auto copy = rig.Device(paused.toUtf8().constData());
    rig.Engine().PauseRecordDownloads({std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>(copy)});
    QCOMPARE(Told(rig), told);
    rig.RaiseState(Source::Device, "2", 2);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload 3"), paused == QLatin1String("1") ? 1 : 0);
}

void ControlTest::PauseOfAllStartsNothingInBetween()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Device, {"1", "2", "3"});
    SendTasks(rig, Source::LanModule, {"4", "5"});
    SendTasks(rig, Source::IOTLan, {"6", "7"});
    SendTasks(rig, Source::Cloud, {"11", "12", "13", "14"});
    rig.Calls().Clear();
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1", "11", "2", "4", "3", "5", "14", "6", "7", "12", "13"}));
    rig.Settle();
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1", "StopCloudRecordDownload 11", "StopDeviceRecordDownload 2",
                               "StopLanModuleRecordDownload 4", "StopIOTLanRecordDownload 6",
                               "StopCloudRecordDownload 12", "StopCloudRecordDownload 13"}));
}

void ControlTest::PauseOfTasksThatAreNowhereDoesNothing()
{
    EngineRig rig;
    rig.Calls().Clear();
    const auto pUnknown = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>(rig.Device("1"));
    const auto pNoSource = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>();
    rig.Engine().PauseRecordDownloads({});
    rig.Engine().PauseRecordDownloads({pUnknown, pNoSource});
    QCOMPARE(Told(rig), Texts({}));
}

void ControlTest::APlaceFreedByPauseIsTaken()
{
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1", "2", "3"});
    rig.Calls().Clear();
    rig.Engine().PauseRecordDownloads(Rows(rig, {"2"}));
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 2", "StartDeviceRecordDownload 3"}));
}

void ControlTest::ALateStateOfAPausedTaskIsDropped()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.World().Downloads().RaiseState(Source::LanModule, "1", 0); // on its way when the user pauses
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    QVERIFY(rig.World().HasFile("1.mp4"));
}

void ControlTest::ResumeQueuesATaskAnew_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("cloud: is its picture asked for again?")
        << Source::Cloud << Texts({"get ", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"});
    QTest::newRow("device") << Source::Device << Texts({"SignalAddDownloadInfo 1", "StartDeviceRecordDownload 1"});
    QTest::newRow("IOT LAN") << Source::IOTLan << Texts({"SignalAddDownloadInfo 1", "StartIOTLanRecordDownload 1"});
    QTest::newRow("LAN module") << Source::LanModule
                                << Texts({"SignalAddDownloadInfo 1", "StartLanModuleRecordDownload 1"});
}

void ControlTest::ResumeQueuesATaskAnew()
{
    QFETCH(Source, source);
    QFETCH(QStringList, told);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, {"1"});
    const DownloadRecordInfoPtr pTask = rig.Task("1");
    rig.Engine().PauseRecordDownloads({pTask});
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads({pTask});
    rig.Settle();
    QCOMPARE(Told(rig), told);
    QCOMPARE(rig.Task("1"), pTask);
}

void ControlTest::ResumeOfAQueuedTaskAddsNothing()
{
    EngineRig rig;
    SendTasks(rig, Source::IOTLan, {"1", "2"});
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads(Rows(rig, {"1", "2"}));
    rig.Engine().StartRecordDownloads({});
    QCOMPARE(Told(rig), Texts({}));
}

void ControlTest::DeleteStopsTheTaskAndRemovesItsFiles_data()
{
    AddSourceRows();
}

void ControlTest::DeleteStopsTheTaskAndRemovesItsFiles()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1.jpg");
    rig.World().WriteFile("10.mp4");
    rig.Calls().Clear();
    bool bWasThereAtTheStop = false; // the host still writes it then
    rig.Calls().WhenAdded("Stop", [&] { bWasThereAtTheStop = rig.World().HasFile("1.mp4"); });
    rig.Engine().DeleteRecordDownload(of.iType, QStringLiteral("1"), rig.Task("1")->strDownloadPath);
    rig.Settle();
    QCOMPARE(Told(rig), QStringList(of.Stop("1")));
    QVERIFY(bWasThereAtTheStop);
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1.jpg", "10.mp4"}), Texts({"10.mp4"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({"2 RecordDownloadModule::RemoveFileJpg remove file[~/1.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/1.jpg]"}));
}

void ControlTest::DeleteRemovesTheFilesOfThePathItIsGiven_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("told");
    // For example one that failed: the host is told all the same.
    QTest::newRow("a row that is in no queue any more")
        << QStringLiteral("unknown") << Texts({"StopDeviceRecordDownload unknown"});
    QTest::newRow("a running task, whose own path is another")
        << QStringLiteral("1") << Texts({"StopDeviceRecordDownload 1"});
}

void ControlTest::DeleteRemovesTheFilesOfThePathItIsGiven()
{
    QFETCH(QString, id);
    QFETCH(QStringList, told);
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1"});
    for (const char* pszName : {"1.mp4", "other.mp4", "other.jpg"})
        rig.World().WriteFile(pszName);
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(1, id, rig.World().Path("other.mp4"));
    QCOMPARE(Told(rig), told);
    QCOMPARE(FilesLeft(rig, {"1.mp4", "other.mp4", "other.jpg"}), Texts({"1.mp4"}));
}

void ControlTest::DeleteOfAWaitingTaskTakesItOutOfItsQueue_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("cloud") << Source::Cloud << Texts({"1", "2", "3", "9"}) << Texts({"StopCloudRecordDownload 9"});
    QTest::newRow("device") << Source::Device << Texts({"1", "2", "9"}) << Texts({"StopDeviceRecordDownload 9"});
    QTest::newRow("IOT LAN") << Source::IOTLan << Texts({"1", "9"}) << Texts({"StopIOTLanRecordDownload 9"});
    QTest::newRow("LAN module") << Source::LanModule << Texts({"1", "9"}) << Texts({"StopLanModuleRecordDownload 9"});
}

void ControlTest::DeleteOfAWaitingTaskTakesItOutOfItsQueue()
{
    QFETCH(Source, source);
    QFETCH(QStringList, sent);
    QFETCH(QStringList, told);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, sent);
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(static_cast<int>(source), QStringLiteral("9"), rig.Task("9")->strDownloadPath);
    QCOMPARE(Told(rig), told);
    rig.RaiseState(source, "1", 2);
    QCOMPARE(rig.Calls().Count("Start"), 0);
}

void ControlTest::DeleteOfATaskOfNoSourceDoesNothing()
{
    EngineRig rig;
    rig.World().WriteFile("1.mp4");
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(-1, QStringLiteral("1"), rig.World().Path("1.mp4"));
    rig.Engine().DeleteRecordDownload(4, QStringLiteral("1"), rig.World().Path("1.mp4"));
    QCOMPARE(Told(rig), Texts({}));
    QVERIFY(rig.World().HasFile("1.mp4"));
}

void ControlTest::APlaceFreedByDeleteIsTaken()
{
    EngineRig rig;
    SendTasks(rig, Source::IOTLan, {"1", "2"});
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(2, QStringLiteral("1"), rig.Task("1")->strDownloadPath);
    QCOMPARE(Told(rig), Texts({"StopIOTLanRecordDownload 1", "StartIOTLanRecordDownload 2"}));
}

void ControlTest::AHeldCloudTaskThatWasTakenOutDoesNotComeBack_data()
{
    QTest::addColumn<bool>("password");
    QTest::addColumn<bool>("deleted");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("paused while its picture is fetched") << false << false << Texts({});
    QTest::newRow("paused while its password is fetched") << true << false << Texts({});
    QTest::newRow("deleted while its picture is fetched") << false << true << Texts({"StopCloudRecordDownload 1"});
    QTest::newRow("deleted while its password is fetched") << true << true << Texts({"StopCloudRecordDownload 1"});
}

void ControlTest::AHeldCloudTaskThatWasTakenOutDoesNotComeBack()
{
    QFETCH(bool, password);
    QFETCH(bool, deleted);
    QFETCH(QStringList, told);
    EngineRig rig;
    const auto pTask = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>(rig.Cloud("1"));
    pTask->strText1 = QStringLiteral("account");
    pTask->strCloudText2 = password ? QStringLiteral("key") : QString();
    rig.Engine().StartRecordDownloads({pTask}); // a row's retry
    QCOMPARE(rig.Calls().Count(password ? "GetCloudRecordPassword" : "get "), 1);
    rig.Calls().Clear();
    if (deleted)
        rig.Engine().DeleteRecordDownload(0, pTask->strRecordId, pTask->strDownloadPath);
    else
        rig.Engine().PauseRecordDownloads({pTask});
    if (password)
        rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    else
        rig.World().Pictures().AnswerFailed("");
    rig.Settle();
    QCOMPARE(Told(rig), told);
}

void ControlTest::ATaskWaitingForADevicePasswordThatWasTakenOutDoesNotComeBack_data()
{
    QTest::addColumn<bool>("deleted");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("paused") << false << Texts({"AesDecryptDeviceUserInfo SN-1"});
    QTest::newRow("deleted") << true << Texts({"StopDeviceRecordDownload 1", "AesDecryptDeviceUserInfo SN-1"});
}

void ControlTest::ATaskWaitingForADevicePasswordThatWasTakenOutDoesNotComeBack()
{
    QFETCH(bool, deleted);
    QFETCH(QStringList, told);
    EngineRig rig;
    auto record = rig.Device("1");
    record.bNeedPassword = true;
    record.bCanGetPassword = true;
    rig.SendOne(record);
    rig.RaiseState(Source::Device, "1", 3);
    rig.Calls().Clear();
    const DownloadRecordInfoPtr pTask = rig.Task("1");
    if (deleted)
        rig.Engine().DeleteRecordDownload(1, pTask->strRecordId, pTask->strDownloadPath);
    else
        rig.Engine().PauseRecordDownloads({pTask});
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(Told(rig), told);
    QCOMPARE(pTask->strPassword, QString());
}

KX_TEST(ControlTest, QCoreApplication)
#include "ControlTest.moc"
