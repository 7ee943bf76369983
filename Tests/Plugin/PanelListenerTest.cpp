// What assistive technology does inside the very moment in which it hears of a row: the rows and their count stay
// right.

#include "Listener.h"
#include "PanelRig.h"
#include "TestMain.h"

class PanelListenerTest : public QObject
{
    Q_OBJECT

private slots:
    void RowsMayEndWhenOneIsHeardOf_data();
    void RowsMayEndWhenOneIsHeardOf();
    void DataMayArriveWhenProgressIsHeardOf();
};

namespace {

QString Left(PanelRig& rig)
{
    QStringList ids;
    for (const QGraphicsItem* pRow : rig.View().GetAllItem())
        ids.append(pRow->data(GraphicsGridView::KeyRole).toString());
    return ids.join(QLatin1Char(' '));
}

// Makes the panel tell that about the row "b", or about a new row "d".
void Provoke(PanelRig& rig, const QString& strHeard)
{
    if (strHeard == QLatin1String("ObjectCreated"))
        return rig.Panel().AddDownloadInfo(rig.Made("d"));
    if (strHeard == QLatin1String("ObjectDestroyed"))
        return rig.Panel().FinishDownloadRecord(QStringLiteral("b"));
    if (strHeard == QLatin1String("Focus"))
        return QTest::keyClick(&rig.View(), Qt::Key_Down);
    if (strHeard == QLatin1String("DescriptionChanged"))
        return rig.PressAllStart(); // of each row
    rig.Panel().OnDownloadRecordData(QStringLiteral("b"), 500);
}

} // namespace

void PanelListenerTest::RowsMayEndWhenOneIsHeardOf_data()
{
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("ends");
    QTest::addColumn<QString>("left");
    const auto add = [](const char* pszHeard, const char* pszEnds, const char* pszLeft) {
        QTest::addRow("%s, %s", pszHeard, pszEnds)
            << QString::fromUtf8(pszHeard) << QString::fromUtf8(pszEnds) << QString::fromUtf8(pszLeft);
    };
    for (const char* pszHeard : {"DescriptionChanged", "ValueChanged", "Focus"}) {
        add(pszHeard, "a", "b c");
        add(pszHeard, "b", "a c");
        add(pszHeard, "a b c", "");
    }
    add("ObjectCreated", "a", "b c d");
    add("ObjectCreated", "d", "a b c");
    add("ObjectDestroyed", "a", "c");
    add("ObjectDestroyed", "b", "a c");
    add("ObjectDestroyed", "a b c", "");
}

void PanelListenerTest::RowsMayEndWhenOneIsHeardOf()
{
    QFETCH(QString, heard);
    QFETCH(QString, ends);
    PanelRig rig;
    rig.Send({"a", "b", "c"});
    rig.Show();
    rig.RaiseState("b", 1);
    rig.View().setFocus(Qt::TabFocusReason);
    EngineRig::Settle();
    bool bActed = false;
    const int iFewest = rig.View().GetAllItem().size();
    const Listener listener([&](const QString& strHeard) {
        if (!strHeard.startsWith(heard) || std::exchange(bActed, true))
            return;
        for (const QString& strId : ends.split(QLatin1Char(' ')))
            rig.Panel().FinishDownloadRecord(strId);
    });
    rig.World().Bus().Clear();
    Provoke(rig, heard);
    QTRY_VERIFY(bActed);
    EngineRig::Settle();
    QTEST(Left(rig), "left");
    QCOMPARE(rig.Counts().last(), rig.View().GetAllItem().size());
    for (const int iCount : rig.Counts())
        QVERIFY(iCount >= 0 && (heard != QLatin1String("ObjectCreated") || iCount >= iFewest));
}

// What arrives while a row that got on is told of comes with the next frame.
void PanelListenerTest::DataMayArriveWhenProgressIsHeardOf()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.RaiseState("a", 1);
    rig.Record("a").lReceivedSize = 0;
    const Listener listener([&rig](const QString& strHeard) {
        if (strHeard == QLatin1String("ValueChanged a 50"))
            rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 500);
    });
    rig.Panel().OnDownloadRecordData(QStringLiteral("a"), 500);
    QTRY_COMPARE(Listener::Heard(), Texts({"ValueChanged a 50", "ValueChanged a 100"}));
}

KX_TEST(PanelListenerTest, QApplication)

#include "PanelListenerTest.moc"
