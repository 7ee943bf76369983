// Presses that follow quickly one upon the other, when the row that was aimed at has gone meanwhile.

#include "PanelRig.h"
#include "TestMain.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

namespace {

// The panel with rows "a" to "d". A double click takes at most 400 ms.
class PressRig : public PanelRig
{
public:
    PressRig()
    {
        QApplication::setDoubleClickInterval(400);
        Send({"a", "b", "c", "d"});
        Show();
    }
    // Presses and releases the left button at that time, on a point of the viewport.
    void PressAt(ulong uTime, const QPoint& pos, QEvent::Type type = QEvent::MouseButtonPress)
    {
        QWidget* pViewport = View().viewport();
        const QPoint global = pViewport->mapToGlobal(pos);
        QMouseEvent press(type, pos, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        press.setTimestamp(uTime);
        QCoreApplication::sendEvent(pViewport, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, pos, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        release.setTimestamp(uTime + 20);
        QCoreApplication::sendEvent(pViewport, &release);
        EngineRig::Settle();
    }
    QString Left()
    {
        QStringList ids;
        for (const QGraphicsItem* pRow : View().GetAllItem())
            ids.append(pRow->data(GraphicsGridView::KeyRole).toString());
        return ids.join(QLatin1Char(' '));
    }
    int Reports() { return World().Bus().Texts("EventNotifyLogV2Report").size(); }
};

} // namespace

class PanelPressTest : public QObject
{
    Q_OBJECT

private slots:
    void AQuickSecondPressDeletesNothing_data();
    void AQuickSecondPressDeletesNothing();
    void ASlowSecondPressDeletes();
    void QuickPressesAllBelongToTheFirst();
    void AQuickPressOnAnotherButtonCounts();
    void ARowThatMovesUnderThePointerIsNotPaused();
    void QuickPressesOnOneRowAllCount();
    void PressesWithoutATimeAllCount();
};

void PanelPressTest::AQuickSecondPressDeletesNothing_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QPoint>("pos");
    QTest::newRow("press") << int(QEvent::MouseButtonPress) << PanelRig::DeleteButton;
    QTest::newRow("double click") << int(QEvent::MouseButtonDblClick) << PanelRig::DeleteButton;
    QTest::newRow("a little beside") << int(QEvent::MouseButtonPress) << PanelRig::DeleteButton + QPoint(8, -8);
}

void PanelPressTest::AQuickSecondPressDeletesNothing()
{
    QFETCH(int, type);
    QFETCH(QPoint, pos);
    PressRig rig;
    rig.PressAt(1000, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("b c d"));
    rig.Calls().Clear();
    rig.PressAt(1400, pos, QEvent::Type(type));
    QCOMPARE(rig.Left(), QStringLiteral("b c d"));
    QCOMPARE(rig.Calls().Count("Stop"), 0);
    QCOMPARE(rig.Reports(), 1);
}

void PanelPressTest::ASlowSecondPressDeletes()
{
    PressRig rig;
    rig.PressAt(1000, PanelRig::DeleteButton);
    rig.PressAt(1401, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("c d"));
    QCOMPARE(rig.Reports(), 2);
}

void PanelPressTest::QuickPressesAllBelongToTheFirst()
{
    PressRig rig;
    for (const ulong uTime : {1000, 1300, 1600, 1900})
        rig.PressAt(uTime, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("b c d"));
    rig.PressAt(2301, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("c d"));
}

void PanelPressTest::AQuickPressOnAnotherButtonCounts()
{
    PressRig rig;
    rig.PressAt(1000, PanelRig::DeleteButton);
    rig.PressAt(1200, PanelRig::DeleteButton + QPoint(0, 88)); // c
    QCOMPARE(rig.Left(), QStringLiteral("b d"));
    rig.PressAt(1400, PanelRig::StateButton); // of b
    QCOMPARE(rig.StateOf("b"), 5);
}

void PanelPressTest::ARowThatMovesUnderThePointerIsNotPaused()
{
    PressRig rig;
    rig.PressAt(1000, PanelRig::StateButton);
    QCOMPARE(rig.StateOf("a"), 5);
    rig.Panel().FinishDownloadRecord(QStringLiteral("a"));
    EngineRig::Settle();
    rig.PressAt(1200, PanelRig::StateButton);
    QCOMPARE(rig.StateOf("b"), 0);
    rig.PressAt(1700, PanelRig::StateButton);
    QCOMPARE(rig.StateOf("b"), 5);
}

void PanelPressTest::QuickPressesOnOneRowAllCount()
{
    PressRig rig;
    rig.PressAt(1000, PanelRig::StateButton);
    rig.PressAt(1100, PanelRig::StateButton, QEvent::MouseButtonDblClick);
    rig.PressAt(1200, PanelRig::StateButton);
    QCOMPARE(rig.StateOf("a"), 5);
    QCOMPARE(rig.Reports(), 3);
    rig.PressAt(1300, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("b c d"));
}

// Programs press so; a system always gives a time.
void PanelPressTest::PressesWithoutATimeAllCount()
{
    PressRig rig;
    rig.PressAt(0, PanelRig::DeleteButton);
    rig.PressAt(0, PanelRig::DeleteButton);
    QCOMPARE(rig.Left(), QStringLiteral("c d"));
}

KX_TEST(PanelPressTest, QApplication)

#include "PanelPressTest.moc"
