// The client sends a record that has a row already, or a user is quick: the row stands for what runs, and what goes
// with it leaves nothing behind.

#include "Engine/EngineCases.h"
#include "PanelRig.h"
#include "TestMain.h"

using EngineCases::Once;

class SentAgainPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void InsideTheEventOfItsEndTheRowStandsForTheNewTask_data();
    void InsideTheEventOfItsEndTheRowStandsForTheNewTask();
    void InsideTheStopOfAPausedRowsDeletionItHasARow();
    void TwoQuickPressesLeaveOneTaskWithItsRow_data();
    void TwoQuickPressesLeaveOneTaskWithItsRow();
    void ARowThatStandsStillGoesOnWithTheNewTask_data();
    void ARowThatStandsStillGoesOnWithTheNewTask();
    void DeletingARowCleansUpAllItsTasks_data();
    void DeletingARowCleansUpAllItsTasks();
    void OfTwinsOneFileIsLeftWhenOneFinishes();
    void TheRowGoesOverToTheTwinThatWaits();
    void DeletingARowShowsTheOtherSourcesTaskOfItsId();
    void ARowStaysWhenTheOtherSourcesTaskOfItsIdEnds_data();
    void ARowStaysWhenTheOtherSourcesTaskOfItsIdEnds();
    void DeletingThePausedRowOffersToPauseAll();
    void APictureUnderWayGoesWithItsRecording_data();
    void APictureUnderWayGoesWithItsRecording();
};

namespace {

using Cloud = KXDownLoadList::DownloadCloudRecordInfo;

// A list of cloud records, held no longer than a turn of the event loop.
void SendCloud(PanelRig& rig, std::initializer_list<const char*> recordIds)
{
    std::vector<Cloud> records;
    for (const char* pszRecordId : recordIds)
        records.push_back(*rig.Made<Cloud>(pszRecordId, 0));
    rig.Send("EventNotifyDownloadRecordList", {EngineRig::Stream(records), 0});
}

void RaiseCloud(PanelRig& rig, const char* pszRecordId, int iCode)
{
    rig.World().Downloads().RaiseState(Source::Cloud, pszRecordId, iCode);
    EngineRig::Settle();
}

// The device record, once more, without a turn of the event loop.
void SendAgain(PanelRig& rig, const char* pszRecordId)
{
    const QByteArray bytes = EngineRig::Stream(std::vector{*rig.Made(pszRecordId)});
    rig.World().Bus().Send("EventNotifyDownloadRecordList", {bytes, 1});
}

// Several presses before anything that they lead to is heard of.
void PressQuickly(PanelRig& rig, const char* pszRecordId, int iTimes)
{
    const QPoint pos = rig.View().mapFromScene(rig.Row(pszRecordId)->mapToScene(PanelRig::StateButton));
    for (int i = 0; i < iTimes; ++i)
        QTest::mouseClick(rig.View().viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    EngineRig::Settle();
}

QStringList Left(PanelRig& rig, std::initializer_list<const char*> names)
{
    QStringList left;
    for (const char* pszName : names) {
        if (rig.World().HasFile(pszName))
            left.append(QString::fromUtf8(pszName));
    }
    return left;
}

// A device record with a picture large enough to be a while on its way.
void AddRowWithPicture(PanelRig& rig)
{
    QImage image(2000, 1500, QImage::Format_RGB32);
    image.fill(Qt::red);
    auto pRecord = rig.Made("a");
    pRecord->strPicturePath = rig.World().Path("source.png");
    image.save(pRecord->strPicturePath);
    rig.World().Bus().Send("EventNotifyDownloadRecordList", {EngineRig::Stream(std::vector{*pRecord}), 1});
}

} // namespace

void SentAgainPanelTest::InsideTheEventOfItsEndTheRowStandsForTheNewTask_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("finished") << 2;
    QTest::newRow("failed") << 0;
}

void SentAgainPanelTest::InsideTheEventOfItsEndTheRowStandsForTheNewTask()
{
    QFETCH(int, code);
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.World().WriteFile("a.mp4");
    Once(rig.Calls(), "notify EventNotifyDownloadRecordStates", [&rig] { SendAgain(rig, "a"); });
    rig.RaiseState("a", code);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload a"), 2);
    QVERIFY(rig.Row("a"));
    QCOMPARE(rig.Record("a").strDownloadPath, rig.World().Path("a(1).mp4"));
    QCOMPARE(rig.StateOf("a"), 0);
    rig.RaiseState("a", 1);
    QCOMPARE(rig.StateOf("a"), 1);
    rig.RaiseState("a", 2);
    QVERIFY(!rig.Row("a"));
    QCOMPARE(rig.Counts().last(), 0);
}

