#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;
using namespace KXDownLoadList;

// How a received list becomes tasks: classes, names, target paths; streams that are short, corrupt or hostile.
class ListTest : public QObject
{
    Q_OBJECT

private slots:
    void EachTypeReadsItsClass_data();
    void EachTypeReadsItsClass();
    void EveryStreamedFieldReachesThePanelsTask();
    void TasksAreQueuedInStreamOrder();
    void ZeroRecordsAreZeroTasks_data();
    void ZeroRecordsAreZeroTasks();
    void RecordsOwnTypeDecidesItsQueue();
    void FileNameIsTheNamePartOfThePath_data();
    void FileNameIsTheNamePartOfThePath();

    void TwoTasksOfOneNameNeverShareAFile_data();
    void TwoTasksOfOneNameNeverShareAFile();
    void PromisesHoldAcrossListsAndSources();
    void PausedTaskKeepsItsPath();
    void ResumedTaskKeepsItsPath();
    void PromisedAndExistingNamesAreBothPassedOver();
    void ExistingNamesAreSeenInAListThatReadsTheFolder();

    void CorruptRecordEndsTheList_data();
    void CorruptRecordEndsTheList();
    void CorruptRecordPromisesNoPath();
    void ShortRecordIsQueuedAsFarAsItGoes_data();
    void ShortRecordIsQueuedAsFarAsItGoes();
    void EveryCutKeepsTheWholeRecordsBefore_data();
    void EveryCutKeepsTheWholeRecordsBefore();
    void EveryFlippedByteIsSurvived();
    void ListAfterACorruptOneIsReadAgain();
};

namespace {

constexpr int RecordIdLength = 4; // where the length of a record's first text stands, behind the 32-bit type
constexpr int Cloud = 0;
constexpr int Device = 1;

} // namespace

void ListTest::EachTypeReadsItsClass_data()
{
    AddSourceRows();
}

void ListTest::EachTypeReadsItsClass()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    rig.SendTyped(of.iType, "7");
    const DownloadRecordInfoPtr pTask = rig.Task("7");
    QVERIFY(pTask);
    QCOMPARE(pTask->iRecordType, of.iType);
    QCOMPARE(std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask) != nullptr, of.iType == 0);
    QCOMPARE(std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask) != nullptr, of.iType == 1);
    QCOMPARE(std::dynamic_pointer_cast<DownloadLanModuleRecordInfo>(pTask) != nullptr, of.iType == 2 || of.iType == 3);
}

void ListTest::EveryStreamedFieldReachesThePanelsTask()
{
    EngineRig rig;
    DownloadDeviceRecordInfo record = rig.Device("7");
    record.lValue1 = 11;
    record.lValue2 = 12;
    record.strText1 = QStringLiteral("account");
    record.uValue3 = 13;
    record.lFileSize = 14;
    record.lReceivedSize = 15;
    record.strPassword = QStringLiteral("canary-secret");
    record.strText3 = QStringLiteral("address");
    record.strText4 = QString::fromUtf8("Tür");
    record.strText5 = QStringLiteral("cookie");
    record.iValue5 = 16;
    record.strPicturePath = QStringLiteral("/p.jpg");
    record.strFileName = QStringLiteral("not what the path says");
    record.iDeviceValue = 17;
    record.bNeedPassword = true;
    rig.SendOne(record);
    const auto pTask = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(rig.Task("7"));
    QVERIFY(pTask);
    QCOMPARE(pTask->lValue1, Q_INT64_C(11));
    QCOMPARE(pTask->lValue2, Q_INT64_C(12));
    QCOMPARE(pTask->strText1, QStringLiteral("account"));
    QCOMPARE(pTask->strDeviceId, QStringLiteral("SN-7"));
    QCOMPARE(pTask->uValue3, Q_UINT64_C(13));
    QCOMPARE(pTask->strStartTime, QStringLiteral("20200102T030405"));
    QCOMPARE(pTask->strEndTime, QStringLiteral("20200102T030506"));
    QCOMPARE(pTask->lFileSize, Q_INT64_C(14));
    QCOMPARE(pTask->lReceivedSize, Q_INT64_C(-1));
    QCOMPARE(pTask->strPassword, QStringLiteral("canary-secret"));
    QCOMPARE(pTask->strText3, QStringLiteral("address"));
    QCOMPARE(pTask->strText4, QString::fromUtf8("Tür"));
    QCOMPARE(pTask->strText5, QStringLiteral("cookie"));
    QCOMPARE(pTask->iValue5, 16);
    QCOMPARE(pTask->strPicturePath, QStringLiteral("/p.jpg"));
    QCOMPARE(pTask->strFileName, QStringLiteral("7.mp4"));
    QCOMPARE(pTask->iDeviceValue, 17);
    QCOMPARE(pTask->bNeedPassword, true);
    QCOMPARE(pTask->bCanGetPassword, false);
}

