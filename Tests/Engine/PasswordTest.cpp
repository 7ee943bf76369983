// A device refuses a transfer: the fetched password, the one retry, and the answers that come at odd times.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class PasswordTest : public QObject
{
    Q_OBJECT

private slots:
    void ARefusalIsDecidedByTheTasksMarks_data();
    void ARefusalIsDecidedByTheTasksMarks();
    void TheQueryCarriesTheTasksFields();
    void ARequeuedTaskWaitsAtTheEndWithItsFile();
    void TheEventSaysThatTheTaskIsTriedAgain();
    void TheAnswerIsStoredInAllTasksOfTheDevice();
    void ATaskIsGivenUpAfterOneTryWithTheNewPassword();
    void ATaskThatGotThePasswordWhileWaitingIsTriedOnceMore();
    void AFailedFetchLeavesThePasswordAndAsksAgain_data();
    void AFailedFetchLeavesThePasswordAndAsksAgain();
    void TwoTasksOfOneDeviceAskOnce();
    void NoDeviceTaskStartsWhileAnyDeviceIsAsked();
    void TwoDevicesAreAskedEachForItself();
    void OtherSourcesStartWhileADeviceIsAsked();
    void ATaskOfAnotherClassIsNeverStartedAndTakesNoPlace();
    void AHostWithoutDevicesCannotBeAsked();
};

namespace {

struct Marks
{
    bool bNeed;
    bool bCan;
    bool bGot;
    bool bRetried;
};

KXDownLoadList::DownloadDeviceRecordInfo Protected(const EngineRig& rig, const char* pszId, const char* pszDevice,
                                                   const Marks& marks = {true, true, false, false})
{
    auto record = rig.Device(pszId);
    record.strDeviceId = QString::fromUtf8(pszDevice);
    record.strText4 = QStringLiteral("Name ") + record.strRecordId;
    record.bNeedPassword = marks.bNeed;
    record.bCanGetPassword = marks.bCan;
    record.bGotNewPassword = marks.bGot;
    record.bRetriedWithNewPassword = marks.bRetried;
    return record;
}

std::shared_ptr<KXDownLoadList::DownloadDeviceRecordInfo> DeviceTask(const EngineRig& rig, const char* pszId)
{
    return std::dynamic_pointer_cast<KXDownLoadList::DownloadDeviceRecordInfo>(rig.Task(pszId));
}

#define HANDLER "2 RecordDownloadModule::OnDownloadDeviceRecordState "

const char* const CannotGet = HANDLER "Download failed,the current record can not get password.Recordname:Name 1";
const char* const TriedAgain =
    HANDLER "Download failed,the current record has been tried again with the new password.Recordname:Name 1";
const char* const IsGetting = HANDLER "Try download again because this device is getting password.Recordname:Name 1";
const char* const NotRetried =
    HANDLER "Try download again because Not been retried with the new password.Recordname:Name 1";
const char* const Get = HANDLER "Get the password and download again.Recordname:Name 1";

#undef HANDLER

} // namespace

Q_DECLARE_METATYPE(Marks)

