// What the outcome of a cover picture does to its task, one picture at a time.

#include "Engine/CoverPictures.h"
#include "TestMain.h"

using namespace CoverPictures;
using namespace EngineCases;

class PictureTest : public QObject
{
    Q_OBJECT

private slots:
    void ATaskIsHeldUntilItsPictureIsSettled();
    void TheDecrypterGetsTheTasksTexts();
    void TheDecrypterGetsTheFetchedPassword();
    void TheDecrypterGetsTheTextsOfTheRequest();
    void AFailedDownloadReleasesAHeldTask_data();
    void AFailedDownloadReleasesAHeldTask();
    void AFailedDownloadChangesNothingForAListedTask();
    void AClearPictureReleasesAHeldTask_data();
    void AClearPictureReleasesAHeldTask();
    void AClearPictureOfAListedTaskGoesToItsRow();
    void ACoverIsSavedInAFolderThatDidNotExist();
    void AWrongKeyDropsAHeldTask();
    void AWrongKeyFailsTheRowOfAResumedTask();
    void ARowPausedWhenItsWrongKeyIsToldStaysPaused();
    void AWrongKeyIsOnlyLoggedForAListedTask();
    void AnotherFailureReleasesAHeldTask_data();
    void AnotherFailureReleasesAHeldTask();
    void AnotherFailureChangesNothingForAListedTask();
    void AResultFromOutsideSettlesThePicture_data();
    void AResultFromOutsideSettlesThePicture();
    void AnUnknownUrlIsIgnored_data();
    void AnUnknownUrlIsIgnored();
    void ASettledPictureIsForgotten_data();
    void ASettledPictureIsForgotten();
    void AnUnreadableFileReleasesTheTaskWithoutAPicture();
    void APictureThatIsNoneStillReleasesTheTask();
    void APathWithoutSuffixIsItsOwnPicturePath();
    void AReleasedTaskWaitsForAFreePlace();
    void AHostWithoutPicturesReleasesItsTasks();
    void AServedPictureWithoutCloudModuleReleasesItsTask();
};

namespace {

// A task that has its row, because its picture failed the first time, and was paused then.
void SendPaused(EngineRig& rig)
{
    SendHeld(rig);
    rig.World().Pictures().AnswerFailed("cover");
    rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
}

} // namespace

void PictureTest::ATaskIsHeldUntilItsPictureIsSettled()
{
    EngineRig rig;
    rig.Calls().Clear();
    SendHeld(rig);
    QCOMPARE(Told(rig), Texts({"get cover"}));
}

void PictureTest::TheDecrypterGetsTheTasksTexts()
{
    EngineRig rig;
    auto record = RecordWithCover(rig, "1");
    record.strPassword = QStringLiteral("canary-secret");
    rig.SendOne(record);
    Settle(rig, 1);
    QCOMPARE(rig.Calls().Lines("Decrypt"),
             Texts({"DecryptPicture ZW5jcnlwdGVk key=canary-picture-key device=SN-1 password=canary-secret"}));
}

void PictureTest::TheDecrypterGetsTheFetchedPassword()
{
    EngineRig rig;
    SendListed(rig);
    Settle(rig, 1);
    QCOMPARE(rig.Calls().Lines("Decrypt"),
             Texts({"DecryptPicture ZW5jcnlwdGVk key=canary-picture-key device=SN-1 password=canary-fetched"}));
}

void PictureTest::TheDecrypterGetsTheTextsOfTheRequest()
{
    EngineRig rig;
    const auto pTask = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>(RecordWithCover(rig, "1"));
    pTask->strPassword = QStringLiteral("canary-secret");
    rig.Engine().StartRecordDownloads({pTask});
    pTask->strCloudText4 = QStringLiteral("canary-later-key");
    pTask->strPassword = QStringLiteral("canary-later-password");
    Settle(rig, 1);
    QCOMPARE(rig.Calls().Lines("Decrypt"),
             Texts({"DecryptPicture ZW5jcnlwdGVk key=canary-picture-key device=SN-1 password=canary-secret"}));
}

