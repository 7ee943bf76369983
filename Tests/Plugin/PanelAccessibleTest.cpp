// The list as assistive technology sees it: its rows, what they say, what can be done with them, and what is announced.

#include "Listener.h"
#include "PanelRig.h"
#include "TestMain.h"

namespace {

QAccessibleInterface& List(PanelRig& rig)
{
    return *QAccessible::queryAccessibleInterface(&rig.View());
}

QAccessibleInterface& RowOf(PanelRig& rig, const char* pszRecordId)
{
    return *QAccessible::queryAccessibleInterface(rig.Row(pszRecordId));
}

void Act(PanelRig& rig, const char* pszRecordId, const char* pszAction)
{
    RowOf(rig, pszRecordId).actionInterface()->doAction(QString::fromUtf8(pszAction));
    EngineRig::Settle();
}

} // namespace

class PanelAccessibleTest : public QObject
{
    Q_OBJECT

private slots:
    void TheRowsAreTheListsChildren();
    void ARowTellsItsNameAsPlainText();
    void ARowTellsItsState_data();
    void ARowTellsItsState();
    void ARowTellsWhereItIs();
    void TheRowOfTheKeyboardHasTheFocus();
    void ActionsPressTheButtons_data();
    void ActionsPressTheButtons();
    void AnActionThatIsNotOfferedDoesNothing();
    void AnActionMayMoveTheFocus();
    void ChangesAreAnnounced();
    void TheFocusIsAnnounced();
    void ManyReportsAreOneNewValue();
    void NothingIsMadeWhileNobodyListens();
    void ALongListStaysCheap();
    void AListenerMayComeBeforeThePanel();
    void NothingIsLeftOfAPanel();
};

void PanelAccessibleTest::TheRowsAreTheListsChildren()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    QAccessibleInterface& list = List(rig);
    QCOMPARE(list.role(), QAccessible::List);
    QCOMPARE(list.text(QAccessible::Name), QStringLiteral("common_download_list"));
    QCOMPARE(list.childCount(), 3);
    QCOMPARE(list.child(1), &RowOf(rig, "b"));
    QCOMPARE(list.indexOfChild(list.child(2)), 2);
    QCOMPARE(list.child(3), nullptr);
    QCOMPARE(list.child(-1), nullptr);
    QCOMPARE(list.indexOfChild(&list), -1);
    QCOMPARE(list.child(1)->parent(), &list);
    QCOMPARE(list.child(1)->role(), QAccessible::ListItem);
    QCOMPARE(list.child(1)->childCount(), 0);
    QVERIFY(list.child(1)->isValid());
    rig.RaiseState("a", 2);
    QCOMPARE(list.childCount(), 2);
    QCOMPARE(list.child(0), &RowOf(rig, "b"));
    QCOMPARE(list.indexOfChild(&RowOf(rig, "c")), 1);
    rig.Send({"d"});
    QCOMPARE(list.childCount(), 3);
    QCOMPARE(list.child(2), &RowOf(rig, "d"));
}

void PanelAccessibleTest::ARowTellsItsNameAsPlainText()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Record("a").strFileName = QStringLiteral("<b>Front</b> \u202Edoor.mp4"); // as it is shown
    QCOMPARE(RowOf(rig, "a").text(QAccessible::Name), QStringLiteral("<b>Front</b> door.mp4"));
}

void PanelAccessibleTest::ARowTellsItsState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<qint64>("received");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    const auto add = [](const char* pszName, int iState, qint64 lReceived, const char* pszDescription,
                        const char* pszText, int iValue) {
        QTest::newRow(pszName) << iState << lReceived << QString::fromUtf8(pszDescription) << QString::fromUtf8(pszText)
                               << iValue;
    };
    add("waiting", 0, 420, "mobile_common_download_manager_wait_download", "", 0);
    add("downloading", 1, 420, "42%", "42%", 42);
    add("all is there", 1, 1000, "100%", "100%", 100);
    add("more than announced", 1, 2000, "99%", "99%", 99);
    add("failed", 3, 420, "mobile_common_download_manager_download_failure", "", 0);
    add("paused", 5, 420, "panel_pause", "", 0);
}

