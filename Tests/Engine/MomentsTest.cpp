// A state that comes inside a start, and a task that the client drops in the moment when its transfer starts or ends.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class MomentsTest : public QObject
{
    Q_OBJECT

private slots:
    void StatesInsideAStartAreOfThatTransferOnly();
    void AnEndFromBeforeAPauseIsNotTheResumedTasks_data();
    void AnEndFromBeforeAPauseIsNotTheResumedTasks();
    void ATaskPausedWhenItsRetryIsToldStaysPaused();
    void ATaskPausedWhenItIsGivenUpIsStoppedOnce();
    void ATaskPausedWhenItsStateIsLoggedStaysPaused();
    void ATaskPausedInsideTheStopOfItsFailureStaysPaused_data();
    void ATaskPausedInsideTheStopOfItsFailureStaysPaused();
    void ATaskPausedWhenItsEndIsToldIsWhole_data();
    void ATaskPausedWhenItsEndIsToldIsWhole();
    void AFileDeletedInsideItsStartGoesAfterTheStop_data();
    void AFileDeletedInsideItsStartGoesAfterTheStop();
    void ATaskDeletedInsideTheStopOfItsPauseLeavesNoFile_data();
    void ATaskDeletedInsideTheStopOfItsPauseLeavesNoFile();
    void ATwinThatFailsInsideTheOthersStartLeavesNoFile();
    void AStopOfThePluginInTheLineOfAFolderStartsNothing_data();
    void AStopOfThePluginInTheLineOfAFolderStartsNothing();
    void AStopOfThePluginInTheLineOfACoversFolderDecryptsNothing();
};

namespace {

constexpr const char* StateEvent = "notify EventNotifyDownloadRecordStates";

// A running device task that is tried once more when it is refused.
void SendRefusable(EngineRig& rig)
{
    auto record = rig.Device("1");
    record.bNeedPassword = record.bCanGetPassword = record.bGotNewPassword = true;
    rig.SendOne(record);
}

std::function<void()> Pause(EngineRig& rig)
{
    return [&rig] { rig.Engine().PauseRecordDownloads(Rows(rig, {"1"})); };
}

std::function<void()> Delete(EngineRig& rig, int iType)
{
    return [&rig, iType] { rig.Engine().DeleteRecordDownload(iType, QStringLiteral("1"), rig.World().Path("1.mp4")); };
}

constexpr const char* FolderLine = "2 RecordDownloadModule::EnsureDownloadPathExists Created";

} // namespace

// The refusal leads to a second transfer at once; the failure behind it was the first one's.
void MomentsTest::StatesInsideAStartAreOfThatTransferOnly()
{
    EngineRig rig;
    Once(rig.Calls(), "StartDeviceRecordDownload 1", [&rig] {
        rig.RaiseState(Source::Device, "1", 3);
        rig.RaiseState(Source::Device, "1", 0);
    });
    SendRefusable(rig);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}),
             Texts({"StartDeviceRecordDownload 1", "StopDeviceRecordDownload 1", "StartDeviceRecordDownload 1"}));
    QCOMPARE(rig.Calls().Lines("SignalDownloadRecordStates"), Texts({"SignalDownloadRecordStates 1 3 true"}));
}

// A cloud task is held for its picture first, so its end is dropped before it starts again.
void MomentsTest::AnEndFromBeforeAPauseIsNotTheResumedTasks_data()
{
    QTest::addColumn<SourceCase>("of");
    for (const SourceCase& of : SourceCases) {
        if (of.source != Source::Cloud)
            QTest::newRow(of.pszRow) << of;
    }
}

void MomentsTest::AnEndFromBeforeAPauseIsNotTheResumedTasks()
{
    QFETCH(SourceCase, of);
    EngineRig rig;
    SendTasks(rig, of.source, {"1"});
    rig.World().Downloads().RaiseState(of.source, "1", 2); // on its way
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    rig.Calls().Clear();
    Once(rig.Calls(), "Start", [] { EngineRig::Settle(); });
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    QCOMPARE(Told(rig), QStringList({QStringLiteral("SignalAddDownloadInfo 1"), of.Start("1")}));
    rig.RaiseState(of.source, "1", 2);
    QCOMPARE(rig.Calls().Count("Insert"), 1);
}

void MomentsTest::ATaskPausedWhenItsRetryIsToldStaysPaused()
{
    EngineRig rig;
    SendRefusable(rig);
    rig.Calls().Clear();
    Once(rig.Calls(), StateEvent, Pause(rig));
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1", StateEvent}));
}

void MomentsTest::ATaskPausedWhenItIsGivenUpIsStoppedOnce()
{
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1"});
    rig.Calls().Clear();
    rig.World().Log().WhenLogged("2 RecordDownloadModule::OnDownloadDeviceRecordState Download failed", Pause(rig));
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1"}));
}