void PictureTest::AFailedDownloadReleasesAHeldTask_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("1") << 1;
    QTest::newRow("2 is no wrong key here") << 2;
    QTest::newRow("-1") << -1;
}

void PictureTest::AFailedDownloadReleasesAHeldTask()
{
    QFETCH(int, result);
    EngineRig rig;
    SendHeld(rig);
    rig.Calls().Clear();
    rig.World().Pictures().Answer("cover", result, QString());
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, QString());
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PictureTest::AFailedDownloadChangesNothingForAListedTask()
{
    EngineRig rig;
    SendListed(rig);
    rig.Calls().Clear();
    rig.World().Pictures().AnswerFailed("cover");
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.Task("1")->strPicturePath, QStringLiteral("as-received"));
    rig.RaiseState(Source::Cloud, "1", 1); // it runs on
    QCOMPARE(Told(rig), Texts({"SignalDownloadRecordStates 1 1 false"}));
}

void PictureTest::AClearPictureReleasesAHeldTask_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("key");
    QTest::newRow("neither account nor key") << QString() << QString();
    QTest::newRow("an account and no key") << QStringLiteral("account") << QString();
    QTest::newRow("a key and no account") << QString() << QStringLiteral("canary-record-key");
}

void PictureTest::AClearPictureReleasesAHeldTask()
{
    QFETCH(QString, account);
    QFETCH(QString, key);
    EngineRig rig;
    auto record = RecordWithCover(rig, "1");
    record.strText1 = account;
    record.strCloudText2 = key;
    rig.SendOne(record);
    QString strAnnounced; // what the row can show at once
    rig.Calls().WhenAdded("SignalAddDownloadInfo 1", [&] { strAnnounced = rig.Task("1")->strPicturePath; });
    Settle(rig, 0, Small());
    QCOMPARE(Told(rig),
             Texts({"DecryptPicture ZW5jcnlwdGVk", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
    QCOMPARE(strAnnounced, rig.World().Path("1.jpg"));
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1.jpg"));
    QVERIFY(rig.World().HasFile("1.jpg"));
    QCOMPARE(rig.Calls().OffThread().size(), 1); // the decryption only
}

void PictureTest::AClearPictureOfAListedTaskGoesToItsRow()
{
    EngineRig rig;
    SendListed(rig);
    Settle(rig, 0, Small());
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk", "SignalUpdateCloudPictureInfo 1 ~/1.jpg"}));
    QVERIFY(rig.World().HasFile("1.jpg"));
}

void PictureTest::ACoverIsSavedInAFolderThatDidNotExist()
{
    EngineRig rig;
    auto record = RecordWithCover(rig, "1");
    record.strDownloadPath = rig.World().Path("new/1.mp4");
    rig.SendOne(record);
    QVERIFY(!rig.World().HasFile("new"));
    Settle(rig, 0, Small());
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("new/1.jpg"));
    QVERIFY(rig.World().HasFile("new/1.jpg"));
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 1);
    QStringList log = rig.World().Log().Lines();
    QCOMPARE(log.replaceInStrings(rig.World().Folder(), QStringLiteral("~")),
             Texts({"2 RecordDownloadModule::EnsureDownloadPathExists Created download directory: ~/new"}));
}

void PictureTest::AWrongKeyDropsAHeldTask()
{
    EngineRig rig;
    SendHeld(rig);
    int iLoggedAtEvent = -1;
    rig.Calls().WhenAdded("notify EventNotifyDownloadRecordStates",
                          [&] { iLoggedAtEvent = rig.World().Log().Lines().size(); });
    Settle(rig, 2);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk", "notify EventNotifyDownloadRecordStates"}));
    QCOMPARE(iLoggedAtEvent, 1);
    QCOMPARE(StateEvents(rig), Texts({"{\n    \"iCode\": 3,\n    \"iRecordType\": 0,\n"
                                      "    \"strDownloadPath\": \"~/1.mp4\",\n    \"strRecordId\": \"1\"\n}\n"}));
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"2 RecordDownloadModule::OnPictureDecrptFinished Decrpt picture DecKeyError."}));
    rig.Calls().Clear();
    rig.World().Cloud().RaisePassword(1, "canary-secret", {"SN-1", -1, "1", ""}); // it is held no longer
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
}

