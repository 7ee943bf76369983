// The plug-in-wide data: language and style sheet, through the plug-in object in a fake world.

#include "DownloadWidget/DownloadWidget.h"
#include "FakeHost/FakeWorld.h"
#include "Plugin/ColorKeys.h"
#include "Plugin/KXRecordManage.h"
#include "Plugin/KXRecordManageGlobalData.h"
#include "TestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

// Outside any namespace, as the macros want it.
static void TakeResourcesAway()
{
    Q_CLEANUP_RESOURCE(KXRecordManage);
}

static void BringResourcesBack()
{
    Q_INIT_RESOURCE(KXRecordManage);
}

namespace {

// What the application makes of the settings button's key.
QString Translated()
{
    return QCoreApplication::translate("DownloadWidget", "common_set");
}

void SendLanguages(FakeWorld& world, const QVariantList& list)
{
    world.Bus().Send("EventNotifyConfigPluginUpdateLanguage", list);
}

QString TextOf(QWidget* pPanel, const char* pszButton)
{
    return pPanel->findChild<QPushButton*>(QString::fromUtf8(pszButton))->text();
}

void SendLanguageThatIsNotThere(FakeWorld& world)
{
    TakeResourcesAway();
    SendLanguages(world, {QStringLiteral("en")});
    BringResourcesBack();
}

// How often the application heard that its translators are others now.
class LanguageChanges : public QObject
{
public:
    LanguageChanges() { QCoreApplication::instance()->installEventFilter(this); }
    int iCount = 0;

private:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        iCount += pEvent->type() == QEvent::LanguageChange && pWatched == QCoreApplication::instance();
        return false;
    }
};

} // namespace

class LanguageTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void InitAttachesAndTranslates();
    void TheLanguageIsThereBeforeThePanelIsMade();
    void StopShutsTheEngineDownAndLeavesThePanel();
    void ACodeGivesItsOwnFileOrTheBaseFile_data();
    void ACodeGivesItsOwnFileOrTheBaseFile();
    void AListOfAnotherLengthLeavesNoTranslator_data();
    void AListOfAnotherLengthLeavesNoTranslator();
    void TheSameCodeTwiceIsOneTranslator();
    void ThePanelsTextsFollow();
    void ASecondInitChangesNothing();
    void ALanguageBeforeTheContentTakesItsPlace();
    void InitWithoutATranslatorKeepsThePanel();
    void ATranslatorThatFoundNothingTakesTheContentsPlace();
    void ATranslatorThatFoundNothingIsNotInstalled();
    void ThePanelsTextsFollowALanguageThatIsNotThere();
    void TextThatIsNoJsonIsNotLogged();
    void WithoutResourcesThePanelIsPlain();
    void TheDataObjectHoldsThePanel();
    void TheInstanceIsNotForgotten();
    void TheTranslatorOutlivesTheContent();
    void ANewLifeReplacesTheLeftTranslator();
    void TheStyleSheetIsAppliedWithItsColours();
    void ColourKeysAreReplacedInTheirOrder_data();
    void ColourKeysAreReplacedInTheirOrder();
    void TheDataObjectHasTwoSlotsAndNoSignals();
};

// What a case leaves installed ends with a life whose last word is an empty list.
void LanguageTest::cleanup()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    SendLanguages(world, {});
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    plugin.Destory();
}

void LanguageTest::InitAttachesAndTranslates()
{
    FakeWorld world;
    KXRecordManage plugin;
    QCOMPARE(world.Calls().Lines(), Texts({})); // the object alone touches nothing
    plugin.Init(QStringLiteral("{\"strLanguage\":\"de\"}"));
    QCOMPARE(world.Calls().Lines("attach").value(0),
             QStringLiteral("attach EventNotifyConfigPluginUpdateLanguage UpdatePluginLanguage(QVariantList)"));
    QCOMPARE(Translated(), QStringLiteral("Einstellungen"));
    QCOMPARE(TextOf(plugin.CenterWidget(QString()), "btnSetting"), QStringLiteral("Einstellungen"));
    plugin.Destory();
}