void SentAgainPanelTest::InsideTheStopOfAPausedRowsDeletionItHasARow()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.World().WriteFile("a.mp4");
    rig.Press("a", PanelRig::StateButton);
    rig.Calls().Clear();
    Once(rig.Calls(), "StopDeviceRecordDownload a", [&rig] { SendAgain(rig, "a"); });
    rig.Press("a", PanelRig::DeleteButton);
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}),
             Texts({"StopDeviceRecordDownload a", "StartDeviceRecordDownload a"}));
    QVERIFY(rig.Row("a"));
    QCOMPARE(rig.Record("a").strDownloadPath, rig.World().Path("a(1).mp4"));
    QCOMPARE(Left(rig, {"a.mp4"}), Texts({}));
    rig.RaiseState("a", 1);
    QCOMPARE(rig.StateOf("a"), 1);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
}

void SentAgainPanelTest::TwoQuickPressesLeaveOneTaskWithItsRow_data()
{
    QTest::addColumn<QString>("before"); // what was done to the row
    QTest::addColumn<int>("presses");
    QTest::addColumn<int>("state"); // afterwards
    QTest::newRow("waiting, two presses") << QStringLiteral("nothing") << 2 << 0;
    QTest::newRow("waiting, four presses") << QStringLiteral("nothing") << 4 << 0;
    QTest::newRow("waiting, three presses") << QStringLiteral("nothing") << 3 << 5;
    QTest::newRow("paused, two presses") << QStringLiteral("paused") << 2 << 5;
    QTest::newRow("paused, three presses") << QStringLiteral("paused") << 3 << 0;
    QTest::newRow("failed, two presses") << QStringLiteral("failed") << 2 << 5;
    QTest::newRow("failed, three presses") << QStringLiteral("failed") << 3 << 0;
}

// All places are taken by others.
void SentAgainPanelTest::TwoQuickPressesLeaveOneTaskWithItsRow()
{
    QFETCH(QString, before);
    QFETCH(int, presses);
    QFETCH(int, state);
    PanelRig rig;
    rig.Show();
    if (before == QLatin1String("failed")) {
        SendCloud(rig, {"1"});
        RaiseCloud(rig, "1", 0);
        SendCloud(rig, {"7", "8", "9"});
    } else {
        SendCloud(rig, {"7", "8", "9", "1"});
    }
    if (before == QLatin1String("paused"))
        PressQuickly(rig, "1", 1);
    rig.Calls().Clear();
    PressQuickly(rig, "1", presses);
    QCOMPARE(rig.StateOf("1"), state);
    QCOMPARE(rig.Calls().Count("Start"), 0);
    for (const char* pszId : {"7", "8", "9"})
        RaiseCloud(rig, pszId, 2);
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), state == 0 ? 1 : 0);
    QCOMPARE(rig.StateOf("1"), state);
    RaiseCloud(rig, "1", 2);
    RaiseCloud(rig, "1", 2); // a second transfer would end by this
    QCOMPARE(rig.Row("1") == nullptr, state == 0);
    QCOMPARE(rig.Calls().Count("Insert"), state == 0 ? 4 : 3);
}

void SentAgainPanelTest::ARowThatStandsStillGoesOnWithTheNewTask_data()
{
    QTest::addColumn<bool>("paused"); // or failed
    QTest::newRow("paused") << true;
    QTest::newRow("failed") << false;
}

void SentAgainPanelTest::ARowThatStandsStillGoesOnWithTheNewTask()
{
    QFETCH(bool, paused);
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    if (paused)
        rig.Press("a", PanelRig::StateButton);
    else
        rig.RaiseState("a", 0);
    rig.Calls().Clear();
    rig.Send({"a"});
    QCOMPARE(rig.Calls().Short("Start"), Texts({"StartDeviceRecordDownload a"}));
    QCOMPARE(rig.StateOf("a"), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    rig.RaiseState("a", 1);
    QCOMPARE(rig.StateOf("a"), 1);
    rig.Calls().Clear();
    rig.Press("a", PanelRig::StateButton); // the press pauses what runs
    QCOMPARE(rig.Calls().Short({"Start", "Stop"}), Texts({"StopDeviceRecordDownload a"}));
    QCOMPARE(rig.StateOf("a"), 5);
    rig.RaiseState("a", 1);
    QCOMPARE(rig.Calls().Count("notify EventNotifyDownloadRecordStates"), 0);
    QCOMPARE(rig.StateOf("a"), 5);
}

void SentAgainPanelTest::DeletingARowCleansUpAllItsTasks_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("paused, then sent again") << QStringLiteral("paused");
    QTest::newRow("failed, then sent again") << QStringLiteral("failed");
    QTest::newRow("sent twice before its picture") << QStringLiteral("twice");
}

void SentAgainPanelTest::DeletingARowCleansUpAllItsTasks()
{
    QFETCH(QString, before);
    PanelRig rig;
    rig.Show();
    if (before == QLatin1String("twice")) {
        SendCloud(rig, {"1", "1"});
    } else {
        SendCloud(rig, {"1"});
        if (before == QLatin1String("paused"))
            PressQuickly(rig, "1", 1);
        else
            RaiseCloud(rig, "1", 0);
        rig.World().WriteFile("1.mp4"); // what stayed of it
        SendCloud(rig, {"1"});
    }
    for (const char* pszName : {"1.mp4", "1.jpg", "1(1).mp4", "1(1).jpg"})
        rig.World().WriteFile(pszName);
    rig.Press("1", PanelRig::DeleteButton);
    QVERIFY(!rig.Row("1"));
    QCOMPARE(rig.Counts().last(), 0);
    QCOMPARE(Left(rig, {"1.mp4", "1.jpg", "1(1).mp4", "1(1).jpg"}), Texts({}));
    rig.Calls().Clear();
    RaiseCloud(rig, "1", 2);
    QCOMPARE(rig.Calls().Lines(), Texts({}));
    SendCloud(rig, {"2", "3", "4"}); // all places are free
    QCOMPARE(rig.Calls().Count("Start"), 3);
}

