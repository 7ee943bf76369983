// What the plug-in object holds from its Init to its Destory, and what a second Init changes.

#include "DownloadWidget/DownloadWidget.h"
#include "Plugin/KXRecordManageGlobalData.h"
#include "PluginRig.h"
#include "TestMain.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>

class PluginLifeTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { PluginRig::RemoveTranslators(); }
    void InitAttachesAndTranslates();
    void TheLanguageIsThereBeforeThePanelIsMade();
    void ASecondInitChangesNothing();
    void ALanguageBeforeTheContentTakesItsPlace();
    void InitWithoutATranslatorKeepsThePanel();
    void ATranslatorThatFoundNothingTakesTheContentsPlace();
    void StopShutsTheEngineDownAndLeavesThePanel();
    void TextThatIsNoJsonIsNotLogged();
    void TheDataObjectHoldsThePanel();
    void TheInstanceIsNotForgotten();
    void TheDataObjectHasTwoSlotsAndNoSignals();
};

void PluginLifeTest::InitAttachesAndTranslates()
{
    PluginRig rig{PluginRig::Unstarted()};
    QCOMPARE(rig.World().Calls().Lines(), Texts({})); // the object alone touches nothing
    rig.Init(PluginRig::In("de"));
    QCOMPARE(rig.World().Calls().Lines("attach").value(0),
             QStringLiteral("attach EventNotifyConfigPluginUpdateLanguage UpdatePluginLanguage(QVariantList)"));
    QCOMPARE(PluginRig::Translated(), QStringLiteral("Einstellungen"));
    QCOMPARE(rig.TextOf("btnSetting"), QStringLiteral("Einstellungen"));
}

void PluginLifeTest::TheLanguageIsThereBeforeThePanelIsMade()
{
    PluginRig rig{PluginRig::Unstarted()};
    QString strAtItsStart;
    rig.World().Calls().WhenAdded("attach EventNotifyDownloadRecordList",
                                  [&] { strAtItsStart = PluginRig::Translated(); });
    rig.Init(PluginRig::In("de"));
    QCOMPARE(strAtItsStart, QStringLiteral("Einstellungen"));
}

void PluginLifeTest::ASecondInitChangesNothing()
{
    PluginRig rig(PluginRig::In("ru"));
    QWidget* const pPanel = rig.Panel();
    const QStringList calls = rig.World().Calls().Lines();
    rig.Init(PluginRig::In("en"));
    QCOMPARE(rig.Panel(), pPanel);
    QCOMPARE(PluginRig::Translated(), QString::fromUtf8("Настройки"));
    QCOMPARE(rig.World().Calls().Lines(), calls);
}

void PluginLifeTest::ALanguageBeforeTheContentTakesItsPlace()
{
    PluginRig rig(QStringLiteral("bad"));
    rig.SendLanguage("en");
    QCOMPARE(PluginRig::Translated(), QStringLiteral("Settings"));
    rig.Init(); // a translator counts as an Init that succeeded
    QVERIFY(!rig.Panel());
}

void PluginLifeTest::InitWithoutATranslatorKeepsThePanel()
{
    PluginRig rig;
    const QPointer<QWidget> pPanel = rig.Panel();
    rig.SendLanguages({});
    rig.Init();
    QVERIFY(pPanel);
    QCOMPARE(rig.Panel(), pPanel.data());
    QCOMPARE(PluginRig::Translated(), QStringLiteral("common_set"));
}

void PluginLifeTest::ATranslatorThatFoundNothingTakesTheContentsPlace()
{
    PluginRig rig(QStringLiteral("bad"));
    rig.SendLanguageThatIsNotThere();
    rig.Init();
    QVERIFY(!rig.Panel());
    rig.SendLanguages({}); // and leaves it with the next switch
    rig.Init();
    QVERIFY(rig.Panel());
}

void PluginLifeTest::StopShutsTheEngineDownAndLeavesThePanel()
{
    PluginRig rig;
    rig.Plugin().Start();
    QWidget* const pPanel = rig.Panel();
    rig.World().Calls().Clear();
    rig.Plugin().Stop();
    QCOMPARE(rig.World().Calls().Lines(), Texts({"UnregisterCallbacks known", "UnregisterCloudPasswordCallback known",
                                                 "DetachObserver known", "Detach pictures"}));
    QCOMPARE(rig.Panel(), pPanel);
    QVERIFY(pPanel->isVisible());
}

void PluginLifeTest::TextThatIsNoJsonIsNotLogged()
{
    PluginRig rig(QStringLiteral("no json"));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void PluginLifeTest::TheDataObjectHoldsThePanel()
{
    PluginRig rig;
    const QPointer<KXRecordManageGlobalData> pFirst = KXRecordManageGlobalData::Instance();
    QVERIFY(pFirst);
    QCOMPARE(pFirst->parent(), &rig.Plugin());
    QCOMPARE(pFirst->Panel(), rig.Panel());
    rig.Plugin().Destory();
    QVERIFY(!pFirst);
    rig.Init();
    QVERIFY(rig.Panel());
    QCOMPARE(KXRecordManageGlobalData::Instance()->Panel(), rig.Panel());
    QCOMPARE(rig.Plugin().findChild<KXRecordManageGlobalData*>(), KXRecordManageGlobalData::Instance());
}

void PluginLifeTest::TheInstanceIsNotForgotten()
{
    PluginRig rig;
    const KXRecordManageGlobalData* const pContent = KXRecordManageGlobalData::Instance();
    rig.Plugin().Destory();
    QCOMPARE(KXRecordManageGlobalData::Instance(), pContent);
}

void PluginLifeTest::TheDataObjectHasTwoSlotsAndNoSignals()
{
    const QMetaObject& meta = KXRecordManageGlobalData::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        methods.append(QString::fromUtf8(meta.method(i).methodSignature()));
    }
    QCOMPARE(methods, Texts({"Init(QString)", "UpdatePluginLanguage(QVariantList)"}));
}

KX_TEST(PluginLifeTest, QApplication)

#include "PluginLifeTest.moc"
