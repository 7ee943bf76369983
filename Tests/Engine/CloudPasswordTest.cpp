// An encrypted cloud recording is held until the host answers for its password.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class CloudPasswordTest : public QObject
{
    Q_OBJECT

private slots:
    void APasswordIsAskedForWithKeyAndAccountOnly_data();
    void APasswordIsAskedForWithKeyAndAccountOnly();
    void TheQueryCarriesTheTasksFields();
    void TheAnswerQueuesTheTaskAndAsksForItsPicture_data();
    void TheAnswerQueuesTheTaskAndAsksForItsPicture();
    void EveryAnswerIsLoggedAsItCame();
    void AnAnswerWithoutUserPostsNothing();
    void AnAnswerWithoutTextsHasEmptyOnes();
    void AnAnswerThatFitsNoTaskChangesNothing_data();
    void AnAnswerThatFitsNoTaskChangesNothing();
    void ADoubledAnswerChangesNothing();
    void OfTasksOfOneRecordTheFirstIsAnswered();
    void TasksOfOneRecordIdAreToldApartByTheirDevice();
    void AnsweredTasksKeepTheLimit();
    void TheAnswerIsHandledOnTheEnginesThread();
    void AQueryThatTheHostRefusesDoesNotHoldTheTask_data();
    void AQueryThatTheHostRefusesDoesNotHoldTheTask();
    void ATaskDeletedAfterItsRefusedQueryDoesNotComeBack();
    void ARefusedQueryLogsOneLineWithoutThePassword();
    void AnAnswerAfterShutdownStartsNothing_data();
    void AnAnswerAfterShutdownStartsNothing();
};

namespace {

KXDownLoadList::DownloadCloudRecordInfo Encrypted(const EngineRig& rig, const char* pszId, const char* pszDevice = "SN",
                                                  const char* pszFile = nullptr)
{
    auto record = rig.Cloud(pszId);
    record.strDeviceId = QString::fromUtf8(pszDevice);
    record.strText1 = QStringLiteral("account");
    record.strCloudText1 = QStringLiteral("cover-") + record.strRecordId;
    record.strCloudText2 = QStringLiteral("key");
    if (pszFile)
        record.strDownloadPath =
            QFileInfo(record.strDownloadPath).absolutePath() + QLatin1Char('/') + QString::fromUtf8(pszFile);
    return record;
}

} // namespace

void CloudPasswordTest::APasswordIsAskedForWithKeyAndAccountOnly_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("account");
    QTest::addColumn<QStringList>("told");
    const QString text = QStringLiteral("text");
    QTest::newRow("key and account: is the password asked for?") << text << text << Texts({"GetCloudRecordPassword 1"});
    QTest::newRow("key only: is the picture asked for?") << text << QString() << Texts({"get cover-1"});
    QTest::newRow("account only: is the picture asked for?") << QString() << text << Texts({"get cover-1"});
    QTest::newRow("neither: is the picture asked for?") << QString() << QString() << Texts({"get cover-1"});
}

void CloudPasswordTest::APasswordIsAskedForWithKeyAndAccountOnly()
{
    QFETCH(QString, key);
    QFETCH(QString, account);
    QFETCH(QStringList, told);
    EngineRig rig;
    auto record = Encrypted(rig, "1");
    record.strCloudText2 = key;
    record.strText1 = account;
    rig.Calls().Clear();
    rig.SendOne(record);
    QCOMPARE(Told(rig), told); // and no row yet
}

void CloudPasswordTest::TheQueryCarriesTheTasksFields()
{
    EngineRig rig;
    auto record = Encrypted(rig, "4711");
    record.iValue5 = 12;
    record.lValue1 = 9000000001;
    rig.SendOne(record);
    QCOMPARE(rig.Calls().Lines("GetCloud"),
             Texts({"GetCloudRecordPassword 4711 account=account device=SN channel=12 channelId=9000000001 key=key "
                    "begin=1577934245 path=~/4711.mp4"}));
}

void CloudPasswordTest::TheAnswerQueuesTheTaskAndAsksForItsPicture_data()
{
    QTest::addColumn<int>("get");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QString>("sent");
    QTest::newRow("password found") << 1 << QByteArray("canary-secret") << QStringLiteral(" password=canary-secret ");
    QTest::newRow("not found: is the empty password taken?") << 0 << QByteArray() << QStringLiteral(" password= ");
    QTest::newRow("not found, with a password: is it taken?")
        << 0 << QByteArray("other") << QStringLiteral(" password=other ");
    QTest::newRow("an odd mark: is the password taken?")
        << -3 << QByteArray("密码") << QStringLiteral(" password=密码 ");
}

