#include "GuiRow.h"
#include "KXGui/GraphicsGridView.h"
#include "TestMain.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <memory>

namespace {

QString Key(int iNumber)
{
    return QStringLiteral("id%1").arg(iNumber);
}

void Fill(GraphicsGridView& view, int iCount)
{
    for (int i = 0; i < iCount; ++i)
        view.AddItem(new GuiRow(Key(i)), true);
}

QStringList Keys(const GraphicsGridView& view)
{
    QStringList list;
    for (const QGraphicsItem* pItem : view.GetAllItem())
        list << pItem->data(99).toString();
    return list;
}

} // namespace

// What the view holds: order, positions, keys and ownership.
class GuiGridTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(GuiRow::s_iAlive, 0); }
    void ItemsStandInTheOrderInWhichTheyCame();
    void AnEmptyViewAnswersThatThereIsNothing();
    void AnItemIsTakenOnce();
    void NullIsIgnored();
    void AKeyMayComeAfterItsItem();
    void OfTwoItemsWithOneKeyTheFirstIsFound();
    void TheEmptyKeyIsAKey();
    void DeletingMovesTheLaterOnesUp();
    void APositionOutsideTheGridIsIgnored_data();
    void APositionOutsideTheGridIsIgnored();
    void TheViewDeletesItsItemsWithItself();
    void AnItemDeletedByItsParentLeavesTheView();
    void AnItemThatIsNoObjectIsOwnedToo();
    void AnItemComesOutOfItsFormerScene();
    void ManyChangesKeepOrderAndKeys();
    void AHundredThousandItemsAreFoundFromBothEnds();
};

void GuiGridTest::ItemsStandInTheOrderInWhichTheyCame()
{
    GraphicsGridView view;
    Fill(view, 3);
    QCOMPARE(Keys(view), (QStringList{QStringLiteral("id0"), QStringLiteral("id1"), QStringLiteral("id2")}));
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id0"))), 0);
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id2"))), 2);
}

void GuiGridTest::AnEmptyViewAnswersThatThereIsNothing()
{
    const GraphicsGridView view;
    const GuiRow stranger(QStringLiteral("a"));
    QVERIFY(!view.GetItem(QStringLiteral("a")));
    QCOMPARE(view.IndexOfItem(&stranger), -1);
    QCOMPARE(view.IndexOfItem(nullptr), -1);
    QVERIFY(view.GetAllItem().isEmpty());
}

