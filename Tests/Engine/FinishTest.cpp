// What the host's threads report, and how a finished file is made known.

#include "Engine/EngineCases.h"
#include "TestMain.h"

#include <QtCore/QDateTime>

using namespace EngineCases;

class FinishTest : public QObject
{
    Q_OBJECT

private slots:
    void AFinishedFileIsRegisteredAndReported_data();
    void AFinishedFileIsRegisteredAndReported();
    void TheTimeOfRegistrationIsNow();
    void UnknownTimesAreRegisteredAsSuch();
    void ThePathGoesOutAsItCameIn();
    void ARegistrationThatFailsChangesNothing();
    void AHostWithoutDatabaseStillGetsTheReport();
    void AHostWithoutCloudStillGetsTheRegistration();
    void OnlyAFinishedTaskIsRegistered();
    void APlaceIsFreeBeforeOrAfterTheStopOfAFinishedTask_data();
    void APlaceIsFreeBeforeOrAfterTheStopOfAFinishedTask();
    void AFinishedTaskGivesItsPathBack();
    void ACallbackWithoutUserPostsNothing_data();
    void ACallbackWithoutUserPostsNothing();
    void ACallbackOnlyPosts_data();
    void ACallbackOnlyPosts();
    void ReceivedDataReachThePanelUnchanged_data();
    void ReceivedDataReachThePanelUnchanged();
    void AStateFindsALongId_data();
    void AStateFindsALongId();
    void StatesAndDataKeepTheirOrder();
    void CallbacksOfManyThreadsAllArrive();
};

void FinishTest::AFinishedFileIsRegisteredAndReported_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QString>("kind");
    QTest::newRow("cloud: kind 0") << Source::Cloud << QStringLiteral("kind=0");
    QTest::newRow("device: kind 1") << Source::Device << QStringLiteral("kind=1");
    QTest::newRow("IOT LAN: kind 1 like the device's own") << Source::IOTLan << QStringLiteral("kind=1");
    QTest::newRow("LAN module: kind 2") << Source::LanModule << QStringLiteral("kind=2");
}

void FinishTest::AFinishedFileIsRegisteredAndReported()
{
    QFETCH(Source, source);
    QFETCH(QString, kind);
    EngineRig rig(NoPictures);
    rig.SendTyped(static_cast<int>(source), "7", [](auto& record) {
        record.strDeviceId = QString::fromUtf8("SN-ä");
        record.iValue5 = 12;
        record.strText4 = QString::fromUtf8("Tür vorn");
    });
    rig.RaiseState(source, "7", 2);
    rig.RaiseState(source, "7", 2); // the host says it again: the task is gone
    QCOMPARE(rig.Calls().Lines("Insert"),
             Texts({"Insert ~/7.mp4 begin=1577934245 end=1577934306 kind=2 title=Tür vorn thumb= favourite=0"}));
    QCOMPARE(rig.Calls().Lines({"Insert", "Report"}).mid(1),
             QStringList(QString::fromUtf8("ReportRecordDownloaded 7 device=SN-ä channel=12 begin=1577934245 "
                                           "end=1577934306 ") +
                         kind));
}

void FinishTest::TheTimeOfRegistrationIsNow()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    const qint64 lBefore = QDateTime::currentSecsSinceEpoch();
    rig.RaiseState(Source::LanModule, "1", 2);
    const qint64 lAfter = QDateTime::currentSecsSinceEpoch();
    QCOMPARE(int(rig.World().Database().Rows().size()), 1);
    const qint64 lRegistered = rig.World().Database().Rows().front().lRegisterTime;
    QVERIFY(lBefore <= lRegistered && lRegistered <= lAfter);
}