void PanelAccessibleTest::ARowTellsItsState()
{
    QFETCH(int, state);
    QFETCH(qint64, received);
    PanelRig rig;
    rig.Send({"a"});
    rig.Row("a")->SetState(static_cast<RowState>(state));
    rig.Record("a").lReceivedSize = received;
    QAccessibleInterface& row = RowOf(rig, "a");
    QTEST(row.text(QAccessible::Description), "description");
    QTEST(row.text(QAccessible::Value), "text");
    QTEST(row.valueInterface()->currentValue().toInt(), "value");
    QCOMPARE(row.valueInterface()->minimumValue().toInt(), 0);
    QCOMPARE(row.valueInterface()->maximumValue().toInt(), 100);
    row.valueInterface()->setCurrentValue(7);
    QTEST(row.valueInterface()->currentValue().toInt(), "value");
}

void PanelAccessibleTest::ARowTellsWhereItIs()
{
    PanelRig rig;
    for (int iRow = 0; iRow < 20; ++iRow)
        rig.Panel().AddDownloadInfo(rig.Made(qPrintable(QString::number(iRow))));
    rig.Show();
    QAccessibleInterface& list = List(rig);
    const QPoint corner = rig.View().viewport()->mapToGlobal(QPoint());
    QCOMPARE(list.child(1)->rect(), QRect(corner + QPoint(0, 88), QSize(610, 88)));
    QVERIFY(!list.child(1)->state().offscreen);
    QVERIFY(!list.child(1)->state().invisible);
    QVERIFY(list.child(15)->state().offscreen);
    QVERIFY(list.child(15)->rect().isEmpty());
    QCOMPARE(list.childAt(corner.x() + 565, corner.y() + 100), list.child(1)); // on a button, too
    QCOMPARE(list.childAt(corner.x() - 50, corner.y() - 50), nullptr);
    rig.Panel().hide();
    QVERIFY(list.child(1)->state().invisible);
}

void PanelAccessibleTest::TheRowOfTheKeyboardHasTheFocus()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    QAccessibleInterface& list = List(rig);
    QVERIFY(list.state().focusable);
    QVERIFY(list.child(0)->state().focusable);
    QCOMPARE(list.focusChild(), nullptr);
    QVERIFY(!list.child(0)->state().focused);
    rig.View().setFocus(Qt::TabFocusReason);
    QCOMPARE(list.focusChild(), list.child(0));
    QTest::keyClick(&rig.View(), Qt::Key_Down);
    QCOMPARE(list.focusChild(), list.child(1));
    QVERIFY(list.child(1)->state().focused);
    QVERIFY(!list.child(0)->state().focused);
}

void PanelAccessibleTest::ActionsPressTheButtons_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("offered");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<QString>("report");
    const auto add = [](const char* pszName, int iCode, const char* pszOffered, const char* pszAction,
                        const char* pszCalls, const char* pszReport) {
        QTest::newRow(pszName) << iCode << QString::fromUtf8(pszOffered) << QString::fromUtf8(pszAction)
                               << QString::fromUtf8(pszCalls) << QString::fromUtf8(pszReport);
    };
    add("pause", 1, "pause delete SetFocus", "pause", "StopDeviceRecordDownload a", "btnPause..DownloadWidget");
    add("resume", 5, "resume delete SetFocus", "resume", "StartDeviceRecordDownload a", "btnRestart..DownloadWidget");
    add("retry", 0, "retry delete SetFocus", "retry", "StartDeviceRecordDownload a", "btnRetry..DownloadWidget");
    add("delete", 1, "pause delete SetFocus", "delete", "StopDeviceRecordDownload a", "btnDelete..DownloadWidget");
}

