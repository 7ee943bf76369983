// A host that links the plug-in library's class instead of loading it: every member is found there.

#include "Plugin/KXRecordManage.h"
#include "TestMain.h"

#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

class PluginLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void TheClassIsKnownToQt();
    void TheClassLivesLikeALoadedPlugin();
};

void PluginLinkTest::TheClassIsKnownToQt()
{
    KXRecordManage plugin;
    const QObject& object = plugin;
    QCOMPARE(QByteArray(KXRecordManage::staticMetaObject.className()), QByteArray("KXRecordManage"));
    QCOMPARE(object.metaObject(), &KXRecordManage::staticMetaObject);
    QCOMPARE(qobject_cast<const KXRecordManage*>(&object), &plugin);
    QCOMPARE(qobject_cast<IKXWidgetPluginInterface*>(&plugin), static_cast<IKXWidgetPluginInterface*>(&plugin));
    QCOMPARE(KXRecordManage::tr("a text without translation"), QStringLiteral("a text without translation"));
}

void PluginLinkTest::TheClassLivesLikeALoadedPlugin()
{
    KXRecordManage plugin;
    QCOMPARE(QByteArray(plugin.Id()), QByteArray("{94b7b2ae-700b-0c85-1624-bedf67f1b547}"));
    QCOMPARE(plugin.Name(), QStringLiteral("KXRecordManage"));
    QCOMPARE(plugin.Information(), QStringLiteral("KXRecordManage information"));
    QCOMPARE(plugin.Order(), 1);
    plugin.SetGetDataListener(nullptr);
    plugin.Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QWidget* pPanel = plugin.CenterWidget(QString());
    QVERIFY(pPanel);
    plugin.Start();
    QVERIFY(pPanel->isVisible());
    plugin.Stop();
    plugin.Destory();
    QVERIFY(!plugin.CenterWidget(QString()));
}

KX_TEST(PluginLinkTest, QApplication)

#include "PluginLinkTest.moc"
