// Rows come, follow their downloads and go.

#include "PaintedRegion.h"
#include "PanelRig.h"
#include "TestMain.h"

#include <QtCore/QPointer>
#include <QtTest/QSignalSpy>

class PanelRowsTest : public QObject
{
    Q_OBJECT

private slots:
    void EveryAnnouncedRecordGetsARowAndIsCounted();
    void ARecordIsShownOnce();
    void AnAnnouncementIsLoggedCrosswise();
    void DataAddsToTheReceivedSize();
    void ProgressIsPaintedWithTheNextFrame();
    void ManyReportsAreOnePaintOfTheirRow();
    void ProgressOfARowThatGoesIsForgotten();
    void DataWithoutARowIsADebugMessage();
    void StatesChangeTheRow_data();
    void StatesChangeTheRow();
    void StatesAreLogged();
    void AFinishedRowLeaves();
    void FinishingTheUnknownIsLogged();
    void PressingDeleteEndsRowAndDownload();
    void DeletingTheUnknownIsLogged();
    void DeletingTheLastRowShowsTheEmptyPage();
};

void PanelRowsTest::EveryAnnouncedRecordGetsARowAndIsCounted()
{
    PanelRig rig;
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 0);
    rig.Send({"a", "b", "c"});
    QCOMPARE(rig.View().GetAllItem().size(), 3);
    QVERIFY(rig.Row("a") && rig.Row("b") && rig.Row("c"));
    QCOMPARE(rig.View().IndexOfItem(rig.Row("b")), 1);
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 2, 3}));
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 1);
    QCOMPARE(rig.StateOf("c"), 0);
}

void PanelRowsTest::ARecordIsShownOnce()
{
    PanelRig rig;
    rig.Send({"a"});
    const DownloadItem* pRow = rig.Row("a");
    rig.Panel().AddDownloadInfo(rig.Made("a"));
    QCOMPARE(rig.View().GetAllItem().size(), 1);
    QCOMPARE(rig.Row("a"), pRow);
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
    QCOMPARE(PanelLog(rig.World()).size(), 1);
}

void PanelRowsTest::AnAnnouncementIsLoggedCrosswise()
{
    PanelRig rig;
    rig.Send({"a"});
    QCOMPARE(PanelLog(rig.World()),
             Texts({"200 DownloadWidget::AddDownloadInfo [] 2 strRecordId[20200102T030405],strBeginTime[a]"}));
}

void PanelRowsTest::DataAddsToTheReceivedSize()
{
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a"));
    rig.Panel().AddDownloadInfo(rig.Made("b"));
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 400);
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 50);
    QCOMPARE(rig.Record("a").lReceivedSize, qint64(450));
    QCOMPARE(rig.Record("b").lReceivedSize, qint64(0));
    rig.Record("a").lReceivedSize = 3000000000;
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 2000000000);
    QCOMPARE(rig.Record("a").lReceivedSize, qint64(5000000000));
}

void PanelRowsTest::ProgressIsPaintedWithTheNextFrame()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.Record("a").lReceivedSize = 0;
    PaintedRegion painted(*rig.View().viewport());
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 400);
    QTRY_VERIFY(painted.Contains(QRect(170, 30, 300, 40)));
    rig.Panel().hide();
    EngineRig::Settle(); // a popup that shows again before the system knows that it went is closed
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 100);
    painted.Forget();
    rig.Panel().show();
    QTRY_VERIFY(painted.Contains(QRect(170, 30, 300, 40))); // shown again with what came meanwhile
    QCOMPARE(rig.Record("a").lReceivedSize, qint64(500));
}

