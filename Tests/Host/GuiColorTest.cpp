#include "Host/KXGui/Theme.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXPublic.h"
#include "TestMain.h"

#include <QtCore/QtMath>
#include <QtTest/QtTest>

namespace {

const char* const UsedKeys[] = {"pc001", "pc004", "pc005", "pc008", "pc009", "pc010", "pc011", "pc020"};

qreal Linear(qreal dChannel)
{
    return dChannel <= 0.03928 ? dChannel / 12.92 : qPow((dChannel + 0.055) / 1.055, 2.4);
}

qreal Luminance(const QColor& color)
{
    return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

// 1 (the same) to 21 (black on white).
qreal Contrast(const char* pszLeft, const char* pszRight)
{
    const qreal dLeft = Luminance(KXColor::color(QLatin1String(pszLeft), 1.0));
    const qreal dRight = Luminance(KXColor::color(QLatin1String(pszRight), 1.0));
    return (qMax(dLeft, dRight) + 0.05) / (qMin(dLeft, dRight) + 0.05);
}

} // namespace

class GuiColorTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { KXHost::SetDarkTheme(false); }
    void TheLightTableIsTheFirst();
    void EachTableHasEveryKey_data();
    void EachTableHasEveryKey();
    void TextsAreReadableOnThePanel_data();
    void TextsAreReadableOnThePanel();
    void TheTablesDiffer();
    void OpacityIsThatOfTheCaller();
    void AnUnknownKeyIsNoColor();
    void KeysOfAStyleSheetAreUnwrapped_data();
    void KeysOfAStyleSheetAreUnwrapped();
    void TableAndUnwrappingMakeAStyleSheet();
};

void GuiColorTest::TheLightTableIsTheFirst()
{
    QVERIFY(!KXHost::IsDarkTheme());
    QCOMPARE(KXColor::color(QStringLiteral("pc011"), 1.0), QColor(Qt::white));
}

void GuiColorTest::EachTableHasEveryKey_data()
{
    QTest::addColumn<bool>("bDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void GuiColorTest::EachTableHasEveryKey()
{
    QFETCH(bool, bDark);
    KXHost::SetDarkTheme(bDark);
    QCOMPARE(KXHost::IsDarkTheme(), bDark);
    const QMap<QString, QString> map = KXColor::colorMap();
    static const QRegularExpression s_value(QStringLiteral("^#[0-9a-f]{6}$"));
    for (const char* pszKey : UsedKeys)
        QVERIFY2(s_value.match(map.value(QLatin1String(pszKey))).hasMatch(), pszKey);
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        QVERIFY2(QRegularExpression(QStringLiteral("^pc\\d{3}$")).match(it.key()).hasMatch(), qPrintable(it.key()));
        QCOMPARE(KXColor::color(it.key(), 1.0), QColor(it.value()));
    }
}

void GuiColorTest::TextsAreReadableOnThePanel_data()
{
    QTest::addColumn<QByteArray>("front");
    QTest::addColumn<QByteArray>("back");
    QTest::addColumn<qreal>("dContrast");
    for (const char* pszText : {"pc001", "pc004", "pc005", "pc020"})
        QTest::newRow(pszText) << QByteArray(pszText) << QByteArray("pc011") << 4.5;
    QTest::newRow("icon") << QByteArray("pc004") << QByteArray("pc009") << 4.5;
    QTest::newRow("icon under the pointer") << QByteArray("pc001") << QByteArray("pc009") << 3.0;
    QTest::newRow("progress on its track") << QByteArray("pc001") << QByteArray("pc010") << 3.0;
}

void GuiColorTest::TextsAreReadableOnThePanel()
{
    QFETCH(QByteArray, front);
    QFETCH(QByteArray, back);
    QFETCH(qreal, dContrast);
    QVERIFY2(Contrast(front.constData(), back.constData()) >= dContrast, "light");
    KXHost::SetDarkTheme(true);
    QVERIFY2(Contrast(front.constData(), back.constData()) >= dContrast, "dark");
}

void GuiColorTest::TheTablesDiffer()
{
    const QMap<QString, QString> light = KXColor::colorMap();
    KXHost::SetDarkTheme(true);
    const QMap<QString, QString> dark = KXColor::colorMap();
    QCOMPARE(dark.keys(), light.keys());
    for (const char* pszKey : UsedKeys)
        QVERIFY2(dark.value(QLatin1String(pszKey)) != light.value(QLatin1String(pszKey)), pszKey);
}

void GuiColorTest::OpacityIsThatOfTheCaller()
{
    QCOMPARE(KXColor::color(QStringLiteral("pc001"), 1.0).alpha(), 255);
    QCOMPARE(KXColor::color(QStringLiteral("pc001"), 0.2).alpha(), 51);
    QCOMPARE(KXColor::color(QStringLiteral("pc001"), -1.0).alpha(), 0);
    QCOMPARE(KXColor::color(QStringLiteral("pc001"), 7.0).alpha(), 255);
}

void GuiColorTest::AnUnknownKeyIsNoColor()
{
    QVERIFY(!KXColor::color(QStringLiteral("pc999"), 1.0).isValid());
    QVERIFY(!KXColor::color(QString(), 1.0).isValid());
    QVERIFY(!KXColor::color(QStringLiteral("PC001"), 1.0).isValid());
}

void GuiColorTest::KeysOfAStyleSheetAreUnwrapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one value") << "color: KX_COLOR(#102030);"
                               << "color: #102030;";
    QTest::newRow("several, the rest stays") << "a{color:KX_COLOR(#1);} b{border: 1px solid KX_COLOR(#2)}"
                                             << "a{color:#1;} b{border: 1px solid #2}";
    QTest::newRow("spaces around the value") << "KX_COLOR(  #102030 )"
                                             << "#102030";
    QTest::newRow("a value that is a function") << "KX_COLOR(rgba(0, 0, 0, 30%));"
                                                << "rgba(0, 0, 0, 30%);";
    QTest::newRow("a key that nobody replaced") << "KX_COLOR(pc999)"
                                                << "pc999";
    QTest::newRow("left open") << "color: KX_COLOR(#102030;"
                               << "color: KX_COLOR(#102030;";
    QTest::newRow("other functions stay") << "url(a.png) kx_color(#1)"
                                          << "url(a.png) kx_color(#1)";
    QTest::newRow("nothing to do") << ""
                                   << "";
}

void GuiColorTest::KeysOfAStyleSheetAreUnwrapped()
{
    QFETCH(QString, text);
    KXPublic::translateQssKey(text);
    QTEST(text, "expected");
}

void GuiColorTest::TableAndUnwrappingMakeAStyleSheet()
{
    QString strSheet = QStringLiteral("QWidget { background: KX_COLOR(pc011); color: KX_COLOR(pc004) }");
    const QMap<QString, QString> map = KXColor::colorMap();
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        strSheet.replace(it.key(), it.value());
    KXPublic::translateQssKey(strSheet);
    QCOMPARE(strSheet, QStringLiteral("QWidget { background: #ffffff; color: #1d2430 }"));
}

KX_TEST(GuiColorTest, NoApplication)
#include "GuiColorTest.moc"
