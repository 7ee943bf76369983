// What the engine keeps to in passing: in which order, how often, and of whom nothing is left.

#include "Engine/CoverPictures.h"
#include "TestMain.h"

using namespace EngineCases;

class SmallPrintTest : public QObject
{
    Q_OBJECT

private slots:
    void WhatAFullDiskHeldBackStartsAtAllSources();
    void AnIgnoredRecordTakesNoNumber_data();
    void AnIgnoredRecordTakesNoNumber();
    void AFolderThatCannotBeMadeIsLoggedOnceForATaskWithACover();
    void ARequestOfAnUnreadablePictureIsForgotten();
    void TheHostGetsThePathThatWasChecked();
    void ATaskOfAHostWithoutTransfersIsLogged();
    void AnUnknownIdStartsNothing_data();
    void AnUnknownIdStartsNothing();
    void ASingleRefusedTaskIsStartedAgainAtOnce();
    void ASingleTaskThatNeedsNoPasswordIsGivenUp();
    void DeletingATwinLeavesNeitherInAQueue();
    void AnOlderPictureBesideANewRecordingIsReplaced();
    void TheFileGoesAfterTheStopAndBeforeTheNextStart_data();
    void TheFileGoesAfterTheStopAndBeforeTheNextStart();
    void ALaterPasswordReplacesAnEarlierOne();
    void AnEmptyPasswordCountsAsFetched();
    void AFullDiskDoesNotEndTheWaitForAPassword();
    void IOTLanStatesAreLoggedBeforeTheyAreTold();
    void AnEmptyFolderOfTheDeleteEventReplacesAnEarlierOne();
    void AListGivenAsTextIsRead();
};

namespace {

void FillDisk(EngineRig& rig, quint64 uFreeMiB)
{
    ScriptedDisk::SetFreeBytes(uFreeMiB * ScriptedDisk::MiB);
    rig.Send("EventNotifyDeleteDownloadRecord", {QStringLiteral("/v")});
    rig.Calls().Clear();
}

KXDownLoadList::DownloadDeviceRecordInfo Refusable(const EngineRig& rig, const char* pszId)
{
    auto record = rig.Device(pszId);
    record.strDeviceId = QStringLiteral("SN");
    record.bNeedPassword = true;
    record.bCanGetPassword = true;
    return record;
}

// The passwords of the starts of that id.
QStringList StartedWith(EngineRig& rig, const char* pszId)
{
    QStringList passwords;
    const QByteArray start = QByteArray("StartDeviceRecordDownload ") + pszId + ' ';
    for (const QString& strLine : rig.Calls().Lines(start.constData()))
        passwords.append(strLine.section(QStringLiteral(" password="), 1).section(QLatin1Char(' '), 0, 0));
    return passwords;
}

} // namespace

void SmallPrintTest::WhatAFullDiskHeldBackStartsAtAllSources()
{
    EngineRig rig(NoPictures);
    FillDisk(rig, 10);
    SendTasks(rig, Source::Cloud, {"1"});
    SendTasks(rig, Source::Device, {"2"});
    SendTasks(rig, Source::IOTLan, {"3"});
    SendTasks(rig, Source::LanModule, {"4"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({}));
    ScriptedDisk::SetFreeBytes(50 * ScriptedDisk::MiB);
    SendTasks(rig, Source::Device, {"5"});
    QStringList started = rig.Calls().Short("Start");
    started.sort();
    QCOMPARE(started, Texts({"StartCloudRecordDownload 1", "StartDeviceRecordDownload 2", "StartDeviceRecordDownload 5",
                             "StartIOTLanRecordDownload 3", "StartLanModuleRecordDownload 4"}));
}

void SmallPrintTest::AnIgnoredRecordTakesNoNumber_data()
{
    QTest::addColumn<QStringList>("before"); // sent in a list of their own
    QTest::addColumn<QStringList>("ids");    // "?" has an unknown type
    QTest::newRow("repeated in the list") << Texts({}) << Texts({"1", "1", "2"});
    QTest::newRow("running already") << Texts({"1"}) << Texts({"1", "2"});
    QTest::newRow("of an unknown type") << Texts({"1"}) << Texts({"?", "2"});
}

void SmallPrintTest::AnIgnoredRecordTakesNoNumber()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, ids);
    EngineRig rig;
    for (const QStringList& list : {before, ids}) {
        std::vector<KXDownLoadList::DownloadDeviceRecordInfo> records;
        for (const QString& strId : list) {
            auto record = rig.Device(strId.toUtf8().constData());
            record.strDownloadPath = rig.World().Path("a.mp4");
            record.iRecordType = strId == QLatin1String("?") ? 9 : 1;
            records.push_back(record);
        }
        rig.SendList(1, records);
    }
    QCOMPARE(rig.Task("1")->strDownloadPath, rig.World().Path("a.mp4"));
    QCOMPARE(rig.Task("2")->strDownloadPath, rig.World().Path("a(1).mp4"));
}

