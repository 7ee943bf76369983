#include "Engine/EngineCases.h"
#include "TestMain.h"

#include <QtCore/QMetaMethod>

using namespace EngineCases;

// The events that the engine takes and sends: element counts, payloads, wrongly typed elements.
class EventsTest : public QObject
{
    Q_OBJECT

private slots:
    void EngineIntroducesItselfToTheHostInOrder();
    void EngineOfAHostWithoutModulesTakesListsAndStartsNothing();
    void ListEventThatAddsNothing_data();
    void ListEventThatAddsNothing();
    void ListEventMayHaveMoreThanTwoElements();
    void ListTypeMayComeAsText();
    void AListTypeThatIsNoNumberCountsAsZero_data();
    void AListTypeThatIsNoNumberCountsAsZero();
    void ListEventOfAForeignThreadIsHandledOnTheEnginesThread();
    void DeleteEventWithoutElementsIsIgnored();
    void DeleteEventStopsEveryTaskAndSaysSo();
    void DeleteEventWithAWronglyTypedFolderMeasuresTheEmptyOne();
    void PathEventOnlyStoresTheFolder();
    void PathEventMeasuresNothing();
    void PathEventWithoutElementsIsIgnored();
    void PathEventWithAWronglyTypedFolderMeasuresTheEmptyOne();
    void QueryIsAnsweredByListAndType_data();
    void QueryIsAnsweredByListAndType();
    void QueryFindsAWaitingLanTask_data();
    void QueryFindsAWaitingLanTask();
    void QueryFindsATaskWhileTheHostStartsIt_data();
    void QueryFindsATaskWhileTheHostStartsIt();
    void QueryOfAFinishedTaskIsAnsweredFalse();
    void QueryWithAnotherCountOfElementsIsIgnored_data();
    void QueryWithAnotherCountOfElementsIsIgnored();
    void QueryThatIsNoObjectIsLoggedAndNotAnswered_data();
    void QueryThatIsNoObjectIsLoggedAndNotAnswered();
    void EventsAreSentOnTheEnginesThread();
    void EventsAfterShutdownStartNothing();
    void SignalsHaveTheirNamesAndParameters();
    void PrivateSlotsHaveTheirOrder();
};

void EventsTest::EngineIntroducesItselfToTheHostInOrder()
{
    EngineRig rig;
    QCOMPARE(rig.Calls().Lines(),
             Texts({"GetLogicMdl 5", "GetLogicMdl 3", "GetLogicMdl 2", "AttachObserver", "Attach pictures",
                    "attach EventNotifyDownloadRecordList OnGetDownloadList(QVariantList)",
                    "attach EventNotifyDeleteDownloadRecord OnClearListForRecDiskFull(QVariantList)",
                    "attach EventNotifyGetRecordDownloading OnGetDownloadStates(QVariantList)",
                    "attach EventNotifyDownloadRecordPath OnDownloadRecordPathChanged(QVariantList)",
                    "SetCloudPasswordCallback", "SetCloudDataCallback", "SetCloudStateCallback",
                    "SetLanModuleDataCallback", "SetLanModuleStateCallback", "SetIOTLanDataCallback",
                    "SetIOTLanStateCallback", "SetDeviceDataCallback", "SetDeviceStateCallback"}));
}

void EventsTest::EngineOfAHostWithoutModulesTakesListsAndStartsNothing()
{
    EngineRig rig([](FakeWorld& world) {
        for (int iId : {5, 3, 2})
            world.TakeModuleAway(iId);
        world.TakePicturesAway();
        world.TakeDatabaseAway();
    });
    QCOMPARE(rig.Calls().Count("Attach"), 0);
    rig.Calls().Clear();
    rig.SendOne(rig.Device("d"));
    rig.SendOne(rig.IOTLan("i"));
    rig.SendOne(rig.LanModule("l"));
    rig.SendOne(rig.Cloud("7"));
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/v")});
    rig.Engine().Shutdown();
    QCOMPARE(rig.Calls().Lines(), Texts({"SignalAddDownloadInfo d", "SignalAddDownloadInfo i",
                                         "SignalAddDownloadInfo l", "SignalAddDownloadInfo 7", "SignalStopAllRecord"}));
}

