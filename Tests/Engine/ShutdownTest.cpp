// The engine's end: in order, for good, at any moment; and its destruction without it.

#include "Engine/CoverPictures.h"
#include "TestMain.h"

#include <QtCore/QEventLoop>

#include <atomic>
#include <thread>

using namespace EngineCases;

class ShutdownTest : public QObject
{
    Q_OBJECT

private slots:
    void LeavesTheHostInOrder();
    void LeavesAHostThatLacksSomething();
    void EndsTheDecrypterBeforeItLeavesTheHost();
    void RemovesFilesWhenTheHostWritesNoMore();
    void RemovesTheSameFilesAsAFullDisk();
    void StartsNothingWhateverArrivesAfterwards();
    void StartsNothingWhileItLeavesTheHost();
    void AListThatArrivesMeanwhileKeepsWaiting_data();
    void AListThatArrivesMeanwhileKeepsWaiting();
    void ATaskThatComesAfterwardsIsHeldInSilence_data();
    void ATaskThatComesAfterwardsIsHeldInSilence();
    void AnArmedGuardMeasuresNoMore();
    void StatesOnTheirWayAreDropped();
    void TasksQueuedAfterwardsAreStillDeletable();
    void MayBeCalledTwice();
    void WaitsForTheCallbacksOfOtherThreads();
    void APictureThatIsBeingDecryptedEndsFirst();
    void ASettledPictureOnItsWayIsDropped();
    void ACoverSavedJustBeforeGoesWithItsHeldTask();
    void AFetchedPictureGivesNoSignal_data();
    void AFetchedPictureGivesNoSignal();
    void ThePanelHearsNothingOfIt();
    void DestroyingTheEngineEndsItsThread_data();
    void DestroyingTheEngineEndsItsThread();
    void DestroyingTheEngineDoesNotCallTheHost();
};

namespace {

void FillAllQueues(EngineRig& rig)
{
    SendTasks(rig, Source::Cloud, {"11", "12", "13", "14"});
    SendTasks(rig, Source::Device, {"21", "22", "23"});
    SendTasks(rig, Source::IOTLan, {"31", "32"});
    SendTasks(rig, Source::LanModule, {"41", "42"});
    for (const char* pszName : {"11.mp4", "14.mp4", "14.jpg", "21.mp4", "23.mp4", "31.mp4", "32.mp4", "41.mp4",
                                "41.jpg", "42.mp4", "unrelated.mp4"})
        rig.World().WriteFile(pszName);
    rig.Calls().Clear();
}

// The picture of the empty URL is decrypted and its signal on its way: this thread's event loop made no turn since.
void EmitSettledPicture(EngineRig& rig)
{
    rig.World().Cloud().CloseDecryptGate();
    rig.World().Pictures().AnswerWithFile("", "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), 1);
    std::atomic<bool> bEmitted{false};
    QObject::connect(
        rig.Engine().findChild<PictrueDecrypt*>(), &PictrueDecrypt::SignalDecrptPictrueFinished, &rig.Engine(),
        [&bEmitted] { bEmitted = true; }, Qt::DirectConnection);
    rig.World().Cloud().OpenDecryptGate();
    while (!bEmitted)
        std::this_thread::yield();
}

} // namespace

void ShutdownTest::LeavesTheHostInOrder()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Engine().Shutdown();
    // No stop of a single transfer: leaving module 5 ends them all.
    QCOMPARE(rig.Calls().Lines(), Texts({"UnregisterCallbacks known", "UnregisterCloudPasswordCallback known",
                                         "DetachObserver known", "Detach pictures"}));
}

void ShutdownTest::LeavesAHostThatLacksSomething()
{
    EngineRig rig([](FakeWorld& world) {
        world.TakeModuleAway(5);
        world.TakeModuleAway(2);
        world.TakePicturesAway();
    });
    rig.Calls().Clear();
    rig.Engine().Shutdown();
    QCOMPARE(rig.Calls().Lines(), Texts({"UnregisterCloudPasswordCallback known"}));
}