void ListTest::TasksAreQueuedInStreamOrder()
{
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordList", {rig.StreamTyped(3, Texts({"b", "a", "d", "c"})), 3});
    QCOMPARE(rig.Calls().Short("SignalAdd"), Texts({"SignalAddDownloadInfo b", "SignalAddDownloadInfo a",
                                                    "SignalAddDownloadInfo d", "SignalAddDownloadInfo c"}));
    for (const char* pszId : {"b", "a", "d", "c"})
        rig.RaiseState(Source::LanModule, pszId, 2);
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartLanModuleRecordDownload b", "StartLanModuleRecordDownload a",
                                                "StartLanModuleRecordDownload d", "StartLanModuleRecordDownload c"}));
}

void ListTest::ZeroRecordsAreZeroTasks_data()
{
    AddSourceRows();
}

void ListTest::ZeroRecordsAreZeroTasks()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    rig.Calls().Clear();
    rig.Send("EventNotifyDownloadRecordList", {QByteArray(), of.iType});
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void ListTest::RecordsOwnTypeDecidesItsQueue()
{
    EngineRig rig;
    rig.SendList(3, std::vector<DownloadLanModuleRecordInfo>{rig.IOTLan("i"), rig.LanModule("l")});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartIOTLanRecordDownload i", "StartLanModuleRecordDownload l"}));
}

void ListTest::FileNameIsTheNamePartOfThePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("a plain path") << QStringLiteral("/nowhere/a.mp4") << QStringLiteral("a.mp4");
    QTest::newRow("blanks and other letters") << QString::fromUtf8("/nowhere/ä b.mp4") << QString::fromUtf8("ä b.mp4");
    QTest::newRow("a name alone") << QStringLiteral("a.mp4") << QStringLiteral("a.mp4");
    QTest::newRow("a folder alone has no name") << QStringLiteral("/nowhere/") << QString();
    QTest::newRow("an empty path has no name") << QString() << QString();
}

void ListTest::FileNameIsTheNamePartOfThePath()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    EngineRig rig;
    // The place is taken, so that no folder is made for these paths.
    rig.SendOne(rig.LanModule("first"));
    rig.SendTyped(3, "7", [&](auto& record) { record.strDownloadPath = path; });
    QCOMPARE(rig.Task("7")->strFileName, name);
}

void ListTest::TwoTasksOfOneNameNeverShareAFile_data()
{
    AddSourceRows();
}

void ListTest::TwoTasksOfOneNameNeverShareAFile()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    for (const char* pszId : {"1", "2", "3"})
        rig.SendTyped(of.iType, pszId, [&](auto& record) { record.strDownloadPath = rig.World().Path("x.mp4"); });
    QCOMPARE(Paths(rig, {"1", "2", "3"}), Texts({"~/x.mp4", "~/x(1).mp4", "~/x(2).mp4"}));
    QCOMPARE(rig.World().HasFile("x.mp4"), false);
}

void ListTest::PromisesHoldAcrossListsAndSources()
{
    EngineRig rig;
    const auto toX = [&](auto& record) { record.strDownloadPath = rig.World().Path("x.mp4"); };
    rig.SendTyped(Cloud, "1", toX); // held: its picture is never answered
    rig.SendTyped(3, "2", toX);     // running
    rig.SendTyped(3, "3", toX);     // waiting
    rig.SendTyped(2, "4", toX);
    rig.SendTyped(Device, "5", toX);
    QCOMPARE(Paths(rig, {"2", "3", "4", "5"}), Texts({"~/x(1).mp4", "~/x(2).mp4", "~/x(3).mp4", "~/x(4).mp4"}));
    rig.World().Pictures().AnswerFailed("");
    EngineRig::Settle();
    QCOMPARE(Paths(rig, {"1"}), Texts({"~/x.mp4"}));
}

void ListTest::PausedTaskKeepsItsPath()
{
    EngineRig rig;
    const auto toX = [&](auto& record) { record.strDownloadPath = rig.World().Path("x.mp4"); };
    rig.SendTyped(Device, "paused", toX);
    rig.Engine().PauseRecordDownloads({rig.Task("paused")});
    rig.SendTyped(Device, "new", toX);
    QCOMPARE(Paths(rig, {"paused", "new"}), Texts({"~/x.mp4", "~/x(1).mp4"}));
}

