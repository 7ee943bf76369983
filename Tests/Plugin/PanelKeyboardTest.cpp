// The list by the keyboard: which row has the frame, what the keys do to it, and what stays the pointer's.

#include "ChangedRegion.h"
#include "PanelRig.h"
#include "TestMain.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QShortcut>

namespace {

// The panel with rows "r00", "r01" … of which the list shows five and a little of a sixth.
class KeyRig : public PanelRig
{
public:
    explicit KeyRig(int iRows)
    {
        for (int iRow = 0; iRow < iRows; ++iRow)
            Panel().AddDownloadInfo(Made(Id(iRow).constData()));
        View().setFixedHeight(450); // five rows and a bit on every platform, however high the head of the list is
        Show();
    }
    static QByteArray Id(int iRow) { return QStringLiteral("r%1").arg(iRow, 2, 10, QLatin1Char('0')).toLatin1(); }

    // To the focused widget, as the system gives it.
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* pFocused = Panel().focusWidget();
        QTest::keyClick(pFocused ? pFocused : &Panel(), key, modifiers);
        EngineRig::Settle();
    }
    void Focus()
    {
        View().clearFocus();
        View().setFocus(Qt::TabFocusReason);
        EngineRig::Settle();
    }
    // The ids of the rows in view that show a frame, by what is painted left of their thumbnails.
    QString Framed()
    {
        const QImage image = View().viewport()->grab().toImage();
        QList<QGraphicsItem*> rows;
        View().GetItemsInViewPort(rows, true);
        QStringList framed;
        for (const QGraphicsItem* pRow : qAsConst(rows)) {
            const QPoint edge = View().mapFromScene(pRow->mapToScene(20, 44));
            if (image.rect().contains(edge) && image.pixelColor(edge) == QColor(0x1f, 0x6f, 0xeb))
                framed.append(pRow->data(GraphicsGridView::KeyRole).toString());
        }
        return framed.join(QLatin1Char(' '));
    }
    // Whether a row's whole height is in view.
    bool IsWhole(const QString& strId)
    {
        const DownloadItem* pRow = Row(strId.toLatin1().constData());
        const QRect place = View().mapFromScene(pRow->sceneBoundingRect()).boundingRect();
        return pRow->scene() && place.top() >= 0 && place.bottom() <= View().viewport()->height();
    }
    // Texts of the click reports: element and type.
    QStringList Reports()
    {
        QStringList reports;
        for (const QString& strText : World().Bus().Texts("EventNotifyLogV2Report")) {
            const QJsonObject report = QJsonDocument::fromJson(strText.toUtf8()).object();
            const QJsonObject properties = report.value(QStringLiteral("properties")).toObject();
            reports.append(properties.value(QStringLiteral("$element_id")).toString() + QLatin1Char(' ') +
                           properties.value(QStringLiteral("$element_type")).toString());
        }
        return reports;
    }
};

} // namespace

class PanelKeyboardTest : public QObject
{
    Q_OBJECT

private slots:
    void TabReachesTheList();
    void KeysMoveTheFrame_data();
    void KeysMoveTheFrame();
    void TheRowWithTheFrameIsInView();
    void TheFrameIsWhole();
    void OnlyTheTwoRowsAreRepainted();
    void SpacePressesTheStateButton_data();
    void SpacePressesTheStateButton();
    void DeletePressesTheDeleteButton();
    void TheFrameGoesToANeighbourOfADeletedRow();
    void TheFrameFollowsItsRow();
    void AFrameInViewStaysInView();
    void AHeldKeyPressesOnce();
    void APressNeedsAFrame();
    void ThePointerHidesTheFrame();
    void TheFrameGoesWithTheFocus();
    void OtherKeysAreLeftToOthers();
    void AShortcutDoesNotTakeTheKeys();
    void ReturnPressesNothing();
    void ARowMayEndInsideItsOwnKey_data();
    void ARowMayEndInsideItsOwnKey();
    void AKeyMeantForARowThatEndedPressesNothing_data();
    void AKeyMeantForARowThatEndedPressesNothing();
    void TheLastRowMayGo();
};

