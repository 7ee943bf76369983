// What a press finds: a row in any state, and a pointer with more than one button down.

#include "RowRig.h"
#include "TestMain.h"

#include <QtGui/QMouseEvent>
#include <QtTest/QSignalSpy>

class RowPressTest : public QObject
{
    Q_OBJECT

private slots:
    void WhatIsNeitherPausedNorFailedIsPaused_data();
    void WhatIsNeitherPausedNorFailedIsPaused();
    void TheReportTellsAllButtonsThatAreDown_data();
    void TheReportTellsAllButtonsThatAreDown();
};

void RowPressTest::WhatIsNeitherPausedNorFailedIsPaused_data()
{
    QTest::addColumn<int>("state");
    for (const int iState : {0, 1, 2, 4})
        QTest::addRow("state %d", iState) << iState;
}

// Whatever the row was before.
void RowPressTest::WhatIsNeitherPausedNorFailedIsPaused()
{
    QFETCH(int, state);
    RowRig rig;
    const QSignalSpy spy(&rig.Row(), &DownloadItem::SgnChangeDownloadState);
    rig.SetState(5);
    rig.SetState(state);
    rig.Press(RowRig::StateButton);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy[0][0].toBool(), false);
}

void RowPressTest::TheReportTellsAllButtonsThatAreDown_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QString>("name");
    QTest::newRow("delete") << 0 << RowRig::DeleteButton << QStringLiteral("\"btnDelete.");
    QTest::newRow("pause") << 0 << RowRig::StateButton << QStringLiteral("\"btnPause.");
    QTest::newRow("restart") << 5 << RowRig::StateButton << QStringLiteral("\"btnRestart.");
    QTest::newRow("retry") << 3 << RowRig::StateButton << QStringLiteral("\"btnRetry.");
}

// The left one is pressed while the right one (2) is down.
void RowPressTest::TheReportTellsAllButtonsThatAreDown()
{
    QFETCH(int, state);
    QFETCH(QPoint, pos);
    QFETCH(QString, name);
    RowRig rig;
    rig.SetState(state);
    QMouseEvent press(QEvent::MouseButtonPress, pos, rig.Viewport()->mapToGlobal(pos), Qt::LeftButton,
                      Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
    QCoreApplication::sendEvent(rig.Viewport(), &press);
    const QStringList reports = rig.World().Bus().Texts("EventNotifyLogV2Report");
    QCOMPARE(reports.size(), 1);
    QVERIFY(reports[0].contains(name));
    QVERIFY2(reports[0].contains(QStringLiteral("\"QEventType=156&MouseButtons=3\"")), qPrintable(reports[0]));
}

KX_TEST(RowPressTest, QApplication)

#include "RowPressTest.moc"