void SmallPrintTest::AFolderThatCannotBeMadeIsLoggedOnceForATaskWithACover()
{
    EngineRig rig;
    rig.World().WriteFile("file"); // no folder can be made below a file
    auto record = CoverPictures::RecordWithCover(rig, "1");
    record.strDownloadPath = rig.World().Path("file/1.mp4");
    rig.SendOne(record);
    CoverPictures::Settle(rig, 0, CoverPictures::Small());
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    QCOMPARE(rig.World().Log().Lines("6 RecordDownloadModule"),
             Texts({"6 RecordDownloadModule::EnsureDownloadPathExists Failed to create download directory: ~/file"}));
}

// The result of a later request of the same recording is its own. The failed task still holds its path.
void SmallPrintTest::ARequestOfAnUnreadablePictureIsForgotten()
{
    EngineRig rig;
    CoverPictures::SendHeld(rig);
    rig.World().Pictures().Answer("cover", 0, rig.World().Path("missing.enc"));
    QTRY_COMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 1);
    const DownloadRecordInfoPtr pFailed = rig.Task("1");
    rig.RaiseState(Source::Cloud, "1", 0);
    auto record = CoverPictures::RecordWithCover(rig, "1");
    record.strCloudText4 = QStringLiteral("canary-later-key");
    rig.SendOne(record);
    CoverPictures::Settle(rig, 0, CoverPictures::Small());
    QCOMPARE(rig.Calls().Count("DecryptPicture"), 1);
    QVERIFY(rig.Calls().Lines("DecryptPicture").value(0).contains(QLatin1String(" key=canary-later-key ")));
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1(1).jpg"));
    QCOMPARE(pFailed->strPicturePath, QString());
}

void SmallPrintTest::TheHostGetsThePathThatWasChecked()
{
    EngineRig rig;
    auto record = rig.Device("1");
    record.strDownloadPath = rig.World().Path("missing/../rec/x.mp4");
    rig.SendOne(record);
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String(" path=~/rec/x.mp4 ")));
    QVERIFY(rig.World().HasFile("rec"));
}

void SmallPrintTest::ATaskOfAHostWithoutTransfersIsLogged()
{
    EngineRig rig([](FakeWorld& world) {
        NoPictures(world);
        world.TakeModuleAway(5);
    });
    SendTasks(rig, Source::Cloud, {"1"});
    SendTasks(rig, Source::Device, {"2"});
    SendTasks(rig, Source::IOTLan, {"3"});
    SendTasks(rig, Source::LanModule, {"4"});
    const QString strLine = QStringLiteral(
        "6 RecordDownloadModule::StartNextDownload The transfer could not be started.strRecordId[%1],iCode[-1]");
    QCOMPARE(rig.World().Log().Lines(), QStringList({strLine.arg(1), strLine.arg(2), strLine.arg(3), strLine.arg(4)}));
}

void SmallPrintTest::AnUnknownIdStartsNothing_data()
{
    AddSourceRows();
}

// A task waits because the disk was full; there is room again by now.
void SmallPrintTest::AnUnknownIdStartsNothing()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    FillDisk(rig, 10);
    SendTasks(rig, of.source, {"1"});
    ScriptedDisk::SetFreeBytes(1024 * ScriptedDisk::MiB);
    rig.Calls().Clear();
    for (const int iCode : {0, 1, 2, 3, 77, 100})
        rig.RaiseState(of.source, "99", iCode);
    QCOMPARE(Told(rig), Texts({}));
    SendTasks(rig, of.source, {"2"});
    QCOMPARE(rig.Calls().Short("Start").value(0), of.Start("1"));
}

