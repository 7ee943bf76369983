// Several cloud tasks with one cover picture, the empty URL among them: each is settled, none is left behind.

#include "Engine/CoverPictures.h"
#include "TestMain.h"

using namespace CoverPictures;
using namespace EngineCases;

class SharedPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void AFailedDownloadReleasesAllTasksOfItsUrl_data();
    void AFailedDownloadReleasesAllTasksOfItsUrl();
    void AServedPictureIsDecryptedForEachTask_data();
    void AServedPictureIsDecryptedForEachTask();
    void EachTaskIsSettledByItsOwnResult_data();
    void EachTaskIsSettledByItsOwnResult();
    void ListedAndHeldTasksOfOneUrlAreSettledEachInItsWay_data();
    void ListedAndHeldTasksOfOneUrlAreSettledEachInItsWay();
    void TasksOfOneRecordIdAreAllReleased();
    void OfTasksOfOneRecordIdAPictureSettlesItsOwn();
    void ATaskThatComesWhileTheUrlIsDecryptedIsDecryptedNext();
    void ATaskThatComesWhileTheUrlIsDecryptedIsSettledToo_data();
    void ATaskThatComesWhileTheUrlIsDecryptedIsSettledToo();
    void AResumedTaskIsReleasedOnce();
    void ATaskBehindAnUnreadableFileIsSettledByItsOwnResult_data();
    void ATaskBehindAnUnreadableFileIsSettledByItsOwnResult();
};

namespace {

KXDownLoadList::DownloadCloudRecordInfo Covered(const EngineRig& rig, const char* pszId,
                                                const QByteArray& url = "cover")
{
    auto record = rig.Cloud(pszId);
    record.strCloudText1 = QString::fromUtf8(url);
    return record;
}

// Its password is asked for first; with the answer it gets its row, starts, and asks for its picture.
KXDownLoadList::DownloadCloudRecordInfo Encrypted(const EngineRig& rig, const char* pszId)
{
    auto record = Covered(rig, pszId);
    record.strText1 = QStringLiteral("account");
    record.strCloudText2 = QStringLiteral("canary-record-key");
    return record;
}

void AddUrls()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("a URL") << QByteArray("cover");
    QTest::newRow("the empty URL") << QByteArray("");
}

} // namespace

void SharedPictureTest::AFailedDownloadReleasesAllTasksOfItsUrl_data()
{
    AddUrls();
}

void SharedPictureTest::AFailedDownloadReleasesAllTasksOfItsUrl()
{
    QFETCH(QByteArray, url);
    EngineRig rig;
    rig.SendList(0, std::vector{Covered(rig, "1", url), Covered(rig, "2", "other"), Covered(rig, "3", url),
                                Covered(rig, "4", url), Covered(rig, "5", url)});
    QCOMPARE(rig.Calls().Count("get "), 5);
    rig.Calls().Clear();
    for (int i = 0; i < 4; ++i) // one answer for each question
        rig.World().Pictures().AnswerFailed(url.constData());
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1", "SignalAddDownloadInfo 3",
                               "StartCloudRecordDownload 3", "SignalAddDownloadInfo 4", "StartCloudRecordDownload 4",
                               "SignalAddDownloadInfo 5"}));
}

void SharedPictureTest::AServedPictureIsDecryptedForEachTask_data()
{
    AddUrls();
}

void SharedPictureTest::AServedPictureIsDecryptedForEachTask()
{
    QFETCH(QByteArray, url);
    EngineRig rig;
    rig.SendList(0, std::vector{Covered(rig, "1", url), Covered(rig, "2", url)});
    rig.Calls().Clear();
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().QueueDecryption(0, Small());
    Serve(rig, url, 2);
    rig.World().Pictures().AnswerWithFile(url.constData(), "encrypted"); // the answer to the second question
    rig.Settle();
    QCOMPARE(rig.Calls().Count("DecryptPicture"), 2);
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"}));
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1.jpg"));
    QCOMPARE(rig.Task("2")->strPicturePath, rig.World().Path("2.jpg"));
    QCOMPARE(FilesLeft(rig, {"1.jpg", "2.jpg"}), Texts({"1.jpg", "2.jpg"}));
}

void SharedPictureTest::EachTaskIsSettledByItsOwnResult_data()
{
    QTest::addColumn<QVector<int>>("results");
    QTest::addColumn<QStringList>("told");
    const QStringList first = Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"});
    const QStringList second = Texts({"SignalAddDownloadInfo 2", "StartCloudRecordDownload 2"});
    const QStringList dropped = Texts({"notify EventNotifyDownloadRecordStates"});
    QTest::newRow("good, wrong key") << QVector<int>{0, 2} << first + dropped;
    QTest::newRow("wrong key, good") << QVector<int>{2, 0} << dropped + second;
    QTest::newRow("failed, good") << QVector<int>{1, 0} << first + second;
    QTest::newRow("wrong key twice") << QVector<int>{2, 2} << dropped + dropped;
    QTest::newRow("failed twice") << QVector<int>{1, 1} << first + second;
}