void PanelKeyboardTest::TabReachesTheList()
{
    KeyRig rig(2);
    QCOMPARE(rig.Framed(), QString());
    rig.Key(Qt::Key_Tab);
    QVERIFY(rig.Find<QPushButton>("btnSetting").hasFocus());
    rig.Key(Qt::Key_Tab);
    QVERIFY(rig.Find<QPushButton>("btnAllStart").hasFocus());
    QCOMPARE(rig.Framed(), QString());
    rig.Key(Qt::Key_Tab);
    QVERIFY(rig.View().hasFocus());
    QCOMPARE(rig.Framed(), QStringLiteral("r00"));
    rig.Key(Qt::Key_Backtab);
    QVERIFY(rig.Find<QPushButton>("btnAllStart").hasFocus());
    QCOMPARE(rig.Framed(), QString());
}

void PanelKeyboardTest::KeysMoveTheFrame_data()
{
    using Keys = QList<int>;
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<QString>("row");
    QTest::newRow("down") << Keys{Qt::Key_Down} << QStringLiteral("r01");
    QTest::newRow("down and up") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up} << QStringLiteral("r01");
    QTest::newRow("up at the start") << Keys{Qt::Key_Up} << QStringLiteral("r00");
    QTest::newRow("page down") << Keys{Qt::Key_PageDown} << QStringLiteral("r05");
    QTest::newRow("page down twice") << Keys{Qt::Key_PageDown, Qt::Key_PageDown} << QStringLiteral("r10");
    QTest::newRow("page up") << Keys{Qt::Key_End, Qt::Key_PageUp} << QStringLiteral("r14");
    QTest::newRow("page up at the start") << Keys{Qt::Key_Down, Qt::Key_PageUp} << QStringLiteral("r00");
    QTest::newRow("page down at the end") << Keys{Qt::Key_End, Qt::Key_Up, Qt::Key_PageDown} << QStringLiteral("r19");
    QTest::newRow("end") << Keys{Qt::Key_End} << QStringLiteral("r19");
    QTest::newRow("down at the end") << Keys{Qt::Key_End, Qt::Key_Down} << QStringLiteral("r19");
    QTest::newRow("home") << Keys{Qt::Key_End, Qt::Key_Home} << QStringLiteral("r00");
}

void PanelKeyboardTest::KeysMoveTheFrame()
{
    QFETCH(QList<int>, keys);
    KeyRig rig(20);
    rig.Focus();
    for (const int iKey : qAsConst(keys))
        rig.Key(Qt::Key(iKey));
    QTEST(rig.Framed(), "row");
}

void PanelKeyboardTest::TheRowWithTheFrameIsInView()
{
    KeyRig rig(20);
    rig.Focus();
    for (int iTurn = 0; iTurn < 19; ++iTurn) {
        rig.Key(Qt::Key_Down);
        QVERIFY2(rig.IsWhole(rig.Framed()), qPrintable(rig.Framed()));
    }
    QCOMPARE(rig.Framed(), QStringLiteral("r19"));
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageUp, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Home}) {
        rig.Key(key);
        QVERIFY2(rig.IsWhole(rig.Framed()), qPrintable(rig.Framed()));
    }
    rig.View().verticalScrollBar()->setValue(10 * 88); // away from it by the wheel
    rig.Key(Qt::Key_Down);
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    QVERIFY(rig.IsWhole(QStringLiteral("r01")));
}

// With a scroll bar beside it, too.
void PanelKeyboardTest::TheFrameIsWhole()
{
    for (const int iRows : {2, 20}) {
        KeyRig rig(iRows);
        rig.Focus();
        const QImage image = rig.View().viewport()->grab().toImage();
        const QColor frame(0x1f, 0x6f, 0xeb);
        int iRight = image.width() - 1;
        while (iRight > 0 && image.pixelColor(iRight, 44) != frame)
            --iRight;
        QVERIFY2(iRight > 580 && iRight < image.width() - 1, qPrintable(QString::number(iRight))); // the buttons' edge
        for (const QPoint& edge : {QPoint(19, 44), QPoint(20, 44), QPoint(300, 2), QPoint(300, 3), QPoint(300, 84),
                                   QPoint(300, 85), QPoint(iRight - 1, 44), QPoint(iRight, 44)})
            QCOMPARE(image.pixelColor(edge), frame);
        QVERIFY(image.pixelColor(19, 2) != frame); // round corners
    }
}