void SmallPrintTest::ASingleRefusedTaskIsStartedAgainAtOnce()
{
    EngineRig rig;
    auto record = Refusable(rig, "1");
    record.bGotNewPassword = true;
    rig.SendOne(record);
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.Calls().Short({"Start", "Stop", "Signal"}),
             Texts({"StopDeviceRecordDownload 1", "SignalDownloadRecordStates 1", "StartDeviceRecordDownload 1"}));
}

void SmallPrintTest::ASingleTaskThatNeedsNoPasswordIsGivenUp()
{
    EngineRig rig;
    auto record = Refusable(rig, "1");
    record.bNeedPassword = false;
    rig.SendOne(record);
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.Calls().Short({"Start", "Stop", "Request"}), Texts({"StopDeviceRecordDownload 1"}));
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalDownloadRecordStates 1 3 false"}));
    SendTasks(rig, Source::Device, {"2", "3"}); // its place is free
    QCOMPARE(rig.Calls().Count("Start"), 2);
}

void SmallPrintTest::DeletingATwinLeavesNeitherInAQueue()
{
    EngineRig rig(NoPictures);
    SendTasks(rig, Source::Cloud, {"1", "1", "2"});
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 2);
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("1.mp4"));
    rig.RaiseState(Source::Cloud, "1", 1);
    QCOMPARE(rig.Calls().Lines({"Start", "Stop", "Signal"}), Texts({"StopCloudRecordDownload 1"}));
    SendTasks(rig, Source::Cloud, {"3", "4", "5"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 3", "StartCloudRecordDownload 4"}));
}

void SmallPrintTest::AnOlderPictureBesideANewRecordingIsReplaced()
{
    EngineRig rig;
    rig.World().WriteFile("1.jpg", "older");
    CoverPictures::SendHeld(rig);
    CoverPictures::Settle(rig, 0, CoverPictures::Small());
    QCOMPARE(QImage(rig.World().Path("1.jpg")).size(), QSize(6, 4));
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1.jpg"));
}

void SmallPrintTest::TheFileGoesAfterTheStopAndBeforeTheNextStart_data()
{
    QTest::addColumn<Source>("source");
    QTest::addColumn<bool>("deleted"); // or failed
    QTest::newRow("cloud, failed") << Source::Cloud << false;
    QTest::newRow("IOT LAN, failed") << Source::IOTLan << false;
    QTest::newRow("LAN module, failed") << Source::LanModule << false;
    QTest::newRow("cloud, deleted") << Source::Cloud << true;
    QTest::newRow("device, deleted") << Source::Device << true;
    QTest::newRow("IOT LAN, deleted") << Source::IOTLan << true;
    QTest::newRow("LAN module, deleted") << Source::LanModule << true;
}

void SmallPrintTest::TheFileGoesAfterTheStopAndBeforeTheNextStart()
{
    QFETCH(Source, source);
    QFETCH(bool, deleted);
    EngineRig rig(NoPictures);
    SendTasks(rig, source, {"1", "6", "7", "2"}); // more than there are places
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1.jpg");
    QStringList atStop;
    QStringList atStart = Texts({"nothing started"});
    Once(rig.Calls(), "Stop", [&] { atStop = FilesLeft(rig, {"1.mp4", "1.jpg"}); });
    Once(rig.Calls(), "Start", [&] { atStart = FilesLeft(rig, {"1.mp4", "1.jpg"}); });
    if (deleted)
        rig.Engine().DeleteRecordDownload(static_cast<int>(source), QStringLiteral("1"), rig.World().Path("1.mp4"));
    else
        rig.RaiseState(source, "1", 0);
    QCOMPARE(atStop, Texts({"1.mp4", "1.jpg"}));
    QCOMPARE(atStart, Texts({}));
}

// Record 3 got the first password while it waited, so it is tried once more after a refusal.
void SmallPrintTest::ALaterPasswordReplacesAnEarlierOne()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Refusable(rig, "1"), Refusable(rig, "2"), Refusable(rig, "3")});
    rig.RaiseState(Source::Device, "1", 3);
    rig.RaiseState(Source::Device, "2", 2);
    rig.World().Devices().AnswerPassword(0, 0, "first");
    rig.Settle();
    QCOMPARE(StartedWith(rig, "3"), Texts({"canary-first"}));
    rig.SendOne(Refusable(rig, "4"));
    rig.RaiseState(Source::Device, "1", 2);
    rig.RaiseState(Source::Device, "4", 3);
    rig.World().Devices().AnswerPassword(1, 0, "second");
    rig.Settle();
    rig.Calls().Clear();
    rig.RaiseState(Source::Device, "3", 3);
    QCOMPARE(StartedWith(rig, "3"), Texts({"canary-second"}));
}

