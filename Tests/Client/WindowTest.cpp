#include "Client/WindowUser.h"
#include "TestMain.h"

#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

// What a user does in the window, and what the panel and the disk show of it.
class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void CheckedRecordingsArriveWhole();
    void AFailureSaysItsReason();
    void WhatIsInTheListCannotBeCheckedAgain();
    void SelectAllCountsAndSums();
    void TheLanguageReachesThePanel();
    void AnotherFolderGetsWhatIsAskedForNext();
    void TheSettingsButtonAsksForTheFolder();
    void ThePanelStaysWhenItHidesItself();
    void ANameIsShownAsItIsWritten();
};

namespace {

const QString Stairwell = QStringLiteral("Stairwell, motion");
const QString StairwellId = QStringLiteral("KXD2S0048816_1_20240318T071111");
const QString Doorbell = QStringLiteral("Doorbell, ring");
const QString FrontGate = QStringLiteral("Front gate, visitors");
const QString Downloaded = QStringLiteral("Downloaded");
constexpr int ArrivalMs = 60000;
constexpr QPoint DeleteButton(565, 41);

const QStringList SlowStairwell{QStringLiteral("--fault"), QStringLiteral("slow=50000@") + StairwellId};

} // namespace

void WindowTest::CheckedRecordingsArriveWhole()
{
    WindowUser user;
    const int iStatus = user.Open(user.Options(SlowStairwell), [&] {
        for (const QString& strTitle : {Stairwell, Doorbell, FrontGate})
            user.Check(strTitle);
        QCOMPARE(user.Find<QLabel>("selectionText")->text(), QStringLiteral("3 of 14 selected, 4.0 MiB"));
        QTest::keyClick(&user.Tree(), Qt::Key_Return);
        QVERIFY2(user.Rows().GetItem(StairwellId), "the panel shows it at once");
        QCOMPARE(user.StateOf(Stairwell), QStringLiteral("In the list"));
        for (const QString& strTitle : {Stairwell, Doorbell, FrontGate})
            QTRY_COMPARE_WITH_TIMEOUT(user.StateOf(strTitle), Downloaded, ArrivalMs);
        QTRY_COMPARE(user.Find<QLabel>("status")->text(), QStringLiteral("0 in the list, 3 downloaded, 0 failed"));
    });
    QCOMPARE(iStatus, 0);
    QCOMPARE(QFileInfo(user.Path(QStringLiteral("out/Stairwell.mp4"))).size(), qint64(102400));
    QCOMPARE(QFileInfo(user.Path(QStringLiteral("out/Doorbell 07-45.mp4"))).size(), qint64(655360));
    QCOMPARE(QFileInfo(user.Path(QStringLiteral("out/Front gate 2024-03-18.mp4"))).size(), qint64(3481617));
    QCOMPARE(QImage(user.Path(QStringLiteral("out/Stairwell.jpg"))).size(), QSize(120, 68));
    QCOMPARE(QImage(user.Path(QStringLiteral("out/Front gate 2024-03-18.jpg"))).size(), QSize(120, 68));
}

void WindowTest::AFailureSaysItsReason()
{
    WindowUser user;
    const QStringList missing{QStringLiteral("--fault"), QStringLiteral("missing@") + StairwellId};
    const int iStatus = user.Open(user.Options(missing), [&] {
        user.Check(Stairwell);
        user.Press("download");
        QTRY_COMPARE_WITH_TIMEOUT(user.StateOf(Stairwell), QStringLiteral("Failed"), ArrivalMs);
        const QTreeWidgetItem& item = *user.Recording(Stairwell);
        const QString strTip = item.toolTip(item.columnCount() - 1);
        QVERIFY2(strTip.contains(QStringLiteral("does not have it (HTTP status 404)")), qPrintable(strTip));
    });
    QCOMPARE(iStatus, 0);
}

