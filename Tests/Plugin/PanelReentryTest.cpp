// What happens inside a call of the panel to the host, or on its way while a row goes: nothing is started, stopped or
// counted behind the user's back.

#include "PanelRig.h"
#include "TestMain.h"

#include <QtCore/QBuffer>
#include <QtGui/QAccessible>

#include <functional>

class PanelReentryTest : public QObject
{
    Q_OBJECT

private slots:
    void ARowThatEndsWhileAnotherIsDeletedGoesAlone_data();
    void ARowThatEndsWhileAnotherIsDeletedGoesAlone();
    void DataFromBeforeAPauseAreNotCountedAgain_data();
    void DataFromBeforeAPauseAreNotCountedAgain();
    void AFullDiskInsideAResumeLeavesTheRowsPaused_data();
    void AFullDiskInsideAResumeLeavesTheRowsPaused();
    void AFullDiskInsideARetryLeavesTheRowPaused();
    void ARowThatGoesInsideItsReportSaysNoMore_data();
    void ARowThatGoesInsideItsReportSaysNoMore();
    void ARetriedRowDeletedInsideItsReportStaysAway_data();
    void ARetriedRowDeletedInsideItsReportStaysAway();
    void ThePictureOfADeletedRowGoesWhenItComes();
    void ThePictureOfADeletedRowGoesThoughItsIdIsBack();
    void ThePictureOfAPausedRowGoesWithThePanel();
};

namespace {

// Runs `action` inside the first call with that prefix.
void Once(PanelRig& rig, const char* pszPrefix, const std::function<void()>& action)
{
    const auto pDone = std::make_shared<bool>(false);
    rig.Calls().WhenAdded(pszPrefix, [pDone, action] {
        if (!*pDone) {
            *pDone = true;
            action();
        }
    });
}

// A device record with a picture large enough to be a while on its way.
std::shared_ptr<KXDownLoadList::DownloadDeviceRecordInfo> WithPicture(PanelRig& rig)
{
    QImage image(2000, 1500, QImage::Format_RGB32);
    image.fill(Qt::red);
    auto pRecord = rig.Made("a");
    pRecord->strPicturePath = rig.World().Path("source.png");
    image.save(pRecord->strPicturePath);
    return pRecord;
}

// The ways to press a button of the row "a".
void AddWays()
{
    QTest::addColumn<QString>("by");
    for (const char* pszWay : {"the mouse", "a key", "an accessible action"})
        QTest::newRow(pszWay) << QString::fromUtf8(pszWay);
}

void PressBy(PanelRig& rig, const QString& strWay, bool bDelete)
{
    if (strWay == QLatin1String("the mouse"))
        return rig.Press("a", bDelete ? PanelRig::DeleteButton : PanelRig::StateButton);
    rig.View().setFocus(Qt::TabFocusReason);
    if (strWay == QLatin1String("a key"))
        QTest::keyClick(&rig.View(), bDelete ? Qt::Key_Delete : Qt::Key_Space);
    else
        QAccessible::queryAccessibleInterface(rig.Row("a"))
            ->actionInterface()
            ->doAction(bDelete ? QStringLiteral("delete") : QStringLiteral("retry"));
    EngineRig::Settle();
}

bool IsThere(PanelRig& rig, const char* pszName)
{
    return QFile::exists(rig.World().Path(pszName));
}

} // namespace

void PanelReentryTest::ARowThatEndsWhileAnotherIsDeletedGoesAlone_data()
{
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QString>("left");
    QTest::newRow("the deleted row itself") << QStringLiteral("a") << QStringLiteral("b c");
    QTest::newRow("a row below") << QStringLiteral("b") << QStringLiteral("c");
}

void PanelReentryTest::ARowThatEndsWhileAnotherIsDeletedGoesAlone()
{
    QFETCH(QString, deleted);
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.RaiseState("b", 1);
    const QByteArray stop = "StopDeviceRecordDownload " + deleted.toUtf8();
    Once(rig, stop.constData(), [&rig] { rig.RaiseState("a", 2); });
    rig.Press(deleted.toUtf8().constData(), PanelRig::DeleteButton);
    QStringList left;
    for (const char* pszId : {"a", "b", "c"}) {
        if (rig.Row(pszId))
            left.append(QString::fromUtf8(pszId));
    }
    QTEST(left.join(QLatin1Char(' ')), "left");
}

void PanelReentryTest::DataFromBeforeAPauseAreNotCountedAgain_data()
{
    QTest::addColumn<bool>("all");
    QTest::newRow("one row") << false;
    QTest::newRow("all rows") << true;
}

