// What a transfer is started with: every field of every source's request.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class RequestTest : public QObject
{
    Q_OBJECT

private slots:
    void TheCloudRequestCarriesTheTasksFields();
    void TheDeviceRequestCarriesTheTasksFields_data();
    void TheDeviceRequestCarriesTheTasksFields();
    void TheLanRequestsCarryTheTasksFields_data();
    void TheLanRequestsCarryTheTasksFields();
    void AnUnsetRecordIsSentWithItsDefaults();
    void TheStorageIdIsTheLowHalf_data();
    void TheStorageIdIsTheLowHalf();
    void TheCloudIdIsTheTextInBaseTen_data();
    void TheCloudIdIsTheTextInBaseTen();
    void TimesAreUnixSeconds_data();
    void TimesAreUnixSeconds();
    void TimesAreOfTheLocalZone();
    void TheStoppedCloudIdIsTheTextInBaseTen();
    void TextsAreUtf8();
};

namespace {

// Different values in all the fields that a request may take.
template <class Record>
Record Marked(Record record)
{
    record.lValue1 = 9000000001;
    record.lValue2 = 77;
    record.strText1 = QStringLiteral("account");
    record.strDeviceId = QStringLiteral("serial");
    record.uValue3 = 3;
    record.strPassword = QStringLiteral("canary-secret");
    record.strText3 = QStringLiteral("address");
    record.strText4 = QStringLiteral("title");
    record.strText5 = QStringLiteral("cookie");
    record.iValue5 = 12;
    return record;
}

} // namespace

void RequestTest::TheCloudRequestCarriesTheTasksFields()
{
    EngineRig rig(NoPictures);
    auto record = Marked(rig.Cloud("4711"));
    record.iCloudValue = 6;
    record.strCloudText1 = QStringLiteral("cover");
    record.strCloudText3 = QStringLiteral("stream");
    record.strCloudText4 = QStringLiteral("canary-picture-key");
    rig.SendOne(record);
    QCOMPARE(
        rig.Calls().Lines("Start"),
        Texts({"StartCloudRecordDownload 4711 device=serial account=account address=address password=canary-secret "
               "channel=12 path=~/4711.mp4 begin=1577934245 end=1577934306 record=4711 kind=5 "
               "channelId=9000000001 storage=77 cloudKind=6 key= cloudAddress=stream"}));

    rig.Calls().Clear();
    record.strRecordId = QStringLiteral("4712");
    record.strDownloadPath = rig.World().Path("4712.mp4");
    record.strText1.clear(); // nobody to ask for the key's password, so it starts with its key and without one
    record.strCloudText2 = QStringLiteral("canary-record-key");
    rig.SendOne(record);
    QCOMPARE(
        rig.Calls().Lines("Start"),
        Texts({"StartCloudRecordDownload 4712 device=serial account= address=address password=canary-secret channel=12 "
               "path=~/4712.mp4 begin=1577934245 end=1577934306 record=4712 kind=5 channelId=9000000001 "
               "storage=77 cloudKind=6 key=canary-record-key cloudAddress=stream"}));
}

void RequestTest::TheDeviceRequestCarriesTheTasksFields_data()
{
    QTest::addColumn<bool>("alternate");
    QTest::addColumn<QStringList>("started");
    QTest::newRow("ordinary start") << false
                                    << Texts({"StartDeviceRecordDownload r device=serial account=account "
                                              "address=address password=canary-secret channel=12 path=~/r.mp4 "
                                              "begin=1577934245 end=1577934306 stream=8"});
    QTest::newRow("alternate start") << true
                                     << Texts({"StartDeviceRecordDownloadAlt r device=serial account=account "
                                               "address=address password=canary-secret channel=12 path=~/r.mp4 "
                                               "begin=1577934245 end=1577934306 stream=8"});
}

void RequestTest::TheDeviceRequestCarriesTheTasksFields()
{
    QFETCH(bool, alternate);
    QFETCH(QStringList, started);
    EngineRig rig;
    auto record = Marked(rig.Device("r"));
    record.iDeviceValue = 8;
    record.bUseAltStart = alternate;
    rig.SendOne(record);
    QCOMPARE(rig.Calls().Lines("Start"), started);
}

