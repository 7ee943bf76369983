// A row under the pointer: hover, presses, and the report of each click.

#include "Engine/EngineRig.h"
#include "RowRig.h"
#include "TestMain.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsSceneHoverEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>

namespace {

// A row whose handlers are called by hand.
class BareRow : public DownloadItem
{
public:
    explicit BareRow(const RowRig& rig)
        : DownloadItem(nullptr, rig.Pixmaps())
    {
        SetRecord(std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>());
    }
    // Whether the row accepts a press there.
    bool TakesPress(const QPoint& pos, Qt::MouseButton button = Qt::LeftButton)
    {
        QGraphicsSceneMouseEvent event(QEvent::GraphicsSceneMousePress);
        event.setScenePos(pos);
        event.setButton(button);
        event.setButtons(button);
        event.setAccepted(true);
        mousePressEvent(&event);
        return event.isAccepted();
    }
    void Hover(const QPoint& pos)
    {
        QGraphicsSceneHoverEvent event(QEvent::GraphicsSceneHoverMove);
        event.setScenePos(pos);
        hoverMoveEvent(&event);
    }
};

// The values of a signal with one flag.
QList<bool> Flags(const QSignalSpy& spy)
{
    QList<bool> flags;
    for (const QList<QVariant>& arguments : spy)
        flags.append(arguments.value(0).toBool());
    return flags;
}

} // namespace

class RowMouseTest : public QObject
{
    Q_OBJECT

private slots:
    void HoverAndNormalPicturesDiffer();
    void TheStateButtonShowsThePictureOfTheState_data();
    void TheStateButtonShowsThePictureOfTheState();
    void HoveringShowsTheHoverPictureAndAHand_data();
    void HoveringShowsTheHoverPictureAndAHand();
    void HoveringTheDeleteButtonLeavesTheStateButton();
    void PressingDeleteAsksForDeletionOfTheRecord();
    void TwoPressesOnTheStateButtonPauseAndStart();
    void EachPressChangesThePictureAtOnce();
    void ADoubleClickIsTwoPresses();
    void AFailedRowAlwaysStarts();
    void APressBesideTheButtonsDoesNothing();
    void AnotherButtonDoesNothing_data();
    void AnotherButtonDoesNothing();
    void AnotherButtonIsLeftToOthers();
    void ARowOutsideASceneIgnoresThePointer();
    void TheReportNamesButtonRowAndAncestors();
    void TheReportOfAStateButtonFollowsTheSignal();
    void TheReportOfDeleteAndRetryComesBeforeTheSignal();

private:
    static QJsonObject Properties(RowRig& rig, int iReport);
};

QJsonObject RowMouseTest::Properties(RowRig& rig, int iReport)
{
    const QStringList reports = rig.World().Bus().Texts("EventNotifyLogV2Report");
    const QByteArray text = reports.value(iReport).toUtf8();
    return QJsonDocument::fromJson(text).object().value(QStringLiteral("properties")).toObject();
}

void RowMouseTest::HoverAndNormalPicturesDiffer()
{
    RowRig rig;
    for (int iKey = 0; iKey < 4; ++iKey) {
        QVERIFY(!rig.Icon(iKey, true).isNull());
        QVERIFY(rig.Icon(iKey, true) != rig.Icon(iKey, false));
    }
}

void RowMouseTest::TheStateButtonShowsThePictureOfTheState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("icon");
    QTest::newRow("waiting") << 0 << 1;
    QTest::newRow("downloading") << 1 << 1;
    QTest::newRow("finished") << 2 << 1;
    QTest::newRow("failed") << 3 << 3;
    QTest::newRow("paused") << 5 << 0;
}

void RowMouseTest::TheStateButtonShowsThePictureOfTheState()
{
    QFETCH(int, state);
    QFETCH(int, icon);
    RowRig rig;
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, false)); // a new row
    QCOMPARE(rig.Shown(RowRig::DeleteButton), rig.Icon(2, false));
    rig.SetState(state);
    QVERIFY(!rig.Icon(icon, false).isNull());
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(icon, false));
    QCOMPARE(rig.Shown(RowRig::StateButton).size(), QSize(30, 30));
}

void RowMouseTest::HoveringShowsTheHoverPictureAndAHand_data()
{
    TheStateButtonShowsThePictureOfTheState_data();
}

void RowMouseTest::HoveringShowsTheHoverPictureAndAHand()
{
    QFETCH(int, state);
    QFETCH(int, icon);
    RowRig rig;
    rig.SetState(state);
    rig.Hover(RowRig::NoButton);
    QTRY_COMPARE(rig.Row().cursor().shape(), Qt::ArrowCursor);
    rig.Hover(RowRig::StateButton);
    QTRY_COMPARE(rig.Shown(RowRig::StateButton), rig.Icon(icon, true));
    QCOMPARE(rig.Row().cursor().shape(), Qt::PointingHandCursor);

    rig.Hover(RowRig::NoButton);
    QTRY_COMPARE(rig.Shown(RowRig::StateButton), rig.Icon(icon, false));
    QCOMPARE(rig.Row().cursor().shape(), Qt::ArrowCursor);
}