void PasswordTest::ARefusalIsDecidedByTheTasksMarks_data()
{
    QTest::addColumn<Marks>("marks");
    QTest::addColumn<bool>("busy"); // the device's password is being fetched already
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<bool>("retried"); // the mark afterwards
    QTest::addColumn<int>("loggedAtStop");
    const QStringList given = Texts({"StopDeviceRecordDownload 1", "notify EventNotifyDownloadRecordStates",
                                     "SignalDownloadRecordStates 1 3 false"});
    const QStringList givenNextStarts =
        Texts({"StopDeviceRecordDownload 1", "StartDeviceRecordDownload 3", "notify EventNotifyDownloadRecordStates",
               "SignalDownloadRecordStates 1 3 false"});
    const QStringList asked = Texts({"StopDeviceRecordDownload 1", "RequestDevicePassword SN",
                                     "notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 3 true"});
    const QStringList requeued = Texts({"StopDeviceRecordDownload 1", "notify EventNotifyDownloadRecordStates",
                                        "SignalDownloadRecordStates 1 3 true"});
    const QStringList requeuedNextStarts =
        Texts({"StopDeviceRecordDownload 1", "StartDeviceRecordDownload 3", "notify EventNotifyDownloadRecordStates",
               "SignalDownloadRecordStates 1 3 true"});

    QTest::newRow("no password yet, first refusal: is it asked for?")
        << Marks{true, true, false, false} << false << asked << Texts({Get}) << true << 0;
    QTest::newRow("no password yet, refused before: is it asked for again?")
        << Marks{true, true, false, true} << false << asked << Texts({Get}) << true << 0;
    QTest::newRow("password fetched, not tried with it: is it tried once more?")
        << Marks{true, true, true, false} << false << requeuedNextStarts << Texts({NotRetried}) << true << 0;
    QTest::newRow("password fetched and tried: is it given up?")
        << Marks{true, true, true, true} << false << givenNextStarts << Texts({TriedAgain}) << true << 1;
    QTest::newRow("device is being asked, first refusal: does it wait too?")
        << Marks{true, true, false, false} << true << requeued << Texts({IsGetting}) << true << 0;
    QTest::newRow("device is being asked, refused before: does it wait too?")
        << Marks{true, true, false, true} << true << requeued << Texts({IsGetting}) << true << 0;
    QTest::newRow("device is being asked, password fetched: does it wait too?")
        << Marks{true, true, true, false} << true << requeued << Texts({IsGetting}) << true << 0;
    QTest::newRow("device is being asked, password fetched and tried: does it wait all the same?")
        << Marks{true, true, true, true} << true << requeued << Texts({IsGetting}) << true << 0;
    QTest::newRow("no password needed: is it given up?")
        << Marks{false, true, false, false} << false << givenNextStarts << Texts({CannotGet}) << false << 1;
    QTest::newRow("the host cannot supply it: is it given up?")
        << Marks{true, false, false, false} << false << givenNextStarts << Texts({CannotGet}) << false << 1;
    QTest::newRow("neither, password fetched, not tried: is it given up?")
        << Marks{false, false, true, false} << false << givenNextStarts << Texts({CannotGet}) << false << 1;
    QTest::newRow("no password needed, while the device is asked for another task: is it given up?")
        << Marks{false, true, false, false} << true << given << Texts({CannotGet}) << false << 1;
    QTest::newRow("the host cannot supply it, while the device is asked for another task: is it given up?")
        << Marks{true, false, true, true} << true << given << Texts({CannotGet}) << true << 1;
}

void PasswordTest::ARefusalIsDecidedByTheTasksMarks()
{
    QFETCH(Marks, marks);
    QFETCH(bool, busy);
    QFETCH(QStringList, told);
    QFETCH(QStringList, log);
    QFETCH(bool, retried);
    QFETCH(int, loggedAtStop);
    EngineRig rig;
    rig.SendList(
        1, std::vector{Protected(rig, "1", "SN", marks), Protected(rig, "2", "SN"), Protected(rig, "3", "SN-other")});
    rig.World().WriteFile("1.mp4");
    if (busy)
        rig.RaiseState(Source::Device, "2", 3);
    rig.Calls().Clear();
    rig.World().Log().Clear();
    int iAtStop = -1;
    rig.Calls().WhenAdded("StopDeviceRecordDownload 1", [&] { iAtStop = rig.World().Log().Lines().size(); });
    rig.Calls().WhenAdded("RequestDevicePassword", [&] { QCOMPARE(rig.World().Log().Lines(), Texts({})); });
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), told);
    QCOMPARE(rig.World().Log().Lines(), log);
    QCOMPARE(iAtStop, loggedAtStop);
    QCOMPARE(DeviceTask(rig, "1")->bRetriedWithNewPassword, retried);
    QCOMPARE(DeviceTask(rig, "1")->bGotNewPassword, marks.bGot);
    QVERIFY(rig.World().HasFile("1.mp4"));
}

void PasswordTest::TheQueryCarriesTheTasksFields()
{
    EngineRig rig;
    auto record = Protected(rig, "rec-7", "SN");
    record.strText1 = QStringLiteral("account");
    record.iValue5 = 12;
    record.lValue1 = 9000000001;
    rig.SendOne(record);
    rig.RaiseState(Source::Device, "rec-7", 3);
    QCOMPARE(rig.Calls().Lines("RequestDevicePassword"),
             Texts({"RequestDevicePassword SN account=account channel=12 channelId=9000000001 kind=1"}));
    const auto userInfo = QByteArray::fromStdString(rig.World().Devices().Queries().front().strUserInfo);
    const QJsonObject expected{{QStringLiteral("deviceId"), QStringLiteral("SN")},
                               {QStringLiteral("recordId"), QStringLiteral("rec-7")}};
    QCOMPARE(QJsonDocument::fromJson(userInfo).object(), expected);
    QVERIFY(userInfo.contains('\n')); // the styled form
}