void ShutdownTest::EndsTheDecrypterBeforeItLeavesTheHost()
{
    EngineRig rig;
    QVERIFY(rig.Engine().findChild<PictrueDecrypt*>()->isRunning());
    bool bGone = false; // a thread that is destroyed while it runs ends the process
    rig.Calls().WhenAdded("UnregisterCallbacks", [&] { bGone = !rig.Engine().findChild<PictrueDecrypt*>(); });
    rig.Engine().Shutdown();
    QVERIFY(bGone);
}

void ShutdownTest::RemovesFilesWhenTheHostWritesNoMore()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.World().WriteFile("1.mp4");
    bool bThereAtTheLastCall = false;
    rig.Calls().WhenAdded("Detach pictures", [&] { bThereAtTheLastCall = rig.World().HasFile("1.mp4"); });
    rig.Engine().Shutdown();
    QVERIFY(bThereAtTheLastCall);
    QVERIFY(!rig.World().HasFile("1.mp4"));
}

void ShutdownTest::RemovesTheSameFilesAsAFullDisk()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Engine().Shutdown();
    QCOMPARE(rig.World().Log().Lines(), Texts({"2 RecordDownloadModule::RemoveFileJpg remove file[~/41.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/41.jpg]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/31.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/23.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/21.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/14.mp4]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/14.jpg]",
                                               "2 RecordDownloadModule::RemoveFileJpg remove file[~/11.mp4]"}));
    const QStringList left = QDir(rig.World().Folder()).entryList(QDir::Files, QDir::Name);
    QCOMPARE(left, Texts({"32.mp4", "42.mp4", "unrelated.mp4"}));
}

void ShutdownTest::StartsNothingWhateverArrivesAfterwards()
{
    EngineRig rig([](FakeWorld& world) { // a host that forgets nobody
        world.Downloads().KeepCallingAfterUnregister();
        world.Cloud().KeepCallingAfterUnregister();
        world.Devices().KeepCallingAfterDetach();
        world.Pictures().KeepTellingAfterDetach();
        NoPictures(world);
    });
    auto refused = rig.Device("20");
    refused.bNeedPassword = true;
    refused.bCanGetPassword = true;
    rig.SendOne(refused);
    rig.RaiseState(Source::Device, "20", 3);
    FillAllQueues(rig);
    rig.Engine().Shutdown();
    rig.Calls().Clear();

    const auto sources = {Source::Cloud, Source::Device, Source::IOTLan, Source::LanModule};
    for (const Source source : sources)
        SendTasks(rig, source, {"1", "2", "3"});
    rig.Engine().StartRecordDownloads(Rows(rig, {"11", "21", "31", "41"}));
    rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.World().Cloud().RaisePassword(1, "canary-secret", {"SN-1", -1, "1", ""});
    rig.World().Pictures().AnswerFailed("");
    rig.Settle();
    for (const Source source : sources) {
        for (const int iCode : {0, 1, 2, 3, 77, 100})
            rig.RaiseState(source, "11", iCode);
        rig.RaiseData(source, "11", 5);
    }
    rig.Engine().PauseRecordDownloads(Rows(rig, {"2"}));
    rig.Engine().DeleteRecordDownload(3, QStringLiteral("1"), QString());
    rig.Send("EventNotifyDownloadRecordPath", {rig.World().Folder()});
    rig.Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
    QCOMPARE(rig.Calls().Lines({"Start", "Stop", "Request", "GetCloud", "get ", "Insert", "Report", "notify"}),
             Texts({}));
}

void ShutdownTest::StartsNothingWhileItLeavesTheHost()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    rig.Calls().WhenAdded("UnregisterCallbacks", [&] { // the host still takes starts then
        rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
        SendTasks(rig, Source::Device, {"2"});
    });
    rig.Calls().Clear();
    rig.Engine().Shutdown();
    QCOMPARE(Told(rig), Texts({"UnregisterCallbacks known", "StopLanModuleRecordDownload 1", "SignalAddDownloadInfo 2",
                               "UnregisterCloudPasswordCallback known", "DetachObserver known", "Detach pictures"}));
}