void PictureTest::AWrongKeyFailsTheRowOfAResumedTask()
{
    EngineRig rig;
    SendPaused(rig);
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    Settle(rig, 2);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk", "notify EventNotifyDownloadRecordStates",
                               "SignalDownloadRecordStates 1 3 false"}));
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"})); // tried again
    QCOMPARE(Told(rig), Texts({"get cover"}));
}

void PictureTest::ARowPausedWhenItsWrongKeyIsToldStaysPaused()
{
    EngineRig rig;
    SendPaused(rig);
    rig.Engine().StartRecordDownloads(Rows(rig, {"1"}));
    rig.Calls().WhenAdded("notify EventNotifyDownloadRecordStates",
                          [&rig] { rig.Engine().PauseRecordDownloads(Rows(rig, {"1"})); });
    Settle(rig, 2);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk", "notify EventNotifyDownloadRecordStates"}));
}

void PictureTest::AWrongKeyIsOnlyLoggedForAListedTask()
{
    EngineRig rig;
    SendListed(rig);
    Settle(rig, 2);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk"}));
    QCOMPARE(rig.World().Log().Lines(),
             Texts({"2 RecordDownloadModule::OnPictureDecrptFinished Decrpt picture DecKeyError."}));
    rig.RaiseState(Source::Cloud, "1", 1); // it runs on
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalDownloadRecordStates 1 1 false"}));
}

void PictureTest::AnotherFailureReleasesAHeldTask_data()
{
    QTest::addColumn<int>("result");
    for (const int iResult : {1, 3, 100, -1, -2})
        QTest::newRow(QByteArray::number(iResult).constData()) << iResult;
}

