// Answers to a device password query: unknown, doubled, late, racing the query, after the end.

#include "Engine/EngineCases.h"
#include "TestMain.h"

#include <QtCore/QTextCodec>

#include <atomic>
#include <chrono>
#include <future>

using namespace EngineCases;

class PasswordAnswerTest : public QObject
{
    Q_OBJECT

private slots:
    void TheAnswerIsPassedOnAsItCame();
    void NothingIsLockedWhileTheAnswerIsPassedOn();
    void AnAnswerToNoQueryIsDropped_data();
    void AnAnswerToNoQueryIsDropped();
    void ADoubledAnswerIsDropped();
    void OfManyEqualAnswersAtOnceOneCounts();
    void AnAnswerThatRacesItsQueryCounts();
    void AnAnswerInsideItsQueryWaitsForTheHandle();
    void OnlyTheDeviceOfTheAnswerIsFreed_data();
    void OnlyTheDeviceOfTheAnswerIsFreed();
    void TheDeviceIsFoundInAnyLocalEncoding_data();
    void TheDeviceIsFoundInAnyLocalEncoding();
    void UserDataAreReadInTheLocalEncodingFirst();
    void ALateAnswerFreesTheQueueOfADeletedTask();
    void AnAnswerAfterShutdownStartsNothing_data();
    void AnAnswerAfterShutdownStartsNothing();
    void AnAnswerOnItsWayMayOutliveTheEngine();
};

namespace {

// The encoding of 8-bit text while this lives.
class LocalEncoding
{
public:
    explicit LocalEncoding(const char* pszName)
    {
        QTextCodec* const pCodec = QTextCodec::codecForName(pszName);
        if (!pCodec)
            qFatal("Qt lacks the encoding %s", pszName);
        QTextCodec::setCodecForLocale(pCodec);
    }
    ~LocalEncoding() { QTextCodec::setCodecForLocale(m_pBefore); }
    LocalEncoding(const LocalEncoding&) = delete;
    LocalEncoding& operator=(const LocalEncoding&) = delete;

private:
    QTextCodec* m_pBefore = QTextCodec::codecForLocale();
};

// The device refused "1"; "2" of another device waits. The answer to be sent has handle 1001.
void AskOnce(EngineRig& rig, const QString& strDevice = QStringLiteral("SN"))
{
    auto record = rig.Device("1");
    record.strDeviceId = strDevice;
    record.bNeedPassword = true;
    record.bCanGetPassword = true;
    rig.SendOne(record);
    rig.RaiseState(Source::Device, "1", 3);
    rig.SendOne(rig.Device("2"));
    rig.Calls().Clear();
}

KXLogic::LogicMessage Answer(std::int64_t lRequest, const char* pszUserInfo = R"({"deviceId":"SN","recordId":"1"})")
{
    KXLogic::LogicMessage message;
    message.iMessage = 1144;
    message.lRequest = lRequest;
    message.lChannelId = 9000000001;
    message.strUserName = "user";
    message.strPassword = "sealed";
    message.strUserInfo = pszUserInfo;
    return message;
}

// Writes the engine's answer signal into the rig's list, on the thread that emits it.
void ListenToAnswers(EngineRig& rig)
{
    QObject::connect(
        &rig.Engine(), &RecordDownloadModule::SignalGetDevicePasswordResponse, &rig.Engine(),
        [&rig](int iResult, int64_t lChannelId, const QString& strUser, const QString& strPassword,
               const QString& strUserInfo) {
            rig.Calls().Add(
                QStringLiteral("SignalGetDevicePasswordResponse %1 %2 %3 %4 %5")
                    .arg(QString::number(iResult), QString::number(lChannelId), strUser, strPassword, strUserInfo));
        },
        Qt::DirectConnection);
}

} // namespace

void PasswordAnswerTest::TheAnswerIsPassedOnAsItCame()
{
    EngineRig rig;
    AskOnce(rig);
    ListenToAnswers(rig);
    auto answer = Answer(1001, R"({ "deviceId" : "SN", "recordId" : "录像" })");
    answer.iResult = -7;
    rig.World().Devices().RaiseMessage(answer);
    const QStringList emitted = Texts(
        {R"(SignalGetDevicePasswordResponse -7 9000000001 user sealed { "deviceId" : "SN", "recordId" : "录像" })"});
    QCOMPARE(Told(rig), emitted);
    QCOMPARE(rig.Calls().OffThread(), emitted);
    rig.Settle(); // the engine takes it up on its own thread
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"}));
    QCOMPARE(rig.Calls().OffThread(), emitted);
}

