// The client says that the disk is full: every task is dropped, in a fixed order, and most of their files go.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

namespace {

constexpr char DiskFull[] = "EventNotifyDeleteDownloadRecord";

// The rig's tasks, two more of each source than may run; each has a file and a picture.
void FillAllQueues(EngineRig& rig)
{
    SendTasks(rig, Source::Cloud, {"11", "12", "13", "14", "15"});
    SendTasks(rig, Source::Device, {"21", "22", "23", "24"});
    SendTasks(rig, Source::IOTLan, {"31", "32", "33"});
    SendTasks(rig, Source::LanModule, {"41", "42", "43"});
    for (const char* pszName :
         {"11.mp4", "12.mp4", "13.mp4", "14.mp4", "15.mp4", "21.mp4", "22.mp4", "23.mp4", "24.mp4", "31.mp4", "32.mp4",
          "33.mp4", "41.mp4", "42.mp4", "43.mp4", "14.jpg", "21.jpg", "24.jpg", "33.jpg"})
        rig.World().WriteFile(pszName);
    rig.Calls().Clear();
    rig.World().Log().Clear();
}

} // namespace

class ClearTest : public QObject
{
    Q_OBJECT

private slots:
    void StopsTheRunningTasksSourceBySource();
    void RemovesFilesInTheOrderOfTheSources();
    void KeepsTheFilesOfWaitingLanTasksOnly();
    void StartsNothingWhileItClears();
    void NothingIsLeftInTheQueues();
    void LateStatesOfClearedTasksAreDropped();
    void HeldCloudTasksStay();
    void TellsThePanelAtTheEnd();
    void ATaskSentWhileItClearsWaitsForRoomInTheNewFolder_data();
    void ATaskSentWhileItClearsWaitsForRoomInTheNewFolder();
    void WhatIsResumedWhileItClearsKeepsItsFile();
    void AnEmptyEventIsIgnored();
    void AClearedTaskMayBeStartedAgain();
};

void ClearTest::StopsTheRunningTasksSourceBySource()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Send(DiskFull, {rig.World().Folder()});
    QCOMPARE(Told(rig),
             Texts({"StopLanModuleRecordDownload 41", "StopIOTLanRecordDownload 31", "StopDeviceRecordDownload 21",
                    "StopDeviceRecordDownload 22", "StopCloudRecordDownload 11", "StopCloudRecordDownload 12",
                    "StopCloudRecordDownload 13", "SignalStopAllRecord"}));
}

void ClearTest::RemovesFilesInTheOrderOfTheSources()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Send(DiskFull, {rig.World().Folder()});
    QCOMPARE(rig.World().Log().Lines(), Texts({"2 RecordDownloadModule::RemoveFileJpg remove file[~/41.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/31.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/23.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/24.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/24.jpg]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/21.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/21.jpg]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/22.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/14.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/14.jpg]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/15.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/11.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/12.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/13.mp4]"}));
}

void ClearTest::KeepsTheFilesOfWaitingLanTasksOnly()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Send(DiskFull, {rig.World().Folder()});
    QStringList left = QDir(rig.World().Folder()).entryList(QDir::Files, QDir::Name);
    QCOMPARE(left, Texts({"32.mp4", "33.jpg", "33.mp4", "42.mp4", "43.mp4"}));
}

void ClearTest::StartsNothingWhileItClears()
{
    EngineRig rig(NoPictures);
    ScriptedDisk::SetFreeBytes(1024 * ScriptedDisk::MiB); // room enough: only the empty queues keep it from starting
    FillAllQueues(rig);
    rig.Send(DiskFull, {rig.World().Folder()});
    QCOMPARE(rig.Calls().Count("Start"), 0);
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 0);
    QCOMPARE(rig.Calls().Count("notify"), 0);
}

void ClearTest::NothingIsLeftInTheQueues()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Send(DiskFull, {rig.World().Folder()});
    rig.Calls().Clear();
    rig.Send(DiskFull, {rig.World().Folder()});
    QCOMPARE(Told(rig), Texts({"SignalStopAllRecord"}));
    QVERIFY(rig.World().HasFile("32.mp4"));
}