void PanelAccessibleTest::ActionsPressTheButtons()
{
    QFETCH(int, code);
    QFETCH(QString, action);
    QFETCH(QString, report);
    PanelRig rig;
    rig.Send({"a"});
    rig.RaiseState("a", 1);
    if (code == 0)
        rig.RaiseState("a", 0);
    if (code == 5)
        Act(rig, "a", "pause");
    QTEST(RowOf(rig, "a").actionInterface()->actionNames().join(QLatin1Char(' ')), "offered");
    rig.Calls().Clear();
    Act(rig, "a", action.toUtf8().constData());
    QTEST(rig.Calls().Short({"Start", "Stop"}).join(QLatin1Char(' ')), "calls");
    QCOMPARE(rig.View().GetAllItem().size(), action == QLatin1String("delete") ? 0 : 1);
    const QString strReport = rig.World().Bus().Texts("EventNotifyLogV2Report").last();
    QVERIFY2(strReport.contains(report), qPrintable(strReport));
    QVERIFY(strReport.contains(QStringLiteral("\"QEventType=0&MouseButtons=0\""))); // no event pressed it
}

void PanelAccessibleTest::AnActionThatIsNotOfferedDoesNothing()
{
    PanelRig rig;
    rig.Send({"a"});
    for (const char* pszAction : {"resume", "retry", "Press", ""})
        Act(rig, "a", pszAction);
    QCOMPARE(rig.StateOf("a"), 0);
    QCOMPARE(rig.World().Bus().Texts("EventNotifyLogV2Report").size(), 0);
    const QAccessibleActionInterface& actions = *RowOf(rig, "a").actionInterface();
    QCOMPARE(actions.keyBindingsForAction(QStringLiteral("pause")), Texts({"Space"}));
    QCOMPARE(actions.keyBindingsForAction(QStringLiteral("delete")).size(), 1);
    QCOMPARE(actions.keyBindingsForAction(QStringLiteral("resume")), QStringList());
    for (const char* pszAction : {"pause", "resume", "retry", "delete"}) // the text's key where there is no translation
        QCOMPARE(actions.localizedActionName(QString::fromUtf8(pszAction)),
                 QLatin1String("row_action_") + QLatin1String(pszAction));
    QVERIFY(!actions.localizedActionName(QAccessibleActionInterface::setFocusAction()).isEmpty());
}

void PanelAccessibleTest::AnActionMayMoveTheFocus()
{
    PanelRig rig;
    for (int iRow = 0; iRow < 20; ++iRow)
        rig.Panel().AddDownloadInfo(rig.Made(qPrintable(QString::number(iRow))));
    rig.Show();
    Act(rig, "17", "SetFocus");
    QVERIFY(rig.View().hasFocus());
    QCOMPARE(List(rig).focusChild(), &RowOf(rig, "17"));
    QVERIFY(!RowOf(rig, "17").state().offscreen);
}

void PanelAccessibleTest::ChangesAreAnnounced()
{
    PanelRig rig;
    const Listener listener;
    rig.Show();
    rig.Send({"a", "b"});
    QCOMPARE(Listener::Take(), Texts({"ObjectCreated a", "ObjectCreated b"}));
    rig.RaiseState("a", 1);
    QCOMPARE(Listener::Take(), Texts({"DescriptionChanged a", "ValueChanged a 0"}));
    rig.RaiseState("a", 1); // nothing new
    QCOMPARE(Listener::Take(), QStringList());
    rig.Record("a").lReceivedSize = 0;
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 500);
    QTRY_VERIFY(Listener::HasHeard());
    QCOMPARE(Listener::Take(), Texts({"ValueChanged a 50"}));
    rig.RaiseState("a", 0);
    QCOMPARE(Listener::Take(), Texts({"DescriptionChanged a", "ValueChanged a 0"}));
    rig.RaiseState("b", 2);
    QCOMPARE(Listener::Take(), Texts({"ObjectDestroyed b"}));
    rig.Press("a", PanelRig::DeleteButton);
    QCOMPARE(Listener::Take().filter(QStringLiteral("Object")), Texts({"ObjectDestroyed a"}));
}