void ListTest::ResumedTaskKeepsItsPath()
{
    EngineRig rig;
    rig.SendTyped(Device, "7");
    rig.World().WriteFile("7.mp4"); // the partial file
    const DownloadRecordInfoPtr pTask = rig.Task("7");
    rig.Engine().PauseRecordDownloads({pTask});
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads({pTask});
    QCOMPARE(pTask->strDownloadPath, rig.World().Path("7.mp4"));
    QVERIFY(rig.Calls().Lines("StartDeviceRecordDownload 7").value(0).contains(QStringLiteral(" path=~/7.mp4 ")));
    QCOMPARE(rig.World().HasFile("7.mp4"), true);
}

void ListTest::PromisedAndExistingNamesAreBothPassedOver()
{
    EngineRig rig;
    rig.World().WriteFile("x.mp4");
    rig.World().WriteFile("x(2).mp4");
    const auto toX = [&](auto& record) { record.strDownloadPath = rig.World().Path("x.mp4"); };
    for (const char* pszId : {"1", "2", "3"})
        rig.SendTyped(3, pszId, toX);
    QCOMPARE(Paths(rig, {"1", "2", "3"}), Texts({"~/x(1).mp4", "~/x(3).mp4", "~/x(4).mp4"}));
}

// A long list looks names up in a listing of the folder, where other case and odd letters must not hide a file.
void ListTest::ExistingNamesAreSeenInAListThatReadsTheFolder()
{
    EngineRig rig;
    for (const char* pszName : {"same.mp4", "CASE.MP4", "Mixed.mp4", "SHORT~1.MP4", "a~b.mp4", "Übung.mp4", "dot.mp4.",
                                "blank.mp4 ", "x.mp4", "x(1).mp4", ".hidden.mp4", "folder.mp4/inside"})
        rig.World().WriteFile(pszName);
    std::vector<DownloadLanModuleRecordInfo> records;
    const auto add = [&](const QByteArray& id, const char* pszName) {
        records.push_back(rig.LanModule(id.constData()));
        records.back().strDownloadPath = rig.World().Path(pszName);
    };
    for (int i = 0; i < 90; ++i) { // more than enough for the folder to be read
        const QByteArray id = QByteArrayLiteral("free").append(QByteArray::number(i));
        add(id, QByteArray(id).append(".mp4").constData());
    }
    const char* names[] = {"same.mp4",    "CASE.MP4",   "Mixed.mp4",         "SHORT~1.MP4",     "a~b.mp4",
                           "Übung.mp4",   "dot.mp4.",   "blank.mp4 ",        "x.mp4",           "x.mp4",
                           ".hidden.mp4", "folder.mp4", "folder.mp4/inside", "folder.mp4/x.mp4"};
    for (int i = 0; i < 14; ++i)
        add(QByteArray::number(i), names[i]);
    rig.SendList(3, records);
    QCOMPARE(Paths(rig, {"free0", "free31", "free32", "free89"}),
             Texts({"~/free0.mp4", "~/free31.mp4", "~/free32.mp4", "~/free89.mp4"}));
    QCOMPARE(Paths(rig, {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13"}),
             Texts({"~/same(1).mp4", "~/CASE(1).MP4", "~/Mixed(1).mp4", "~/SHORT~1(1).MP4", "~/a~b(1).mp4",
                    "~/Übung(1).mp4", "~/dot.mp4(1).", "~/blank(1).mp4 ", "~/x(2).mp4", "~/x(3).mp4",
                    "~/.hidden(1).mp4", "~/folder(1).mp4", "~/folder.mp4/inside(1)", "~/folder.mp4/x.mp4"}));
}

void ListTest::CorruptRecordEndsTheList_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("broken");
    QTest::addColumn<QStringList>("announced");
    const QStringList none;
    for (int iType = 0; iType < 4; ++iType) {
        QTest::addRow("type %d: the first record is broken, none is queued", iType) << iType << 0 << none;
        QTest::addRow("type %d: the second is broken, the first is queued", iType)
            << iType << 1 << Texts({"SignalAddDownloadInfo 1"});
        QTest::addRow("type %d: the last is broken, both before are queued", iType)
            << iType << 2 << Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"});
    }
}

void ListTest::CorruptRecordEndsTheList()
{
    QFETCH(int, type);
    QFETCH(int, broken);
    QFETCH(QStringList, announced);
    EngineRig rig(NoPictures);
    QByteArray bytes = rig.StreamTyped(type, Texts({"1", "2", "3"}));
    const int iRecord = bytes.size() / 3;
    bytes[broken * iRecord + RecordIdLength + 3] = 1; // a text of one byte is none: they come in twos
    rig.Send("EventNotifyDownloadRecordList", {bytes, type});
    QCOMPARE(rig.Calls().Lines("SignalAdd"), announced);
    const QStringList failures = rig.World().Log().Lines("6 RecordDownloadModule::OnGetDownloadList ");
    QCOMPARE(failures.size(), 1);
    QCOMPARE(rig.World().Log().Lines(), failures);
}

void ListTest::CorruptRecordPromisesNoPath()
{
    EngineRig rig;
    QByteArray bytes = rig.StreamTyped(Device, Texts({"7"}));
    // The device record ends in five flags, the stream number and the file name, a null text before them.
    bytes.replace(bytes.size() - 13, 4, QByteArray::fromHex("00000001"));
    rig.Send("EventNotifyDownloadRecordList", {bytes, Device});
    QCOMPARE(rig.Calls().Count("SignalAdd"), 0);
    QCOMPARE(rig.World().Log().Lines("6 ").size(), 1);
    rig.SendTyped(Device, "7");
    QCOMPARE(Paths(rig, {"7"}), Texts({"~/7.mp4"}));
}

void ListTest::ShortRecordIsQueuedAsFarAsItGoes_data()
{
    QTest::addColumn<int>("cut");
    QTest::addColumn<QStringList>("events");
    // A device record with an id of one letter: the flags are its last 5 bytes, the id ends at byte 10.
    QTest::newRow("without its last flags it can still be started")
        << 3 << Texts({"SignalAddDownloadInfo b", "StartDeviceRecordDownload b"});
    QTest::newRow("without stream number and flags it can still be started")
        << 9 << Texts({"SignalAddDownloadInfo b", "StartDeviceRecordDownload b"});
    QTest::newRow("cut behind its id it has no path to be started with") << -10 << Texts({"SignalAddDownloadInfo b"});
    QTest::newRow("cut inside its type it belongs to no list of devices") << -2 << Texts({});
}

void ListTest::ShortRecordIsQueuedAsFarAsItGoes()
{
    QFETCH(int, cut);
    QFETCH(QStringList, events);
    EngineRig rig;
    const QByteArray whole = rig.StreamTyped(Device, Texts({"a"}));
    const QByteArray second = rig.StreamTyped(Device, Texts({"b"}));
    // Below zero: so many bytes are left; otherwise so many are missing.
    const QByteArray rest = cut < 0 ? second.left(-cut) : second.chopped(cut);
    rig.Send("EventNotifyDownloadRecordList", {QByteArray(whole + rest), Device});
    QCOMPARE(rig.Calls().Short({"SignalAdd", "Start"}),
             Texts({"SignalAddDownloadInfo a", "StartDeviceRecordDownload a"}) + events);
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void ListTest::EveryCutKeepsTheWholeRecordsBefore_data()
{
    AddSourceRows();
}

void ListTest::EveryCutKeepsTheWholeRecordsBefore()
{
    QFETCH(SourceCase, of);
    int iRecord = 1;
    for (int iCut = 0; iCut < iRecord; ++iCut) {
        EngineRig rig(NoPictures);
        const QByteArray bytes = rig.StreamTyped(of.iType, Texts({"1", "2"}));
        iRecord = bytes.size() / 2;
        rig.Send("EventNotifyDownloadRecordList", {bytes.left(iRecord + iCut), of.iType});
        QCOMPARE(rig.Calls().Lines("SignalAdd").value(0), QStringLiteral("SignalAddDownloadInfo 1"));
        QCOMPARE(rig.Task("1")->strEndTime, QStringLiteral("20200102T030506"));
        QVERIFY2(rig.Calls().Count("SignalAdd") <= 2, QByteArray::number(iCut).constData());
    }
}

void ListTest::EveryFlippedByteIsSurvived()
{
    int iBytes = 1;
    for (int i = 0; i < iBytes; ++i) {
        EngineRig rig;
        rig.SendOne(rig.LanModule("first")); // the place is taken: no folder is made for a broken path
        QByteArray bytes = rig.StreamTyped(3, Texts({"1", "2"}));
        iBytes = bytes.size();
        bytes[i] = static_cast<char>(~bytes[i]);
        rig.Send("EventNotifyDownloadRecordList", {bytes, 3});
        QVERIFY2(rig.Calls().Count("SignalAdd") <= 3, QByteArray::number(i).constData());
        QVERIFY2(rig.World().Log().Lines("6 RecordDownloadModule::OnGetDownloadList ").size() <= 1,
                 QByteArray::number(i).constData());
    }
}

void ListTest::ListAfterACorruptOneIsReadAgain()
{
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordList", {QByteArray::fromHex("0000000100000001ff"), 1});
    QCOMPARE(rig.World().Log().Lines("6 ").size(), 1);
    rig.SendTyped(Device, "7");
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 7"}));
}

KX_TEST(ListTest, QCoreApplication)
#include "ListTest.moc"
