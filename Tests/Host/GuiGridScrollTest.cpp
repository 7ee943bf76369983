#include "GuiRow.h"
#include "KXGui/GraphicsGridView.h"
#include "TestMain.h"

#include <QtTest/QtTest>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QVBoxLayout>

namespace {

// The view as the panel has it: one column of rows 88 high, five of them in view.
struct Screen
{
    explicit Screen(int iCount)
    {
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.SetVerticalSpacing(0);
        view.resize(620, 440);
        view.show();
        for (int i = 0; i < iCount; ++i)
            view.AddItem(new GuiRow(QString::number(i)), true);
    }

    GuiRow* Row(int iNumber) const { return static_cast<GuiRow*>(view.GetItem(QString::number(iNumber))); }
    QScrollBar* Bar() const { return view.verticalScrollBar(); }
    QImage Grab() { return view.viewport()->grab().toImage(); }
    QStringList InView(bool bPartly) const
    {
        QList<QGraphicsItem*> list;
        view.GetItemsInViewPort(list, bPartly);
        QStringList keys;
        for (const QGraphicsItem* pItem : list)
            keys << pItem->data(99).toString();
        return keys;
    }

    GraphicsGridView view;
};

QStringList Numbers(int iFirst, int iLast)
{
    QStringList list;
    for (int i = iFirst; i <= iLast; ++i)
        list << QString::number(i);
    return list;
}

void SendMouse(QWidget* pTarget, QEvent::Type type, const QPoint& pos, Qt::MouseButton button)
{
    QMouseEvent event(type, pos, pTarget->mapToGlobal(pos), button,
                      type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pTarget, &event);
}

} // namespace

// What the view shows: layout, scrolling, and how little of it is in the scene.
class GuiGridScrollTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(GuiRow::s_iAlive, 0); }
    void RowsFollowEachOtherDownwards();
    void SpacingStandsBetweenTheRowsOnly();
    void AsManyColumnsAsFit_data();
    void AsManyColumnsAsFit();
    void ResizingLaysTheColumnsOutAgain();
    void TheScrollRangeIsThatOfAllRows();
    void OnlyTheRowsInViewAreInTheScene();
    void ScrollingPaintsTheRowsThatComeIntoView();
    void DeletingAboveMovesTheRowsOnTheScreen();
    void DeletingTheLastRowsWhileScrolledDownShowsTheRest();
    void UpdatingARowOutOfViewRepaintsNothing();
    void UpdatingARowInViewRepaintsItAlone();
    void AnAdditionWithoutRefreshIsShownByTheEventLoop();
    void ItemsInViewAreToldApartFromThosePartlyInView();
    void AnItemWiderThanTheViewIsPartlyInView();
    void KeysScroll();
    void TheWheelScrolls();
    void ThereIsNoSidewaysScrollWithoutItsBar();
    void TheScrollBarTellsItsListeners();
    void ARowMayDeleteItselfWhileItIsPressed();
    void APressedRowDeletedByItsParentIsNotDeletedTwice();
    void TheRowThatScrollsBelowThePointerIsHovered();
    void TheBackgroundIsWhatLiesBelow();
    void TheSceneHasNoIndex();
};

void GuiGridScrollTest::RowsFollowEachOtherDownwards()
{
    const Screen screen(3);
    QCOMPARE(screen.Row(0)->pos(), QPointF(0, 0));
    QCOMPARE(screen.Row(1)->pos(), QPointF(0, 88));
    QCOMPARE(screen.Row(2)->pos(), QPointF(0, 176));
}

void GuiGridScrollTest::SpacingStandsBetweenTheRowsOnly()
{
    Screen screen(10);
    screen.view.SetVerticalSpacing(12);
    QCOMPARE(screen.Row(1)->pos(), QPointF(0, 100));
    QCOMPARE(screen.Bar()->maximum(), 10 * 88 + 9 * 12 - 440);
    screen.view.SetVerticalSpacing(-5);
    QCOMPARE(screen.Row(1)->pos(), QPointF(0, 88));
}