void LanguageTest::TheLanguageIsThereBeforeThePanelIsMade()
{
    FakeWorld world;
    KXRecordManage plugin;
    QString strAtItsStart;
    world.Calls().WhenAdded("attach EventNotifyDownloadRecordList", [&] { strAtItsStart = Translated(); });
    plugin.Init(QStringLiteral("{\"strLanguage\":\"de\"}"));
    QCOMPARE(strAtItsStart, QStringLiteral("Einstellungen"));
    plugin.Destory();
}

void LanguageTest::StopShutsTheEngineDownAndLeavesThePanel()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    plugin.Start();
    QWidget* const pPanel = plugin.CenterWidget(QString());
    world.Calls().Clear();
    plugin.Stop();
    QCOMPARE(world.Calls().Lines(), Texts({"UnregisterCallbacks known", "UnregisterCloudPasswordCallback known",
                                           "DetachObserver known", "Detach pictures"}));
    QCOMPARE(plugin.CenterWidget(QString()), pPanel);
    QVERIFY(pPanel->isVisible());
    plugin.Destory();
}

void LanguageTest::ACodeGivesItsOwnFileOrTheBaseFile_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    const QString strBase = QStringLiteral("Settings");
    const QString strRussian = QString::fromUtf8("Настройки");
    QTest::newRow("its own") << QStringLiteral("ru") << strRussian;
    QTest::newRow("its own, with a country") << QStringLiteral("zh_CN") << QString::fromUtf8("设置");
    QTest::newRow("a country without a file") << QStringLiteral("ru_RU") << strRussian;
    QTest::newRow("not announced in the metadata") << QStringLiteral("ja") << QString::fromUtf8("設定");
    QTest::newRow("unknown") << QStringLiteral("xx") << strBase;
    QTest::newRow("unknown with a country") << QStringLiteral("zh_XX") << strBase;
    QTest::newRow("empty") << QString() << strBase;
}

void LanguageTest::ACodeGivesItsOwnFileOrTheBaseFile()
{
    QFETCH(QString, code);
    QFETCH(QString, text);
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"fr\"}"));
    QVERIFY(Translated() != text);
    SendLanguages(world, {code});
    QCOMPARE(Translated(), text);
    plugin.Destory();

    plugin.Init(QStringLiteral("{\"strLanguage\":\"%1\"}").arg(code));
    QCOMPARE(Translated(), text);
    plugin.Destory();
}

void LanguageTest::AListOfAnotherLengthLeavesNoTranslator_data()
{
    QTest::addColumn<QVariantList>("list");
    QTest::newRow("none") << QVariantList();
    QTest::newRow("two") << QVariantList({QStringLiteral("en"), QStringLiteral("en")});
}

void LanguageTest::AListOfAnotherLengthLeavesNoTranslator()
{
    QFETCH(QVariantList, list);
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    SendLanguages(world, list);
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    QCOMPARE(TextOf(plugin.CenterWidget(QString()), "btnSetting"), QString::fromUtf8("Настройки")); // not retold
    SendLanguages(world, {QStringLiteral("en")});
    QCOMPARE(Translated(), QStringLiteral("Settings"));
    plugin.Destory();
}

void LanguageTest::TheSameCodeTwiceIsOneTranslator()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    SendLanguages(world, {QStringLiteral("ru")});
    SendLanguages(world, {QStringLiteral("ru")});
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
    SendLanguages(world, {}); // takes one away: nothing is left
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    plugin.Destory();
}