void CloudPasswordTest::TheAnswerQueuesTheTaskAndAsksForItsPicture()
{
    QFETCH(int, get);
    QFETCH(QByteArray, password);
    QFETCH(QString, sent);
    EngineRig rig;
    auto record = Encrypted(rig, "1");
    record.strPassword = QStringLiteral("old");
    rig.SendOne(record);
    rig.Calls().Clear();
    QByteArray announced("no row");
    rig.Calls().WhenAdded("SignalAddDownloadInfo 1", [&] { announced = rig.Task("1")->strPassword.toUtf8(); });
    rig.World().Cloud().AnswerPassword(0, get, password.constData());
    QCOMPARE(Told(rig), Texts({}));
    rig.Settle();
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "get cover-1", "StartCloudRecordDownload 1"}));
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(sent));
    QCOMPARE(announced, password);
    QCOMPARE(rig.Task("1")->strPassword.toUtf8(), password);
}

void CloudPasswordTest::EveryAnswerIsLoggedAsItCame()
{
    EngineRig rig;
    rig.World().Cloud().RaisePassword(7, "canary-secret", {"serial", 5, "unknown", "path/录像.mp4"});
    rig.World().Cloud().RaisePassword(0, "", {"", 0, "", ""});
    rig.Settle();
    QCOMPARE(
        rig.World().Log().Lines(),
        Texts({"2 RecordDownloadModule::OnGetCloudPasswordFinished "
               "ibGet[7],strPassword[canary-secret],strDeviceSN[serial],strRecordId[unknown],strPath[path/录像.mp4]",
               "2 RecordDownloadModule::OnGetCloudPasswordFinished "
               "ibGet[0],strPassword[],strDeviceSN[],strRecordId[],strPath[]"}));
}

void CloudPasswordTest::AnAnswerWithoutUserPostsNothing()
{
    EngineRig rig;
    void* pUser = nullptr;
    const auto answer = rig.World().Cloud().PasswordCallbackOf(pUser);
    QCOMPARE(answer(1, "canary", "SN", 0, "1", "", nullptr), -1);
    rig.Settle();
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void CloudPasswordTest::AnAnswerWithoutTextsHasEmptyOnes()
{
    EngineRig rig;
    void* pUser = nullptr;
    const auto answer = rig.World().Cloud().PasswordCallbackOf(pUser);
    QCOMPARE(answer(1, nullptr, nullptr, 0, nullptr, nullptr, pUser), 1); // posted
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
    rig.Settle();
    QCOMPARE(rig.World().Log().Lines(), Texts({"2 RecordDownloadModule::OnGetCloudPasswordFinished "
                                               "ibGet[1],strPassword[],strDeviceSN[],strRecordId[],strPath[]"}));
}

void CloudPasswordTest::AnAnswerThatFitsNoTaskChangesNothing_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("another device") << QByteArray("SN-other") << QByteArray("1");
    QTest::newRow("another record") << QByteArray("SN") << QByteArray("2");
    QTest::newRow("no device") << QByteArray() << QByteArray("1");
    QTest::newRow("the device in small letters") << QByteArray("sn") << QByteArray("1");
}

void CloudPasswordTest::AnAnswerThatFitsNoTaskChangesNothing()
{
    QFETCH(QByteArray, device);
    QFETCH(QByteArray, id);
    EngineRig rig;
    rig.SendOne(Encrypted(rig, "1"));
    rig.Calls().Clear();
    rig.World().Cloud().RaisePassword(1, "canary-secret", {device.toStdString(), -1, id.toStdString(), "~/1.mp4"});
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    rig.World().Cloud().AnswerPassword(0, 1, "canary-secret"); // it is still held
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 1"}));
}

void CloudPasswordTest::ADoubledAnswerChangesNothing()
{
    EngineRig rig;
    rig.SendOne(Encrypted(rig, "1"));
    rig.World().Cloud().AnswerPassword(0, 1, "first");
    rig.World().Cloud().AnswerPassword(0, 1, "second");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 1);
    QCOMPARE(rig.Calls().Count("Start"), 1);
    QCOMPARE(rig.Calls().Count("get "), 1);
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("first"));
}

void CloudPasswordTest::OfTasksOfOneRecordTheFirstIsAnswered()
{
    EngineRig rig([](FakeWorld& world) { world.Downloads().SetStartResult(-1); });
    rig.SendList(0, std::vector{Encrypted(rig, "1", "SN", "first.mp4"), Encrypted(rig, "1", "SN", "second.mp4")});
    rig.Calls().Clear();
    rig.World().Cloud().AnswerPassword(1, 1, "one");
    rig.Settle();
    QCOMPARE(rig.Task("1")->strFileName, QStringLiteral("first.mp4"));
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("one"));
    rig.World().Cloud().AnswerPassword(0, 1, "two");
    rig.Settle();
    QCOMPARE(rig.Task("1")->strFileName, QStringLiteral("second.mp4"));
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("two"));
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 2);
}