void ClearTest::LateStatesOfClearedTasksAreDropped()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.World().Downloads().RaiseState(Source::Cloud, "11", 2); // on their way when the disk is full
    rig.World().Downloads().RaiseState(Source::Device, "21", 3);
    rig.World().Bus().Send(DiskFull, {rig.World().Folder()});
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void ClearTest::HeldCloudTasksStay()
{
    EngineRig rig;
    SendTasks(rig, Source::Cloud, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.Calls().Clear();
    rig.Send(DiskFull, {rig.World().Folder()});
    QVERIFY(rig.World().HasFile("1.mp4"));
    rig.World().Pictures().AnswerFailed("");
    QCOMPARE(Told(rig), Texts({"SignalStopAllRecord", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
}

// The panel asks the engine about its rows when it hears the signal: they are all gone by then, and so is the place.
void ClearTest::TellsThePanelAtTheEnd()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1", "2"});
    rig.Calls().Clear();
    ScriptedDisk::SetFreeBytes(0);
    connect(&rig.Engine(), &RecordDownloadModule::SignalStopAllRecord, &rig.Engine(),
            [&rig] { rig.Engine().StartRecordDownloads(Rows(rig, {"2"})); });
    rig.Send(DiskFull, {rig.World().Path("target")});
    QCOMPARE(Told(rig), Texts({"StopLanModuleRecordDownload 1", "SignalStopAllRecord", "SignalAddDownloadInfo 2"}));
    const QList<QByteArray> measured{rig.World().Path("target").toLocal8Bit()};
    QCOMPARE(ScriptedDisk::Asked(), measured); // armed, and with the new folder
}

void ClearTest::ATaskSentWhileItClearsWaitsForRoomInTheNewFolder_data()
{
    QTest::addColumn<Source>("source");
    QTest::newRow("of another source") << Source::Device;
    QTest::newRow("of the same source: is it measured only when the place is free?") << Source::LanModule;
}

void ClearTest::ATaskSentWhileItClearsWaitsForRoomInTheNewFolder()
{
    QFETCH(Source, source);
    EngineRig rig;
    rig.Send("EventNotifyDownloadRecordPath", {QStringLiteral("/old")});
    SendTasks(rig, Source::LanModule, {"1"});
    ScriptedDisk::SetFreeBytes(0);
    rig.Calls().WhenAdded("StopLanModuleRecordDownload", [&rig, source = source] { SendTasks(rig, source, {"2"}); });
    rig.Calls().Clear();
    rig.Send(DiskFull, {QStringLiteral("/new")});
    QCOMPARE(Told(rig), Texts({"StopLanModuleRecordDownload 1", "SignalAddDownloadInfo 2", "SignalStopAllRecord"}));
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>{"/new"});
}

void ClearTest::WhatIsResumedWhileItClearsKeepsItsFile()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    SendTasks(rig, Source::Device, {"2", "3", "4"});
    Once(rig.Calls(), "StopLanModuleRecordDownload", [&rig] {
        rig.Engine().StartRecordDownloads(Rows(rig, {"4"})); // it waited
        rig.World().WriteFile("4.mp4");
    });
    rig.Calls().Clear();
    rig.Send(DiskFull, {rig.World().Folder()});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 4"}));
    QVERIFY(rig.World().HasFile("4.mp4"));
}

void ClearTest::AnEmptyEventIsIgnored()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.Calls().Clear();
    rig.Send(DiskFull, {});
    QCOMPARE(Told(rig), Texts({}));
    rig.RaiseState(Source::LanModule, "1", 1);
    QCOMPARE(Told(rig), Texts({"SignalDownloadRecordStates 1 1 false"}));
}

void ClearTest::AClearedTaskMayBeStartedAgain()
{
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1", "2", "3"});
    const auto rows = Rows(rig, {"3", "1"});
    rig.Send(DiskFull, {rig.World().Folder()});
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads(rows);
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 3", "StartDeviceRecordDownload 3", "SignalAddDownloadInfo 1",
                               "StartDeviceRecordDownload 1"}));
}

KX_TEST(ClearTest, QCoreApplication)
#include "ClearTest.moc"