void ShutdownTest::AListThatArrivesMeanwhileKeepsWaiting_data()
{
    QTest::addColumn<Source>("source");
    QTest::newRow("device") << Source::Device;
    QTest::newRow("IOT LAN") << Source::IOTLan;
    QTest::newRow("LAN module") << Source::LanModule;
}

void ShutdownTest::AListThatArrivesMeanwhileKeepsWaiting()
{
    QFETCH(Source, source);
    EngineRig rig;
    rig.Calls().WhenAdded("UnregisterCallbacks", [&rig, source = source] {
        SendTasks(rig, source, {"1", "2"});
        SendTasks(rig, source, {"1", "2"}); // they wait, so this adds nothing
    });
    rig.Engine().Shutdown();
    rig.Settle();
    QCOMPARE(rig.Calls().Lines({"Signal", "Start"}), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"}));
}

void ShutdownTest::ATaskThatComesAfterwardsIsHeldInSilence_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("for its picture") << QString();
    QTest::newRow("for its password") << QStringLiteral("key");
}

void ShutdownTest::ATaskThatComesAfterwardsIsHeldInSilence()
{
    QFETCH(QString, key);
    EngineRig rig;
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    auto record = rig.Cloud("1");
    record.strText1 = QStringLiteral("account");
    record.strCloudText2 = key;
    rig.SendOne(record);
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void ShutdownTest::AnArmedGuardMeasuresNoMore()
{
    EngineRig rig;
    ScriptedDisk::SetFreeBytes(0);
    rig.Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
    rig.Engine().Shutdown();
    SendTasks(rig, Source::Device, {"1"});
    QCOMPARE(ScriptedDisk::Asked(), QList<QByteArray>());
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void ShutdownTest::StatesOnTheirWayAreDropped()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.World().Downloads().RaiseState(Source::Cloud, "11", 2);
    rig.World().Downloads().RaiseState(Source::Device, "21", 3);
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void ShutdownTest::TasksQueuedAfterwardsAreStillDeletable()
{
    EngineRig rig;
    rig.Engine().Shutdown();
    SendTasks(rig, Source::Device, {"1"});
    rig.World().WriteFile("1.mp4");
    rig.Calls().Clear();
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("1"), rig.World().Path("1.mp4"));
    QCOMPARE(Told(rig), Texts({}));
    QVERIFY(!rig.World().HasFile("1.mp4"));
}

void ShutdownTest::MayBeCalledTwice()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    rig.World().WriteFile("11.mp4"); // somebody else's by now
    rig.Engine().Shutdown();
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    QVERIFY(rig.World().HasFile("11.mp4"));
}

void ShutdownTest::WaitsForTheCallbacksOfOtherThreads()
{
    EngineRig rig;
    SendTasks(rig, Source::LanModule, {"1"});
    std::atomic<int> iCalls{0};
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (rig.World().Downloads().CallData(Source::LanModule, "1", 1) != FakeDownloads::NobodyRegistered)
                ++iCalls;
        });
    }
    QTRY_VERIFY(iCalls > 100);
    rig.Engine().Shutdown(); // ends the loops
    for (std::thread& thread : threads)
        thread.join();
    rig.Settle();
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordData"), iCalls.load());
}

