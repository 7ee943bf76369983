// The engine is called from inside its own calls: by the host's start, by a slot of the panel, by the client that hears
// of a state; and a task is handed to it twice.

#include "Engine/EngineCases.h"
#include "TestMain.h"

using namespace EngineCases;

class ReentryTest : public QObject
{
    Q_OBJECT

private slots:
    void AHeldTaskResumedTwiceIsOneTask_data();
    void AHeldTaskResumedTwiceIsOneTask();
    void AListInsideTheHostsStartIsStartedInOrder_data();
    void AListInsideTheHostsStartIsStartedInOrder();
    void AFullDiskInsideTheHostsStartStopsThatTransfer_data();
    void AFullDiskInsideTheHostsStartStopsThatTransfer();
    void AFullDiskWhileTheFirstOfManyStartsDropsTheOthers();
    void AFullDiskWhileARowIsAnnouncedStartsNothing_data();
    void AFullDiskWhileARowIsAnnouncedStartsNothing();
    void ARecordRepeatedWhileItsRowIsAnnouncedStartsOnce_data();
    void ARecordRepeatedWhileItsRowIsAnnouncedStartsOnce();
    void ATaskPutInPlaceOfOneThatEndsIsLeftAlone_data();
    void ATaskPutInPlaceOfOneThatEndsIsLeftAlone();
    void ATaskThatWaitsInPlaceOfOneThatEndsIsLeftAlone_data();
    void ATaskThatWaitsInPlaceOfOneThatEndsIsLeftAlone();
    void ARefusedTaskDroppedWhileItIsQueuedAgainStaysAway_data();
    void ARefusedTaskDroppedWhileItIsQueuedAgainStaysAway();
    void AHeldTaskPausedAndResumedWhenItIsAnnouncedIsNotLost_data();
    void AHeldTaskPausedAndResumedWhenItIsAnnouncedIsNotLost();
    void ARefusedTaskPausedWhenItsRetryIsLoggedStaysPaused();
    void ARefusedTaskSentWhileItIsQueuedAgainIsOneTask();
    void ATaskWhosePathWasGivenAwayGetsAnother();
};

namespace {

// The sources, and cloud once more: held until its password is answered.
void AddPasswordRows()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<bool>("password");
    for (const SourceCase& of : SourceCases)
        QTest::newRow(of.pszRow) << of << false;
    QTest::newRow("cloud, with a password") << SourceCases[0] << true;
}

// Sends "1"; if its password is asked for, that is answered.
void SendFirst(EngineRig& rig, Source source, bool bPassword)
{
    if (!bPassword) {
        SendTasks(rig, source, {"1"});
        return;
    }
    auto record = rig.Cloud("1");
    record.strText1 = QStringLiteral("account");
    record.strCloudText2 = QStringLiteral("key");
    const std::size_t uAsked = rig.World().Cloud().Queries().size();
    rig.SendOne(record);
    if (rig.World().Cloud().Queries().size() == uAsked)
        return;
    rig.World().Cloud().AnswerPassword(uAsked, 1, "canary-secret");
    rig.Settle();
}

void FillDisk(EngineRig& rig)
{
    rig.Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
}

enum class Drop { Clear, Pause, Delete };

void DropTask(EngineRig& rig, const char* pszId, Drop drop)
{
    if (drop == Drop::Clear)
        FillDisk(rig);
    else if (drop == Drop::Pause)
        rig.Engine().PauseRecordDownloads(Rows(rig, {pszId}));
    else
        rig.Engine().DeleteRecordDownload(1, QString::fromUtf8(pszId), rig.Task(pszId)->strDownloadPath);
}

KXDownLoadList::DownloadDeviceRecordInfo Refusable(const EngineRig& rig, const char* pszId, bool bGotPassword)
{
    auto record = rig.Device(pszId);
    record.strDeviceId = QStringLiteral("SN");
    record.bNeedPassword = true;
    record.bCanGetPassword = true;
    record.bGotNewPassword = bGotPassword;
    return record;
}

} // namespace

Q_DECLARE_METATYPE(Drop)

void ReentryTest::AHeldTaskResumedTwiceIsOneTask_data()
{
    QTest::addColumn<bool>("password");
    QTest::addColumn<QStringList>("others"); // running already
    const QStringList three = Texts({"7", "8", "9"});
    QTest::newRow("waiting for its picture") << false << QStringList();
    QTest::newRow("waiting for its password") << true << QStringList();
    QTest::newRow("waiting for its picture, no place is free") << false << three;
    QTest::newRow("waiting for its password, no place is free") << true << three;
}