void SharedPictureTest::EachTaskIsSettledByItsOwnResult()
{
    QFETCH(QVector<int>, results);
    QFETCH(QStringList, told);
    EngineRig rig;
    rig.SendList(0, std::vector{Covered(rig, "1"), Covered(rig, "2")});
    rig.Calls().Clear();
    for (const int iResult : results)
        rig.World().Cloud().QueueDecryption(iResult, iResult == 0 ? Small() : QByteArray());
    Serve(rig, "cover", 2);
    QCOMPARE(rig.Calls().Short({"Signal", "Start", "notify"}), told);
    if (results[0] == 1)
        QCOMPARE(rig.Task("1")->strPicturePath, QString());
    if (results[1] == 0)
        QCOMPARE(rig.Task("2")->strPicturePath, rig.World().Path("2.jpg"));
}

void SharedPictureTest::ListedAndHeldTasksOfOneUrlAreSettledEachInItsWay_data()
{
    QTest::addColumn<bool>("listedFirst");
    QTest::addColumn<int>("result"); // of the download -1, otherwise of both decryptions
    QTest::addColumn<QStringList>("told");
    const QStringList released = Texts({"SignalAddDownloadInfo 2"});
    const QStringList updated = Texts({"SignalUpdateCloudPictureInfo 1"});
    const QStringList dropped = Texts({"notify EventNotifyDownloadRecordStates"});
    QTest::newRow("listed, then held: not downloaded") << true << -1 << released;
    QTest::newRow("listed, then held: decrypted") << true << 0 << updated + released;
    QTest::newRow("listed, then held: wrong key") << true << 2 << dropped;
    QTest::newRow("listed, then held: failed") << true << 1 << released;
    QTest::newRow("held, then listed: not downloaded") << false << -1 << released;
    QTest::newRow("held, then listed: decrypted") << false << 0 << released + updated;
    QTest::newRow("held, then listed: wrong key") << false << 2 << dropped;
    QTest::newRow("held, then listed: failed") << false << 1 << released;
}

void SharedPictureTest::ListedAndHeldTasksOfOneUrlAreSettledEachInItsWay()
{
    QFETCH(bool, listedFirst);
    QFETCH(int, result);
    QFETCH(QStringList, told);
    EngineRig rig;
    if (!listedFirst)
        rig.SendOne(Covered(rig, "2"));
    rig.SendOne(Encrypted(rig, "1"));
    rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
    rig.Settle();
    if (listedFirst)
        rig.SendOne(Covered(rig, "2"));
    rig.Calls().Clear();
    for (int i = 0; i < 2; ++i)
        rig.World().Cloud().QueueDecryption(result, result == 0 ? Small() : QByteArray());
    if (result < 0)
        rig.World().Pictures().AnswerFailed("cover");
    else
        Serve(rig, "cover", 2);
    QCOMPARE(rig.Calls().Short({"Signal", "notify"}), told);
}

void SharedPictureTest::OfTasksOfOneRecordIdAPictureSettlesItsOwn()
{
    EngineRig rig;
    std::vector records{rig.Cloud("1"), rig.Cloud("1")};
    records[0].strCloudText1 = QStringLiteral("first");
    records[1].strCloudText1 = QStringLiteral("second");
    rig.SendList(0, records);
    rig.World().Pictures().AnswerFailed("second");
    rig.Settle();
    QCOMPARE(Paths(rig, {"1"}), Texts({"~/1(1).mp4"}));
}

// Its picture is served when the first result is in.
void SharedPictureTest::ATaskThatComesWhileTheUrlIsDecryptedIsDecryptedNext()
{
    EngineRig rig;
    for (int i = 0; i < 2; ++i)
        rig.World().Cloud().QueueDecryption(1, QByteArray());
    rig.SendOne(RecordWithCover(rig, "1"));
    rig.World().Cloud().CloseDecryptGate();
    rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), 1);
    rig.SendOne(RecordWithCover(rig, "2"));
    rig.World().Cloud().OpenDecryptGate();
    QTRY_COMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 1);
    Serve(rig, "cover", 1);
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 2"), 1);
}