void GuiGridScrollTest::AsManyColumnsAsFit_data()
{
    QTest::addColumn<int>("iWidth");
    QTest::addColumn<int>("iSpacing");
    QTest::addColumn<QPointF>("second");
    QTest::addColumn<QPointF>("fourth");
    QTest::newRow("one pixel short of two") << 199 << 0 << QPointF(0, 50) << QPointF(0, 150);
    QTest::newRow("two") << 200 << 0 << QPointF(100, 0) << QPointF(100, 50);
    QTest::newRow("spacing takes the second away") << 204 << 5 << QPointF(0, 50) << QPointF(0, 150);
    QTest::newRow("two and the spacing between them") << 205 << 5 << QPointF(105, 0) << QPointF(105, 50);
    QTest::newRow("three") << 399 << 0 << QPointF(100, 0) << QPointF(0, 50);
    QTest::newRow("narrower than an item") << 40 << 0 << QPointF(0, 50) << QPointF(0, 150);
}

void GuiGridScrollTest::AsManyColumnsAsFit()
{
    QFETCH(int, iWidth);
    QFETCH(int, iSpacing);
    GraphicsGridView view;
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.SetHorizontalSpacing(iSpacing);
    view.resize(iWidth, 400);
    view.show();
    for (int i = 0; i < 4; ++i) {
        auto* pRow = new GuiRow(QString::number(i));
        pRow->m_size = QSizeF(100, 50);
        view.AddItem(pRow, true);
    }
    QTEST(view.GetItem(QStringLiteral("1"))->pos(), "second");
    QTEST(view.GetItem(QStringLiteral("3"))->pos(), "fourth");
}

void GuiGridScrollTest::ResizingLaysTheColumnsOutAgain()
{
    Screen screen(4);
    screen.view.resize(1300, 440);
    QCOMPARE(screen.Row(1)->pos(), QPointF(610, 0));
    QCOMPARE(screen.Row(2)->pos(), QPointF(0, 88));
    screen.view.resize(700, 440);
    QCOMPARE(screen.Row(1)->pos(), QPointF(0, 88));
}

void GuiGridScrollTest::TheScrollRangeIsThatOfAllRows()
{
    Screen screen(5);
    QCOMPARE(screen.Bar()->maximum(), 0);
    screen.view.AddItem(new GuiRow(QStringLiteral("5")), true);
    QCOMPARE(screen.Bar()->maximum(), 88);
    screen.view.DeleteItem(0);
    QTRY_COMPARE(screen.Bar()->maximum(), 0);
}

void GuiGridScrollTest::OnlyTheRowsInViewAreInTheScene()
{
    const Screen screen(100000);
    QCOMPARE(screen.Bar()->maximum(), 8800000 - 440);
    for (const int iValue : {0, 4400000, 8800000 - 440, 123}) {
        screen.Bar()->setValue(iValue);
        const int iInScene = screen.view.scene()->items().size();
        QVERIFY2(iInScene >= 5 && iInScene <= 10, qPrintable(QString::number(iInScene)));
    }
    screen.Bar()->setValue(4400000);
    QCOMPARE(screen.Row(50000)->scene(), screen.view.scene());
    QCOMPARE(screen.Row(50000)->pos(), QPointF(0, 4400000));
    QVERIFY(!screen.Row(0)->scene());
    QVERIFY(!screen.Row(99999)->scene());
    QCOMPARE(screen.InView(true), Numbers(50000, 50004));
}