void EventsTest::ListEventThatAddsNothing_data()
{
    QTest::addColumn<QVariantList>("payload");
    const QByteArray record = EngineRig::Stream<KXDownLoadList::DownloadDeviceRecordInfo>({{}});
    QTest::newRow("no element") << QVariantList{};
    QTest::newRow("records without a type") << QVariantList{record};
    QTest::newRow("an empty byte array") << QVariantList{QByteArray(), 1};
    QTest::newRow("a type below all types") << QVariantList{record, -1};
    QTest::newRow("a type above all types") << QVariantList{record, 4};
    QTest::newRow("records that are no bytes") << QVariantList{QVariantMap(), 1};
    QTest::newRow("records in a list") << QVariantList{QVariantList{record}, 1};
}

void EventsTest::ListEventThatAddsNothing()
{
    QFETCH(QVariantList, payload);
    EngineRig rig;
    rig.Calls().Clear();
    rig.Send("EventNotifyDownloadRecordList", payload);
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void EventsTest::ListEventMayHaveMoreThanTwoElements()
{
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordList", {EngineRig::Stream<decltype(rig.Device("d"))>({rig.Device("d")}), 1, 9});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload d"}));
}

void EventsTest::ListTypeMayComeAsText()
{
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordList",
             {EngineRig::Stream<decltype(rig.Device("d"))>({rig.Device("d")}), QStringLiteral("1")});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload d"}));
}

void EventsTest::AListTypeThatIsNoNumberCountsAsZero_data()
{
    QTest::addColumn<QVariant>("type");
    QTest::newRow("a text") << QVariant(QStringLiteral("device"));
    QTest::newRow("a map") << QVariant(QVariantMap{{QStringLiteral("iType"), 1}});
    QTest::newRow("a list") << QVariant(QVariantList{1});
    QTest::newRow("nothing") << QVariant();
}

// A wrongly typed element is taken as an empty one, without a message: the records are read as cloud records.
void EventsTest::AListTypeThatIsNoNumberCountsAsZero()
{
    QFETCH(QVariant, type);
    EngineRig rig(NoPictures);
    rig.Send("EventNotifyDownloadRecordList", {EngineRig::Stream<decltype(rig.Cloud("7"))>({rig.Cloud("7")}), type});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 7"}));
    QCOMPARE(rig.World().Log().Lines("6 "), Texts({}));
}

void EventsTest::ListEventOfAForeignThreadIsHandledOnTheEnginesThread()
{
    EngineRig rig;
    const QByteArray bytes = EngineRig::Stream<decltype(rig.Device("d"))>({rig.Device("d")});
    FakeWorld::OnThreads(1, [&](int) { rig.World().Bus().Send("EventNotifyDownloadRecordList", {bytes, 1}); });
    QCOMPARE(rig.Calls().Count("Start"), 0);
    EngineRig::Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload d"}));
    QCOMPARE(rig.Calls().OffThread(), Texts({}));
}

void EventsTest::DeleteEventWithoutElementsIsIgnored()
{
    EngineRig rig;
    rig.SendOne(rig.Device("d"));
    rig.Calls().Clear();
    rig.Send("EventNotifyDeleteDownloadRecord", {});
    QCOMPARE(rig.Calls().Lines(), Texts({}));
}

void EventsTest::DeleteEventStopsEveryTaskAndSaysSo()
{
    EngineRig rig(NoPictures);
    rig.SendOne(rig.Cloud("7"));
    rig.SendOne(rig.Device("d"));
    rig.SendOne(rig.IOTLan("i"));
    rig.SendOne(rig.LanModule("l"));
    rig.Calls().Clear();
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/v"), QStringLiteral("not looked at")});
    QCOMPARE(rig.Calls().Lines(),
             Texts({"StopLanModuleRecordDownload l", "StopIOTLanRecordDownload i", "StopDeviceRecordDownload d",
                    "StopCloudRecordDownload 7", "SignalStopAllRecord"}));
    rig.SendOne(rig.Device("e"));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{"/v"});
}

void EventsTest::DeleteEventWithAWronglyTypedFolderMeasuresTheEmptyOne()
{
    EngineRig rig;
    rig.Send("EventNotifyDeleteDownloadRecord", {QVariantMap()});
    QCOMPARE(rig.Calls().Count("SignalStopAllRecord"), 1);
    rig.SendOne(rig.Device("d"));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{""});
}