void PasswordTest::ARequeuedTaskWaitsAtTheEndWithItsFile()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "1", "SN"), Protected(rig, "2", "SN-2"), Protected(rig, "3", "SN-3"),
                                Protected(rig, "4", "SN-4")});
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1.jpg");
    rig.RaiseState(Source::Device, "1", 3);
    rig.RaiseState(Source::Device, "2", 2);
    rig.Calls().Clear();
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 3", "StartDeviceRecordDownload 4"}));
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "3", 2);
    QCOMPARE(rig.Calls().Lines("Start"),
             Texts({"StartDeviceRecordDownload 1 device=SN account= address= password=canary-sealed channel=-1 "
                    "path=~/1.mp4 begin=1577934245 end=1577934306 stream=-1"}));
    QCOMPARE(FilesLeft(rig, {"1.mp4", "1.jpg"}), Texts({"1.mp4", "1.jpg"}));
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 0); // its row is there already
}

void PasswordTest::TheEventSaysThatTheTaskIsTriedAgain()
{
    EngineRig rig;
    rig.SendOne(Protected(rig, "1", "SN"));
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(StateEvents(rig), Texts({"{\n    \"bReget\": true,\n    \"iCode\": 3,\n    \"iRecordType\": 1,\n"
                                      "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n"}));
}

void PasswordTest::TheAnswerIsStoredInAllTasksOfTheDevice()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "1", "SN"), Protected(rig, "2", "SN", {false, false, false, false}),
                                Protected(rig, "3", "SN"), Protected(rig, "4", "SN-other")});
    rig.RaiseState(Source::Device, "1", 3); // "2" runs on, "3" and "4" wait
    rig.World().SetClearDevicePassword("canary-opened");
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(rig.Calls().Lines("AesDecrypt").value(0), QStringLiteral("AesDecryptDeviceUserInfo SN password=sealed"));
    for (const char* pszId : {"1", "2", "3"}) {
        QCOMPARE(rig.Task(pszId)->strPassword, QStringLiteral("canary-opened"));
        QVERIFY(DeviceTask(rig, pszId)->bGotNewPassword);
    }
    QCOMPARE(rig.Task("4")->strPassword, QString());
    QVERIFY(!DeviceTask(rig, "4")->bGotNewPassword);
    QVERIFY(!DeviceTask(rig, "3")->bRetriedWithNewPassword);
}

void PasswordTest::ATaskIsGivenUpAfterOneTryWithTheNewPassword()
{
    EngineRig rig;
    rig.SendOne(Protected(rig, "1", "SN"));
    rig.World().WriteFile("1.mp4");
    rig.RaiseState(Source::Device, "1", 3);
    rig.World().Devices().AnswerPassword(0, 0, "wrong");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload 1"), 2);
    rig.Calls().Clear();
    rig.World().Log().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1", "notify EventNotifyDownloadRecordStates",
                               "SignalDownloadRecordStates 1 3 false"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({TriedAgain}));
    QVERIFY(rig.World().HasFile("1.mp4"));
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3); // gone
    QCOMPARE(Told(rig), Texts({}));
}

void PasswordTest::ATaskThatGotThePasswordWhileWaitingIsTriedOnceMore()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "9", "SN"), Protected(rig, "8", "SN-8"), Protected(rig, "1", "SN")});
    rig.RaiseState(Source::Device, "9", 3);
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle(); // "1" starts with the password
    rig.World().Log().Clear();
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3); // "9" starts in its place
    rig.RaiseState(Source::Device, "9", 2); // "1" starts again
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.World().Log().Lines(), Texts({NotRetried, TriedAgain}));
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 9", "StartDeviceRecordDownload 1"}));
    QCOMPARE(rig.Calls().Count("RequestDevicePassword"), 0);
}

void PasswordTest::AFailedFetchLeavesThePasswordAndAsksAgain_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("-1") << -1;
    QTest::newRow("1") << 1;
    QTest::newRow("1144, the message's own number") << 1144;
}