void PanelKeyboardTest::OnlyTheTwoRowsAreRepainted()
{
    KeyRig rig(4);
    rig.Focus();
    const ChangedRegion changed(*rig.View().scene());
    rig.Key(Qt::Key_Down);
    QTRY_VERIFY(changed.Contains(QRectF(20, 3, 560, 80)));
    QVERIFY(changed.Contains(QRectF(20, 91, 560, 80)));
    QVERIFY(!changed.Touches(QRectF(0, 180, 610, 160)));
}

void PanelKeyboardTest::SpacePressesTheStateButton_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("report");
    const QString strStop = QStringLiteral("StopDeviceRecordDownload r00");
    const QString strStart = QStringLiteral("StartDeviceRecordDownload r00");
    const auto report = [](const char* pszButton) -> QString {
        return QLatin1String(pszButton) + QStringLiteral("..DownloadWidget QEventType=6&MouseButtons=0");
    };
    QTest::newRow("running") << 1 << 5 << strStop << report("btnPause");
    QTest::newRow("paused") << 5 << 0 << strStart << report("btnRestart");
    QTest::newRow("failed") << 3 << 0 << strStart << report("btnRetry");
}

void PanelKeyboardTest::SpacePressesTheStateButton()
{
    QFETCH(int, before);
    KeyRig rig(0);
    rig.Send({"r00"});
    rig.RaiseState("r00", before == 3 ? 0 : 1);
    if (before == 5)
        rig.Press("r00", PanelRig::StateButton);
    rig.Focus();
    QCOMPARE(rig.StateOf("r00"), before);
    rig.Calls().Clear();
    const int iReports = rig.Reports().size();
    rig.Key(Qt::Key_Space);
    QTEST(rig.StateOf("r00"), "after");
    QTEST(rig.Calls().Short({"Start", "Stop"}).join(QLatin1Char(' ')), "call");
    QTEST(rig.Reports().mid(iReports).join(QLatin1Char(' ')), "report");
    QCOMPARE(rig.Framed(), QStringLiteral("r00"));
}

void PanelKeyboardTest::DeletePressesTheDeleteButton()
{
    KeyRig rig(0);
    rig.Send({"r00", "r01", "r02"});
    rig.World().WriteFile("r00.mp4");
    rig.Focus();
    rig.Calls().Clear();
    rig.Key(Qt::Key_Delete);
    QVERIFY(!rig.Row("r00"));
    QVERIFY(!rig.World().HasFile("r00.mp4"));
    QCOMPARE(rig.Calls().Short({"notify EventNotifyLogV2Report", "Stop", "Start", "notify EventNotifyDownloadNumber"}),
             Texts({"notify EventNotifyLogV2Report", "StopDeviceRecordDownload r00", "StartDeviceRecordDownload r02",
                    "notify EventNotifyDownloadNumber"}));
    QCOMPARE(rig.Reports(), Texts({"btnDelete..DownloadWidget QEventType=6&MouseButtons=0"}));
}

void PanelKeyboardTest::TheFrameGoesToANeighbourOfADeletedRow()
{
    KeyRig rig(20);
    rig.Focus();
    rig.Key(Qt::Key_Down);
    rig.Key(Qt::Key_Delete);
    QTRY_COMPARE(rig.Framed(), QStringLiteral("r02"));
    rig.Key(Qt::Key_End);
    rig.Key(Qt::Key_Delete);
    QTRY_COMPARE(rig.Framed(), QStringLiteral("r18"));
    QVERIFY(rig.IsWhole(QStringLiteral("r18")));
    rig.Key(Qt::Key_Up);
    QCOMPARE(rig.Framed(), QStringLiteral("r17"));
}