void EventsTest::PathEventOnlyStoresTheFolder()
{
    EngineRig rig;
    rig.SendOne(rig.Device("d"));
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/first")});
    rig.Calls().Clear();
    rig.Send("EventNotifyDownloadRecordPath", {QStringLiteral("/second"), QStringLiteral("not looked at")});
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>());
    rig.SendOne(rig.Device("e"));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{"/second"});
    // The folder of the event is for measuring only: the task keeps the path it came with.
    QCOMPARE(rig.Task("e")->strDownloadPath, rig.World().Path("e.mp4"));
}

void EventsTest::PathEventMeasuresNothing()
{
    EngineRig rig;
    ScriptedDisk::SetFreeBytes(0);
    rig.Send("EventNotifyDownloadRecordPath", {QStringLiteral("/full")});
    rig.SendOne(rig.Device("d"));
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload d"}));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>());
}

void EventsTest::PathEventWithoutElementsIsIgnored()
{
    EngineRig rig;
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/first")});
    rig.Send("EventNotifyDownloadRecordPath", {});
    rig.SendOne(rig.Device("d"));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{"/first"});
}

void EventsTest::PathEventWithAWronglyTypedFolderMeasuresTheEmptyOne()
{
    EngineRig rig;
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/first")});
    rig.Send("EventNotifyDownloadRecordPath", {QVariantMap()});
    rig.SendOne(rig.Device("d"));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{""});
}

void EventsTest::QueryIsAnsweredByListAndType_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char* pszName, const char* pszQuery, const char* pszFound, const char* pszId) {
        QTest::newRow(pszName) << QString::fromUtf8(pszQuery)
                               << QStringLiteral("{\n    \"bDownloadList\": %1,\n    \"strRecordId\": \"%2\"\n}\n")
                                      .arg(QString::fromUtf8(pszFound), QString::fromUtf8(pszId));
    };
    // Of the records 7 (cloud), d (device), i (IOT LAN) and l (LAN module), which all run.
    row("a cloud task is never found", R"({"strRecordId": "7", "iType": 0})", "false", "7");
    row("a device task is never found", R"({"strRecordId": "d", "iType": 1})", "false", "d");
    row("an IOT LAN task is found", R"({"strRecordId": "i", "iType": 2})", "true", "i");
    row("a LAN module task is found", R"({"strRecordId": "l", "iType": 3})", "true", "l");
    row("an IOT LAN task is no LAN module task", R"({"strRecordId": "i", "iType": 3})", "false", "i");
    row("a LAN module task is no IOT LAN task", R"({"strRecordId": "l", "iType": 2})", "false", "l");
    row("an unknown IOT LAN id is not found", R"({"strRecordId": "x", "iType": 2})", "false", "x");
    row("an unknown type finds nothing", R"({"strRecordId": "i", "iType": 4})", "false", "i");
    row("a negative type finds nothing", R"({"strRecordId": "i", "iType": -1})", "false", "i");
    row("without a type nothing is found", R"({"strRecordId": "i"})", "false", "i");
    row("a type in text counts as none", R"({"strRecordId": "i", "iType": "2"})", "false", "i");
    row("without an id the answer has an empty one", R"({"iType": 2})", "false", "");
    row("a type between two counts as none", R"({"strRecordId": "i", "iType": 2.5})", "false", "i");
    row("an id that is a number counts as none", R"({"strRecordId": 7, "iType": 2})", "false", "");
    row("an empty object is answered too", "{}", "false", "");
    row("an id of other letters comes back as it was", R"({"strRecordId": "ä€", "iType": 3})", "false", "ä€");
}

void EventsTest::QueryIsAnsweredByListAndType()
{
    QFETCH(QString, query);
    QFETCH(QString, answer);
    EngineRig rig(NoPictures);
    rig.SendOne(rig.Cloud("7"));
    rig.SendOne(rig.Device("d"));
    rig.SendOne(rig.IOTLan("i"));
    rig.SendOne(rig.LanModule("l"));
    QCOMPARE(rig.Calls().Count("Start"), 4);
    rig.Calls().Clear();
    rig.Send("EventNotifyGetRecordDownloading", {query});
    QCOMPARE(rig.Calls().Lines(), Texts({"notify EventNotifyRecordDownloading"}));
    QCOMPARE(rig.World().Bus().Texts("EventNotifyRecordDownloading"), QStringList{answer});
    QCOMPARE(rig.World().Bus().Payloads("EventNotifyRecordDownloading")[0][0].userType(), int(QMetaType::QString));
    QCOMPARE(rig.World().Log().Lines(),
             QStringList{QStringLiteral("2 RecordDownloadModule::OnGetDownloadStates strJson:") + query});
}

