// What each state of a transfer does: the event, the stop, the panel's signal, the next start, the files.

#include "Engine/EngineCases.h"
#include "TestMain.h"

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

enum class After { RunsOn, Gone, GoneWithItsFiles };

struct StateCase
{
    const char* pszRow;
    Source source;
    int iCode;
    const char* pszTold; // in the words of Brief()
    After after;
};

const StateCase StateCases[] = {
    {"cloud, 0: is it stopped as failed, and its file removed?", Source::Cloud, 0,
     "event, StopCloud 1, StartCloud 4, panel 1 0 false", After::GoneWithItsFiles},
    {"cloud, 1: does only the panel hear of it?", Source::Cloud, 1, "panel 1 1 false", After::RunsOn},
    {"cloud, 2: is it registered and not stopped?", Source::Cloud, 2,
     "event, Insert ~/1.mp4, ReportRecordDownloaded 1, panel 1 2 false, StartCloud 4", After::Gone},
    {"cloud, 3: is it stopped as refused?", Source::Cloud, 3, "event, StopCloud 1, StartCloud 4, panel 1 3 false",
     After::Gone},
    {"cloud, 4: does it run on?", Source::Cloud, 4, "event, panel 1 4 false", After::RunsOn},
    {"cloud, 77: does it run on?", Source::Cloud, 77, "event, panel 1 77 false", After::RunsOn},
    {"cloud, 100: is it stopped as failed, and does the panel hear 100?", Source::Cloud, 100,
     "event, StopCloud 1, StartCloud 4, panel 1 100 false", After::GoneWithItsFiles},

    {"LAN module, 0: is it stopped as failed, and its file removed?", Source::LanModule, 0,
     "event, StopLanModule 1, StartLanModule 2, panel 1 0 false", After::GoneWithItsFiles},
    {"LAN module, 1: does only the panel hear of it?", Source::LanModule, 1, "panel 1 1 false", After::RunsOn},
    {"LAN module, 2: is it registered, then stopped?", Source::LanModule, 2,
     "event, Insert ~/1.mp4, ReportRecordDownloaded 1, StopLanModule 1, StartLanModule 2, panel 1 2 false",
     After::Gone},
    {"LAN module, 3: is it stopped as refused?", Source::LanModule, 3,
     "event, StopLanModule 1, StartLanModule 2, panel 1 3 false", After::Gone},
    {"LAN module, 4: does it run on?", Source::LanModule, 4, "event, panel 1 4 false", After::RunsOn},
    {"LAN module, 77: does it run on?", Source::LanModule, 77, "event, panel 1 77 false", After::RunsOn},
    {"LAN module, 100: does it run on, as it is no cloud task?", Source::LanModule, 100, "event, panel 1 100 false",
     After::RunsOn},

    {"IOT LAN, 0: is it stopped as failed, and its file removed?", Source::IOTLan, 0,
     "event, StopIOTLan 1, StartIOTLan 2, panel 1 0 false", After::GoneWithItsFiles},
    {"IOT LAN, 1: does only the panel hear of it?", Source::IOTLan, 1, "panel 1 1 false", After::RunsOn},
    {"IOT LAN, 2: is it registered, then stopped?", Source::IOTLan, 2,
     "event, Insert ~/1.mp4, ReportRecordDownloaded 1, StopIOTLan 1, StartIOTLan 2, panel 1 2 false", After::Gone},
    {"IOT LAN, 3: is it stopped as refused?", Source::IOTLan, 3, "event, StopIOTLan 1, StartIOTLan 2, panel 1 3 false",
     After::Gone},
    {"IOT LAN, 4: does it run on?", Source::IOTLan, 4, "event, panel 1 4 false", After::RunsOn},
    {"IOT LAN, 77: does it run on?", Source::IOTLan, 77, "event, panel 1 77 false", After::RunsOn},
    {"IOT LAN, 100: does it run on, as it is no cloud task?", Source::IOTLan, 100, "event, panel 1 100 false",
     After::RunsOn},

    // The device source acts before it tells the client, because only then it knows whether the task is tried again.
    {"device, 0: is it stopped as failed, and its file kept?", Source::Device, 0,
     "StopDevice 1, StartDevice 3, event, panel 1 0 false", After::Gone},
    {"device, 1: does only the panel hear of it?", Source::Device, 1, "panel 1 1 false", After::RunsOn},
    {"device, 2: is it registered, then stopped?", Source::Device, 2,
     "Insert ~/1.mp4, ReportRecordDownloaded 1, StopDevice 1, StartDevice 3, event, panel 1 2 false", After::Gone},
    {"device, 3 without a password to fetch: is it stopped as refused?", Source::Device, 3,
     "StopDevice 1, StartDevice 3, event, panel 1 3 false", After::Gone},
    {"device, 4: does it run on?", Source::Device, 4, "event, panel 1 4 false", After::RunsOn},
    {"device, 77: does it run on?", Source::Device, 77, "event, panel 1 77 false", After::RunsOn},
    {"device, 100: does it run on, as it is no cloud task?", Source::Device, 100, "event, panel 1 100 false",
     After::RunsOn},
};

// What was told, in short: "event" is the state event, "panel" the panel's signal, "StopCloud" the host's operation.
QString Brief(EngineRig& rig)
{
    QString strBrief = Told(rig).join(QStringLiteral(", "));
    strBrief.replace(QStringLiteral("notify EventNotifyDownloadRecordStates"), QStringLiteral("event"));
    strBrief.replace(QStringLiteral("SignalDownloadRecordStates"), QStringLiteral("panel"));
    return strBrief.replace(QStringLiteral("RecordDownload "), QStringLiteral(" "));
}

} // namespace

Q_DECLARE_METATYPE(StateCase)

void StateTest::EachStateDoesItsWork_data()
{
    QTest::addColumn<StateCase>("of");
    for (const StateCase& of : StateCases)
        QTest::newRow(of.pszRow) << of;
}

void StateTest::EachStateDoesItsWork()
{
    QFETCH(StateCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1", "2", "3", "4"}); // as many as may run, and at least one that waits
    for (const char* pszName : {"1.mp4", "1.jpg", "2.mp4", "3.mp4", "4.mp4"})
        rig.World().WriteFile(pszName);
    rig.Calls().Clear();
    rig.RaiseState(of.source, "1", of.iCode);
    QCOMPARE(Brief(rig), QString::fromUtf8(of.pszTold));
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1.jpg"}),
             of.after == After::GoneWithItsFiles ? Texts({}) : Texts({"1.mp4", "1.jpg"}));
    QCOMPARE(FilesLeft(rig, {"2.mp4", "3.mp4", "4.mp4"}), Texts({"2.mp4", "3.mp4", "4.mp4"}));

    // A task that runs on can still end; one that is gone is unknown.
    rig.Calls().Clear();
    rig.RaiseState(of.source, "1", 1);
    QCOMPARE(Brief(rig), of.after == After::RunsOn ? QStringLiteral("panel 1 1 false") : QString());
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

KX_TEST(StateTest, QCoreApplication)
#include "StateTest.moc"
