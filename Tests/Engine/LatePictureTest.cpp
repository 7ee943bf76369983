// A cover picture that is settled when its task is no longer what it was: deleted, finished, or resumed and held again.

#include "Engine/CoverPictures.h"
#include "TestMain.h"

using namespace CoverPictures;
using namespace EngineCases;

class LatePictureTest : public QObject
{
    Q_OBJECT

private slots:
    void ALateFailedDownloadLeavesAResumedTaskToItsPassword();
    void ALateUnreadablePictureLeavesAResumedTaskToItsPassword();
    void ALateWrongKeyDropsAResumedTask();
    void APictureOfADeletedTaskIsIgnored();
    void AFolderIsMadeForALivingTaskOnly_data();
    void AFolderIsMadeForALivingTaskOnly();
    void OneOfTwoTasksDeletedGetsNoFolder();
    void ACoverIsLeftBesideItsRecordingOnly_data();
    void ACoverIsLeftBesideItsRecordingOnly();
};

namespace {

// A task that was paused while its picture was under way and resumed, so that it waits for its password again.
void SendListedAndResume(EngineRig& rig)
{
    SendListed(rig);
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    rig.Calls().Clear();
}

// What becomes of a task while its picture is decrypted.
enum class Meanwhile { Nothing, Deleted, Finished, Failed, Paused };

} // namespace

Q_DECLARE_METATYPE(Meanwhile)

void LatePictureTest::ALateFailedDownloadLeavesAResumedTaskToItsPassword()
{
    EngineRig rig;
    SendListedAndResume(rig);
    rig.World().Pictures().AnswerFailed("cover");
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    rig.World().Cloud().AnswerPassword(1, 1, "canary-again");
    rig.Settle();
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "get cover", "StartCloudRecordDownload 1"}));
    QVERIFY(rig.Calls().Lines("Start").value(0).contains(QLatin1String(" password=canary-again ")));
}

void LatePictureTest::ALateUnreadablePictureLeavesAResumedTaskToItsPassword()
{
    EngineRig rig;
    SendListedAndResume(rig);
    rig.World().Pictures().Answer("cover", 0, rig.World().Path("missing.enc"));
    QTRY_COMPARE(rig.World().Log().Lines("6 RecordDownloadModule::OnPictureUnreadable").size(), 1);
    QCOMPARE(Told(rig), Texts({}));
}

void LatePictureTest::ALateWrongKeyDropsAResumedTask()
{
    EngineRig rig;
    SendListedAndResume(rig);
    Settle(rig, 2);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk", "notify EventNotifyDownloadRecordStates",
                               "SignalDownloadRecordStates 1 3 false"}));
    rig.Calls().Clear();
    rig.World().Cloud().AnswerPassword(1, 1, "canary-again"); // it is held no longer
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void LatePictureTest::APictureOfADeletedTaskIsIgnored()
{
    EngineRig rig;
    SendHeld(rig);
    rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("1.mp4"));
    Settle(rig, 0, Small());
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk"}));
}

void LatePictureTest::AFolderIsMadeForALivingTaskOnly_data()
{
    QTest::addColumn<bool>("listed");
    QTest::addColumn<bool>("deleted");
    QTest::newRow("held, deleted") << false << true;
    QTest::newRow("held, not deleted") << false << false;
    QTest::newRow("waiting for a free place, deleted") << true << true;
    QTest::newRow("waiting for a free place, not deleted") << true << false;
}