void SharedPictureTest::TasksOfOneRecordIdAreAllReleased()
{
    EngineRig rig([](FakeWorld& world) { world.Downloads().SetStartResult(-1); });
    rig.SendList(0, std::vector{Covered(rig, "1"), Covered(rig, "1")});
    rig.Calls().Clear();
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().QueueDecryption(0, Small());
    Serve(rig, "cover", 2);
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 1"}));
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1(1).jpg"));
    QCOMPARE(FilesLeft(rig, {"1.jpg", "1(1).jpg"}), Texts({"1.jpg", "1(1).jpg"}));
}

void SharedPictureTest::ATaskThatComesWhileTheUrlIsDecryptedIsSettledToo_data()
{
    QTest::addColumn<bool>("served"); // the second answer
    QTest::addColumn<QStringList>("told");
    QTest::newRow("its own download fails first")
        << false << Texts({"SignalAddDownloadInfo 2", "SignalAddDownloadInfo 1"});
    QTest::newRow("its own download is served")
        << true << Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"});
}

void SharedPictureTest::ATaskThatComesWhileTheUrlIsDecryptedIsSettledToo()
{
    QFETCH(bool, served);
    QFETCH(QStringList, told);
    EngineRig rig;
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().QueueDecryption(0, Small());
    rig.World().Cloud().CloseDecryptGate();
    rig.SendOne(Covered(rig, "1"));
    rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    QTRY_COMPARE(rig.Calls().Count("DecryptPicture"), 1);
    rig.SendOne(Covered(rig, "2"));
    if (served)
        rig.World().Pictures().AnswerWithFile("cover", "encrypted");
    else
        rig.World().Pictures().AnswerFailed("cover");
    rig.World().Cloud().OpenDecryptGate();
    QTRY_COMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 2);
    QCOMPARE(rig.Calls().Lines("Signal"), told);
    QCOMPARE(rig.Task("1")->strPicturePath, rig.World().Path("1.jpg"));
    QCOMPARE(rig.Task("2")->strPicturePath, served ? rig.World().Path("2.jpg") : QString());
}

// Paused while its picture is fetched, and resumed: it asked twice and is one task.
void SharedPictureTest::AResumedTaskIsReleasedOnce()
{
    EngineRig rig;
    const auto pTask = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>(Covered(rig, "1"));
    rig.Engine().StartRecordDownloads({pTask});
    rig.Engine().PauseRecordDownloads({pTask});
    rig.Engine().StartRecordDownloads({pTask});
    QCOMPARE(rig.Calls().Count("get "), 2);
    rig.Calls().Clear();
    rig.World().Pictures().AnswerFailed("cover");
    rig.World().Pictures().AnswerFailed("cover");
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartCloudRecordDownload 1"}));
}

void SharedPictureTest::ATaskBehindAnUnreadableFileIsSettledByItsOwnResult_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("events"); // whose wrong key was told
    QTest::addColumn<QStringList>("told");
    const QStringList both = Texts({"SignalAddDownloadInfo 1", "SignalAddDownloadInfo 2"});
    QTest::newRow("decrypted") << 0 << Texts({}) << both;
    QTest::newRow("failed") << 1 << Texts({}) << both;
    QTest::newRow("wrong key") << 2
                               << Texts({"{\n    \"iCode\": 3,\n    \"iRecordType\": 0,\n"
                                         "    \"strDownloadPath\": \"~/2.mp4\",\n    \"strRecordId\": \"2\"\n}\n"})
                               << Texts({"SignalAddDownloadInfo 1"});
}

// The first task's picture cannot be read any more: it goes on without one, and that is logged. The second one's result
// is not taken for its.
void SharedPictureTest::ATaskBehindAnUnreadableFileIsSettledByItsOwnResult()
{
    QFETCH(int, result);
    QFETCH(QStringList, events);
    QFETCH(QStringList, told);
    EngineRig rig;
    rig.SendOne(Covered(rig, "1"));
    rig.World().Pictures().Answer("cover", 0, rig.World().Path("missing.enc"));
    QTRY_COMPARE(rig.Calls().Lines("Signal"), Texts({"SignalAddDownloadInfo 1"}));
    rig.SendOne(Covered(rig, "2"));
    rig.World().Cloud().QueueDecryption(result, result == 0 ? Small() : QByteArray());
    Serve(rig, "cover", 1);
    QCOMPARE(rig.Calls().Lines("Signal"), told);
    QCOMPARE(StateEvents(rig), events);
    QVERIFY(rig.World().Log().Lines().contains(
        QStringLiteral("6 RecordDownloadModule::OnPictureUnreadable The cover picture of ~/1.mp4 could not be read.")));
}

KX_TEST(SharedPictureTest, QCoreApplication)
#include "SharedPictureTest.moc"