void PasswordTest::AFailedFetchLeavesThePasswordAndAsksAgain()
{
    QFETCH(int, result);
    EngineRig rig;
    auto record = Protected(rig, "1", "SN");
    record.strPassword = QStringLiteral("old");
    rig.SendOne(record);
    for (int i = 0; i < 3; ++i) {
        rig.Calls().Clear();
        rig.RaiseState(Source::Device, "1", 3);
        rig.World().Devices().AnswerPassword(static_cast<std::size_t>(i), result, "sealed");
        rig.Settle();
        QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1", "RequestDevicePassword SN",
                                   "notify EventNotifyDownloadRecordStates", "SignalDownloadRecordStates 1 3 true",
                                   "StartDeviceRecordDownload 1"}));
        QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("old"));
        QVERIFY(!DeviceTask(rig, "1")->bGotNewPassword);
    }
    QCOMPARE(rig.World().Log().Lines(), Texts({Get, Get, Get}));
}

void PasswordTest::TwoTasksOfOneDeviceAskOnce()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "2", "SN"), Protected(rig, "1", "SN"), Protected(rig, "3", "SN-3")});
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "2", 3);
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.Calls().Count("RequestDevicePassword"), 1);
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"2 RecordDownloadModule::OnDownloadDeviceRecordState Get the password and download "
                    "again.Recordname:Name 2",
                    IsGetting}));
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 3", "StartDeviceRecordDownload 2"}));
    rig.RaiseState(Source::Device, "3", 2);
    QCOMPARE(rig.Calls().Short("Start").last(), QStringLiteral("StartDeviceRecordDownload 1"));
}

void PasswordTest::NoDeviceTaskStartsWhileAnyDeviceIsAsked()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "1", "SN"), Protected(rig, "2", "SN-2"), Protected(rig, "3", "SN-3")});
    rig.RaiseState(Source::Device, "1", 3);
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "2", 2);       // both places are free now
    rig.SendOne(Protected(rig, "4", "SN-other")); // and another device asks
    rig.Engine().PauseRecordDownloads(Rows(rig, {"3"}));
    rig.Engine().StartRecordDownloads(Rows(rig, {"3"}));
    QCOMPARE(rig.Calls().Short("Start"), Texts({}));
    QCOMPARE(rig.Calls().Lines("SignalAdd"), Texts({"SignalAddDownloadInfo 4", "SignalAddDownloadInfo 3"}));
    rig.World().Devices().AnswerPassword(0, 1, "");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 4"}));
}

void PasswordTest::TwoDevicesAreAskedEachForItself()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Protected(rig, "1", "SN-1"), Protected(rig, "2", "SN-2"), Protected(rig, "3", "SN-3")});
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    rig.RaiseState(Source::Device, "2", 3);
    QCOMPARE(rig.Calls().Short("Request"), Texts({"RequestDevicePassword SN-1", "RequestDevicePassword SN-2"}));
    rig.World().Devices().AnswerPassword(1, 0, "two");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(rig.Task("2")->strPassword, QStringLiteral("canary-two"));
    rig.World().Devices().AnswerPassword(0, 0, "one");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 3", "StartDeviceRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-one"));
}

void PasswordTest::OtherSourcesStartWhileADeviceIsAsked()
{
    EngineRig rig(NoPictures);
    rig.SendOne(Protected(rig, "1", "SN"));
    rig.RaiseState(Source::Device, "1", 3);
    rig.Calls().Clear();
    SendTasks(rig, Source::LanModule, {"2"});
    SendTasks(rig, Source::IOTLan, {"3"});
    SendTasks(rig, Source::Cloud, {"4"});
    QCOMPARE(rig.Calls().Short("Start"),
             Texts({"StartLanModuleRecordDownload 2", "StartIOTLanRecordDownload 3", "StartCloudRecordDownload 4"}));
}

void PasswordTest::ATaskOfAnotherClassIsNeverStartedAndTakesNoPlace()
{
    EngineRig rig;
    auto record = rig.Cloud("1");
    record.iRecordType = 1;
    rig.SendList(0, std::vector{record});
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    rig.SendList(1, std::vector{rig.Device("2"), rig.Device("3"), rig.Device("4")});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 2", "StartDeviceRecordDownload 3"}));
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PasswordTest::AHostWithoutDevicesCannotBeAsked()
{
    EngineRig rig([](FakeWorld& world) { world.TakeModuleAway(2); });
    rig.SendOne(Protected(rig, "1", "SN"));
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1", "notify EventNotifyDownloadRecordStates",
                               "SignalDownloadRecordStates 1 3 false"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({CannotGet}));
}

KX_TEST(PasswordTest, QCoreApplication)
#include "PasswordTest.moc"