void MomentsTest::ATaskPausedWhenItsStateIsLoggedStaysPaused()
{
    EngineRig rig;
    SendTasks(rig, Source::IOTLan, {"1"});
    rig.Calls().Clear();
    rig.World().Log().WhenLogged("2 RecordDownloadModule::OnDownloadIOTLanRecordState", Pause(rig));
    rig.RaiseState(Source::IOTLan, "1", 0);
    QCOMPARE(Told(rig), Texts({"StopIOTLanRecordDownload 1"}));
}

void MomentsTest::ATaskPausedInsideTheStopOfItsFailureStaysPaused_data()
{
    AddSourceRows();
}

void MomentsTest::ATaskPausedInsideTheStopOfItsFailureStaysPaused()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.Calls().Clear();
    Once(rig.Calls(), "Stop", Pause(rig));
    rig.RaiseState(of.source, "1", 0);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), QStringList(of.Stop("1")));
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 0);
}

void MomentsTest::ATaskPausedWhenItsEndIsToldIsWhole_data()
{
    AddSourceRows();
}

void MomentsTest::ATaskPausedWhenItsEndIsToldIsWhole()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    Once(rig.Calls(), StateEvent, Pause(rig));
    rig.RaiseState(of.source, "1", 2);
    QCOMPARE(rig.Calls().Short({"Insert", "Report"}), Texts({"Insert ~/1.mp4", "ReportRecordDownloaded 1"}));
    QCOMPARE(rig.Calls().Lines("SignalDownloadRecordStates"), Texts({"SignalDownloadRecordStates 1 2 false"}));
}

void MomentsTest::AFileDeletedInsideItsStartGoesAfterTheStop_data()
{
    AddSourceRows();
}

void MomentsTest::AFileDeletedInsideItsStartGoesAfterTheStop()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    rig.World().WriteFile("1.jpg");
    QStringList atStop;
    Once(rig.Calls(), "Start", Delete(rig, of.iType));
    Once(rig.Calls(), "Stop", [&] { atStop = FilesLeft(rig, {"1.jpg"}); });
    SendTasks(rig, of.source, {"1"});
    QCOMPARE(atStop, Texts({"1.jpg"}));
    QCOMPARE(FilesLeft(rig, {"1.jpg"}), Texts({}));
}

void MomentsTest::ATaskDeletedInsideTheStopOfItsPauseLeavesNoFile_data()
{
    AddSourceRows();
}

void MomentsTest::ATaskDeletedInsideTheStopOfItsPauseLeavesNoFile()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    rig.World().WriteFile("1.mp4");
    Once(rig.Calls(), "Stop", Delete(rig, of.iType));
    Pause(rig)();
    QCOMPARE(rig.Calls().Short("Stop"), QStringList(of.Stop("1")));
    QCOMPARE(FilesLeft(rig, {"1.mp4"}), Texts({}));
}

void MomentsTest::ATwinThatFailsInsideTheOthersStartLeavesNoFile()
{
    EngineRig rig(NoPictures);
    int iStarts = 0;
    rig.Calls().WhenAdded("StartCloudRecordDownload 1", [&rig, &iStarts] {
        if (++iStarts != 2)
            return;
        rig.World().WriteFile("1(1).mp4");
        rig.RaiseState(Source::Cloud, "1", 0);
    });
    SendTasks(rig, Source::Cloud, {"1", "1"});
    QCOMPARE(rig.Calls().Count("StopCloudRecordDownload 1"), 2);
    QCOMPARE(FilesLeft(rig, {"1(1).mp4"}), Texts({}));
}

void MomentsTest::AStopOfThePluginInTheLineOfAFolderStartsNothing_data()
{
    AddSourceRows();
}

void MomentsTest::AStopOfThePluginInTheLineOfAFolderStartsNothing()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    rig.World().Log().WhenLogged(FolderLine, [&rig] { rig.Engine().Shutdown(); });
    rig.SendTyped(of.iType, "1", [&rig](auto& record) { record.strDownloadPath = rig.World().Path("new/1.mp4"); });
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({}));
}

void MomentsTest::AStopOfThePluginInTheLineOfACoversFolderDecryptsNothing()
{
    EngineRig rig;
    rig.SendTyped(0, "1", [&rig](auto& record) { record.strDownloadPath = rig.World().Path("new/1.mp4"); });
    rig.World().Log().WhenLogged(FolderLine, [&rig] { rig.Engine().Shutdown(); });
    rig.World().Pictures().AnswerWithFile("", "encrypted");
    rig.Settle();
    QVERIFY(rig.World().HasFile("new"));
    QCOMPARE(rig.Calls().Count("DecryptPicture"), 0);
    QCOMPARE(rig.Calls().Count("Signal"), 0);
}

KX_TEST(MomentsTest, QCoreApplication)
#include "MomentsTest.moc"