void CloudPasswordTest::TasksOfOneRecordIdAreToldApartByTheirDevice()
{
    EngineRig rig;
    rig.SendList(0, std::vector{Encrypted(rig, "1", "SN-1", "first.mp4"), Encrypted(rig, "1", "SN-2", "second.mp4")});
    rig.World().Cloud().AnswerPassword(1, 1, "two");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 1);
    QCOMPARE(rig.Task("1")->strFileName, QStringLiteral("second.mp4"));
}

void CloudPasswordTest::AnsweredTasksKeepTheLimit()
{
    EngineRig rig;
    rig.SendList(0, std::vector{Encrypted(rig, "1"), Encrypted(rig, "2"), Encrypted(rig, "3"), Encrypted(rig, "4")});
    for (const std::size_t uQuery : {3U, 0U, 2U, 1U})
        rig.World().Cloud().AnswerPassword(uQuery, 1, "canary-secret");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"),
             Texts({"StartCloudRecordDownload 4", "StartCloudRecordDownload 1", "StartCloudRecordDownload 3"}));
    rig.RaiseState(Source::Cloud, "4", 2);
    QCOMPARE(rig.Calls().Short("Start").last(), QStringLiteral("StartCloudRecordDownload 2"));
}

void CloudPasswordTest::TheAnswerIsHandledOnTheEnginesThread()
{
    EngineRig rig;
    rig.SendOne(Encrypted(rig, "1"));
    rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("Start"), 1);
    QCOMPARE(rig.Calls().OffThread(), Texts({}));
}

void CloudPasswordTest::AQueryThatTheHostRefusesDoesNotHoldTheTask_data()
{
    QTest::addColumn<bool>("module");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("the query fails") << true
                                     << Texts({"GetCloudRecordPassword 1", "SignalAddDownloadInfo 1", "get cover-1",
                                               "StartCloudRecordDownload 1"});
    QTest::newRow("the host has no cloud")
        << false << Texts({"SignalAddDownloadInfo 1", "get cover-1", "StartCloudRecordDownload 1"});
}

// The task goes on with the password it has: it fails where the user sees it, or does not fail.
void CloudPasswordTest::AQueryThatTheHostRefusesDoesNotHoldTheTask()
{
    QFETCH(bool, module);
    QFETCH(QStringList, told);
    EngineRig rig([module](FakeWorld& world) {
        world.Cloud().SetQueryResult(-1);
        if (!module)
            world.TakeModuleAway(3);
    });
    auto record = Encrypted(rig, "1");
    record.strText4 = QStringLiteral("Front door");
    record.strPassword = QStringLiteral("own");
    rig.Calls().Clear();
    rig.SendOne(record);
    QCOMPARE(Told(rig), told);
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("own"));
    QCOMPARE(rig.World().Log().Lines("6 "),
             Texts({"6 RecordDownloadModule::AddDownloadRecord The cloud password could not be asked "
                    "for.Recordname:Front door"}));
}

// Before the event loop has made a turn.
void CloudPasswordTest::ATaskDeletedAfterItsRefusedQueryDoesNotComeBack()
{
    EngineRig rig([](FakeWorld& world) { world.Cloud().SetQueryResult(-1); });
    const QByteArray bytes = EngineRig::Stream(std::vector{Encrypted(rig, "1")});
    rig.World().Bus().Send("EventNotifyDownloadRecordList", {bytes, 0});
    rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("1.mp4"));
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void CloudPasswordTest::ARefusedQueryLogsOneLineWithoutThePassword()
{
    EngineRig rig([](FakeWorld& world) {
        world.Cloud().SetQueryResult(-1);
        NoPictures(world);
    });
    auto record = Encrypted(rig, "1");
    record.strText4 = QStringLiteral("Front door");
    record.strPassword = QStringLiteral("own");
    rig.SendOne(record);
    QCOMPARE(rig.Calls().Count("Start"), 1);
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"6 RecordDownloadModule::AddDownloadRecord The cloud password could not be asked "
                    "for.Recordname:Front door"}));
}

void CloudPasswordTest::AnAnswerAfterShutdownStartsNothing_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("forgets");
    QTest::newRow("the host forgot the engine") << false << true;
    QTest::newRow("the host calls all the same") << false << false;
    QTest::newRow("it was on its way already") << true << true;
}

void CloudPasswordTest::AnAnswerAfterShutdownStartsNothing()
{
    QFETCH(bool, before);
    QFETCH(bool, forgets);
    EngineRig rig;
    if (!forgets)
        rig.World().Cloud().KeepCallingAfterUnregister();
    rig.SendOne(Encrypted(rig, "1"));
    if (before)
        rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    rig.Engine().Shutdown();
    if (!before)
        rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(rig.Calls().Count("get "), 0);
}

KX_TEST(CloudPasswordTest, QCoreApplication)
#include "CloudPasswordTest.moc"