void PanelRowsTest::ManyReportsAreOnePaintOfTheirRow()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.RaiseState("b", 1);
    rig.Record("a").lReceivedSize = 0;
    rig.Record("b").lReceivedSize = 0;
    PaintedRegion painted(*rig.View().viewport());
    for (int iTurn = 0; iTurn < 500; ++iTurn) {
        rig.Panel().OnDownloadRecordData(iTurn % 2 ? QStringLiteral("a") : QStringLiteral("b"), 1);
        QCoreApplication::sendPostedEvents(); // paints what is to be painted; the next frame does not come
    }
    QCOMPARE(painted.Count(), 0);
    QTRY_VERIFY(painted.Contains(QRect(170, 30, 300, 128)));
    QVERIFY(painted.Count() <= 2); // each row by itself, where the system paints parts by themselves
    QCOMPARE(rig.Record("a").lReceivedSize + rig.Record("b").lReceivedSize, qint64(500));
}

void PanelRowsTest::ProgressOfARowThatGoesIsForgotten()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    PaintedRegion painted(*rig.View().viewport());
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 400);
    rig.Panel().OnDownloadRecordData(QStringLiteral("b"), 400);
    rig.Panel().OnDeleteRecord(QStringLiteral("a"));
    QTRY_VERIFY(painted.Contains(QRect(170, 30, 300, 40)));
    QCOMPARE(rig.View().GetAllItem().size(), 1);
}

void PanelRowsTest::DataWithoutARowIsADebugMessage()
{
    PanelRig rig;
    const DebugMessages messages;
    rig.Panel().OnDownloadRecordData(QStringLiteral("none"), 5);
    QCOMPARE(DebugMessages::Lines(), Texts({"Src/DownloadWidget/DownloadWidget:435 void __cdecl "
                                            "DownloadWidget::OnDownloadRecordData(class QString,int)|item is NULL"}));
    QCOMPARE(PanelLog(rig.World()), Texts({}));
}

void PanelRowsTest::StatesChangeTheRow_data()
{
    QTest::addColumn<int>("before"); // code
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("reget");
    QTest::addColumn<int>("state");
    QTest::newRow("0: failed") << 1 << 0 << false << 3;
    QTest::newRow("0 stays failed with a new password") << 1 << 0 << true << 3;
    QTest::newRow("4: failed") << 1 << 4 << false << 3;
    QTest::newRow("100: failed") << 1 << 100 << false << 3;
    QTest::newRow("1: downloading") << 0 << 1 << false << 1;
    QTest::newRow("3, queued again: waiting") << 1 << 3 << true << 0;
    QTest::newRow("3, refused for good: failed") << 1 << 3 << false << 3;
    for (const int iCode : {-1, 5, 6, 99, 101})
        QTest::addRow("%d: nothing", iCode) << 1 << iCode << false << 1;
}

void PanelRowsTest::StatesChangeTheRow()
{
    QFETCH(int, before);
    QFETCH(int, code);
    QFETCH(bool, reget);
    QFETCH(int, state);
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a"));
    rig.Panel().OnDownloadRecordStates(QStringLiteral("a"), before, false);
    QVERIFY(before == 0 || rig.StateOf("a") == 1);
    rig.Panel().OnDownloadRecordStates(QStringLiteral("a"), code, reget);
    QCOMPARE(rig.StateOf("a"), state);
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
}

void PanelRowsTest::StatesAreLogged()
{
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a"));
    rig.World().Log().Clear();
    rig.Panel().OnDownloadRecordStates(QStringLiteral("a"), 1, false);
    rig.Panel().OnDownloadRecordStates(QStringLiteral("none"), 2, false);
    QCOMPARE(PanelLog(rig.World()),
             Texts({"446 DownloadWidget::OnDownloadRecordStates [] 2 OnDownloadRecordStates: strRecordId[a], iCode[1]",
                    "446 DownloadWidget::OnDownloadRecordStates [] 2 OnDownloadRecordStates: strRecordId[none], "
                    "iCode[2]",
                    "450 DownloadWidget::OnDownloadRecordStates [] 2 OnDownloadRecordStates: item not found, "
                    "strRecordId[none]"}));
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
}

