// What the plug-in gives the host to rewrite, and what it does with the answer: with a colour table and a rewriting of
// the test's own.

#include "Plugin/ScriptedStyle.h"
#include "PluginRig.h"
#include "TestMain.h"

#include <QtCore/QResource>

class StyleOrderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void TheColoursAreThereBeforeTheHostRewrites();
    void AKeyThatTheTableLacksIsLeftToTheHost();
    void AValueThatHoldsALaterKeyIsReplacedAgain();
    void ThePanelWearsWhatTheHostMadeOfIt();
    void TheHostIsAskedOncePerLife();
    void TheSheetIsReadAsUtf8AndAsText();

private:
    // What the host was given to rewrite by the plug-in's start, without its line breaks.
    QString Given();
};

// The keys that the plug-in's sheet uses, each with a colour that no other has.
void StyleOrderTest::init()
{
    ScriptedStyle::Current() = {};
    const std::initializer_list<std::pair<const char*, const char*>> colors = {
        {"pc001", "#111111"}, {"pc004", "#444444"}, {"pc005", "#555555"}, {"pc008", "#888888"}, {"pc011", "#ffffff"}};
    for (const auto& color : colors)
        ScriptedStyle::Current().colors.insert(QString::fromUtf8(color.first), QString::fromUtf8(color.second));
}

QString StyleOrderTest::Given()
{
    {
        const PluginRig rig;
    }
    return ScriptedStyle::Current().texts.value(0).simplified();
}

void StyleOrderTest::TheColoursAreThereBeforeTheHostRewrites()
{
    const QString strGiven = Given();
    QVERIFY2(strGiven.contains(QStringLiteral("DownloadWidget { background: KX_COLOR(#ffffff);")),
             qPrintable(strGiven));
    QVERIFY(strGiven.contains(QStringLiteral("border: 1px solid KX_COLOR(#888888);")));
    QVERIFY(strGiven.contains(QStringLiteral("DownloadWidget QLabel#labelText { color: KX_COLOR(#555555);")));
    QVERIFY(strGiven.contains(QStringLiteral("color: KX_COLOR(#444444);")));
    QVERIFY(strGiven.contains(QStringLiteral("color: KX_COLOR(#111111);")));
    QVERIFY(!strGiven.contains(QStringLiteral("pc0")));
}

void StyleOrderTest::AKeyThatTheTableLacksIsLeftToTheHost()
{
    ScriptedStyle::Current().colors.remove(QStringLiteral("pc011"));
    const QString strGiven = Given();
    QVERIFY2(strGiven.contains(QStringLiteral("background: KX_COLOR(pc011);")), qPrintable(strGiven));
    QVERIFY(strGiven.contains(QStringLiteral("border: 1px solid KX_COLOR(#888888);")));
}

// The table's keys go in ascending order, whichever came into it first.
void StyleOrderTest::AValueThatHoldsALaterKeyIsReplacedAgain()
{
    ScriptedStyle::Current().colors.insert(QStringLiteral("pc005"), QStringLiteral("pc011"));
    ScriptedStyle::Current().colors.insert(QStringLiteral("pc008"), QStringLiteral("pc001"));
    const QString strGiven = Given();
    QVERIFY2(strGiven.contains(QStringLiteral("QLabel#labelText { color: KX_COLOR(#ffffff);")), qPrintable(strGiven));
    QVERIFY(strGiven.contains(QStringLiteral("border: 1px solid KX_COLOR(pc001);")));
}

void StyleOrderTest::ThePanelWearsWhatTheHostMadeOfIt()
{
    ScriptedStyle::Current().strRewritten = QStringLiteral("QLabel { color: #123456 }");
    PluginRig rig;
    QCOMPARE(rig.Panel()->styleSheet(), QStringLiteral("QLabel { color: #123456 }"));
}

void StyleOrderTest::TheHostIsAskedOncePerLife()
{
    PluginRig rig(QStringLiteral("no json"));
    QCOMPARE(ScriptedStyle::Current().texts.size(), 0);
    rig.Init();
    QCOMPARE(ScriptedStyle::Current().texts.size(), 1);
    rig.Init();
    rig.SendLanguage("ru");
    rig.Plugin().Start();
    rig.Plugin().Stop();
    QCOMPARE(ScriptedStyle::Current().texts.size(), 1);
    rig.Plugin().Destory();
    rig.Init();
    QCOMPARE(ScriptedStyle::Current().texts.size(), 2);
}

// Its line ends are those of Windows.
void StyleOrderTest::TheSheetIsReadAsUtf8AndAsText()
{
    TakeResourcesAway();
    QVERIFY(QResource::registerResource(QStringLiteral(KX_OTHER_STYLE)));
    Given();
    QVERIFY(QResource::unregisterResource(QStringLiteral(KX_OTHER_STYLE)));
    BringResourcesBack();
    const QString strExpected = QString::fromUtf8(u8"/* é 北 */\nQLabel { color: KX_COLOR(#111111); }\n");
    QCOMPARE(ScriptedStyle::Current().texts.value(0), strExpected);
}

KX_TEST(StyleOrderTest, QApplication)

#include "StyleOrderTest.moc"
