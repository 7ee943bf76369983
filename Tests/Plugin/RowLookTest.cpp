// The plain functions behind a row's look, without a window.

#include "DownloadWidget/RowLook.h"
#include "TestMain.h"

#include <QtTest/QTest>

class RowLookTest : public QObject
{
    Q_OBJECT

private slots:
    void StatesHaveTheirIconColourAndText_data();
    void StatesHaveTheirIconColourAndText();
    void ProgressIsCutToWholePercentAndPixels_data();
    void ProgressIsCutToWholePercentAndPixels();
    void OnlyADownloadingRowIsFilled_data();
    void OnlyADownloadingRowIsFilled();
};

void RowLookTest::StatesHaveTheirIconColourAndText_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* pszName, int iState, int iIcon, const char* pszColor, const char* pszText) {
        QTest::newRow(pszName) << iState << iIcon << QByteArray(pszColor) << QByteArray(pszText);
    };
    row("waiting", 0, 1, "pc005", "mobile_common_download_manager_wait_download");
    row("downloading shows a number, not a key", 1, 1, "pc001", nullptr);
    row("finished shows nothing", 2, 1, nullptr, nullptr);
    row("failed", 3, 3, "pc020", "mobile_common_download_manager_download_failure");
    row("4 is no state", 4, 1, nullptr, nullptr);
    row("paused", 5, 0, "pc005", "panel_pause");
    row("6 is no state", 6, 1, nullptr, nullptr);
    row("-1 is no state", -1, 1, nullptr, nullptr);
}

void RowLookTest::StatesHaveTheirIconColourAndText()
{
    QFETCH(int, state);
    const auto shown = static_cast<RowState>(state);
    QTEST(RowLook::StateIcon(shown), "icon");
    QTEST(QByteArray(RowLook::StateColorKey(shown)), "color");
    QTEST(QByteArray(RowLook::StateTextKey(shown)), "text");
}

void RowLookTest::ProgressIsCutToWholePercentAndPixels_data()
{
    QTest::addColumn<qint64>("received");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("width");
    const auto row = [](const char* pszName, qint64 lReceived, qint64 lTotal, const char* pszText, qreal dWidth) {
        QTest::newRow(pszName) << lReceived << lTotal << QString::fromUtf8(pszText) << dWidth;
    };
    row("nothing received", 0, 1000, "0%", 0);
    row("a record that never received anything", -1, 10, "0%", 0);
    row("a third is cut, not rounded", 1000, 3000, "33%", 100);
    row("two thirds", 2000, 3000, "66%", 200);
    row("just before the end", 999999, 1000000, "99%", 299);
    row("exactly all", 1000, 1000, "100%", 300);
    row("less than one percent too much still counts as all", 1001, 1000, "100%", 300);
    row("nor does it leave the track", 1004, 1000, "100%", 300);
    row("the largest overrun that reads 100%", 1009, 1000, "100%", 300);
    row("an overrun reads 99% on a full bar", 1010, 1000, "99%", 300);
    row("a large overrun", 1000000, 1, "99%", 300);
    row("beyond what a number of percent can hold", 4611686018427387904, 1, "99%", 300);
    row("no size", 500, 0, "0%", 0);
    row("unknown size", 500, -1, "0%", 0);
    row("8 TiB", 4398046511104, 8796093022208, "50%", 150);
}

void RowLookTest::ProgressIsCutToWholePercentAndPixels()
{
    QFETCH(qint64, received);
    QFETCH(qint64, total);
    QTEST(RowLook::PercentText(received, total), "text");
    QTEST(RowLook::FillWidth(RowState::Downloading, received, total), "width");
}

void RowLookTest::OnlyADownloadingRowIsFilled_data()
{
    QTest::addColumn<int>("state");
    for (const int iState : {0, 2, 3, 4, 5})
        QTest::addRow("state %d", iState) << iState;
}

void RowLookTest::OnlyADownloadingRowIsFilled()
{
    QFETCH(int, state);
    QCOMPARE(RowLook::FillWidth(static_cast<RowState>(state), 500, 1000), 0.0);
}

KX_TEST(RowLookTest, NoApplication)

#include "RowLookTest.moc"