void EventsTest::QueryFindsAWaitingLanTask_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("IOT LAN") << 2;
    QTest::newRow("LAN module") << 3;
}

void EventsTest::QueryFindsAWaitingLanTask()
{
    QFETCH(int, type);
    EngineRig rig;
    for (const char* pszId : {"running", "waiting"})
        rig.SendTyped(type, pszId);
    QCOMPARE(rig.Calls().Count("Start"), 1);
    rig.Send("EventNotifyGetRecordDownloading",
             {QStringLiteral("{\"strRecordId\": \"waiting\", \"iType\": %1}").arg(type)});
    QCOMPARE(rig.World().Bus().Texts("EventNotifyRecordDownloading"),
             Texts({"{\n    \"bDownloadList\": true,\n    \"strRecordId\": \"waiting\"\n}\n"}));
}

void EventsTest::QueryFindsATaskWhileTheHostStartsIt_data()
{
    QueryFindsAWaitingLanTask_data();
}

// Announced, it is in no queue yet; it waits until the host took it.
void EventsTest::QueryFindsATaskWhileTheHostStartsIt()
{
    QFETCH(int, type);
    EngineRig rig;
    const QString strQuery = QStringLiteral("{\"strRecordId\": \"7\", \"iType\": %1}").arg(type);
    for (const char* pszCall : {"SignalAddDownloadInfo", "Start"})
        rig.Calls().WhenAdded(pszCall, [&] { rig.Send("EventNotifyGetRecordDownloading", {strQuery}); });
    rig.SendTyped(type, "7");
    QCOMPARE(rig.World().Bus().Texts("EventNotifyRecordDownloading"),
             Texts({"{\n    \"bDownloadList\": false,\n    \"strRecordId\": \"7\"\n}\n",
                    "{\n    \"bDownloadList\": true,\n    \"strRecordId\": \"7\"\n}\n"}));
}

void EventsTest::QueryOfAFinishedTaskIsAnsweredFalse()
{
    EngineRig rig;
    rig.SendOne(rig.LanModule("l"));
    rig.RaiseState(Source::LanModule, "l", 2);
    rig.Send("EventNotifyGetRecordDownloading", {QStringLiteral("{\"strRecordId\": \"l\", \"iType\": 3}")});
    QCOMPARE(rig.World().Bus().Texts("EventNotifyRecordDownloading"),
             Texts({"{\n    \"bDownloadList\": false,\n    \"strRecordId\": \"l\"\n}\n"}));
}

void EventsTest::QueryWithAnotherCountOfElementsIsIgnored_data()
{
    QTest::addColumn<QVariantList>("payload");
    QTest::newRow("no element") << QVariantList{};
    QTest::newRow("two elements") << QVariantList{QStringLiteral("{\"strRecordId\": \"i\", \"iType\": 2}"), 2};
}

void EventsTest::QueryWithAnotherCountOfElementsIsIgnored()
{
    QFETCH(QVariantList, payload);
    EngineRig rig;
    rig.Calls().Clear();
    rig.Send("EventNotifyGetRecordDownloading", payload);
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void EventsTest::QueryThatIsNoObjectIsLoggedAndNotAnswered_data()
{
    QTest::addColumn<QVariant>("query");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* pszName, const QVariant& query, const char* pszLogged) {
        QTest::newRow(pszName) << query
                               << QStringLiteral("2 RecordDownloadModule::OnGetDownloadStates strJson:") +
                                      QString::fromUtf8(pszLogged);
    };
    row("an empty text", QString(), "");
    row("an array", QStringLiteral("[1]"), "[1]");
    row("a number", 3, "3");
    row("an unfinished object", QStringLiteral("{\"iType\": 2"), "{\"iType\": 2");
    row("text behind the object", QStringLiteral("{} x"), "{} x");
    row("a text with percent signs", QStringLiteral("%s%d%n"), "%s%d%n");
    row("an element that is no text", QVariantMap(), "");
}

