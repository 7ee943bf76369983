// The style sheet that the panel wears, with the reference host's colours.

#include "Plugin/ColorKeys.h"
#include "PluginRig.h"
#include "TestMain.h"

class StyleSheetTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { PluginRig::RemoveTranslators(); }
    void TheStyleSheetIsAppliedWithItsColours();
    void WithoutResourcesThePanelIsPlain();
    void ColourKeysAreReplacedInTheirOrder_data();
    void ColourKeysAreReplacedInTheirOrder();
};

void StyleSheetTest::TheStyleSheetIsAppliedWithItsColours()
{
    PluginRig rig;
    const QString strSheet = rig.Panel()->styleSheet().simplified();
    QVERIFY(!strSheet.contains(QStringLiteral("KX_COLOR")));
    QVERIFY(!strSheet.contains(QStringLiteral("pc0")));
    QVERIFY2(strSheet.contains(QStringLiteral("DownloadWidget { background: #ffffff;")), qPrintable(strSheet));
    QVERIFY(strSheet.contains(QStringLiteral("border: 1px solid #c9d0da;")));
    QVERIFY(strSheet.contains(QStringLiteral("QLabel#labelText { color: #66707f;")));
    QVERIFY(strSheet.contains(QStringLiteral("Microsoft YaHei; color: #1d2430;"))); // btnSetting
    QVERIFY(strSheet.contains(QStringLiteral("Microsoft YaHei; color: #1f6feb;"))); // btnAllStart
    rig.Panel()->setStyleSheet(QStringLiteral("QLabel{}"));
    rig.SendLanguage("ru"); // applies none
    QCOMPARE(rig.Panel()->styleSheet(), QStringLiteral("QLabel{}"));
}

void StyleSheetTest::WithoutResourcesThePanelIsPlain()
{
    PluginRig rig{PluginRig::Unstarted()};
    TakeResourcesAway();
    rig.Init(PluginRig::In("en"));
    BringResourcesBack();
    QVERIFY(rig.Panel());
    QCOMPARE(rig.TextOf("btnSetting"), QStringLiteral("common_set"));
    QCOMPARE(rig.Panel()->styleSheet(), QString());
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void StyleSheetTest::ColourKeysAreReplacedInTheirOrder_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("table"); // key, value, key, value…
    QTest::addColumn<QString>("result");
    const auto row = [](const char* pszName, const char* pszText, std::initializer_list<const char*> table,
                        const char* pszResult) {
        QTest::newRow(pszName) << QString::fromUtf8(pszText) << Texts(table) << QString::fromUtf8(pszResult);
    };
    row("each, wherever it stands", "a KX(pc1) b pc2, pc1;", {"pc1", "#1", "pc2", "#2"}, "a KX(#1) b #2, #1;");
    row("a value that holds a later key", "pc1", {"pc1", "pc2", "pc2", "#2"}, "#2");
    row("a value that holds an earlier key", "pc2", {"pc1", "#1", "pc2", "pc1"}, "pc1");
    row("a key that begins another", "pc11", {"pc1", "#1", "pc11", "#2"}, "#11");
    row("case counts", "PC1", {"pc1", "#1"}, "PC1");
    row("no table", "pc1", {}, "pc1");
}

void StyleSheetTest::ColourKeysAreReplacedInTheirOrder()
{
    QFETCH(QString, text);
    QFETCH(QStringList, table);
    QMap<QString, QString> colors;
    for (int i = 0; i < table.size(); i += 2)
        colors.insert(table[i], table[i + 1]);
    ReplaceColorKeys(text, colors);
    QTEST(text, "result");
}

KX_TEST(StyleSheetTest, QApplication)

#include "StyleSheetTest.moc"