void FinishTest::UnknownTimesAreRegisteredAsSuch()
{
    EngineRig rig;
    rig.SendTyped(1, "7", [](auto& record) {
        record.strStartTime = QStringLiteral("2020-01-02 03:04:05");
        record.strEndTime = QString();
    });
    rig.RaiseState(Source::Device, "7", 2);
    QCOMPARE(rig.Calls().Lines({"Insert", "Report"}),
             Texts({"Insert ~/7.mp4 begin=4294967295 end=4294967295 kind=2 title= thumb= favourite=0",
                    "ReportRecordDownloaded 7 device=SN-7 channel=-1 begin=4294967295 end=4294967295 kind=1"}));
}

// Whoever sent the record looks its file up by the text of its path.
void FinishTest::ThePathGoesOutAsItCameIn()
{
    EngineRig rig;
    rig.SendTyped(3, "1", [&](auto& record) { record.strDownloadPath = rig.World().Path("d/./e//x.mp4"); });
    rig.RaiseState(Source::LanModule, "1", 2);
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String(" path=~/d/./e//x.mp4 ")));
    QVERIFY(StateEvents(rig).value(0).contains(QLatin1String("\"strDownloadPath\": \"~/d/./e//x.mp4\"")));
    QCOMPARE(rig.Calls().Short("Insert"), Texts({"Insert ~/d/./e//x.mp4"}));
}

void FinishTest::ARegistrationThatFailsChangesNothing()
{
    EngineRig rig([](FakeWorld& world) { world.Database().SetInsertResult(false); });
    SendTasks(rig, Source::LanModule, {"1"});
    rig.Calls().Clear();
    rig.RaiseState(Source::LanModule, "1", 2);
    QCOMPARE(Told(rig), Texts({"notify EventNotifyDownloadRecordStates", "Insert ~/1.mp4", "ReportRecordDownloaded 1",
                               "StopLanModuleRecordDownload 1", "SignalDownloadRecordStates 1 2 false"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void FinishTest::AHostWithoutDatabaseStillGetsTheReport()
{
    EngineRig rig([](FakeWorld& world) { world.TakeDatabaseAway(); });
    SendTasks(rig, Source::LanModule, {"1"});
    rig.RaiseState(Source::LanModule, "1", 2);
    QCOMPARE(rig.Calls().Short({"Insert", "Report"}), Texts({"ReportRecordDownloaded 1"}));
}

void FinishTest::AHostWithoutCloudStillGetsTheRegistration()
{
    EngineRig rig([](FakeWorld& world) { world.TakeModuleAway(3); });
    SendTasks(rig, Source::LanModule, {"1"});
    rig.RaiseState(Source::LanModule, "1", 2);
    QCOMPARE(rig.Calls().Short({"Insert", "Report"}), Texts({"Insert ~/1.mp4"}));
}

void FinishTest::OnlyAFinishedTaskIsRegistered()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Device, {"1", "2"});
    SendTasks(rig, Source::Cloud, {"3"});
    SendTasks(rig, Source::IOTLan, {"4", "5"});
    for (int iCode : {1, 77, 3})
        rig.RaiseState(Source::Device, "1", iCode);
    rig.RaiseState(Source::Device, "2", 0);
    rig.RaiseState(Source::Cloud, "3", 100);
    rig.RaiseState(Source::IOTLan, "5", 2); // it waits
    rig.Engine().PauseRecordDownloads(Rows(rig, {"4", "5"}));
    rig.RaiseState(Source::IOTLan, "4", 2); // paused before the state arrived
    QCOMPARE(rig.Calls().Lines({"Insert", "Report"}), Texts({}));
}

void FinishTest::APlaceIsFreeBeforeOrAfterTheStopOfAFinishedTask_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("device: before") << Source::Device
                                    << Texts({"StopDeviceRecordDownload 1", "SignalAddDownloadInfo 3",
                                              "StartDeviceRecordDownload 3", "stopped"});
    QTest::newRow("IOT LAN: after") << Source::IOTLan
                                    << Texts({"StopIOTLanRecordDownload 1", "SignalAddDownloadInfo 3", "stopped",
                                              "StartIOTLanRecordDownload 3"});
    QTest::newRow("LAN module: after") << Source::LanModule
                                       << Texts({"StopLanModuleRecordDownload 1", "SignalAddDownloadInfo 3", "stopped",
                                                 "StartLanModuleRecordDownload 3"});
}

void FinishTest::APlaceIsFreeBeforeOrAfterTheStopOfAFinishedTask()
{
    QFETCH(Source, source);
    QFETCH(QStringList, told);
    EngineRig rig;
    SendTasks(rig, source, {"1"});
    if (source == Source::Device)
        SendTasks(rig, source, {"2"}); // the second place
    rig.Calls().WhenAdded("Stop", [&rig, source = source] {
        SendTasks(rig, source, {"3"});
        rig.Calls().Add(QStringLiteral("stopped"));
    });
    rig.Calls().Clear();
    rig.RaiseState(source, "1", 2);
    QCOMPARE(rig.Calls().Short({"Start", "Stop", "SignalAdd", "stopped"}), told);
}

// Its row may stay for a while, and its file be moved away: the name is free again.
void FinishTest::AFinishedTaskGivesItsPathBack()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    auto again = rig.LanModule("2");
    again.strDownloadPath = rig.World().Path("1.mp4");
    rig.SendOne(again);
    rig.RaiseState(Source::LanModule, "1", 2);
    QVERIFY(rig.Task("1"));
    again.strRecordId = QStringLiteral("3");
    rig.SendOne(again);
    QCOMPARE(rig.Task("2")->strDownloadPath, rig.World().Path("1(1).mp4"));
    QCOMPARE(rig.Task("3")->strDownloadPath, rig.World().Path("1.mp4"));
}