void PanelKeyboardTest::TheFrameFollowsItsRow()
{
    KeyRig rig(6);
    rig.Focus();
    rig.Key(Qt::Key_Down);
    rig.Key(Qt::Key_Down);
    rig.Panel().FinishDownloadRecord(QStringLiteral("r00"));
    QTRY_COMPARE(rig.Row("r02")->pos(), QPointF(0, 88));
    QCOMPARE(rig.Framed(), QStringLiteral("r02"));
    rig.Panel().FinishDownloadRecord(QStringLiteral("r02"));
    QTRY_COMPARE(rig.Framed(), QStringLiteral("r03"));
    rig.Panel().AddDownloadInfo(rig.Made("r09"));
    rig.Panel().OnDeleteRecord(QStringLiteral("r05"));
    EngineRig::Settle();
    QCOMPARE(rig.Framed(), QStringLiteral("r03"));
    rig.Key(Qt::Key_End);
    QCOMPARE(rig.Framed(), QStringLiteral("r09"));
}

// The row moves up when others above it go; one that the user scrolled away from does not pull the list back.
void PanelKeyboardTest::AFrameInViewStaysInView()
{
    KeyRig rig(30);
    rig.Focus();
    rig.Key(Qt::Key_PageDown);
    rig.View().verticalScrollBar()->setValue(5 * 88);
    for (int iRow = 0; iRow < 3; ++iRow)
        rig.Panel().FinishDownloadRecord(QString::fromLatin1(KeyRig::Id(iRow)));
    QTRY_COMPARE(rig.Framed(), QStringLiteral("r05"));
    QVERIFY(rig.IsWhole(QStringLiteral("r05")));
    rig.View().verticalScrollBar()->setValue(15 * 88);
    rig.Panel().FinishDownloadRecord(QStringLiteral("r03"));
    EngineRig::Settle();
    QCOMPARE(rig.View().verticalScrollBar()->value(), 15 * 88);
}

void PanelKeyboardTest::AHeldKeyPressesOnce()
{
    KeyRig rig(4);
    rig.Focus();
    const auto hold = [&rig](Qt::Key key) {
        for (const bool bRepeated : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), bRepeated);
            QCoreApplication::sendEvent(&rig.View(), &press);
            EngineRig::Settle();
        }
    };
    hold(Qt::Key_Space);
    QCOMPARE(rig.StateOf("r00"), 5);
    hold(Qt::Key_Delete);
    QCOMPARE(rig.View().GetAllItem().size(), 3);
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    hold(Qt::Key_Down); // moves as long as it is held
    QCOMPARE(rig.Framed(), QStringLiteral("r03"));
}

// What a key does is seen before it is done.
void PanelKeyboardTest::APressNeedsAFrame()
{
    KeyRig rig(3);
    rig.Press("r01", QPoint(300, 41));
    QVERIFY(rig.View().hasFocus());
    QCOMPARE(rig.Framed(), QString());
    rig.Key(Qt::Key_Delete);
    QCOMPARE(rig.View().GetAllItem().size(), 3);
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    QCOMPARE(rig.Reports(), QStringList());
    rig.Key(Qt::Key_Delete);
    QVERIFY(!rig.Row("r01"));
}

void PanelKeyboardTest::ThePointerHidesTheFrame()
{
    KeyRig rig(4);
    rig.Focus();
    rig.Press("r02", QPoint(300, 41));
    QCOMPARE(rig.Framed(), QString());
    rig.Key(Qt::Key_Up); // from the row that was pressed
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    rig.Press("r02", PanelRig::StateButton);
    QCOMPARE(rig.StateOf("r02"), 5);
    QCOMPARE(rig.Reports(), Texts({"btnPause..DownloadWidget QEventType=156&MouseButtons=1"}));
    QCOMPARE(rig.Framed(), QString());
}

void PanelKeyboardTest::TheFrameGoesWithTheFocus()
{
    KeyRig rig(3);
    rig.Focus();
    rig.Key(Qt::Key_Down);
    rig.Find<QPushButton>("btnSetting").setFocus(Qt::OtherFocusReason);
    EngineRig::Settle();
    QCOMPARE(rig.Framed(), QString());
    rig.Focus();
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
}

void PanelKeyboardTest::OtherKeysAreLeftToOthers()
{
    KeyRig rig(3);
    rig.Focus();
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Space, Qt::Key_Down})
        rig.Key(key, Qt::ControlModifier);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_A})
        rig.Key(key);
    QCOMPARE(rig.Framed(), QStringLiteral("r00"));
    QCOMPARE(rig.View().GetAllItem().size(), 3);
    QCOMPARE(rig.StateOf("r00"), 0);
    rig.Key(Qt::Key_Down, Qt::KeypadModifier);
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    rig.Key(Qt::Key_Escape);
    QVERIFY(!rig.Panel().isVisible());
}