void WindowTest::WhatIsInTheListCannotBeCheckedAgain()
{
    WindowUser user;
    const QStringList slow{QStringLiteral("--fault"), QStringLiteral("slow=500@") + StairwellId};
    user.Open(user.Options(slow), [&] {
        user.Check(Stairwell);
        user.Press("download");
        QTreeWidgetItem* pItem = user.Recording(Stairwell);
        pItem->parent()->setCheckState(0, Qt::Checked);
        QCOMPARE(pItem->checkState(0), Qt::Unchecked);
        QCOMPARE(user.Find<QLabel>("selectionText")->text(), QStringLiteral("3 of 14 selected, 27.3 MiB"));
        pItem->parent()->setCheckState(0, Qt::Unchecked);
        QVERIFY(!user.Find<QPushButton>("download")->isEnabled());

        user.PressInRow(StairwellId, DeleteButton);
        QTRY_COMPARE(user.StateOf(Stairwell), QString());
        user.Check(Stairwell);
        QCOMPARE(user.Find<QLabel>("selectionText")->text(), QStringLiteral("1 of 14 selected, 100.0 KiB"));
        user.Press("download");
        QVERIFY(user.Rows().GetItem(StairwellId));
    });
    QVERIFY2(!QFileInfo::exists(user.Path(QStringLiteral("out/Stairwell.mp4"))), "what is stopped leaves no half file");
}