void PanelReentryTest::DataFromBeforeAPauseAreNotCountedAgain()
{
    QFETCH(bool, all);
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 1);
    const auto toggle = [&rig, all] { all ? rig.PressAllStart() : rig.Press("a", PanelRig::StateButton); };
    rig.World().Downloads().RaiseData(Source::Device, "a", 400); // on its way while the user pauses
    toggle();
    toggle();
    rig.RaiseState("a", 1);
    rig.World().Downloads().RaiseData(Source::Device, "a", 100);
    EngineRig::Settle();
    QCOMPARE(rig.Record("a").lReceivedSize, qint64(100));
}

void PanelReentryTest::AFullDiskInsideAResumeLeavesTheRowsPaused_data()
{
    DataFromBeforeAPauseAreNotCountedAgain_data();
}

void PanelReentryTest::AFullDiskInsideAResumeLeavesTheRowsPaused()
{
    QFETCH(bool, all);
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.PressAllStart();
    rig.Calls().Clear();
    Once(rig, "StartDeviceRecordDownload a",
         [&rig] { rig.World().Bus().Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()}); });
    all ? rig.PressAllStart() : rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload b"), 0);
    QCOMPARE(rig.StateOf("a"), 5);
    QCOMPARE(rig.StateOf("b"), 5);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_resume_all"));
    rig.Calls().Clear();
    rig.PressAllStart();
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload"), 2);
}

void PanelReentryTest::AFullDiskInsideARetryLeavesTheRowPaused()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 0);
    QCOMPARE(rig.StateOf("a"), 3);
    Once(rig, "StartDeviceRecordDownload a",
         [&rig] { rig.World().Bus().Send("EventNotifyDeleteDownloadRecord", {rig.World().Folder()}); });
    rig.Press("a", PanelRig::StateButton);
    QCOMPARE(rig.StateOf("a"), 5);
    rig.Calls().Clear();
    rig.Press("a", PanelRig::StateButton); // resumes it
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload a"), 1);
}

void PanelReentryTest::ARowThatGoesInsideItsReportSaysNoMore_data()
{
    AddWays();
}

// The download ends while the click is reported, and the client asks for it again: the press was not meant for that.
void PanelReentryTest::ARowThatGoesInsideItsReportSaysNoMore()
{
    QFETCH(QString, by);
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.RaiseState("a", 1);
    Once(rig, "notify EventNotifyLogV2Report", [&rig] {
        rig.RaiseState("a", 2);
        rig.Send({"a"});
    });
    PressBy(rig, by, true);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload a"), 2);
    QVERIFY(rig.Row("a"));
    QCOMPARE(rig.Counts().last(), 2);
    rig.RaiseState("a", 1);
    QCOMPARE(rig.StateOf("a"), 1);
}

void PanelReentryTest::ARetriedRowDeletedInsideItsReportStaysAway_data()
{
    AddWays();
}

void PanelReentryTest::ARetriedRowDeletedInsideItsReportStaysAway()
{
    QFETCH(QString, by);
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 0);
    rig.Calls().Clear();
    Once(rig, "notify EventNotifyLogV2Report", [&rig] { rig.Panel().OnDeleteRecord(QStringLiteral("a")); });
    PressBy(rig, by, false);
    QCOMPARE(rig.Calls().Count("StartDeviceRecordDownload"), 0);
    QVERIFY(!rig.Row("a"));
    QCOMPARE(rig.Counts().last(), 0);
}

void PanelReentryTest::ThePictureOfADeletedRowGoesWhenItComes()
{
    PanelRig rig;
    rig.Show();
    rig.Panel().AddDownloadInfo(WithPicture(rig));
    rig.Panel().OnDeleteRecord(QStringLiteral("a"));
    QVERIFY(!rig.Row("a"));
    rig.Destroy(); // waits for the picture
    QVERIFY(!IsThere(rig, "a.jpg"));
}

// The client asks for the recording again, for another folder.
void PanelReentryTest::ThePictureOfADeletedRowGoesThoughItsIdIsBack()
{
    PanelRig rig;
    rig.Show();
    rig.Panel().AddDownloadInfo(WithPicture(rig));
    rig.Panel().OnDeleteRecord(QStringLiteral("a"));
    const auto pAgain = rig.Made("a");
    pAgain->strDownloadPath = rig.World().Path("elsewhere.mp4");
    rig.Panel().AddDownloadInfo(pAgain);
    QTRY_COMPARE(pAgain->strPicturePath, rig.World().Path("a.jpg")); // it was made
    QVERIFY(!IsThere(rig, "a.jpg"));
}

void PanelReentryTest::ThePictureOfAPausedRowGoesWithThePanel()
{
    PanelRig rig;
    rig.Show();
    rig.Panel().AddDownloadInfo(WithPicture(rig));
    rig.Panel().OnStopAllDownload();
    rig.Destroy();
    QVERIFY(!IsThere(rig, "a.jpg"));
}

KX_TEST(PanelReentryTest, QApplication)

#include "PanelReentryTest.moc"