void ReentryTest::AHeldTaskResumedTwiceIsOneTask()
{
    QFETCH(bool, password);
    QFETCH(QStringList, others);
    EngineRig rig;
    SendTasks(rig, Source::Cloud, others);
    rig.World().Pictures().AnswerFailed("");
    const auto pTask = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>(rig.Cloud("1"));
    pTask->strText1 = QStringLiteral("account");
    pTask->strCloudText1 = QStringLiteral("cover");
    pTask->strCloudText2 = password ? QStringLiteral("key") : QString();
    rig.Engine().StartRecordDownloads({pTask, pTask});
    for (int i = 0; i < 2; ++i) { // a second task would take the second answer
        if (password)
            rig.World().Cloud().AnswerPassword(0, 1, "canary-secret");
        rig.World().Pictures().AnswerFailed("cover");
        rig.Settle();
    }
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), others.isEmpty() ? 1 : 0);
    for (const QString& strId : others)
        rig.RaiseState(Source::Cloud, strId.toUtf8().constData(), 2);
    rig.RaiseState(Source::Cloud, "1", 2);
    rig.RaiseState(Source::Cloud, "1", 2); // a second start would end by this
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 1);
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 1);
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates 1 2"), 1);
}

void ReentryTest::AListInsideTheHostsStartIsStartedInOrder_data()
{
    AddSourceRows();
}

void ReentryTest::AListInsideTheHostsStartIsStartedInOrder()
{
    QFETCH(SourceCase, of);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "Start", [&] { SendTasks(rig, of.source, {"2", "3", "4", "5"}); });
    SendTasks(rig, of.source, {"1"});
    const QStringList all{of.Start("1"), of.Start("2"), of.Start("3"), of.Start("4"), of.Start("5")};
    QCOMPARE(rig.Calls().Short("Start"), QStringList(all.mid(0, of.iLimit)));
    int iEnded = 0;
    for (const char* pszId : {"1", "2", "3", "4", "5"}) {
        rig.RaiseState(of.source, pszId, 2);
        QCOMPARE(rig.Calls().Short("Start"), QStringList(all.mid(0, of.iLimit + ++iEnded)));
    }
}

void ReentryTest::AFullDiskInsideTheHostsStartStopsThatTransfer_data()
{
    AddPasswordRows();
}

void ReentryTest::AFullDiskInsideTheHostsStartStopsThatTransfer()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, password);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "Start", [&rig] { FillDisk(rig); });
    SendFirst(rig, of.source, password);
    const QStringList told = Told(rig);
    QCOMPARE(told.mid(told.size() - 3),
             QStringList({of.Start("1"), QStringLiteral("SignalStopAllRecord"), of.Stop("1")}));
    rig.Calls().Clear();
    for (const int iCode : {1, 0, 2})
        rig.RaiseState(of.source, "1", iCode);
    QCOMPARE(Told(rig), Texts({}));
}

// The panel marked all its rows as stopped: none of them may come back by itself.
void ReentryTest::AFullDiskWhileTheFirstOfManyStartsDropsTheOthers()
{
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1", "2"});
    const auto rows = Rows(rig, {"1", "2"});
    rig.Engine().PauseRecordDownloads(rows);
    rig.Calls().Clear();
    Once(rig.Calls(), "Start", [&rig] { FillDisk(rig); });
    rig.Engine().StartRecordDownloads(rows);
    QCOMPARE(Told(rig), Texts({"SignalAddDownloadInfo 1", "StartDeviceRecordDownload 1", "SignalStopAllRecord",
                               "StopDeviceRecordDownload 1"}));
}

void ReentryTest::AFullDiskWhileARowIsAnnouncedStartsNothing_data()
{
    AddPasswordRows();
}

void ReentryTest::AFullDiskWhileARowIsAnnouncedStartsNothing()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, password);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "SignalAddDownloadInfo", [&rig] { FillDisk(rig); });
    SendFirst(rig, of.source, password);
    QCOMPARE(rig.Calls().Lines("Signal"), Texts({"SignalAddDownloadInfo 1", "SignalStopAllRecord"}));
    QCOMPARE(rig.Calls().Count("Start"), 0);
    if (password)
        QCOMPARE(rig.Calls().Count("get "), 0);
    rig.RaiseState(of.source, "1", 0);
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 0);
    SendFirst(rig, of.source, password); // it is in no list, so this is no repetition
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo"), 2);
    QCOMPARE(rig.Calls().Short("Start"), QStringList(of.Start("1")));
}

void ReentryTest::ARecordRepeatedWhileItsRowIsAnnouncedStartsOnce_data()
{
    AddPasswordRows();
}