void RowMouseTest::HoveringTheDeleteButtonLeavesTheStateButton()
{
    RowRig rig;
    rig.Hover(RowRig::StateButton);
    QTRY_COMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, true));
    rig.Hover(RowRig::DeleteButton);
    QTRY_COMPARE(rig.Shown(RowRig::DeleteButton), rig.Icon(2, true));
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, true));
    QCOMPARE(rig.Row().cursor().shape(), Qt::PointingHandCursor);
    rig.Hover(RowRig::StateButton);
    EngineRig::Settle();
    QCOMPARE(rig.Shown(RowRig::DeleteButton), rig.Icon(2, true)); // nor the other way round
    rig.Hover(RowRig::NoButton);
    QTRY_COMPARE(rig.Shown(RowRig::DeleteButton), rig.Icon(2, false));
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, false));
    QCOMPARE(rig.Row().cursor().shape(), Qt::ArrowCursor);
}

void RowMouseTest::PressingDeleteAsksForDeletionOfTheRecord()
{
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnDeleteRecord);
    rig.Press(RowRig::DeleteButton);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy[0][0].toString(), QStringLiteral("r"));
}

void RowMouseTest::TwoPressesOnTheStateButtonPauseAndStart()
{
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.FollowPresses();
    rig.Press(RowRig::StateButton);
    QVERIFY(rig.ShowsKey(0));
    rig.Press(RowRig::StateButton);
    QVERIFY(rig.ShowsKey(1));
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy[0][0].toBool(), false);
    QCOMPARE(spy[1][0].toBool(), true);
    QVERIFY(Properties(rig, 0).value(QStringLiteral("$element_id")).toString().startsWith(QStringLiteral("btnPause.")));
    QVERIFY(
        Properties(rig, 1).value(QStringLiteral("$element_id")).toString().startsWith(QStringLiteral("btnRestart.")));
}

// The row does so by itself: nobody sets its state here.
void RowMouseTest::EachPressChangesThePictureAtOnce()
{
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    const auto press = [&] { QTest::mousePress(rig.Viewport(), Qt::LeftButton, Qt::NoModifier, RowRig::StateButton); };
    const auto release = [&] {
        QTest::mouseRelease(rig.Viewport(), Qt::LeftButton, Qt::NoModifier, RowRig::StateButton);
    };
    press();
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(0, false)); // before the button is released
    release();
    press();
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, false));
    release();
    QCOMPARE(Flags(spy), QList<bool>({false, true}));
    rig.SetState(3);
    press();
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, false));
}

void RowMouseTest::ADoubleClickIsTwoPresses()
{
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.Press(RowRig::StateButton);
    QTest::mouseDClick(rig.Viewport(), Qt::LeftButton, Qt::NoModifier, RowRig::StateButton);
    QCOMPARE(Flags(spy), QList<bool>({false, true}));
    QCOMPARE(rig.Shown(RowRig::StateButton), rig.Icon(1, false));
    QCOMPARE(Properties(rig, 1).value(QStringLiteral("$element_type")).toString(),
             QStringLiteral("QEventType=158&MouseButtons=1")); // 158 is a double click in a graphics scene
}

void RowMouseTest::AFailedRowAlwaysStarts()
{
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.SetState(5);
    rig.SetState(3);
    rig.Press(RowRig::StateButton);
    rig.Press(RowRig::StateButton); // nobody changed the state: it is still "failed"
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy[0][0].toBool(), true);
    QCOMPARE(spy[1][0].toBool(), true);
    QVERIFY(Properties(rig, 0).value(QStringLiteral("$element_id")).toString().startsWith(QStringLiteral("btnRetry.")));

    rig.FollowPresses();
    rig.Press(RowRig::StateButton);
    QVERIFY(rig.ShowsKey(1));
    rig.Press(RowRig::StateButton); // the row runs, so that this press pauses
    QCOMPARE(spy[3][0].toBool(), false);
}

void RowMouseTest::APressBesideTheButtonsDoesNothing()
{
    RowRig rig;
    const QSignalSpy deleted(&rig.Row(), &DownloadItem::SgnDeleteRecord);
    const QSignalSpy changed(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.Press(RowRig::NoButton);
    QCOMPARE(deleted.size() + changed.size(), 0);
    QCOMPARE(rig.World().Calls().Lines("notify"), Texts({}));
}

void RowMouseTest::AnotherButtonDoesNothing_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
}