void PanelKeyboardTest::AShortcutDoesNotTakeTheKeys()
{
    KeyRig rig(3);
    rig.Focus();
    const QShortcut shortcut(QKeySequence(Qt::Key_Delete), &rig.Panel());
    int iActivated = 0;
    connect(&shortcut, &QShortcut::activated, this, [&iActivated] { ++iActivated; });
    rig.Key(Qt::Key_Delete);
    QCOMPARE(iActivated, 0);
    QVERIFY(!rig.Row("r00"));
}

void PanelKeyboardTest::ReturnPressesNothing()
{
    KeyRig rig(2);
    rig.Focus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        rig.Key(key);
    rig.Find<QPushButton>("btnSetting").setFocus(Qt::TabFocusReason);
    rig.Key(Qt::Key_Return);
    QVERIFY(rig.Panel().isVisible());
    QCOMPARE(rig.World().Bus().Payloads("EventNotifyEnterDownloadSetting").size(), 0);
    QCOMPARE(rig.AllStartText(), QStringLiteral("pc_download_video_suspend_all"));
    rig.Key(Qt::Key_Space); // as everywhere
    QCOMPARE(rig.World().Bus().Payloads("EventNotifyEnterDownloadSetting").size(), 1);
}

void PanelKeyboardTest::ARowMayEndInsideItsOwnKey_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("pause") << int(Qt::Key_Space);
    QTest::newRow("delete") << int(Qt::Key_Delete);
}

// The host lets events run while it stops the transfer, which ends by itself then.
void PanelKeyboardTest::ARowMayEndInsideItsOwnKey()
{
    QFETCH(int, key);
    KeyRig rig(0);
    rig.Send({"r00", "r01"});
    rig.RaiseState("r00", 1);
    rig.Focus();
    rig.Calls().WhenAdded("StopDeviceRecordDownload r00",
                          [&rig] { rig.Panel().FinishDownloadRecord(QStringLiteral("r00")); });
    rig.Key(Qt::Key(key));
    QVERIFY(!rig.Row("r00"));
    QCOMPARE(rig.View().GetAllItem().size(), 1);
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    QCOMPARE(rig.Reports().size(), 1);
}

void PanelKeyboardTest::AKeyMeantForARowThatEndedPressesNothing_data()
{
    ARowMayEndInsideItsOwnKey_data();
}

// The frame has gone over to the next row only just now.
void PanelKeyboardTest::AKeyMeantForARowThatEndedPressesNothing()
{
    QFETCH(int, key);
    KeyRig rig(4);
    rig.Focus();
    const int iOld = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(1000000);
    rig.Panel().FinishDownloadRecord(QStringLiteral("r00"));
    rig.Key(Qt::Key(key));
    QCOMPARE(rig.Reports(), QStringList());
    QCOMPARE(rig.Framed(), QStringLiteral("r01"));
    rig.Key(Qt::Key_Down); // the user has seen it
    rig.Key(Qt::Key(key));
    QCOMPARE(rig.Reports().size(), 1);
    QApplication::setDoubleClickInterval(0);
    rig.Focus();
    const QByteArray framed = rig.Framed().toLatin1();
    rig.Panel().FinishDownloadRecord(QString::fromLatin1(framed));
    rig.Key(Qt::Key(key)); // late enough
    QCOMPARE(rig.Reports().size(), 2);
    QApplication::setDoubleClickInterval(iOld);
}

void PanelKeyboardTest::TheLastRowMayGo()
{
    KeyRig rig(1);
    rig.Focus();
    rig.Key(Qt::Key_Delete);
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 0);
    rig.Panel().AddDownloadInfo(rig.Made("new"));
    EngineRig::Settle();
    rig.Focus();
    QCOMPARE(rig.Framed(), QStringLiteral("new"));
}

KX_TEST(PanelKeyboardTest, QApplication)

#include "PanelKeyboardTest.moc"