void PanelRowsTest::AFinishedRowLeaves()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    const QPointer<DownloadItem> pRow = rig.Row("b");
    rig.World().Log().Clear();
    int iLinesAtCount = -1;
    rig.Calls().WhenAdded("notify EventNotifyDownloadNumber", [&] {
        iLinesAtCount = PanelLog(rig.World(), "DownloadWidget::FinishDownloadRecord").size();
    });
    rig.RaiseState("b", 2);
    QCOMPARE(iLinesAtCount, 1); // logged before the row goes
    QVERIFY(!rig.Row("b"));
    QVERIFY(!pRow);
    QCOMPARE(rig.View().GetAllItem().size(), 2);
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 2, 3, 2}));
    QCOMPARE(PanelLog(rig.World(), "DownloadWidget::FinishDownloadRecord"),
             Texts({"277 DownloadWidget::FinishDownloadRecord [] 2 FinishDownloadRecord: strRecordId[b], index[1]"}));
    QCOMPARE(rig.Calls().Short("StartDevice"),
             Texts({"StartDeviceRecordDownload a", "StartDeviceRecordDownload b", "StartDeviceRecordDownload c"}));
    rig.RaiseState("a", 2);
    rig.RaiseState("c", 2);
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 2, 3, 2, 1, 0}));
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 0);
}

void PanelRowsTest::FinishingTheUnknownIsLogged()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.World().Log().Clear();
    rig.Panel().FinishDownloadRecord(QStringLiteral("none"));
    QCOMPARE(PanelLog(rig.World()), Texts({"272 DownloadWidget::FinishDownloadRecord [] 2 FinishDownloadRecord: item "
                                           "not found for strRecordId[none]"}));
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
}

void PanelRowsTest::PressingDeleteEndsRowAndDownload()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    rig.World().WriteFile("a.mp4");
    const QPointer<DownloadItem> pRow = rig.Row("a");
    const QSignalSpy asked(&rig.Panel(), &DownloadWidget::SignalDeleteRecord);
    rig.Calls().Clear();
    rig.Press("a", PanelRig::DeleteButton); // the row dies of its own press
    QVERIFY(!pRow);
    QVERIFY(!rig.Row("a"));
    QCOMPARE(rig.View().GetAllItem().size(), 2);
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 2, 3, 2}));
    QCOMPARE(rig.Calls().Short({"notify EventNotifyLogV2Report", "Stop", "Start", "notify EventNotifyDownloadNumber"}),
             Texts({"notify EventNotifyLogV2Report", "StopDeviceRecordDownload a", "StartDeviceRecordDownload c",
                    "notify EventNotifyDownloadNumber"}));
    QVERIFY(!rig.World().HasFile("a.mp4"));
    QCOMPARE(asked.size(), 0); // the engine is told by a call
    const QStringList reports = rig.World().Bus().Texts("EventNotifyLogV2Report");
    QVERIFY(reports.value(0).contains(QStringLiteral("\"btnDelete..DownloadWidget\""))); // the row is the panel's
    QTRY_COMPARE(rig.Row("b")->pos(), QPointF(0, 0));
    rig.Press("b", PanelRig::DeleteButton);
    rig.Press("c", PanelRig::DeleteButton);
    QCOMPARE(rig.View().GetAllItem().size(), 0);
}

void PanelRowsTest::DeletingTheUnknownIsLogged()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.World().Log().Clear();
    rig.Panel().OnDeleteRecord(QStringLiteral("none"));
    QCOMPARE(PanelLog(rig.World()), Texts({"505 DownloadWidget::OnDeleteRecord [] 2 OnDeleteRecord: item not found "
                                           "for strRecordId[none]"}));
    QCOMPARE(rig.Counts(), QList<int>({0, 1}));
    QCOMPARE(rig.Calls().Count("Stop"), 0);
}

void PanelRowsTest::DeletingTheLastRowShowsTheEmptyPage()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Panel().OnDeleteRecord(QStringLiteral("a"));
    QCOMPARE(rig.Find<QStackedWidget>("stackedWidget").currentIndex(), 0);
    QCOMPARE(rig.Counts(), QList<int>({0, 1, 0}));
}

KX_TEST(PanelRowsTest, QApplication)

#include "PanelRowsTest.moc"