void RowMouseTest::AnotherButtonDoesNothing()
{
    QFETCH(int, button);
    RowRig rig;
    const QSignalSpy deleted(&rig.Row(), &DownloadItem::SgnDeleteRecord);
    const QSignalSpy changed(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.Press(RowRig::DeleteButton, Qt::MouseButton(button));
    rig.Press(RowRig::StateButton, Qt::MouseButton(button));
    QCOMPARE(deleted.size() + changed.size(), 0);
    QCOMPARE(rig.World().Calls().Lines("notify"), Texts({}));
}

void RowMouseTest::AnotherButtonIsLeftToOthers()
{
    const RowRig rig;
    QGraphicsScene scene;
    auto* pRow = new BareRow(rig);
    scene.addItem(pRow);
    QVERIFY(!pRow->TakesPress(RowRig::StateButton, Qt::RightButton));
    QVERIFY(!pRow->TakesPress(RowRig::StateButton, Qt::MiddleButton));
    QVERIFY(pRow->TakesPress(RowRig::StateButton));
}

void RowMouseTest::ARowOutsideASceneIgnoresThePointer()
{
    RowRig rig;
    BareRow row(rig);
    const QSignalSpy deleted(&row, &DownloadItem::SgnDeleteRecord);
    const QSignalSpy changed(&row, &DownloadItem::SgnChangeDownloadState);
    for (const QPoint& pos : {RowRig::DeleteButton, RowRig::StateButton}) {
        row.TakesPress(pos);
        row.Hover(pos);
    }
    QCOMPARE(deleted.size() + changed.size(), 0);
    QCOMPARE(rig.World().Calls().Lines("notify"), Texts({}));
    QVERIFY(!row.hasCursor());
    QGraphicsScene scene; // in one, the same does something
    scene.addItem(&row);
    row.TakesPress(RowRig::DeleteButton);
    row.TakesPress(RowRig::StateButton);
    row.Hover(RowRig::StateButton);
    QCOMPARE(deleted.size() + changed.size(), 2);
    QVERIFY(row.hasCursor());
    scene.removeItem(&row);
}

void RowMouseTest::TheReportNamesButtonRowAndAncestors()
{
    RowRig rig;
    QObject window;
    window.setObjectName(QStringLiteral("MainWindow"));
    rig.Panel().setObjectName(QStringLiteral("DownloadWidget"));
    rig.Panel().setParent(&window);
    const qint64 lBefore = QDateTime::currentMSecsSinceEpoch();
    rig.Press(RowRig::DeleteButton);
    rig.Panel().setParent(nullptr);

    const QStringList reports = rig.World().Bus().Texts("EventNotifyLogV2Report");
    QCOMPARE(reports.size(), 1);
    const QJsonObject report = QJsonDocument::fromJson(reports[0].toUtf8()).object();
    const qint64 lTime = static_cast<qint64>(report.value(QStringLiteral("time")).toDouble());
    QVERIFY(lTime >= lBefore && lTime <= QDateTime::currentMSecsSinceEpoch());
    // 156 is a press in a graphics scene, 1 the left button.
    QCOMPARE(reports[0], QStringLiteral("{\"time\":%1,\"event\":\"$AppClick\",\"properties\":{\"$carrier\":\"\","
                                        "\"$network_type\":\"\",\"$screen_name\":\"QTMAIN\","
                                        "\"$element_type\":\"QEventType=156&MouseButtons=1\","
                                        "\"$element_id\":\"btnDelete..DownloadWidget.MainWindow\"}}")
                             .arg(lTime));
}

void RowMouseTest::TheReportOfAStateButtonFollowsTheSignal()
{
    RowRig rig;
    int iReportsAtSignal = -1;
    connect(&rig.Row(), &DownloadItem::SgnChangeDownloadState, this,
            [&] { iReportsAtSignal = rig.World().Calls().Count("notify EventNotifyLogV2Report"); });
    rig.Press(RowRig::StateButton);
    QCOMPARE(iReportsAtSignal, 0);
    QCOMPARE(rig.World().Calls().Count("notify EventNotifyLogV2Report"), 1);
}

void RowMouseTest::TheReportOfDeleteAndRetryComesBeforeTheSignal()
{
    RowRig rig;
    QList<int> reportsAtSignal;
    const auto count = [&] { reportsAtSignal.append(rig.World().Calls().Count("notify EventNotifyLogV2Report")); };
    connect(&rig.Row(), &DownloadItem::SgnChangeDownloadState, this, count);
    connect(&rig.Row(), &DownloadItem::SgnDeleteRecord, this, count);
    rig.SetState(3);
    rig.Press(RowRig::StateButton);
    rig.Press(RowRig::DeleteButton);
    QCOMPARE(reportsAtSignal, QList<int>({1, 2}));
}

KX_TEST(RowMouseTest, QApplication)

#include "RowMouseTest.moc"