void SentAgainPanelTest::OfTwinsOneFileIsLeftWhenOneFinishes()
{
    PanelRig rig;
    rig.Show();
    SendCloud(rig, {"1", "1"});
    QCOMPARE(rig.Calls().Count("StartCloudRecordDownload 1"), 2);
    rig.World().WriteFile("1.mp4");
    rig.World().WriteFile("1(1).mp4");
    RaiseCloud(rig, "1", 2);
    QVERIFY(!rig.Row("1"));
    QCOMPARE(rig.Counts().last(), 0);
    QCOMPARE(Left(rig, {"1.mp4", "1(1).mp4"}), Texts({"1.mp4"}));
}

void SentAgainPanelTest::TheRowGoesOverToTheTwinThatWaits()
{
    PanelRig rig;
    rig.Show();
    SendCloud(rig, {"7", "8", "1", "1"});
    rig.World().WriteFile("1.mp4");
    RaiseCloud(rig, "1", 2);
    QVERIFY(rig.Row("1"));
    QCOMPARE(rig.Record("1").strDownloadPath, rig.World().Path("1(1).mp4"));
    rig.World().WriteFile("1(1).mp4");
    rig.Press("1", PanelRig::DeleteButton);
    QVERIFY(!rig.Row("1"));
    QCOMPARE(Left(rig, {"1.mp4", "1(1).mp4"}), Texts({"1.mp4"})); // the finished one stays
}

// A device and the cloud may use the same id.
void SentAgainPanelTest::DeletingARowShowsTheOtherSourcesTaskOfItsId()
{
    PanelRig rig;
    rig.Show();
    rig.Send({"1"});
    SendCloud(rig, {"1"});
    QCOMPARE(rig.Record("1").iRecordType, 1);
    rig.Press("1", PanelRig::DeleteButton);
    QCOMPARE(rig.Calls().Short("Stop"), Texts({"StopDeviceRecordDownload 1"}));
    QCOMPARE(rig.Counts().last(), 1);
    QCOMPARE(rig.Record("1").iRecordType, 0);
    RaiseCloud(rig, "1", 1);
    QCOMPARE(rig.StateOf("1"), 1);
    rig.Press("1", PanelRig::DeleteButton);
    QCOMPARE(rig.Calls().Count("StopCloudRecordDownload 1"), 1);
    QVERIFY(!rig.Row("1"));
}

void SentAgainPanelTest::ARowStaysWhenTheOtherSourcesTaskOfItsIdEnds_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("failed") << 0;
    QTest::newRow("finished") << 2;
}

void SentAgainPanelTest::ARowStaysWhenTheOtherSourcesTaskOfItsIdEnds()
{
    QFETCH(int, code);
    PanelRig rig;
    rig.Show();
    rig.Send({"1"});
    SendCloud(rig, {"1"});
    rig.RaiseState("1", 1);
    RaiseCloud(rig, "1", code);
    QCOMPARE(rig.Record("1").iRecordType, 1);
    QCOMPARE(rig.StateOf("1"), 1);
    QCOMPARE(rig.Counts().last(), 1);
    rig.RaiseState("1", 2);
    QVERIFY(!rig.Row("1"));
    QCOMPARE(rig.Counts().last(), 0);
}

void SentAgainPanelTest::DeletingThePausedRowOffersToPauseAll()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
    rig.Press("a", PanelRig::DeleteButton);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
}

void SentAgainPanelTest::APictureUnderWayGoesWithItsRecording_data()
{
    QTest::addColumn<bool>("diskFull"); // or the end of the plug-in
    QTest::newRow("disk full") << true;
    QTest::newRow("stop") << false;
}

// The panel hears of the picture only after the recording has gone.
void SentAgainPanelTest::APictureUnderWayGoesWithItsRecording()
{
    QFETCH(bool, diskFull);
    PanelRig rig;
    rig.Show();
    AddRowWithPicture(rig);
    rig.World().WriteFile("a.mp4");
    if (diskFull)
        rig.World().Bus().Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()});
    else
        rig.Panel().Stop();
    QCOMPARE(Left(rig, {"a.mp4"}), Texts({}));
    QTRY_COMPARE(rig.Record("a").strPicturePath, rig.World().Path("a.jpg")); // it was made
    QCOMPARE(Left(rig, {"a.jpg"}), Texts({}));
}

KX_TEST(SentAgainPanelTest, QApplication)

#include "SentAgainPanelTest.moc"