void ReentryTest::ARecordRepeatedWhileItsRowIsAnnouncedStartsOnce()
{
    QFETCH(SourceCase, of);
    QFETCH(bool, password);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "SignalAddDownloadInfo", [&rig, &of, &password] { SendFirst(rig, of.source, password); });
    SendFirst(rig, of.source, password);
    QCOMPARE(rig.Calls().Short("Start"), QStringList(of.Start("1")));
    rig.RaiseState(of.source, "1", 2);
    QCOMPARE(rig.Calls().Short("Start"), QStringList(of.Start("1")));
}

// The device source tells the client when it has acted, so only the others can be hit.
void ReentryTest::ATaskPutInPlaceOfOneThatEndsIsLeftAlone_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<int>("code");
    for (const SourceCase& of : SourceCases) {
        for (const int iCode : {0, 2}) {
            if (of.source != Source::Device)
                QTest::addRow("%s, code %d", of.pszRow, iCode) << of << iCode;
        }
    }
}

void ReentryTest::ATaskPutInPlaceOfOneThatEndsIsLeftAlone()
{
    QFETCH(SourceCase, of);
    QFETCH(int, code);
    EngineRig rig(NoPictures);
    SendTasks(rig, of.source, {"1"});
    const DownloadRecordInfoPtr pOld = rig.Task("1");
    rig.Calls().Clear();
    Once(rig.Calls(), "notify EventNotifyDownloadRecordStates", [&rig, &pOld, &of] {
        rig.Engine().DeleteRecordDownload(of.iType, QStringLiteral("1"), pOld->strDownloadPath);
        SendTasks(rig, of.source, {"1"});
        rig.World().WriteFile("1.mp4"); // the new transfer's
    });
    rig.RaiseState(of.source, "1", code);
    QVERIFY(rig.Task("1") != pOld);
    QCOMPARE(rig.Task("1")->strDownloadPath, rig.World().Path("1.mp4"));
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), QStringList({of.Stop("1"), of.Start("1")}));
    QVERIFY(rig.World().HasFile("1.mp4"));
    QCOMPARE(rig.Calls().Lines({"Insert", "Report"}), Texts({}));
    rig.RaiseState(of.source, "1", 1); // it runs on
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates 1 1 false"), 1);
}

void ReentryTest::ATaskThatWaitsInPlaceOfOneThatEndsIsLeftAlone_data()
{
    QTest::addColumn<SourceCase>("of");
    QTest::addColumn<int>("code");
    for (const SourceCase& of : SourceCases) {
        for (const int iCode : {0, 2, 3, 77}) {
            if (of.iLimit == 1)
                QTest::addRow("%s, code %d", of.pszRow, iCode) << of << iCode;
        }
    }
}

void ReentryTest::ATaskThatWaitsInPlaceOfOneThatEndsIsLeftAlone()
{
    QFETCH(SourceCase, of);
    QFETCH(int, code);
    EngineRig rig;
    SendTasks(rig, of.source, {"1", "2"});
    rig.Calls().Clear();
    Once(rig.Calls(), "notify EventNotifyDownloadRecordStates", [&rig, &of] {
        const QString strPath = rig.Task("1")->strDownloadPath;
        rig.Engine().DeleteRecordDownload(of.iType, QStringLiteral("1"), strPath);
        SendTasks(rig, of.source, {"1"}); // "2" has the place by now
    });
    rig.RaiseState(of.source, "1", code);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), QStringList({of.Stop("1"), of.Start("2")}));
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates"), 0); // the new row has nothing to hear of it
    rig.Calls().Clear();
    rig.RaiseState(of.source, "2", 2);
    QCOMPARE(rig.Calls().Short("Start"), QStringList(of.Start("1")));
}

// Of two running tasks of one device "1" is refused; "3" of another device waits.
void ReentryTest::ARefusedTaskDroppedWhileItIsQueuedAgainStaysAway_data()
{
    QTest::addColumn<QString>("inside"); // this call of the host
    QTest::addColumn<bool>("got");       // the password was fetched before
    QTest::addColumn<Drop>("drop");
    struct
    {
        const char* pszCall;
        bool bGot;
    } const calls[] = {{"StopDeviceRecordDownload 1", false},
                       {"StopDeviceRecordDownload 1", true},
                       {"StartDeviceRecordDownload 3", true},
                       {"RequestDevicePassword", false}};
    for (const auto& call : calls) {
        const char* const pszWhen = call.bGot ? "password fetched" : "no password";
        QTest::addRow("cleared inside %s, %s", call.pszCall, pszWhen) << call.pszCall << call.bGot << Drop::Clear;
        QTest::addRow("paused inside %s, %s", call.pszCall, pszWhen) << call.pszCall << call.bGot << Drop::Pause;
        QTest::addRow("deleted inside %s, %s", call.pszCall, pszWhen) << call.pszCall << call.bGot << Drop::Delete;
    }
}