void LatePictureTest::AFolderIsMadeForALivingTaskOnly()
{
    QFETCH(bool, listed);
    QFETCH(bool, deleted);
    EngineRig rig;
    SendTasks(rig, Source::Cloud, {"7", "8", "9"}); // all places are taken
    rig.World().Pictures().AnswerFailed("");
    auto record = RecordWithCover(rig, "1");
    record.strDownloadPath = rig.World().Path("new/deep/1.mp4");
    record.strText1 = listed ? QStringLiteral("account") : QString();
    record.strCloudText2 = QStringLiteral("canary-record-key");
    rig.SendOne(record);
    if (listed)
        rig.World().Cloud().AnswerPassword(0, 1, "canary-fetched");
    rig.Settle();
    QCOMPARE(rig.Calls().Count("get cover"), 1);
    if (deleted)
        rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("new/deep/1.mp4"));
    rig.World().Log().Clear();
    Settle(rig, 0, Small());
    QCOMPARE(FilesLeft(rig, {"new", "new/deep/1.jpg"}), deleted ? Texts({}) : Texts({"new", "new/deep/1.jpg"}));
    QCOMPARE(rig.World().Log().Lines().size(), deleted ? 0 : 1); // the folder's own line
}

void LatePictureTest::OneOfTwoTasksDeletedGetsNoFolder()
{
    EngineRig rig;
    for (const char* pszId : {"1", "2"}) {
        auto record = RecordWithCover(rig, pszId);
        record.strDownloadPath = rig.World().Path(pszId) + QStringLiteral("/a.mp4");
        rig.SendOne(record);
    }
    rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("1/a.mp4"));
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().QueueDecryption(0, Small());
    Serve(rig, "cover", 2);
    QCOMPARE(FilesLeft(rig, {"1", "2", "2/a.jpg"}), Texts({"2", "2/a.jpg"}));
}

void LatePictureTest::ACoverIsLeftBesideItsRecordingOnly_data()
{
    QTest::addColumn<bool>("listed");
    QTest::addColumn<Meanwhile>("meanwhile");
    QTest::addColumn<bool>("left");
    QTest::newRow("held, deleted") << false << Meanwhile::Deleted << false;
    QTest::newRow("running, deleted") << true << Meanwhile::Deleted << false;
    QTest::newRow("held, not deleted") << false << Meanwhile::Nothing << true;
    QTest::newRow("running, not deleted") << true << Meanwhile::Nothing << true;
    QTest::newRow("running, finished") << true << Meanwhile::Finished << true;
    QTest::newRow("running, failed") << true << Meanwhile::Failed << false;
    QTest::newRow("running, paused") << true << Meanwhile::Paused << true;
}

void LatePictureTest::ACoverIsLeftBesideItsRecordingOnly()
{
    QFETCH(bool, listed);
    QFETCH(Meanwhile, meanwhile);
    QFETCH(bool, left);
    EngineRig rig;
    listed ? SendListed(rig) : SendHeld(rig);
    bool bSettled = false; // set after the engine's own slot
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().CloseDecryptGate();
    rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), 1);
    if (meanwhile == Meanwhile::Deleted)
        rig.Engine().DeleteRecordDownload(0, QStringLiteral("1"), rig.World().Path("1.mp4"));
    const bool bLeavesFile = meanwhile == Meanwhile::Finished || meanwhile == Meanwhile::Paused;
    if (bLeavesFile)
        rig.World().WriteFile("1.mp4");
    if (meanwhile == Meanwhile::Finished || meanwhile == Meanwhile::Failed)
        rig.RaiseState(Source::Cloud, "1", meanwhile == Meanwhile::Finished ? 2 : 0);
    if (meanwhile == Meanwhile::Paused)
        rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
    QObject here;
    connect(
        rig.Engine().findChild<PictrueDecrypt*>(), &PictrueDecrypt::SignalDecrptPictrueFinished, &here,
        [&] { bSettled = true; }, Qt::QueuedConnection);
    rig.World().Cloud().OpenDecryptGate();
    QTRY_VERIFY(bSettled);
    QCOMPARE(rig.World().HasFile("1.jpg"), left);
    QCOMPARE(rig.World().HasFile("1.mp4"), bLeavesFile);
}

KX_TEST(LatePictureTest, QCoreApplication)
#include "LatePictureTest.moc"