void EventsTest::QueryThatIsNoObjectIsLoggedAndNotAnswered()
{
    QFETCH(QVariant, query);
    QFETCH(QString, line);
    EngineRig rig;
    rig.Calls().Clear();
    rig.Send("EventNotifyGetRecordDownloading", {query});
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), QStringList{line});
}

void EventsTest::EventsAreSentOnTheEnginesThread()
{
    EngineRig rig;
    rig.SendOne(rig.Device("d"));
    rig.RaiseState(Source::Device, "d", 0);
    rig.Send("EventNotifyGetRecordDownloading", {QStringLiteral("{}")});
    QCOMPARE(rig.Calls().Count("notify"), 2);
    QCOMPARE(rig.Calls().OffThread(), Texts({}));
}

void EventsTest::EventsAfterShutdownStartNothing()
{
    EngineRig rig(NoPictures);
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    rig.SendOne(rig.Device("d"));
    rig.SendOne(rig.IOTLan("i"));
    rig.SendOne(rig.LanModule("l"));
    rig.SendOne(rig.Cloud("7"));
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/v")});
    rig.Send("EventNotifyDownloadRecordPath", {QStringLiteral("/v")});
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(rig.Calls().Count("Get"), 0);
    QCOMPARE(rig.Calls().Count("get"), 0);
}

void EventsTest::SignalsHaveTheirNamesAndParameters()
{
    QStringList found;
    const QMetaObject& meta = RecordDownloadModule::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        const QByteArray names = method.parameterNames().join(", ");
        found.append(QString::fromUtf8(method.methodSignature()) + QStringLiteral(": ") + QString::fromUtf8(names));
    }
    QCOMPARE(found, Texts({"SignalAddDownloadInfo(DownloadRecordInfoPtr): info",
                           "SignalUpdateCloudPictureInfo(QString,QString): strRecordId, strDesPicPath",
                           "SignalDownloadRecordStates(QString,int,bool): strRecordId, iCode, bReget",
                           "SignalDownloadRecordData(QString,int): strRecordId, iLength",
                           "SignalStartCopyPic(QString,QString,QString): strSrcPicture, strDstPicture, strRecordId",
                           ("SignalGetDevicePasswordResponse(int,int64_t,QString,QString,QString): iResult, "
                            "lChannelId, strUserName, strPwd, strUserInfo"),
                           "SignalStopAllRecord(): "}));
}

// Host threads call the slots by name. Qt writes qint64 as qlonglong.
void EventsTest::PrivateSlotsHaveTheirOrder()
{
    QStringList found;
    const QMetaObject& meta = RecordDownloadModule::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Private)
            found.append(QString::fromUtf8(method.typeName()) + QLatin1Char(' ') +
                         QString::fromUtf8(method.methodSignature()));
    }
    QCOMPARE(
        found,
        Texts({"void OnGetCloudPasswordFinished(int,QString,QString,int64_t,QString,QString)",
               "int DownloadStateCallback(qlonglong,int,void*)", "int DownloadReceiveDataCallback(qlonglong,int,void*)",
               "void OnDownloadCloudRecordState(int64_t,int)", "void OnDownloadCloudRecordData(int64_t,int)",
               "int DownloadLanModuleStateCallback(const char*,int,void*)",
               "int DownloadLanModuleReceiveDataCallback(const char*,int,void*)",
               "void OnDownloadLanModuleRecordState(QString,int)", "void OnDownloadLanModuleRecordData(QString,int)",
               "int DownloadIOTLanStateCallback(const char*,int,void*)",
               "int DownloadIOTLanReceiveDataCallback(const char*,int,void*)",
               "void OnDownloadIOTLanRecordState(QString,int)", "void OnDownloadIOTLanRecordData(QString,int)",
               "int DownloadDeviceStateCallback(const char*,int,void*)",
               "int DownloadDeviceReceiveDataCallback(const char*,int,void*)",
               "void OnDownloadDeviceRecordState(QString,int)", "void OnDownloadDeviceRecordData(QString,int)",
               "void OnGetDevicePassword(int,int64_t,QString,QString,QString)"}));
}

KX_TEST(EventsTest, QCoreApplication)
#include "EventsTest.moc"