void GuiGridTest::AnItemIsTakenOnce()
{
    GraphicsGridView view;
    auto* pRow = new GuiRow(QStringLiteral("a"));
    view.AddItem(pRow, true);
    view.AddItem(new GuiRow(QStringLiteral("b")), true);
    view.AddItem(pRow, true);
    QCOMPARE(Keys(view), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

void GuiGridTest::NullIsIgnored()
{
    GraphicsGridView view;
    view.AddItem(nullptr, true);
    QVERIFY(view.GetAllItem().isEmpty());
}

void GuiGridTest::AKeyMayComeAfterItsItem()
{
    GraphicsGridView view;
    auto* pLate = new GuiRow;
    view.AddItem(pLate, true);
    QVERIFY(!view.GetItem(QStringLiteral("late")));
    pLate->setData(99, QStringLiteral("late"));
    QCOMPARE(view.GetItem(QStringLiteral("late")), static_cast<QGraphicsItem*>(pLate));
    view.DeleteItem(0);
    QVERIFY(!view.GetItem(QStringLiteral("late")));
}

void GuiGridTest::OfTwoItemsWithOneKeyTheFirstIsFound()
{
    GraphicsGridView view;
    auto* pFirst = new GuiRow(QStringLiteral("same"));
    auto* pSecond = new GuiRow(QStringLiteral("same"));
    view.AddItem(pFirst, true);
    view.AddItem(pSecond, true);
    QCOMPARE(view.GetItem(QStringLiteral("same")), static_cast<QGraphicsItem*>(pFirst));
    view.DeleteItem(0);
    QCOMPARE(view.GetItem(QStringLiteral("same")), static_cast<QGraphicsItem*>(pSecond));
}

void GuiGridTest::TheEmptyKeyIsAKey()
{
    GraphicsGridView view;
    view.AddItem(new GuiRow(QStringLiteral("a")), true);
    QVERIFY(!view.GetItem(QString()));
    auto* pRow = new GuiRow(QStringLiteral(""));
    view.AddItem(pRow, true);
    QCOMPARE(view.GetItem(QString()), static_cast<QGraphicsItem*>(pRow));
}

void GuiGridTest::DeletingMovesTheLaterOnesUp()
{
    GraphicsGridView view;
    Fill(view, 4);
    QGraphicsItem* pLast = view.GetItem(QStringLiteral("id3"));
    view.DeleteItem(1);
    QCOMPARE(Keys(view), (QStringList{QStringLiteral("id0"), QStringLiteral("id2"), QStringLiteral("id3")}));
    QCOMPARE(view.IndexOfItem(pLast), 2);
    QVERIFY(!view.GetItem(QStringLiteral("id1")));
    QCOMPARE(GuiRow::s_iAlive, 3);
}

void GuiGridTest::APositionOutsideTheGridIsIgnored_data()
{
    QTest::addColumn<int>("iIndex");
    QTest::newRow("before the first") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("far away") << 2147483647;
}

void GuiGridTest::APositionOutsideTheGridIsIgnored()
{
    QFETCH(int, iIndex);
    GraphicsGridView view;
    Fill(view, 2);
    view.DeleteItem(iIndex);
    QCOMPARE(view.GetAllItem().size(), 2);
}

void GuiGridTest::TheViewDeletesItsItemsWithItself()
{
    {
        GraphicsGridView view;
        view.resize(620, 300);
        view.show();
        Fill(view, 50);
        QCOMPARE(GuiRow::s_iAlive, 50);
    }
    QCOMPARE(GuiRow::s_iAlive, 0);
}

void GuiGridTest::AnItemDeletedByItsParentLeavesTheView()
{
    GraphicsGridView view;
    view.resize(620, 300);
    view.show();
    Fill(view, 20);
    auto pOwner = std::make_unique<QObject>();
    auto* pSeen = new GuiRow(QStringLiteral("seen"), pOwner.get());
    view.DeleteItem(0);
    view.AddItem(pSeen, true);
    view.AddItem(new GuiRow(QStringLiteral("unseen"), pOwner.get()), true);
    while (view.IndexOfItem(pSeen) > 0)
        view.DeleteItem(0);
    QTRY_VERIFY(pSeen->scene());
    Fill(view, 3);
    QCoreApplication::processEvents(); // no layout is to come but that of the loss
    QCOMPARE(view.GetItem(QStringLiteral("id0"))->pos(), QPointF(0, 176));
    pOwner.reset();
    QCOMPARE(Keys(view), (QStringList{QStringLiteral("id0"), QStringLiteral("id1"), QStringLiteral("id2")}));
    QVERIFY(!view.GetItem(QStringLiteral("seen")));
    QTRY_COMPARE(view.GetItem(QStringLiteral("id0"))->pos(), QPointF(0, 0));
    QCOMPARE(view.GetItem(QStringLiteral("id1"))->pos(), QPointF(0, 88));
}

void GuiGridTest::AnItemThatIsNoObjectIsOwnedToo()
{
    GraphicsGridView view;
    auto* pItem = new QGraphicsRectItem(0, 0, 10, 10);
    pItem->setData(99, QStringLiteral("plain"));
    view.AddItem(pItem, true);
    QCOMPARE(view.GetItem(QStringLiteral("plain")), static_cast<QGraphicsItem*>(pItem));
    view.DeleteItem(0);
    QVERIFY(view.GetAllItem().isEmpty());
}

void GuiGridTest::AnItemComesOutOfItsFormerScene()
{
    QGraphicsScene former;
    auto* pRow = new GuiRow(QStringLiteral("a"));
    former.addItem(pRow);
    GraphicsGridView view;
    view.AddItem(pRow, true);
    QCOMPARE(pRow->scene(), view.scene());
    Fill(view, 1000);
    auto* pUnseen = new GuiRow(QStringLiteral("b"));
    former.addItem(pUnseen);
    view.AddItem(pUnseen, true);
    QVERIFY(!pUnseen->scene());
}

void GuiGridTest::ManyChangesKeepOrderAndKeys()
{
    GraphicsGridView view;
    view.resize(620, 300);
    QStringList expected;
    QRandomGenerator random(20);
    for (int i = 0; i < 3750; ++i) {
        // Phases of growing and shrinking, so that the view also runs through being nearly empty.
        const bool bShrinking = (i / 750) % 2 == 1;
        if (!expected.isEmpty() && random.bounded(4) < (bShrinking ? 3 : 1)) {
            const int iIndex = random.bounded(expected.size());
            expected.removeAt(iIndex);
            view.DeleteItem(iIndex);
        } else {
            expected.append(Key(i));
            view.AddItem(new GuiRow(Key(i)), random.bounded(2) == 0);
        }
        if (expected.isEmpty())
            continue;
        const int iProbe = random.bounded(expected.size());
        QCOMPARE(view.IndexOfItem(view.GetItem(expected.at(iProbe))), iProbe);
    }
    QVERIFY(expected.size() > 10);
    QCOMPARE(Keys(view), expected);
}

void GuiGridTest::AHundredThousandItemsAreFoundFromBothEnds()
{
    GraphicsGridView view;
    view.resize(620, 440);
    Fill(view, 100000);
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id0"))), 0);
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id77777"))), 77777);
    for (int i = 0; i < 99990; ++i)
        view.DeleteItem(0);
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id99990"))), 0);
    QCOMPARE(view.IndexOfItem(view.GetItem(QStringLiteral("id99999"))), 9);
    QCOMPARE(GuiRow::s_iAlive, 10);
}

KX_TEST(GuiGridTest, QApplication)
#include "GuiGridTest.moc"
