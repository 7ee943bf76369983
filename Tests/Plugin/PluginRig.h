#pragma once

#include "FakeHost/FakeWorld.h"
#include "Plugin/KXRecordManage.h"

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>
#include <QtWidgets/QPushButton>

// The plug-in's resources, away and back. Outside any namespace, as the macros want it.
inline void TakeResourcesAway()
{
    Q_CLEANUP_RESOURCE(KXRecordManage);
}

inline void BringResourcesBack()
{
    Q_INIT_RESOURCE(KXRecordManage);
}

// The plug-in object in a fake world, from its Init to its Destory.
class PluginRig
{
public:
    struct Unstarted
    {};
    explicit PluginRig(Unstarted) {}
    explicit PluginRig(const QString& strSettings = QStringLiteral("{}")) { Init(strSettings); }
    ~PluginRig() { m_plugin.Destory(); }

    // Settings that name that language.
    static QString In(const QString& strCode) { return QStringLiteral("{\"strLanguage\":\"%1\"}").arg(strCode); }
    static QString In(const char* pszCode) { return In(QString::fromUtf8(pszCode)); }

    FakeWorld& World() { return m_world; }
    KXRecordManage& Plugin() { return m_plugin; }
    QWidget* Panel() { return m_plugin.CenterWidget(QString()); }
    QString TextOf(const char* pszButton)
    {
        return Panel()->findChild<QPushButton*>(QString::fromUtf8(pszButton))->text();
    }

    void Init(const QString& strSettings = QStringLiteral("{}")) { m_plugin.Init(strSettings); }
    void SendLanguages(const QVariantList& list) { m_world.Bus().Send("EventNotifyConfigPluginUpdateLanguage", list); }
    void SendLanguage(const char* pszCode) { SendLanguages({QString::fromUtf8(pszCode)}); }
    void SendLanguageThatIsNotThere()
    {
        TakeResourcesAway();
        SendLanguage("en");
        BringResourcesBack();
    }
    // What the application makes of the settings button's key.
    static QString Translated() { return QCoreApplication::translate("DownloadWidget", "common_set"); }
    // A translator outlives the plug-in object: this takes away what a test left. A life whose last word is an empty
    // list has none.
    static void RemoveTranslators()
    {
        PluginRig rig;
        rig.SendLanguages({});
        QCOMPARE(Translated(), QStringLiteral("common_set"));
    }

private:
    FakeWorld m_world;
    KXRecordManage m_plugin;
};