void FinishTest::ACallbackWithoutUserPostsNothing_data()
{
    AddSourceRows();
}

void FinishTest::ACallbackWithoutUserPostsNothing()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.Calls().Clear();
    rig.World().Downloads().ReplaceUser(nullptr);
    QCOMPARE(rig.World().Downloads().RaiseState(of.source, "1", 2), -1);
    QCOMPARE(rig.World().Downloads().RaiseData(of.source, "1", 10), -1);
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    rig.World().Downloads().ReplaceUser(&rig.Engine());
}

void FinishTest::ACallbackOnlyPosts_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<bool>("own");
    for (const SourceCase& of : SourceCases) {
        QTest::addRow("%s, on a thread of the host", of.pszRow) << of.source << false;
        QTest::addRow("%s, on the engine's thread", of.pszRow) << of.source << true;
    }
}

// A host may call back from inside an operation of the engine, which must be over before the state is acted on.
void FinishTest::ACallbackOnlyPosts()
{
    QFETCH(Source, source);
    QFETCH(bool, own);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, {"1"});
    rig.Calls().Clear();
    FakeDownloads& host = rig.World().Downloads();
    QCOMPARE(own ? host.CallState(source, "1", 1) : host.RaiseState(source, "1", 1), 1); // what the posting gives
    QCOMPARE(own ? host.CallData(source, "1", 10) : host.RaiseData(source, "1", 10), 1);
    QCOMPARE(Told(rig), Texts({}));
    rig.Settle();
    QCOMPARE(Told(rig), Texts({"SignalDownloadRecordStates 1 1 false", "SignalDownloadRecordData 1 10"}));
    QCOMPARE(rig.Calls().OffThread(), Texts({}));
}

void FinishTest::ReceivedDataReachThePanelUnchanged_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("cloud, a large id and the largest length")
        << Source::Cloud << QByteArray("9223372036854775807") << 2147483647
        << Texts({"SignalDownloadRecordData 9223372036854775807 2147483647"});
    QTest::newRow("cloud, a negative id")
        << Source::Cloud << QByteArray("-5") << 1 << Texts({"SignalDownloadRecordData -5 1"});
    QTest::newRow("device, no bytes") << Source::Device << QByteArray("rec") << 0
                                      << Texts({"SignalDownloadRecordData rec 0"});
    QTest::newRow("IOT LAN, a negative length")
        << Source::IOTLan << QByteArray("rec") << -1 << Texts({"SignalDownloadRecordData rec -1"});
    QTest::newRow("LAN module, an id in another script")
        << Source::LanModule << QByteArray("录像") << 65536 << Texts({"SignalDownloadRecordData 录像 65536"});
}