void PanelAccessibleTest::TheFocusIsAnnounced()
{
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    const Listener listener;
    rig.View().setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(Listener::HasHeard());
    QCOMPARE(Listener::Take().value(0), QStringLiteral("Focus a"));
    QTest::keyClick(&rig.View(), Qt::Key_Down);
    QCOMPARE(Listener::Take(), Texts({"Focus b"}));
    QTest::keyClick(&rig.View(), Qt::Key_Delete);
    QCOMPARE(Listener::Take(), Texts({"ObjectDestroyed b", "Focus c"}));
    QTest::keyClick(&rig.View(), Qt::Key_Down); // there is none
    QCOMPARE(Listener::Take(), QStringList());
    rig.Press("a", QPoint(300, 41));
    QCOMPARE(Listener::Take(), Texts({"Focus a"}));
}

void PanelAccessibleTest::ManyReportsAreOneNewValue()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.Record("a").lReceivedSize = 0;
    const Listener listener;
    for (int iTurn = 0; iTurn < 300; ++iTurn)
        rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 1);
    QTRY_VERIFY(Listener::HasHeard());
    QCOMPARE(Listener::Take(), Texts({"ValueChanged a 30"}));
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 5); // still 30 %
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 4);
    QTest::keyClick(&rig.View(), Qt::Key_Home);
    QCOMPARE(Listener::Take().filter(QStringLiteral("ValueChanged")), QStringList());
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 1);
    QTRY_VERIFY(Listener::HasHeard());
    QCOMPARE(Listener::Take(), Texts({"ValueChanged a 31"}));
}

void PanelAccessibleTest::NothingIsMadeWhileNobodyListens()
{
    PanelRig rig;
    { // whoever listened once does no longer
        const Listener listener;
    }
    rig.Send({"a", "b"});
    rig.Show();
    rig.View().setFocus(Qt::TabFocusReason);
    rig.RaiseState("a", 1);
    rig.RaiseState("a", 0);
    QVERIFY(!rig.Row("a")->WasAskedFor());
    QVERIFY(!rig.Row("b")->WasAskedFor());
    QCOMPARE(Listener::Take(), QStringList());
}

// Somebody listens; objects are made of the rows in view and of those that were asked for.
void PanelAccessibleTest::ALongListStaysCheap()
{
    PanelRig rig;
    rig.Show();
    const Listener listener;
    for (int iRow = 0; iRow < 1000; ++iRow)
        rig.Panel().AddDownloadInfo(rig.Made(qPrintable(QString::number(iRow))));
    QCOMPARE(List(rig).childCount(), 1000);
    rig.PressAllStart();
    const auto asked = [&rig] {
        int iCount = 0;
        for (const QGraphicsItem* pItem : rig.View().GetAllItem())
            iCount += static_cast<const DownloadItem*>(pItem)->WasAskedFor() ? 1 : 0;
        return iCount;
    };
    QVERIFY2(asked() < 20, qPrintable(QString::number(asked())));
    const int iBefore = asked();
    List(rig).child(900);
    QCOMPARE(asked(), iBefore + 1);
    Listener::Take();
    rig.Panel().FinishDownloadRecord(QStringLiteral("901")); // nobody knows of it
    rig.Panel().FinishDownloadRecord(QStringLiteral("900"));
    QCOMPARE(Listener::Take(), Texts({"ObjectDestroyed 900"}));
}

void PanelAccessibleTest::AListenerMayComeBeforeThePanel()
{
    const Listener listener;
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    QCOMPARE(List(rig).role(), QAccessible::List);
    QCOMPARE(List(rig).childCount(), 1);
}

void PanelAccessibleTest::NothingIsLeftOfAPanel()
{
    const Listener listener;
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    const QAccessible::Id list = QAccessible::uniqueId(&List(rig));
    const QAccessible::Id row = QAccessible::uniqueId(&RowOf(rig, "a"));
    QVERIFY(QAccessible::accessibleInterface(list));
    QVERIFY(QAccessible::accessibleInterface(row));
    rig.Destroy();
    QCOMPARE(QAccessible::accessibleInterface(list), nullptr);
    QCOMPARE(QAccessible::accessibleInterface(row), nullptr);
    GraphicsGridView another; // of the host's own
    QVERIFY(QAccessible::queryAccessibleInterface(&another)->role() != QAccessible::List);
}

KX_TEST(PanelAccessibleTest, QApplication)

#include "PanelAccessibleTest.moc"