void GuiGridScrollTest::ScrollingPaintsTheRowsThatComeIntoView()
{
    Screen screen(1000);
    screen.Row(500)->m_color = Qt::red;
    QCOMPARE(screen.Grab().pixelColor(300, 40), QColor(Qt::blue));
    screen.Bar()->setValue(500 * 88);
    const QImage image = screen.Grab();
    QCOMPARE(image.pixelColor(300, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(300, 87), QColor(Qt::red));
    QCOMPARE(image.pixelColor(300, 88), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(300, 439), QColor(Qt::blue));
}

void GuiGridScrollTest::DeletingAboveMovesTheRowsOnTheScreen()
{
    Screen screen(1000);
    screen.Row(501)->m_color = Qt::red;
    screen.Bar()->setValue(500 * 88);
    QCOMPARE(screen.Grab().pixelColor(300, 10), QColor(Qt::blue));
    screen.view.DeleteItem(0);
    QCOMPARE(screen.Bar()->value(), 500 * 88);
    QCOMPARE(screen.Grab().pixelColor(300, 10), QColor(Qt::red));
    QCOMPARE(screen.InView(true), Numbers(501, 505));
}

void GuiGridScrollTest::DeletingTheLastRowsWhileScrolledDownShowsTheRest()
{
    Screen screen(100);
    screen.Bar()->setValue(screen.Bar()->maximum());
    for (int i = 0; i < 92; ++i)
        screen.view.DeleteItem(screen.view.GetAllItem().size() - 1);
    QTRY_COMPARE(screen.Bar()->value(), 8 * 88 - 440);
    QCOMPARE(screen.InView(true), Numbers(3, 7));
    QCOMPARE(screen.Row(7)->pos(), QPointF(0, 616));
    QCOMPARE(screen.Grab().pixelColor(300, 430), QColor(Qt::blue));
}

void GuiGridScrollTest::UpdatingARowOutOfViewRepaintsNothing()
{
    Screen screen(1000);
    QSignalSpy changed(screen.view.scene(), &QGraphicsScene::changed);
    do { // what the first layout left
        changed.clear();
        QCoreApplication::processEvents();
    } while (!changed.isEmpty());
    screen.Row(900)->update();
    QCoreApplication::processEvents();
    QCOMPARE(changed.size(), 0);
    QCOMPARE(screen.Row(900)->m_iPaints, 0);
    screen.Row(0)->update();
    QTRY_VERIFY(!changed.isEmpty()); // the probe itself works
}

void GuiGridScrollTest::UpdatingARowInViewRepaintsItAlone()
{
    Screen screen(1000);
    QVERIFY(QTest::qWaitForWindowExposed(&screen.view));
    QTRY_VERIFY(screen.Row(4)->m_iPaints > 0);
    QCoreApplication::processEvents();
    const int iPaints = screen.Row(2)->m_iPaints;
    const int iOthers = screen.Row(4)->m_iPaints;
    for (int i = 0; i < 1000; ++i)
        screen.Row(2)->update();
    QTRY_COMPARE(screen.Row(2)->m_iPaints, iPaints + 1);
    QCOMPARE(screen.Row(4)->m_iPaints, iOthers);
}

void GuiGridScrollTest::AnAdditionWithoutRefreshIsShownByTheEventLoop()
{
    Screen screen(0);
    screen.view.AddItem(new GuiRow(QStringLiteral("0")), false);
    screen.view.AddItem(new GuiRow(QStringLiteral("1")), false);
    QVERIFY(!screen.Row(1)->scene());
    QTRY_VERIFY(screen.Row(1)->scene());
    QCOMPARE(screen.Row(1)->pos(), QPointF(0, 88));
    screen.view.AddItem(new GuiRow(QStringLiteral("2")), false);
    screen.view.AddItem(new GuiRow(QStringLiteral("3")), true);
    QCOMPARE(screen.Row(2)->pos(), QPointF(0, 176));
}

void GuiGridScrollTest::ItemsInViewAreToldApartFromThosePartlyInView()
{
    Screen screen(100);
    screen.view.resize(640, 440);
    QCOMPARE(screen.InView(false), Numbers(0, 4));
    QCOMPARE(screen.InView(true), Numbers(0, 4));
    screen.Bar()->setValue(1);
    QCOMPARE(screen.InView(false), Numbers(1, 4));
    QCOMPARE(screen.InView(true), Numbers(0, 5));
    screen.Bar()->setValue(87);
    QCOMPARE(screen.InView(true), Numbers(0, 5));
    screen.Bar()->setValue(88);
    QCOMPARE(screen.InView(true), Numbers(1, 5));
}

void GuiGridScrollTest::AnItemWiderThanTheViewIsPartlyInView()
{
    Screen screen(2);
    screen.view.resize(600, 440);
    QCOMPARE(screen.InView(false), QStringList());
    QCOMPARE(screen.InView(true), Numbers(0, 1));
}

void GuiGridScrollTest::KeysScroll()
{
    Screen screen(1000);
    QTest::keyClick(&screen.view, Qt::Key_PageDown);
    QCOMPARE(screen.Bar()->value(), 440);
    QTest::keyClick(&screen.view, Qt::Key_Down);
    QVERIFY(screen.Bar()->value() > 440);
    QTest::keyClick(&screen.view, Qt::Key_End);
    QCOMPARE(screen.InView(true), Numbers(995, 999));
    QTest::keyClick(&screen.view, Qt::Key_PageUp);
    QCOMPARE(screen.Bar()->value(), 88000 - 880);
    QTest::keyClick(&screen.view, Qt::Key_Home);
    QCOMPARE(screen.InView(true), Numbers(0, 4));
}

void GuiGridScrollTest::TheWheelScrolls()
{
    Screen screen(1000);
    const QPoint pos(100, 100);
    QWheelEvent event(pos, screen.view.viewport()->mapToGlobal(pos), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(screen.view.viewport(), &event);
    QVERIFY(screen.Bar()->value() > 0);
}

void GuiGridScrollTest::ThereIsNoSidewaysScrollWithoutItsBar()
{
    Screen screen(1000);
    screen.view.resize(600, 440);
    QTest::keyClick(&screen.view, Qt::Key_Right);
    QCOMPARE(screen.view.horizontalScrollBar()->maximum(), 0);
    QCOMPARE(screen.view.mapFromScene(0, 0), QPoint(0, 0));
}

void GuiGridScrollTest::TheScrollBarTellsItsListeners()
{
    Screen screen(1000);
    QStringList seen;
    connect(screen.Bar(), &QScrollBar::valueChanged, &screen.view, [&screen, &seen] { seen = screen.InView(true); });
    screen.Bar()->setValue(880);
    QCOMPARE(seen, Numbers(10, 14));
}

void GuiGridScrollTest::ARowMayDeleteItselfWhileItIsPressed()
{
    Screen screen(20);
    bool bAlive = false;
    GuiRow* pRow = screen.Row(1);
    pRow->m_onPress = [&] {
        screen.view.DeleteItem(screen.view.IndexOfItem(pRow));
        bAlive = GuiRow::s_iAlive == 20 && !pRow->scene() && !screen.Row(1);
    };
    SendMouse(screen.view.viewport(), QEvent::MouseButtonPress, QPoint(100, 100), Qt::LeftButton);
    QVERIFY(bAlive);
    QCOMPARE(GuiRow::s_iAlive, 19);
    SendMouse(screen.view.viewport(), QEvent::MouseButtonRelease, QPoint(100, 100), Qt::LeftButton);
    QCOMPARE(screen.InView(true), (QStringList{QStringLiteral("0")} + Numbers(2, 5)));
    QCOMPARE(screen.Row(2)->pos(), QPointF(0, 88));
}

void GuiGridScrollTest::APressedRowDeletedByItsParentIsNotDeletedTwice()
{
    Screen screen(1);
    QObject owner;
    auto* pRow = new GuiRow(QStringLiteral("other"), &owner);
    screen.view.AddItem(pRow, true);
    screen.Row(0)->m_onPress = [&] {
        screen.view.DeleteItem(1);
        delete pRow;
    };
    SendMouse(screen.view.viewport(), QEvent::MouseButtonPress, QPoint(100, 10), Qt::LeftButton);
    QCOMPARE(GuiRow::s_iAlive, 1);
    QCOMPARE(screen.InView(true), Numbers(0, 0));
}

void GuiGridScrollTest::TheRowThatScrollsBelowThePointerIsHovered()
{
    Screen screen(1000);
    QTRY_VERIFY(screen.view.isVisible());
    QMouseEvent move(QEvent::MouseMove, QPoint(100, 100), screen.view.viewport()->mapToGlobal(QPoint(100, 100)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(screen.view.viewport(), &move);
    QCOMPARE(screen.Row(1)->m_iHovers, 1);
    screen.Bar()->setValue(700 * 88);
    QTRY_COMPARE(screen.Row(701)->m_iHovers, 1);
}

void GuiGridScrollTest::TheBackgroundIsWhatLiesBelow()
{
    QWidget panel;
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::green);
    panel.setPalette(palette);
    panel.resize(620, 200);
    auto* pLayout = new QVBoxLayout(&panel);
    pLayout->setContentsMargins(0, 0, 0, 0);
    auto* pView = new GraphicsGridView;
    pLayout->addWidget(pView);
    pView->AddItem(new GuiRow(QStringLiteral("a")), true);
    panel.show();
    const QImage image = panel.grab().toImage();
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(10, 150), QColor(Qt::green));
    QCOMPARE(image.pixelColor(0, 199), QColor(Qt::green));
}

void GuiGridScrollTest::TheSceneHasNoIndex()
{
    const Screen screen(1);
    QCOMPARE(screen.view.scene()->itemIndexMethod(), QGraphicsScene::NoIndex);
}

KX_TEST(GuiGridScrollTest, QApplication)
#include "GuiGridScrollTest.moc"