// The engine looks no task up for it: the panel knows its rows.
void FinishTest::ReceivedDataReachThePanelUnchanged()
{
    QFETCH(Source, source);
    QFETCH(QByteArray, id);
    QFETCH(int, length);
    QFETCH(QStringList, told);
    EngineRig rig;
    rig.Calls().Clear();
    rig.RaiseData(source, id.constData(), length);
    QCOMPARE(Told(rig), told);
}

void FinishTest::AStateFindsALongId_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("cloud, the largest number") << Source::Cloud << QByteArray("9223372036854775807");
    QTest::newRow("cloud, the smallest number") << Source::Cloud << QByteArray("-9223372036854775808");
    QTest::newRow("device, words") << Source::Device << QByteArray("recorder-7:channel-12:20200102T030405");
    QTest::newRow("IOT LAN, another script") << Source::IOTLan << QByteArray("录像机-第十二通道-第一段录像");
    QTest::newRow("LAN module, 200 letters") << Source::LanModule << QByteArray(200, 'r');
}

void FinishTest::AStateFindsALongId()
{
    QFETCH(Source, source);
    QFETCH(QByteArray, id);
    EngineRig rig(NoPictures);
    rig.SendTyped(static_cast<int>(source), id.constData(),
                  [&](auto& record) { record.strDownloadPath = rig.World().Path("x.mp4"); });
    rig.RaiseState(source, id.constData(), 2);
    QCOMPARE(rig.Calls().Lines("SignalDownloadRecordStates"),
             QStringList{QStringLiteral("SignalDownloadRecordStates %1 2 false").arg(QString::fromUtf8(id))});
    QCOMPARE(rig.Calls().Count("Insert ~/x.mp4 "), 1);
}

void FinishTest::StatesAndDataKeepTheirOrder()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.Calls().Clear();
    FakeDownloads& downloads = rig.World().Downloads();
    downloads.RaiseState(Source::LanModule, "1", 1);
    downloads.RaiseData(Source::LanModule, "1", 10);
    downloads.RaiseData(Source::LanModule, "1", 20);
    downloads.RaiseState(Source::LanModule, "1", 0);
    downloads.RaiseData(Source::LanModule, "1", 30);
    rig.Settle();
    QCOMPARE(
        rig.Calls().Lines("Signal"),
        Texts({"SignalDownloadRecordStates 1 1 false", "SignalDownloadRecordData 1 10", "SignalDownloadRecordData 1 20",
               "SignalDownloadRecordStates 1 0 false", "SignalDownloadRecordData 1 30"}));
}

void FinishTest::CallbacksOfManyThreadsAllArrive()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"1"});
    SendTasks(rig, Source::Device, {"2"});
    SendTasks(rig, Source::IOTLan, {"3"});
    SendTasks(rig, Source::LanModule, {"4"});
    rig.Calls().Clear();
    const Source sources[] = {Source::Cloud, Source::Device, Source::IOTLan, Source::LanModule};
    const char* ids[] = {"1", "2", "3", "4"};
    FakeWorld::OnThreads(4, [&](int iThread) {
        for (int i = 0; i < 250; ++i)
            rig.World().Downloads().CallData(sources[iThread], ids[iThread], 8);
        rig.World().Downloads().CallState(sources[iThread], ids[iThread], 2);
    });
    rig.Settle();
    for (const char* pszLine : {"SignalDownloadRecordData 1 8", "SignalDownloadRecordData 2 8",
                                "SignalDownloadRecordData 3 8", "SignalDownloadRecordData 4 8"})
        QCOMPARE(rig.Calls().Count(pszLine), 250);
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 4);
    QCOMPARE(rig.Calls().Count("Insert"), 4);
    QCOMPARE(rig.Calls().OffThread(), Texts({}));
}

KX_TEST(FinishTest, QCoreApplication)
#include "FinishTest.moc"