// The host's call ends only when the thread has been told to stop: an event loop of the thread ends by that.
void ShutdownTest::APictureThatIsBeingDecryptedEndsFirst()
{
    EngineRig rig;
    rig.Calls().WhenAdded("DecryptPicture", [] { QEventLoop().exec(); });
    SendTasks(rig, Source::Cloud, {"1", "2"});
    rig.World().Pictures().AnswerWithFile("", "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), 1);
    rig.Engine().Shutdown();
    rig.Settle();
    QCOMPARE(rig.Calls().Count("DecryptPicture"), 1);
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 2"), 0); // its picture was dropped
    QCOMPARE(rig.Calls().Count("Start"), 0);
}

void ShutdownTest::ASettledPictureOnItsWayIsDropped()
{
    EngineRig rig;
    SendTasks(rig, Source::Cloud, {"1"});
    EmitSettledPicture(rig);
    rig.Engine().Shutdown();
    rig.Calls().Clear();
    rig.Settle();
    QCOMPARE(rig.Calls().Count("Start"), 0);
}

// The engine has not heard of it, and the recording that it would lie beside never comes.
void ShutdownTest::ACoverSavedJustBeforeGoesWithItsHeldTask()
{
    EngineRig rig;
    SendTasks(rig, Source::Cloud, {"1"});
    rig.World().Cloud().QueueDecryption(0, CoverPictures::Small());
    EmitSettledPicture(rig);
    QCOMPARE(FilesLeft(rig, {"1.jpg"}), Texts({"1.jpg"}));
    rig.Engine().Shutdown();
    QCOMPARE(FilesLeft(rig, {"1.jpg"}), Texts({}));
}

void ShutdownTest::AFetchedPictureGivesNoSignal_data()
{
    QTest::addColumn<bool>("listed");
    QTest::addColumn<int>("result");
    for (const int iResult : {0, 1, 2}) {
        QTest::addRow("held task, result %d", iResult) << false << iResult;
        QTest::addRow("task with a row, result %d", iResult) << true << iResult;
    }
}

void ShutdownTest::AFetchedPictureGivesNoSignal()
{
    QFETCH(bool, listed);
    QFETCH(int, result);
    EngineRig rig;
    auto record = rig.Cloud("1");
    record.strText1 = QStringLiteral("account");
    record.strCloudText2 = listed ? QStringLiteral("key") : QString();
    rig.SendOne(record);
    if (listed)
        rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("get "), 1);
    rig.World().Cloud().QueueDecryption(result, QByteArrayLiteral("clear"));
    EmitSettledPicture(rig);
    rig.Calls().Clear();
    rig.Engine().Shutdown();
    rig.Settle();
    QCOMPARE(rig.Calls().Lines({"Signal", "notify", "Start"}), Texts({}));
}

void ShutdownTest::ThePanelHearsNothingOfIt()
{
    EngineRig rig(NoPictures);
    FillAllQueues(rig);
    rig.Engine().Shutdown();
    rig.Settle();
    QCOMPARE(rig.Calls().Lines({"Signal", "notify"}), Texts({}));
}

void ShutdownTest::DestroyingTheEngineEndsItsThread_data()
{
    QTest::addColumn<bool>("busy");
    QTest::newRow("while it idles") << false;
    QTest::newRow("while it decrypts") << true;
}

void ShutdownTest::DestroyingTheEngineEndsItsThread()
{
    QFETCH(bool, busy);
    FakeWorld world;
    auto pEngine = std::make_unique<RecordDownloadModule>();
    const auto pTask = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>();
    pTask->iRecordType = 0;
    pTask->strDownloadPath = world.Path("1.mp4");
    if (busy) // until it is told to stop
        world.Calls().WhenAdded("DecryptPicture", [] { QEventLoop().exec(); });
    world.Cloud().CloseDecryptGate();
    pEngine->StartRecordDownloads({pTask});
    world.Pictures().AnswerWithFile("", "encrypted");
    QTRY_COMPARE(world.Calls().Count("DecryptPicture"), 1);
    std::atomic<bool> bEnded{false};
    auto* pDecrypt = pEngine->findChild<PictrueDecrypt*>();
    connect(
        pDecrypt, &QThread::finished, pDecrypt, [&bEnded] { bEnded = true; }, Qt::DirectConnection);
    world.Cloud().OpenDecryptGate();
    pEngine.reset();
    QVERIFY(bEnded);
    EngineRig::Settle();
}

void ShutdownTest::DestroyingTheEngineDoesNotCallTheHost()
{
    FakeWorld world;
    auto pEngine = std::make_unique<RecordDownloadModule>();
    const auto pTask = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>();
    pTask->iRecordType = 1;
    pTask->strDownloadPath = world.WriteFile("1.mp4");
    pEngine->StartRecordDownloads({pTask});
    world.Calls().Clear();
    pEngine.reset();
    QCOMPARE(world.Calls().Lines(), Texts({}));
    QVERIFY(world.HasFile("1.mp4"));
    QCOMPARE(pTask.use_count(), 1L);
}

KX_TEST(ShutdownTest, QCoreApplication)
#include "ShutdownTest.moc"