void LanguageTest::ThePanelsTextsFollow()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QWidget* pPanel = plugin.CenterWidget(QString());
    QCOMPARE(TextOf(pPanel, "btnAllStart"), QStringLiteral("Pause all"));
    SendLanguages(world, {QStringLiteral("ru")});
    QCOMPARE(TextOf(pPanel, "btnAllStart"), QString::fromUtf8("Приостановить все"));
    QCOMPARE(TextOf(pPanel, "btnSetting"), QString::fromUtf8("Настройки"));
    QCOMPARE(pPanel->findChild<QLabel*>(QStringLiteral("labelText"))->text(), QString::fromUtf8("Нет загрузок"));
    plugin.Destory();
}

void LanguageTest::ASecondInitChangesNothing()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    QWidget* const pPanel = plugin.CenterWidget(QString());
    const QStringList calls = world.Calls().Lines();
    plugin.Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QCOMPARE(plugin.CenterWidget(QString()), pPanel);
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
    QCOMPARE(world.Calls().Lines(), calls);
    plugin.Destory();
}

void LanguageTest::ALanguageBeforeTheContentTakesItsPlace()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("bad"));
    SendLanguages(world, {QStringLiteral("en")});
    QCOMPARE(Translated(), QStringLiteral("Settings"));
    plugin.Init(QStringLiteral("{}")); // a translator counts as an Init that succeeded
    QVERIFY(!plugin.CenterWidget(QString()));
    plugin.Destory();
}

void LanguageTest::InitWithoutATranslatorKeepsThePanel()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    const QPointer<QWidget> pPanel = plugin.CenterWidget(QString());
    SendLanguages(world, {});
    plugin.Init(QStringLiteral("{}"));
    QVERIFY(pPanel);
    QCOMPARE(plugin.CenterWidget(QString()), pPanel.data());
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    plugin.Destory();
}

void LanguageTest::ATranslatorThatFoundNothingTakesTheContentsPlace()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("bad"));
    SendLanguageThatIsNotThere(world);
    plugin.Init(QStringLiteral("{}"));
    QVERIFY(!plugin.CenterWidget(QString()));
    SendLanguages(world, {}); // and leaves it with the next switch
    plugin.Init(QStringLiteral("{}"));
    QVERIFY(plugin.CenterWidget(QString()));
    plugin.Destory();
}

void LanguageTest::ATranslatorThatFoundNothingIsNotInstalled()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    const LanguageChanges changes;
    SendLanguageThatIsNotThere(world);
    QCOMPARE(changes.iCount, 1); // the old one went
    SendLanguages(world, {});
    QCOMPARE(changes.iCount, 1);
    SendLanguages(world, {QStringLiteral("en")});
    QCOMPARE(changes.iCount, 2);
    plugin.Destory();
}

void LanguageTest::ThePanelsTextsFollowALanguageThatIsNotThere()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    SendLanguageThatIsNotThere(world);
    QWidget* const pPanel = plugin.CenterWidget(QString());
    QCOMPARE(TextOf(pPanel, "btnAllStart"), QStringLiteral("pc_download_video_suspend_all"));
    QCOMPARE(TextOf(pPanel, "btnSetting"), QStringLiteral("common_set"));
    QCOMPARE(world.Log().Lines(), Texts({}));
    plugin.Destory();
}

void LanguageTest::TextThatIsNoJsonIsNotLogged()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("no json"));
    QCOMPARE(world.Log().Lines(), Texts({}));
    plugin.Destory();
}

void LanguageTest::WithoutResourcesThePanelIsPlain()
{
    FakeWorld world;
    KXRecordManage plugin;
    TakeResourcesAway();
    plugin.Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    BringResourcesBack();
    QWidget* const pPanel = plugin.CenterWidget(QString());
    QVERIFY(pPanel);
    QCOMPARE(TextOf(pPanel, "btnSetting"), QStringLiteral("common_set"));
    QCOMPARE(pPanel->styleSheet(), QString());
    QCOMPARE(world.Log().Lines(), Texts({}));
    plugin.Destory();
}