void RequestTest::TheLanRequestsCarryTheTasksFields_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("started");
    QTest::newRow("IOT LAN") << 2
                             << Texts({"StartIOTLanRecordDownload r device=serial account=account address=address "
                                       "password=canary-secret channel=12 path=~/r.mp4 begin=1577934245 end=1577934306 "
                                       "serial=module-serial moduleAddress=module-address token=canary-module-token "
                                       "port=554 sub=module-sub stream=2 kind=9 encrypted=1"});
    QTest::newRow("LAN module")
        << 3
        << Texts({"StartLanModuleRecordDownload r device=serial account=account "
                  "address=address password=canary-secret channel=12 path=~/r.mp4 begin=1577934245 "
                  "end=1577934306 serial=module-serial moduleAddress=module-address "
                  "token=canary-module-token port=554 sub=module-sub stream=2 kind=9 encrypted=1"});
}

void RequestTest::TheLanRequestsCarryTheTasksFields()
{
    QFETCH(int, type);
    QFETCH(QStringList, started);
    EngineRig rig;
    auto record = Marked(rig.IOTLan("r"));
    record.iRecordType = type;
    record.strLanText1 = QStringLiteral("module-serial");
    record.strLanText2 = QStringLiteral("module-address");
    record.strLanText3 = QStringLiteral("canary-module-token");
    record.iLanValue1 = 554;
    record.strLanText4 = QStringLiteral("module-sub");
    record.iLanValue2 = 2;
    record.iLanValue3 = 9;
    record.bLanFlag = true;
    rig.SendOne(record);
    QCOMPARE(rig.Calls().Lines("Start"), started);
}

void RequestTest::AnUnsetRecordIsSentWithItsDefaults()
{
    EngineRig rig(NoPictures);
    KXDownLoadList::DownloadCloudRecordInfo cloud;
    cloud.iRecordType = 0;
    cloud.strRecordId = QStringLiteral("1");
    cloud.strDownloadPath = rig.World().Path("1.mp4");
    rig.SendOne(cloud);
    KXDownLoadList::DownloadLanModuleRecordInfo lan;
    lan.iRecordType = 3;
    lan.strRecordId = QStringLiteral("2");
    lan.strDownloadPath = rig.World().Path("2.mp4");
    rig.SendOne(lan);
    QCOMPARE(rig.Calls().Lines("Start"),
             Texts({"StartCloudRecordDownload 1 device= account= address= password= channel=-1 path=~/1.mp4 "
                    "begin=4294967295 end=4294967295 record=1 kind=5 channelId=-1 storage=-1 cloudKind=-1 key= "
                    "cloudAddress=",
                    "StartLanModuleRecordDownload 2 device= account= address= password= channel=-1 path=~/2.mp4 "
                    "begin=4294967295 end=4294967295 serial= moduleAddress= token= port=-1 sub= stream=-1 kind=-1 "
                    "encrypted=0"}));
}

void RequestTest::TheStorageIdIsTheLowHalf_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("storage");
    QTest::newRow("the high half is lost") << qint64(0x0000000500000007) << QStringLiteral(" storage=7 ");
    QTest::newRow("bit 31 makes it negative") << qint64(0x0000000180000000) << QStringLiteral(" storage=-2147483648 ");
    QTest::newRow("-1 stays -1") << qint64(-1) << QStringLiteral(" storage=-1 ");
}

void RequestTest::TheStorageIdIsTheLowHalf()
{
    QFETCH(qint64, value);
    QFETCH(QString, storage);
    EngineRig rig(NoPictures);
    auto record = rig.Cloud("1");
    record.lValue2 = value;
    rig.SendOne(record);
    QVERIFY2(rig.Calls().Lines("Start").value(0).contains(storage), "another storage id was sent");
}

void RequestTest::TheCloudIdIsTheTextInBaseTen_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("id");
    QTest::newRow("largest") << QStringLiteral("9223372036854775807") << QStringLiteral(" record=9223372036854775807 ");
    QTest::newRow("negative") << QStringLiteral("-5") << QStringLiteral(" record=-5 ");
    QTest::newRow("leading zero is no octal") << QStringLiteral("010") << QStringLiteral(" record=10 ");
    QTest::newRow("hexadecimal is no number") << QStringLiteral("0x10") << QStringLiteral(" record=0 ");
    QTest::newRow("too large is no number") << QStringLiteral("9223372036854775808") << QStringLiteral(" record=0 ");
}