void PasswordAnswerTest::NothingIsLockedWhileTheAnswerIsPassedOn()
{
    EngineRig rig;
    AskOnce(rig);
    std::atomic<int> iNested{0};
    connect(
        &rig.Engine(), &RecordDownloadModule::SignalGetDevicePasswordResponse, &rig.Engine(),
        [&rig, &iNested] {
            rig.Engine().OnLogicMessage(Answer(555)); // takes the same lock
            ++iNested;
        },
        Qt::DirectConnection);
    rig.World().Devices().RaiseMessage(Answer(1001));
    QCOMPARE(iNested.load(), 1);
}

void PasswordAnswerTest::AnAnswerToNoQueryIsDropped_data()
{
    QTest::addColumn<bool>("asked");
    QTest::addColumn<qint64>("handle");
    QTest::addColumn<int>("message");
    QTest::newRow("before any query") << false << qint64(1001) << 1144;
    QTest::newRow("a handle that was never given") << true << qint64(1002) << 1144;
    QTest::newRow("handle 0") << true << qint64(0) << 1144;
    QTest::newRow("a handle that is equal in its low half only") << true << qint64(1001 + (1LL << 32)) << 1144;
    QTest::newRow("another message with the handle") << true << qint64(1001) << 1143;
    QTest::newRow("a later message with the handle") << true << qint64(1001) << 1145;
}

void PasswordAnswerTest::AnAnswerToNoQueryIsDropped()
{
    QFETCH(bool, asked);
    QFETCH(qint64, handle);
    QFETCH(int, message);
    EngineRig rig;
    if (asked)
        AskOnce(rig);
    ListenToAnswers(rig);
    rig.Calls().Clear();
    auto answer = Answer(handle);
    answer.iMessage = message;
    rig.World().Devices().RaiseMessage(answer);
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));

    if (!asked)
        AskOnce(rig);
    rig.World().Devices().RaiseMessage(Answer(1001)); // the right one still counts
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"}));
}

void PasswordAnswerTest::ADoubledAnswerIsDropped()
{
    EngineRig rig;
    AskOnce(rig);
    ListenToAnswers(rig);
    rig.World().Devices().AnswerPassword(0, 0, "first");
    rig.World().Devices().AnswerPassword(0, 0, "second");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("SignalGetDevicePasswordResponse"), 1);
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-first"));

    rig.Calls().Clear();
    rig.World().Devices().AnswerPassword(0, 0, "third"); // long after
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void PasswordAnswerTest::OfManyEqualAnswersAtOnceOneCounts()
{
    EngineRig rig;
    AskOnce(rig);
    ListenToAnswers(rig);
    const auto answer = Answer(1001);
    FakeWorld::OnThreads(4, [&](int) { rig.Engine().OnLogicMessage(answer); });
    rig.Settle();
    QCOMPARE(rig.Calls().Count("SignalGetDevicePasswordResponse"), 1);
    QCOMPARE(rig.Calls().Count("AesDecrypt"), 1);
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"}));
}

// The host thread answers before the query has returned the handle that the answer carries.
void PasswordAnswerTest::AnAnswerThatRacesItsQueryCounts()
{
    EngineRig rig([](FakeWorld& world) { world.Devices().AnswerInsideQuery(0, "sealed"); });
    AskOnce(rig);
    QTRY_COMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-sealed"));
    rig.RaiseState(Source::Device, "1", 2);
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates 1 2 false"), 1); // it runs again
}

// A host thread answers while the query is still in the host, which waits to see that the answer waits.
void PasswordAnswerTest::AnAnswerInsideItsQueryWaitsForTheHandle()
{
    EngineRig rig;
    std::future<void> answered;
    bool bWaits = false;
    rig.Calls().WhenAdded("RequestDevicePassword", [&] {
        answered = std::async(std::launch::async, [&rig] { rig.Engine().OnLogicMessage(Answer(1001)); });
        bWaits = answered.wait_for(std::chrono::milliseconds(200)) == std::future_status::timeout;
    });
    AskOnce(rig);
    answered.get();
    rig.Settle();
    QVERIFY(bWaits);
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-sealed"));
}