void LanguageTest::TheDataObjectHoldsThePanel()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    const QPointer<KXRecordManageGlobalData> pFirst = KXRecordManageGlobalData::Instance();
    QVERIFY(pFirst);
    QCOMPARE(pFirst->parent(), &plugin);
    QCOMPARE(pFirst->Panel(), plugin.CenterWidget(QString()));
    plugin.Destory();
    QVERIFY(!pFirst);
    plugin.Init(QStringLiteral("{}"));
    QVERIFY(plugin.CenterWidget(QString()));
    QCOMPARE(KXRecordManageGlobalData::Instance()->Panel(), plugin.CenterWidget(QString()));
    QCOMPARE(plugin.findChild<KXRecordManageGlobalData*>(), KXRecordManageGlobalData::Instance());
    plugin.Destory();
}

void LanguageTest::TheInstanceIsNotForgotten()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    const KXRecordManageGlobalData* const pContent = KXRecordManageGlobalData::Instance();
    plugin.Destory();
    QCOMPARE(KXRecordManageGlobalData::Instance(), pContent);
}

void LanguageTest::TheTranslatorOutlivesTheContent()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    plugin.Destory();
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
    SendLanguages(world, {QStringLiteral("en")}); // nobody listens any more
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
}

void LanguageTest::ANewLifeReplacesTheLeftTranslator()
{
    FakeWorld world;
    KXRecordManage plugin;
    for (const char* pszCode : {"ru", "ja", "en"}) {
        plugin.Init(QStringLiteral("{\"strLanguage\":\"%1\"}").arg(QLatin1String(pszCode)));
        plugin.Destory();
    }
    QCOMPARE(Translated(), QStringLiteral("Settings"));
    plugin.Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    SendLanguages(world, {});
    QCOMPARE(Translated(), QStringLiteral("common_set")); // none of the four is left
    plugin.Destory();
}

void LanguageTest::TheStyleSheetIsAppliedWithItsColours()
{
    FakeWorld world;
    KXRecordManage plugin;
    plugin.Init(QStringLiteral("{}"));
    const QString strSheet = plugin.CenterWidget(QString())->styleSheet().simplified();
    QVERIFY(!strSheet.contains(QStringLiteral("KX_COLOR")));
    QVERIFY(!strSheet.contains(QStringLiteral("pc0")));
    QVERIFY2(strSheet.contains(QStringLiteral("DownloadWidget { background: #ffffff;")), qPrintable(strSheet));
    QVERIFY(strSheet.contains(QStringLiteral("border: 1px solid #c9d0da;")));
    QVERIFY(strSheet.contains(QStringLiteral("QLabel#labelText { color: #66707f;")));
    QVERIFY(strSheet.contains(QStringLiteral("Microsoft YaHei; color: #1d2430;"))); // btnSetting
    QVERIFY(strSheet.contains(QStringLiteral("Microsoft YaHei; color: #1f6feb;"))); // btnAllStart
    plugin.CenterWidget(QString())->setStyleSheet(QStringLiteral("QLabel{}"));
    SendLanguages(world, {QStringLiteral("ru")}); // applies none
    QCOMPARE(plugin.CenterWidget(QString())->styleSheet(), QStringLiteral("QLabel{}"));
    plugin.Destory();
}

void LanguageTest::ColourKeysAreReplacedInTheirOrder_data()
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

void LanguageTest::ColourKeysAreReplacedInTheirOrder()
{
    QFETCH(QString, text);
    QFETCH(QStringList, table);
    QMap<QString, QString> colors;
    for (int i = 0; i < table.size(); i += 2)
        colors.insert(table[i], table[i + 1]);
    ReplaceColorKeys(text, colors);
    QTEST(text, "result");
}

void LanguageTest::TheDataObjectHasTwoSlotsAndNoSignals()
{
    const QMetaObject& meta = KXRecordManageGlobalData::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        methods.append(QString::fromUtf8(meta.method(i).methodSignature()));
    }
    QCOMPARE(methods, Texts({"Init(QString)", "UpdatePluginLanguage(QVariantList)"}));
}

KX_TEST(LanguageTest, QApplication)

#include "LanguageTest.moc"