void SmallPrintTest::AnEmptyPasswordCountsAsFetched()
{
    EngineRig rig;
    rig.World().SetClearDevicePassword("");
    auto record = Refusable(rig, "1");
    record.strPassword = QStringLiteral("canary-old");
    rig.SendOne(record);
    rig.RaiseState(Source::Device, "1", 3);
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(StartedWith(rig, "1"), Texts({"canary-old", ""}));
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.Calls().Count("RequestDevicePassword"), 1);
    QCOMPARE(rig.World().Log().Lines().last(),
             QStringLiteral("2 RecordDownloadModule::OnDownloadDeviceRecordState Download failed,the current record "
                            "has been tried again with the new password.Recordname:"));
}

void SmallPrintTest::AFullDiskDoesNotEndTheWaitForAPassword()
{
    EngineRig rig;
    rig.SendOne(Refusable(rig, "1"));
    rig.RaiseState(Source::Device, "1", 3);
    FillDisk(rig, 1024);
    SendTasks(rig, Source::Device, {"2"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({}));
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 2"}));
}

void SmallPrintTest::IOTLanStatesAreLoggedBeforeTheyAreTold()
{
    EngineRig rig;
    SendTasks(rig, Source::IOTLan, {"1"});
    rig.Calls().Clear();
    QStringList atLine = Texts({"nothing logged"});
    rig.World().Log().WhenLogged("2 RecordDownloadModule::OnDownloadIOTLanRecordState lan local:iCode[0]",
                                 [&] { atLine = Told(rig); });
    rig.RaiseState(Source::IOTLan, "1", 0);
    QCOMPARE(atLine, Texts({}));
    QCOMPARE(Told(rig), Texts({"notify EventNotifyDownloadRecordStates", "StopIOTLanRecordDownload 1",
                               "SignalDownloadRecordStates 1 0 false"}));
}

void SmallPrintTest::AnEmptyFolderOfTheDeleteEventReplacesAnEarlierOne()
{
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordPath", {QStringLiteral("/earlier")});
    rig.Send("EventNotifyDeleteDownloadRecord", {QString()});
    SendTasks(rig, Source::Device, {"1"});
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>({""}));
}

// A text holds the bytes of a list when they are ASCII: no field is below zero, no text is null.
void SmallPrintTest::AListGivenAsTextIsRead()
{
    EngineRig rig;
    auto record = rig.LanModule("1");
    record.lValue1 = record.lValue2 = record.lFileSize = 0;
    record.uValue3 = 0;
    record.iValue5 = record.iLanValue1 = record.iLanValue2 = record.iLanValue3 = 0;
    for (QString* pText : {&record.strText1, &record.strPassword, &record.strText3, &record.strText4, &record.strText5,
                           &record.strPicturePath, &record.strFileName, &record.strLanText1, &record.strLanText2,
                           &record.strLanText3, &record.strLanText4})
        *pText = QStringLiteral("t");
    record.strDownloadPath = QDir::rootPath() + QStringLiteral("1.mp4"); // short, so that its length is ASCII, too
    const QByteArray bytes = EngineRig::Stream(std::vector{record});
    const QString strText = QString::fromLatin1(bytes.constData(), bytes.size());
    QCOMPARE(strText.toUtf8(), bytes);
    rig.Send("EventNotifyDownloadRecordList", {strText, 3});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartLanModuleRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strText4, QStringLiteral("t"));
}

KX_TEST(SmallPrintTest, QCoreApplication)
#include "SmallPrintTest.moc"