void RequestTest::TheCloudIdIsTheTextInBaseTen()
{
    QFETCH(QString, text);
    QFETCH(QString, id);
    EngineRig rig(NoPictures);
    auto record = rig.Cloud("1");
    record.strRecordId = text;
    rig.SendOne(record);
    QVERIFY2(rig.Calls().Lines("Start").value(0).contains(id), "another id was sent");
}

void RequestTest::TimesAreUnixSeconds_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("sent");
    QTest::newRow("two times") << QStringLiteral("20240229T235959") << QStringLiteral("20240301T000000")
                               << QStringLiteral(" begin=1709251199 end=1709251200 ");
    QTest::newRow("the first second of all")
        << QStringLiteral("19700101T000000") << QStringLiteral("19700101T000001") << QStringLiteral(" begin=0 end=1 ");
    QTest::newRow("another format and a day that does not exist")
        << QStringLiteral("2024-02-29T23:59:59") << QStringLiteral("20230229T000000")
        << QStringLiteral(" begin=4294967295 end=4294967295 ");
    QTest::newRow("the last seconds that fit") << QStringLiteral("21060207T062813") << QStringLiteral("21060207T062814")
                                               << QStringLiteral(" begin=4294967293 end=4294967294 ");
    QTest::newRow("long before 1970 and long after 2106")
        << QStringLiteral("19691231T235900") << QStringLiteral("22000101T000000")
        << QStringLiteral(" begin=4294967295 end=4294967295 ");
    QTest::newRow("before 1970 and after 2106")
        << QStringLiteral("19691231T235959") << QStringLiteral("21060301T000000")
        << QStringLiteral(" begin=4294967295 end=4294967295 ");
    QTest::newRow("no text") << QString() << QString() << QStringLiteral(" begin=4294967295 end=4294967295 ");
}

void RequestTest::TimesAreUnixSeconds()
{
    QFETCH(QString, begin);
    QFETCH(QString, end);
    QFETCH(QString, sent);
    EngineRig rig;
    auto record = rig.Device("1");
    record.strStartTime = begin;
    record.strEndTime = end;
    rig.SendOne(record);
    QVERIFY2(rig.Calls().Lines("Start").value(0).contains(sent), "other times were sent");
}

void RequestTest::TimesAreOfTheLocalZone()
{
#ifdef Q_OS_WIN
    QSKIP("The zone is the machine's there.", "");
#else
    EngineRig rig;
    qputenv("TZ", "AAA-3"); // three hours east; the rig's end takes it back
    SendTasks(rig, Source::LanModule, {"1"});
    rig.RaiseState(Source::LanModule, "1", 2);
    const QString strTimes = QStringLiteral(" begin=1577923445 end=1577923506 ");
    for (const char* pszCall : {"StartLanModuleRecordDownload 1 ", "Insert ", "ReportRecordDownloaded 1 "})
        QVERIFY2(rig.Calls().Lines(pszCall).value(0).contains(strTimes), pszCall);
#endif
}

void RequestTest::TheStoppedCloudIdIsTheTextInBaseTen()
{
    EngineRig rig(NoPictures);
    for (const char* pszId : {"010", "0x10", "9223372036854775807"})
        rig.Engine().DeleteRecordDownload(0, QString::fromUtf8(pszId), QString());
    QCOMPARE(rig.Calls().Lines("Stop"), Texts({"StopCloudRecordDownload 10", "StopCloudRecordDownload 0",
                                               "StopCloudRecordDownload 9223372036854775807"}));
}

void RequestTest::TextsAreUtf8()
{
    EngineRig rig;
    auto record = rig.Device("1");
    record.strRecordId = QString::fromUtf8("录像-1");
    record.strText3 = QString::fromUtf8("地址");
    record.strDownloadPath = rig.World().Path("Übersicht 录像.mp4");
    rig.SendOne(record);
    QCOMPARE(rig.Calls().Lines("Start"),
             Texts({"StartDeviceRecordDownload 录像-1 device=SN-1 account= address=地址 password= channel=-1 "
                    "path=~/Übersicht 录像.mp4 begin=1577934245 end=1577934306 stream=-1"}));
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "录像-1", 0);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 录像-1", "notify EventNotifyDownloadRecordStates",
                               "SignalDownloadRecordStates 录像-1 0 false"}));
}

KX_TEST(RequestTest, QCoreApplication)
#include "RequestTest.moc"