void PictureTest::AnotherFailureReleasesAHeldTask()
{
    QFETCH(int, result);
    EngineRig rig;
    SendHeld(rig);
    Settle(rig, result);
    QCOMPARE(Told(rig),
             Texts({"DecryptPicture ZW5jcnlwdGVk", "SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, QString());
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PictureTest::AnotherFailureChangesNothingForAListedTask()
{
    EngineRig rig;
    SendListed(rig);
    Settle(rig, 1);
    QCOMPARE(Told(rig), Texts({"DecryptPicture ZW5jcnlwdGVk"}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
    QCOMPARE(rig.Task("1")->strPicturePath, QStringLiteral("as-received"));
}

void PictureTest::AResultFromOutsideSettlesThePicture_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("told");
    const QStringList released = Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"});
    QTest::newRow("a clear picture") << 0 << released;
    QTest::newRow("a failure") << 1 << released;
    QTest::newRow("a wrong key") << 2 << Texts({"notify EventNotifyDownloadRecordStates"});
}

// The slot is public: whoever decrypts may call it.
void PictureTest::AResultFromOutsideSettlesThePicture()
{
    QFETCH(int, result);
    QFETCH(QStringList, told);
    EngineRig rig;
    SendHeld(rig);
    rig.Calls().Clear();
    const QString strPath = result == 0 ? QStringLiteral("/clear.jpg") : QString();
    QVERIFY(QMetaObject::invokeMethod(&rig.Engine(), "OnPictureDecrptFinished", Q_ARG(int, result),
                                      Q_ARG(QString, QStringLiteral("cover")), Q_ARG(QString, strPath)));
    QCOMPARE(Told(rig), told);
    if (rig.Task("1"))
        QCOMPARE(rig.Task("1")->strPicturePath, strPath);
    rig.Calls().Clear();
    rig.World().Pictures().AnswerFailed("cover"); // it is settled
    QCOMPARE(Told(rig), Texts({}));
}

void PictureTest::AnUnknownUrlIsIgnored_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("another one") << QByteArray("other");
    QTest::newRow("its beginning") << QByteArray("cove");
    QTest::newRow("other case") << QByteArray("COVER");
    QTest::newRow("none") << QByteArray();
}

void PictureTest::AnUnknownUrlIsIgnored()
{
    QFETCH(QByteArray, url);
    EngineRig rig;
    SendHeld(rig);
    rig.Calls().Clear();
    rig.World().Pictures().AnswerFailed(url.constData());
    rig.World().Pictures().AnswerWithFile(url.constData(), "encrypted");
    for (const int iResult : {0, 1, 2})
        rig.Engine().OnPictureDecrptFinished(iResult, QString::fromUtf8(url), rig.World().Path("1.jpg"));
    rig.Settle();
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PictureTest::ASettledPictureIsForgotten_data()
{
    QTest::addColumn<bool>("downloaded");
    QTest::addColumn<int>("result");
    QTest::newRow("not downloaded") << false << 0;
    QTest::newRow("decrypted") << true << 0;
    QTest::newRow("wrong key") << true << 2;
    QTest::newRow("another failure") << true << 1;
}

void PictureTest::ASettledPictureIsForgotten()
{
    QFETCH(bool, downloaded);
    QFETCH(int, result);
    EngineRig rig;
    SendListed(rig);
    if (downloaded)
        Settle(rig, result, Small());
    else
        rig.World().Pictures().AnswerFailed("cover");
    rig.Settle();
    rig.Calls().Clear();
    rig.World().Log().Clear();
    rig.World().Pictures().AnswerWithFile("cover", "encrypted"); // told twice: nothing is decrypted
    for (const int iResult : {0, 1, 2})
        rig.Engine().OnPictureDecrptFinished(iResult, QStringLiteral("cover"), rig.World().Path("1.jpg"));
    QCOMPARE(Told(rig), Texts({}));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

// Nothing is decrypted, and it is logged.
void PictureTest::AnUnreadableFileReleasesTheTaskWithoutAPicture()
{
    EngineRig rig;
    SendHeld(rig);
    rig.Calls().Clear();
    rig.World().Pictures().Answer("cover", 0, rig.World().Path("missing.enc"));
    QTRY_COMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, QString());
    QCOMPARE(rig.World().Log().Lines(), Texts({"6 RecordDownloadModule::OnPictureUnreadable The cover picture of "
                                               "~/1.mp4 could not be read."}));
}

void PictureTest::APictureThatIsNoneStillReleasesTheTask()
{
    EngineRig rig;
    SendHeld(rig);
    Settle(rig, 0, "no picture");
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 1"}));
    QVERIFY(!rig.World().HasFile("1.jpg"));
}

void PictureTest::APathWithoutSuffixIsItsOwnPicturePath()
{
    EngineRig rig;
    auto record = RecordWithCover(rig, "1");
    record.strDownloadPath = rig.World().Path("cover.jpg");
    rig.SendOne(record);
    Settle(rig, 0, Small());
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("cover.jpg"));
    QVERIFY(rig.World().HasFile("cover.jpg"));
}

void PictureTest::AReleasedTaskWaitsForAFreePlace()
{
    EngineRig rig;
    rig.World().Pictures().FailAll();
    SendTasks(rig, Source::Cloud, {"7", "8", "9"});
    EngineRig::Settle();
    rig.Calls().Clear();
    SendTasks(rig, Source::Cloud, {"6"});
    QCOMPARE(Told(rig), Texts({"get ", "SignalAddDownloadInfo 6"}));
    rig.RaiseState(Source::Cloud, "8", 2);
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 6"}));
}

void PictureTest::AHostWithoutPicturesReleasesItsTasks()
{
    EngineRig rig([](FakeWorld& world) { world.TakePicturesAway(); });
    rig.Calls().Clear();
    SendHeld(rig);
    QCOMPARE(rig.Calls().Short("get"), Texts({}));
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, QString());
}

void PictureTest::AServedPictureWithoutCloudModuleReleasesItsTask()
{
    EngineRig rig([](FakeWorld& world) { world.TakeModuleAway(3); });
    SendHeld(rig);
    rig.Calls().Clear();
    rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    rig.Settle();
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, QString());
}

KX_TEST(PictureTest, QCoreApplication)
#include "PictureTest.moc"