void PasswordAnswerTest::OnlyTheDeviceOfTheAnswerIsFreed_data()
{
    QTest::addColumn<QByteArray>("userInfo");
    QTest::addColumn<QStringList>("started");
    const QStringList both = Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"});
    QTest::newRow("the device and no record") << QByteArray(R"({"deviceId":"SN"})") << both;
    QTest::newRow("the device and another record") << QByteArray(R"({"deviceId":"SN","recordId":"9"})") << both;
    QTest::newRow("another device") << QByteArray(R"({"deviceId":"SN-other","recordId":"1"})") << Texts({});
    QTest::newRow("a device that is no text") << QByteArray(R"({"deviceId":7})") << Texts({});
    QTest::newRow("no object") << QByteArray("[]") << Texts({});
    QTest::newRow("no JSON") << QByteArray("SN") << Texts({});
    QTest::newRow("nothing") << QByteArray() << Texts({});
}

void PasswordAnswerTest::OnlyTheDeviceOfTheAnswerIsFreed()
{
    QFETCH(QByteArray, userInfo);
    QFETCH(QStringList, started);
    EngineRig rig;
    AskOnce(rig);
    rig.World().Devices().RaiseMessage(Answer(1001, userInfo.constData()));
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), started);
    QCOMPARE(rig.Task("1")->strPassword, started.isEmpty() ? QString() : QStringLiteral("canary-sealed"));
    QCOMPARE(rig.Task("2")->strPassword, QString());
}

void PasswordAnswerTest::TheDeviceIsFoundInAnyLocalEncoding_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("device");
    for (const char* pszEncoding : {"ISO-8859-1", "windows-1252", "GB18030", "US-ASCII", "UTF-8"}) {
        if (!QTextCodec::codecForName(pszEncoding))
            continue; // US-ASCII comes with a library that not every build of Qt has
        for (const char* pszDevice : {"SN-ä", "SN-录"})
            QTest::addRow("%s in %s", pszDevice, pszEncoding)
                << QByteArray(pszEncoding) << QString::fromUtf8(pszDevice);
    }
}

void PasswordAnswerTest::TheDeviceIsFoundInAnyLocalEncoding()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QString, device);
    const LocalEncoding local(encoding.constData());
    EngineRig rig;
    AskOnce(rig, device);
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"}));
    QCOMPARE(rig.Task("1")->strPassword, QStringLiteral("canary-sealed"));
}

// The host took the UTF-8 that it was given for local text and made that UTF-8 in turn.
void PasswordAnswerTest::UserDataAreReadInTheLocalEncodingFirst()
{
    const LocalEncoding local("ISO-8859-1");
    EngineRig rig;
    AskOnce(rig, QStringLiteral("SN-ä"));
    rig.World().Devices().RaiseMessage(Answer(1001, R"({"deviceId":"SN-Ã¤","recordId":"1"})"));
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 1", "StartDeviceRecordDownload 2"}));
}

void PasswordAnswerTest::ALateAnswerFreesTheQueueOfADeletedTask()
{
    EngineRig rig;
    AskOnce(rig);
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("1"), rig.Task("1")->strDownloadPath);
    QCOMPARE(rig.Calls().Count("Start"), 0); // its device is still being asked
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 2"}));
}

void PasswordAnswerTest::AnAnswerAfterShutdownStartsNothing_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("forgets");
    QTest::newRow("the host forgot the engine") << false << true;
    QTest::newRow("the host calls all the same") << false << false;
    QTest::newRow("it was on its way already") << true << true;
}

void PasswordAnswerTest::AnAnswerAfterShutdownStartsNothing()
{
    QFETCH(bool, before);
    QFETCH(bool, forgets);
    EngineRig rig;
    if (!forgets)
        rig.World().Devices().KeepCallingAfterDetach();
    AskOnce(rig);
    if (before)
        rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    if (!before)
        rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    SendTasks(rig, Source::Device, {"3"});
    QCOMPARE(rig.Calls().Count("Start"), 0);
}

void PasswordAnswerTest::AnAnswerOnItsWayMayOutliveTheEngine()
{
    FakeWorld world;
    auto pEngine = std::make_unique<RecordDownloadModule>();
    auto record = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>();
    record->iRecordType = 1;
    record->strRecordId = QStringLiteral("1");
    record->strDeviceId = QStringLiteral("SN");
    record->strDownloadPath = world.Path("1.mp4");
    record->bNeedPassword = true;
    record->bCanGetPassword = true;
    pEngine->StartRecordDownloads({record});
    world.Downloads().RaiseState(Source::Device, "1", 3);
    EngineRig::Settle();
    world.Devices().AnswerPassword(0, 0, "sealed");
    pEngine->Shutdown();
    pEngine.reset();
    world.Calls().Clear();
    EngineRig::Settle();
    QCOMPARE(world.Calls().Lines(), Texts({}));
    QCOMPARE(record->strPassword, QString());
}

KX_TEST(PasswordAnswerTest, QCoreApplication)
#include "PasswordAnswerTest.moc"