void ReentryTest::ARefusedTaskDroppedWhileItIsQueuedAgainStaysAway()
{
    QFETCH(QString, inside);
    QFETCH(bool, got);
    QFETCH(Drop, drop);
    EngineRig rig;
    rig.SendList(1, std::vector{Refusable(rig, "1", got), Refusable(rig, "2", got), rig.Device("3")});
    rig.Calls().Clear();
    Once(rig.Calls(), inside.toUtf8().constData(), [&] { DropTask(rig, "1", drop); });
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.Calls().Count("SignalDownloadRecordStates 1"), 0); // its row is paused or gone
    QCOMPARE(StateEvents(rig), Texts({}));
    if (inside.startsWith(QLatin1String("Stop")))
        QCOMPARE(rig.Calls().Count("RequestDevicePassword"), 0); // for whom?
    if (rig.Calls().Count("RequestDevicePassword") > 0)
        rig.World().Devices().AnswerPassword(0, 0, "sealed");
    rig.Settle();
    rig.RaiseState(Source::Device, "2", 2);
    rig.RaiseState(Source::Device, "3", 2);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload 1"), 0);
    rig.Calls().Clear();
    SendTasks(rig, Source::Device, {"4"}); // the source is not held up
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 4"}));
}

void ReentryTest::AHeldTaskPausedAndResumedWhenItIsAnnouncedIsNotLost_data()
{
    QTest::addColumn<bool>("password");
    QTest::newRow("held for its picture") << false;
    QTest::newRow("held for its password") << true;
}

void ReentryTest::AHeldTaskPausedAndResumedWhenItIsAnnouncedIsNotLost()
{
    QFETCH(bool, password);
    EngineRig rig(NoPictures);
    Once(rig.Calls(), "SignalAddDownloadInfo 1", [&rig] {
        rig.Engine().PauseRecordDownloads(Rows(rig, {"1"}));
        rig.Engine().StartRecordDownloads(Rows(rig, {"1"})); // held once more, for an answer of its own
    });
    SendFirst(rig, Source::Cloud, password);
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), password ? 1 : 2);
    if (password) {
        rig.World().Cloud().AnswerPassword(1, 1, "canary-again");
        rig.Settle();
    }
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartCloudRecordDownload 1"}));
}

// The line tells of a task that waits already.
void ReentryTest::ARefusedTaskPausedWhenItsRetryIsLoggedStaysPaused()
{
    EngineRig rig;
    rig.SendOne(Refusable(rig, "1", true));
    rig.Calls().Clear();
    rig.World().Log().WhenLogged("2 RecordDownloadModule::OnDownloadDeviceRecordState Try download again because Not",
                                 [&rig] { rig.Engine().PauseRecordDownloads(Rows(rig, {"1"})); });
    rig.RaiseState(Source::Device, "1", 3);
    QCOMPARE(rig.World().Log().Lines().size(), 1);
    QCOMPARE(Told(rig), Texts({"StopDeviceRecordDownload 1"})); // neither its row nor the client hears more
    SendTasks(rig, Source::Device, {"2"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload 2"}));
}

void ReentryTest::ARefusedTaskSentWhileItIsQueuedAgainIsOneTask()
{
    EngineRig rig;
    rig.SendList(1, std::vector{Refusable(rig, "1", true), Refusable(rig, "2", true), rig.Device("3")});
    rig.Calls().Clear();
    Once(rig.Calls(), "StartDeviceRecordDownload 3", [&rig] { rig.SendOne(Refusable(rig, "1", true)); });
    rig.RaiseState(Source::Device, "1", 3);
    for (const char* pszId : {"2", "3", "1"})
        rig.RaiseState(Source::Device, pszId, 2);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload 1"), 1);
    QCOMPARE(rig.Calls().Count("SignalAddDownloadInfo 1"), 0);
}

void ReentryTest::ATaskWhosePathWasGivenAwayGetsAnother()
{
    EngineRig rig;
    SendTasks(rig, Source::Device, {"1"});
    const DownloadRecordInfoPtr pFirst = rig.Task("1");
    rig.Engine().DeleteRecordDownload(1, QStringLiteral("1"), pFirst->strDownloadPath);
    auto other = rig.Device("2");
    other.strDownloadPath = rig.World().Path("1.mp4");
    rig.SendOne(other);
    QCOMPARE(rig.Task("2")->strDownloadPath, rig.World().Path("1.mp4"));
    rig.Calls().Clear();
    rig.Engine().StartRecordDownloads({pFirst});
    QCOMPARE(pFirst->strDownloadPath, rig.World().Path("1(1).mp4"));
    QVERIFY(rig.Calls().Lines("StartDeviceRecordDownload 1").value(0).contains(QLatin1String(" path=~/1(1).mp4 ")));
}

KX_TEST(ReentryTest, QCoreApplication)
#include "ReentryTest.moc"
