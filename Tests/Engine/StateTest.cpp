// What each state of a transfer does: the event, the stop, the panel's signal, the next start, the files.

#include "Engine/EngineCases.h"

#include <utility>

using namespace EngineCases;

class StateTest : public QObject
{
    Q_OBJECT

private slots:
    void EachStateDoesItsWork_data();
    void EachStateDoesItsWork();
    void TheEventNamesTheTask_data();
    void TheEventNamesTheTask();
    void IOTLanStatesAreLogged();
    void AStateOfAnUnknownTaskIsDropped_data();
    void AStateOfAnUnknownTaskIsDropped();
    void AFailureOfATaskThatTheClientDeletedIsDoneWith();
};

namespace {

// As many tasks as may run, "1" among them, and one that waits.
QStringList FullAndOneMore(Source source)
{
    switch (source) {
    case Source::Cloud:
        return Texts({"1", "2", "3", "4"});
    case Source::Device:
        return Texts({"1", "2", "4"});
    default:
        return Texts({"1", "4"});
    }
}

void Row(const char* pszRow, Source source, int iCode, const QStringList& told, bool bKept)
{
    QTest::newRow(pszRow) << source << iCode << told << bKept;
}

constexpr bool Kept = true;
constexpr bool Removed = false;

void CloudRows()
{
    Row("cloud, 0: is it stopped as failed, and its file removed?", Source::Cloud, 0,
        Texts({"notify EventNotifyDownloadRecordStates", "StopCloudRecordDownload 1", "StartCloudRecordDownload 4",
               "SignalDownloadRecordStates 1 0 false"}),
        Removed);
    Row("cloud, 1: does only the panel hear of it?", Source::Cloud, 1, Texts({"SignalDownloadRecordStates 1 1 false"}),
        Kept);
    Row("cloud, 2: is it registered and not stopped?", Source::Cloud, 2,
        Texts({"notify EventNotifyDownloadRecordStates", "Insert ~/1.mp4", "ReportRecordDownloaded 1",
               "SignalDownloadRecordStates 1 2 false", "StartCloudRecordDownload 4"}),
        Kept);
    Row("cloud, 3: is it stopped as refused?", Source::Cloud, 3,
        Texts({"notify EventNotifyDownloadRecordStates", "StopCloudRecordDownload 1", "StartCloudRecordDownload 4",
               "SignalDownloadRecordStates 1 3 false"}),
        Kept);
    Row("cloud, 4: does it run on?", Source::Cloud, 4,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 4 false"}), Kept);
    Row("cloud, 77: does it run on?", Source::Cloud, 77,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 77 false"}), Kept);
    Row("cloud, 100: is it stopped as failed, and does the panel hear 100?", Source::Cloud, 100,
        Texts({"notify EventNotifyDownloadRecordStates", "StopCloudRecordDownload 1", "StartCloudRecordDownload 4",
               "SignalDownloadRecordStates 1 100 false"}),
        Removed);
}

void LanModuleRows()
{
    Row("LAN module, 0: is it stopped as failed, and its file removed?", Source::LanModule, 0,
        Texts({"notify EventNotifyDownloadRecordStates", "StopLanModuleRecordDownload 1",
               "StartLanModuleRecordDownload 4", "SignalDownloadRecordStates 1 0 false"}),
        Removed);
    Row("LAN module, 1: does only the panel hear of it?", Source::LanModule, 1,
        Texts({"SignalDownloadRecordStates 1 1 false"}), Kept);
    Row("LAN module, 2: is it registered, then stopped?", Source::LanModule, 2,
        Texts({"notify EventNotifyDownloadRecordStates", "Insert ~/1.mp4", "ReportRecordDownloaded 1",
               "StopLanModuleRecordDownload 1", "StartLanModuleRecordDownload 4",
               "SignalDownloadRecordStates 1 2 false"}),
        Kept);
    Row("LAN module, 3: is it stopped as refused?", Source::LanModule, 3,
        Texts({"notify EventNotifyDownloadRecordStates", "StopLanModuleRecordDownload 1",
               "StartLanModuleRecordDownload 4", "SignalDownloadRecordStates 1 3 false"}),
        Kept);
    Row("LAN module, 4: does it run on?", Source::LanModule, 4,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 4 false"}), Kept);
    Row("LAN module, 77: does it run on?", Source::LanModule, 77,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 77 false"}), Kept);
    Row("LAN module, 100: does it run on, as it is no cloud task?", Source::LanModule, 100,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 100 false"}), Kept);
}

void IOTLanRows()
{
    Row("IOT LAN, 0: is it stopped as failed, and its file removed?", Source::IOTLan, 0,
        Texts({"notify EventNotifyDownloadRecordStates", "StopIOTLanRecordDownload 1", "StartIOTLanRecordDownload 4",
               "SignalDownloadRecordStates 1 0 false"}),
        Removed);
    Row("IOT LAN, 1: does only the panel hear of it?", Source::IOTLan, 1,
        Texts({"SignalDownloadRecordStates 1 1 false"}), Kept);
    Row("IOT LAN, 2: is it registered, then stopped?", Source::IOTLan, 2,
        Texts({"notify EventNotifyDownloadRecordStates", "Insert ~/1.mp4", "ReportRecordDownloaded 1",
               "StopIOTLanRecordDownload 1", "StartIOTLanRecordDownload 4", "SignalDownloadRecordStates 1 2 false"}),
        Kept);
    Row("IOT LAN, 3: is it stopped as refused?", Source::IOTLan, 3,
        Texts({"notify EventNotifyDownloadRecordStates", "StopIOTLanRecordDownload 1", "StartIOTLanRecordDownload 4",
               "SignalDownloadRecordStates 1 3 false"}),
        Kept);
    Row("IOT LAN, 4: does it run on?", Source::IOTLan, 4,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 4 false"}), Kept);
    Row("IOT LAN, 77: does it run on?", Source::IOTLan, 77,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 77 false"}), Kept);
    Row("IOT LAN, 100: does it run on, as it is no cloud task?", Source::IOTLan, 100,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 100 false"}), Kept);
}

// The device source acts before it tells the client, because only then it knows whether the task is tried again.
void DeviceRows()
{
    Row("device, 0: is it stopped as failed, and its file kept?", Source::Device, 0,
        Texts({"StopDeviceRecordDownload 1", "StartDeviceRecordDownload 4", "notify EventNotifyDownloadRecordStates",
               "SignalDownloadRecordStates 1 0 false"}),
        Kept);
    Row("device, 1: does only the panel hear of it?", Source::Device, 1,
        Texts({"SignalDownloadRecordStates 1 1 false"}), Kept);
    Row("device, 2: is it registered, then stopped?", Source::Device, 2,
        Texts({"Insert ~/1.mp4", "ReportRecordDownloaded 1", "StopDeviceRecordDownload 1",
               "StartDeviceRecordDownload 4", "notify EventNotifyDownloadRecordStates",
               "SignalDownloadRecordStates 1 2 false"}),
        Kept);
    Row("device, 3 without a password to fetch: is it stopped as refused?", Source::Device, 3,
        Texts({"StopDeviceRecordDownload 1", "StartDeviceRecordDownload 4", "notify EventNotifyDownloadRecordStates",
               "SignalDownloadRecordStates 1 3 false"}),
        Kept);
    Row("device, 4: does it run on?", Source::Device, 4,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 4 false"}), Kept);
    Row("device, 77: does it run on?", Source::Device, 77,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 77 false"}), Kept);
    Row("device, 100: does it run on, as it is no cloud task?", Source::Device, 100,
        Texts({"notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 100 false"}), Kept);
}

} // namespace

void StateTest::EachStateDoesItsWork_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<bool>("kept");
    CloudRows();
    LanModuleRows();
    IOTLanRows();
    DeviceRows();
}

void StateTest::EachStateDoesItsWork()
{
    QFETCH(Source, source);
    QFETCH(int, code);
    QFETCH(QStringList, told);
    QFETCH(bool, kept);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, FullAndOneMore(source));
    for (const char* pszName : {"1.mp4", "1.jpg", "2.mp4", "4.mp4"})
        rig.World().WriteFile(pszName);
    rig.Calls().Clear();
    rig.RaiseState(source, "1", code);
    QCOMPARE(Told(rig), told);
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1.jpg"}), kept ? Texts({"1.mp4", "1.jpg"}) : Texts({}));
    QCOMPARE(FilesLeft(rig, {"2.mp4", "4.mp4"}), Texts({"2.mp4", "4.mp4"}));

    // A task that runs on can still end; one that is gone is unknown.
    rig.Calls().Clear();
    rig.RaiseState(source, "1", 1);
    const bool bRunsOn = code == 1 || code == 4 || code == 77 || (code == 100 && source != Source::Cloud);
    QCOMPARE(Told(rig), bRunsOn ? Texts({"SignalDownloadRecordStates 1 1 false"}) : Texts({}));
}

void StateTest::TheEventNamesTheTask_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("event");
    QTest::newRow("cloud") << Source::Cloud << 100
                           << QStringLiteral("{\n    \"iCode\": 100,\n    \"iRecordType\": 0,\n"
                                             "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n");
    QTest::newRow("LAN module") << Source::LanModule << 2
                                << QStringLiteral(
                                       "{\n    \"iCode\": 2,\n    \"iRecordType\": 3,\n"
                                       "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n");
    QTest::newRow("IOT LAN") << Source::IOTLan << -5
                             << QStringLiteral(
                                    "{\n    \"iCode\": -5,\n    \"iRecordType\": 2,\n"
                                    "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n");
    QTest::newRow("device, with its retry mark")
        << Source::Device << 0
        << QStringLiteral("{\n    \"bReget\": false,\n    \"iCode\": 0,\n    \"iRecordType\": 1,\n"
                          "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n");
}

void StateTest::TheEventNamesTheTask()
{
    QFETCH(Source, source);
    QFETCH(int, code);
    QFETCH(QString, event);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, {"1"});
    rig.RaiseState(source, "1", code);
    QCOMPARE(StateEvents(rig), QStringList{event});
    const auto payloads = rig.World().Bus().Payloads("EventNotifyDownloadRecordStates");
    QCOMPARE(payloads.front().size(), 1);
    QCOMPARE(payloads.front().front().type(), QVariant::String);
}

void StateTest::IOTLanStatesAreLogged()
{
    EngineRig rig(NoPictures);
    for (const Source source : {Source::Cloud, Source::Device, Source::LanModule, Source::IOTLan})
        SendTasks(rig, source, {"1"});
    for (const Source source : {Source::Cloud, Source::Device, Source::LanModule, Source::IOTLan}) {
        rig.RaiseState(source, "unknown", 1);
        rig.RaiseState(source, "1", 1);
        rig.RaiseState(source, "1", -3);
        rig.RaiseState(source, "1", 2);
        rig.RaiseState(source, "1", 2); // gone by now
    }
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"2 RecordDownloadModule::OnDownloadIOTLanRecordState lan local:iCode[1]",
                    "2 RecordDownloadModule::OnDownloadIOTLanRecordState lan local:iCode[-3]",
                    "2 RecordDownloadModule::OnDownloadIOTLanRecordState lan local:iCode[2]"}));
}

void StateTest::AStateOfAnUnknownTaskIsDropped_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("cloud, never seen") << Source::Cloud << QByteArray("99");
    QTest::newRow("cloud, waiting") << Source::Cloud << QByteArray("4");
    QTest::newRow("cloud, running in the device source") << Source::Cloud << QByteArray("21");
    QTest::newRow("device, never seen") << Source::Device << QByteArray("99");
    QTest::newRow("device, running in the cloud") << Source::Device << QByteArray("1");
    QTest::newRow("IOT LAN, waiting") << Source::IOTLan << QByteArray("32");
    QTest::newRow("LAN module, running in the IOT LAN") << Source::LanModule << QByteArray("31");
    QTest::newRow("LAN module, an empty id") << Source::LanModule << QByteArray("");
}

void StateTest::AStateOfAnUnknownTaskIsDropped()
{
    QFETCH(Source, source);
    QFETCH(QByteArray, id);
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"1", "2", "3", "4"});
    SendTasks(rig, Source::Device, {"21"});
    SendTasks(rig, Source::IOTLan, {"31", "32"});
    rig.Calls().Clear();
    for (int iCode : {0, 1, 2, 3, 100, 77})
        rig.RaiseState(source, id.constData(), iCode);
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

// The client may answer the event by deleting the task: it is stopped once, and nothing more is told of it.
void StateTest::AFailureOfATaskThatTheClientDeletedIsDoneWith()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1", "2"});
    rig.World().WriteFile("1.mp4");
    rig.Calls().Clear();
    rig.Calls().WhenAdded("notify", [&] {
        rig.Engine().DeleteRecordDownload(3, QStringLiteral("1"), rig.World().Path("1.mp4"));
        rig.World().WriteFile("1.mp4", "somebody else's");
    });
    rig.RaiseState(Source::LanModule, "1", 0);
    QCOMPARE(Told(rig), Texts({"notify EventNotifyDownloadRecordStates", "StopLanModuleRecordDownload 1",
                               "StartLanModuleRecordDownload 2"}));
    QVERIFY(rig.World().HasFile("1.mp4"));
}

QTEST_GUILESS_MAIN(StateTest)
#include "StateTest.moc"
