// Every language in the places that do not grow: the empty page, the head of the list and the rows.

#include "PanelRig.h"
#include "PluginRig.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace {

constexpr int LargestCount = 100000;

// On Linux, with each of two fonts that machines have; elsewhere, with the system's own.
QFont InTestedFamily(const QFont& font)
{
    QFETCH_GLOBAL(QString, family);
    QFont tested = font;
    if (!family.isEmpty())
        tested.setFamily(family);
    return tested;
}

// Characters that the font lacks are counted as other fonts draw them: ideographs, syllables and kana as squares,
// letters as most of a square.
int WidthOf(const QFont& styled, const QString& strText)
{
    const QFont font = InTestedFamily(styled);
    const QFontMetrics metrics(font);
    const int iSquare = QFontInfo(font).pixelSize();
    int iWidth = 0;
    QString strKnown;
    for (const QChar character : strText) {
        if (metrics.inFont(character))
            strKnown += character;
        else if (!character.isMark()) // these stand above or below a letter
            iWidth += character.unicode() >= 0x1100 ? iSquare : iSquare * 7 / 10;
    }
    return iWidth + metrics.horizontalAdvance(strKnown);
}

} // namespace

class TextWidthTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void TheEmptyPageHoldsItsText_data() { EveryLanguage(); }
    void TheEmptyPageHoldsItsText();
    void TheHeadOfTheListHoldsItsTexts_data() { EveryLanguage(); }
    void TheHeadOfTheListHoldsItsTexts();
    void ARowHoldsItsStateText_data() { EveryLanguage(); }
    void ARowHoldsItsStateText();

private:
    static void EveryLanguage();
};

void TextWidthTest::initTestCase_data()
{
    QTest::addColumn<QString>("family");
#ifdef Q_OS_LINUX
    for (const char* pszFamily : {"Noto Sans", "DejaVu Sans"}) {
        QVERIFY2(QFontDatabase().families().contains(QLatin1String(pszFamily)), pszFamily); // Tools/setup.sh
        QTest::newRow(pszFamily) << QString::fromUtf8(pszFamily);
    }
#else
    QTest::newRow("the system's own") << QString();
#endif
}

void TextWidthTest::EveryLanguage()
{
    QTest::addColumn<QString>("code");
    const QStringList files = QDir(QStringLiteral(":/KXRecordManage/Translates")).entryList(QDir::Files, QDir::Name);
    QCOMPARE(files.size(), 30);
    for (const QString& strFile : files) {
        const QString strCode = strFile.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('_'), 1);
        QTest::newRow(strCode.isEmpty() ? "base" : qPrintable(strCode)) << strCode;
    }
}

void TextWidthTest::TheEmptyPageHoldsItsText()
{
    QFETCH(QString, code);
    PluginRig rig(PluginRig::In(code));
    auto* pLabel = rig.Panel()->findChild<QLabel*>(QStringLiteral("labelText"));
    pLabel->ensurePolished(); // the style sheet decides the font
    QCOMPARE(pLabel->font().pixelSize(), 14);
    QVERIFY(!pLabel->text().contains(QLatin1Char('_'))); // translated
    const int iWidth = WidthOf(pLabel->font(), pLabel->text());
    QVERIFY2(iWidth <= 112, qPrintable(QStringLiteral("%1: %2 pixels").arg(pLabel->text()).arg(iWidth)));
    const int iHeight = QFontMetrics(InTestedFamily(pLabel->font())).tightBoundingRect(pLabel->text()).height();
    QVERIFY2(iHeight <= 20, qPrintable(QStringLiteral("%1: %2 pixels").arg(pLabel->text()).arg(iHeight)));
}

// The count at the left, both buttons at the right, 20 pixels beside each, between margins of 30.
void TextWidthTest::TheHeadOfTheListHoldsItsTexts()
{
    QFETCH(QString, code);
    PluginRig rig(PluginRig::In(code));
    QWidget* pPanel = rig.Panel();
    pPanel->show();
    const auto widthOf = [pPanel](const char* pszWidget, const QString& strText) {
        const auto* pWidget = pPanel->findChild<QWidget*>(QString::fromUtf8(pszWidget));
        pWidget->ensurePolished(); // the style sheet decides the font
        return WidthOf(pWidget->font(), strText);
    };
    const int iCount = widthOf("labelNumber", DownloadWidget::tr("play_multiple_views_total", nullptr, LargestCount)
                                                  .arg(LargestCount, 0, 10, QLatin1Char(' ')));
    const int iSettings = widthOf("btnSetting", DownloadWidget::tr("common_set"));
    const int iAll = std::max(widthOf("btnAllStart", DownloadWidget::tr("pc_download_video_suspend_all")),
                              widthOf("btnAllStart", DownloadWidget::tr("pc_download_video_resume_all")));
    QVERIFY2(iCount + iSettings + iAll <= 610 - 2 * 30 - 3 * 20,
             qPrintable(QStringLiteral("%1 + %2 + %3 pixels").arg(iCount).arg(iSettings).arg(iAll)));
}

// As wide as the progress bar above it.
void TextWidthTest::ARowHoldsItsStateText()
{
    QFETCH(QString, code);
    PluginRig rig(PluginRig::In(code));
    const auto* pView = rig.Panel()->findChild<GraphicsGridView*>();
    for (const char* pszKey : {"mobile_common_download_manager_wait_download",
                               "mobile_common_download_manager_download_failure", "panel_pause"}) {
        const int iWidth = WidthOf(pView->font(), DownloadItem::tr(pszKey));
        QVERIFY2(iWidth <= 300, qPrintable(QStringLiteral("%1: %2 pixels").arg(QLatin1String(pszKey)).arg(iWidth)));
    }
}

KX_TEST(TextWidthTest, QApplication)

#include "TextWidthTest.moc"