void WindowTest::SelectAllCountsAndSums()
{
    WindowUser user;
    user.Open(user.Options(), [&] {
        auto* pAll = user.Find<QCheckBox>("selectAll");
        QVERIFY(!user.Find<QPushButton>("download")->isEnabled());
        user.Check(Doorbell);
        QCOMPARE(pAll->checkState(), Qt::PartiallyChecked);
        QCOMPARE(user.Recording(Doorbell)->parent()->checkState(0), Qt::PartiallyChecked);
        pAll->click();
        QCOMPARE(pAll->checkState(), Qt::Checked);
        QCOMPARE(user.Find<QLabel>("selectionText")->text(), QStringLiteral("14 of 14 selected, 285.2 MiB"));
        pAll->click();
        QCOMPARE(user.Find<QLabel>("selectionText")->text(), QStringLiteral("0 of 14 selected, 0 B"));
        QTest::keyClick(&user.Window(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(pAll->checkState(), Qt::Checked);
    });
}

void WindowTest::TheLanguageReachesThePanel()
{
    WindowUser user;
    user.Open(user.Options(), [&] {
        const auto* pPauseAll = user.Find<QPushButton>("btnAllStart");
        QCOMPARE(pPauseAll->text(), QStringLiteral("Pause all"));
        user.Find<QAction>("language_fr")->trigger();
        QCOMPARE(pPauseAll->text(), QStringLiteral("Tout mettre en pause"));
        QCOMPARE(user.Find<QLabel>("labelText")->text(), QStringLiteral("Aucune tâche"));
    });
    user.Open(user.Options(), [&] {
        QVERIFY(user.Find<QAction>("language_fr")->isChecked());
        QCOMPARE(user.Find<QPushButton>("btnAllStart")->text(), QStringLiteral("Tout mettre en pause"));
    });
}

void WindowTest::AnotherFolderGetsWhatIsAskedForNext()
{
    WindowUser user;
    const QString strOther = user.Path(QStringLiteral("été – 北"));
    user.Open(user.Options({QStringLiteral("--difficult")}), [] {});
    QStringList options = user.Options();
    options[1] = strOther;
    user.Open(options, [] {});
    // The folder of the last time is the present one now, the one before stands in the menu.
    user.Open(options.mid(2), [&] {
        QCOMPARE(user.Find<QLabel>("folder")->toolTip(), QDir::toNativeSeparators(strOther));
        user.Check(Doorbell);
        user.Press("download");
        QTRY_COMPARE_WITH_TIMEOUT(user.StateOf(Doorbell), Downloaded, ArrivalMs);
        const QString strBefore = QDir::toNativeSeparators(user.Path(QStringLiteral("out")));
        for (QAction* pAction : user.Window().findChildren<QAction*>()) {
            if (pAction->text() == QStringLiteral("&1  ") + strBefore)
                pAction->trigger();
        }
        QCOMPARE(user.Find<QLabel>("folder")->toolTip(), strBefore);
        user.Check(Stairwell);
        user.Press("download");
        QTRY_COMPARE_WITH_TIMEOUT(user.StateOf(Stairwell), Downloaded, ArrivalMs);
    });
    QCOMPARE(QFileInfo(strOther + QStringLiteral("/Doorbell 07-45.mp4")).size(), qint64(655360));
    QCOMPARE(QFileInfo(user.Path(QStringLiteral("out/Stairwell.mp4"))).size(), qint64(102400));
    QVERIFY(!QFileInfo::exists(strOther + QStringLiteral("/Stairwell.mp4")));
}

void WindowTest::TheSettingsButtonAsksForTheFolder()
{
#ifdef __SANITIZE_THREAD__
    QSKIP("Qt's own folder dialog connects to its thread while that starts", "");
#endif
    WindowUser user;
    const QStringList slow{QStringLiteral("--fault"), QStringLiteral("slow=500@") + StairwellId};
    user.Open(user.Options(slow), [&] {
        user.Check(Stairwell);
        user.Press("download");
        user.Press("btnSetting");
        const auto isAsked = [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) != nullptr; };
        bool bAsked = false;
        QTimer::singleShot(0, qApp, [&] {
            bAsked = QTest::qWaitFor(isAsked, 10000);
            if (bAsked)
                qobject_cast<QFileDialog*>(QApplication::activeModalWidget())->reject();
        });
        QTRY_VERIFY(bAsked);
        QTRY_VERIFY(user.Rows().isVisible());
        QCOMPARE(user.Find<QLabel>("folder")->toolTip(), QDir::toNativeSeparators(user.Path(QStringLiteral("out"))));
    });
}

void WindowTest::ThePanelStaysWhenItHidesItself()
{
    WindowUser user;
    user.Open(user.Options(), [&] {
        auto* pPanel = user.Find<QWidget>("DownloadWidget");
        QVERIFY(pPanel && pPanel->isVisible() && !pPanel->isWindow());
        QTest::keyClick(pPanel, Qt::Key_Escape);
        QTRY_VERIFY(pPanel->isVisible());
    });
}

namespace {

const char OddConfig[] = R"({"cloud": {"url": "http://127.0.0.1:9/{recordId}"}})";
const char OddRecords[] = R"([{"iRecordType": 0, "strRecordId": "1", "strDownloadPath": "&lt;i&gt;a.mp4", )"
                          R"("strText4": "<b>b</b>"}, )"
                          R"({"iRecordType": 0, "strRecordId": "2", "strDownloadPath": "clip \u202egpj.mp4"}])";

// As a tool tip shows it, which takes markup.
QString ToolTipText(const QTreeWidgetItem& item)
{
    const QString strTip = item.toolTip(0);
    return Qt::mightBeRichText(strTip) ? QTextDocumentFragment::fromHtml(strTip).toPlainText() : strTip;
}

} // namespace

void WindowTest::ANameIsShownAsItIsWritten()
{
    WindowUser user;
    const auto write = [&user](const QString& strName, const char* pszText) {
        QFile file(user.Path(strName));
        return file.open(QIODevice::WriteOnly) && file.write(pszText) > 0;
    };
    QVERIFY(write(QStringLiteral("config.json"), OddConfig));
    QVERIFY(write(QStringLiteral("records.json"), OddRecords));
    user.Open(user.Options({QStringLiteral("--config"), user.Path(QStringLiteral("config.json")),
                            QStringLiteral("--records"), user.Path(QStringLiteral("records.json"))}),
              [&] {
                  const QTreeWidgetItem* pMarkup = user.Recording(QStringLiteral("<b>b</b>"));
                  QVERIFY(pMarkup);
                  QCOMPARE(ToolTipText(*pMarkup), QStringLiteral("&lt;i&gt;a.mp4"));
                  const QTreeWidgetItem* pTurned = user.Recording(QStringLiteral("clip gpj.mp4"));
                  QVERIFY(pTurned);
                  QCOMPARE(ToolTipText(*pTurned), QStringLiteral("clip gpj.mp4"));
              });
}

KX_TEST(WindowTest, QApplication)
#include "WindowTest.moc"
