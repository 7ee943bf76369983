// The built library as a host gets it: found by QPluginLoader, on the reference host's libraries, loaded and unloaded.

#include "KXBase/GKXObserver.h"
#include "KXGui/KXColor.h"
#include "KXLogic/KXLogic.h"
#include "Model/DownloadRecordInfo.h"
#include "Plugin/IKXWidgetPluginInterface.h"
#include "ProcessUse.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtCore/QCborMap>
#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <array>

namespace {

const QString& LibraryFile()
{
    static const QString strFile = QStringLiteral(KX_PLUGIN_FILE);
    return strFile;
}

// The plug-in, loaded while this lives. QPluginLoader keeps libraries in memory unless it is told not to.
class Loaded
{
public:
    Loaded()
        : m_loader(LibraryFile())
    {
        m_loader.setLoadHints(QLibrary::LoadHints());
        m_pPlugin = qobject_cast<IKXWidgetPluginInterface*>(m_loader.instance());
    }
    ~Loaded() { m_loader.unload(); }

    IKXWidgetPluginInterface* operator->() { return m_pPlugin; }
    IKXWidgetPluginInterface* Plugin() { return m_pPlugin; }
    QObject* Object() { return m_loader.instance(); }
    bool Unload() { return m_loader.unload(); }
    QString Error() { return m_loader.errorString(); }

private:
    QPluginLoader m_loader;
    IKXWidgetPluginInterface* m_pPlugin = nullptr;
};

QString Translated()
{
    return QCoreApplication::translate("DownloadWidget", "common_set");
}

void Settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

// The host asks for a device recording that no settings say where to get: a row that waits.
void AskForADownload(const QString& strFolder)
{
    KXDownLoadList::DownloadDeviceRecordInfo record;
    record.iRecordType = 1;
    record.strRecordId = QStringLiteral("a");
    record.strDownloadPath = strFolder + QStringLiteral("/a.mp4");
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    record.Serialize(stream);
    GKXObserver::notify("EventNotifyDownloadRecordList", QVariantList{bytes, 1});
}

void LiveOnce(Loaded& plugin, const QString& strFolder)
{
    plugin->Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    plugin->Start();
    AskForADownload(strFolder);
    GKXObserver::notify("EventNotifyConfigPluginUpdateLanguage", QVariantList{QStringLiteral("en")});
    Settle();
    plugin->Stop();
    plugin->Destory();
    Settle();
}

} // namespace

class PluginTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void TheMetadataStandsInTheLibrary();
    void TheMetadataKeysAreInOrder();
    void TheObjectTellsWhatItIs();
    void ADeletedInstanceIsReplacedByAFreshOne();
    void InitMakesThePanelOnce();
    void TextThatIsNoJsonMakesNoPanel_data();
    void TextThatIsNoJsonMakesNoPanel();
    void AMissingLanguageIsTheBaseLanguage_data();
    void AMissingLanguageIsTheBaseLanguage();
    void StartShowsThePanel();
    void DestoryFreesThePanelAndMayBeCalledAgain();
    void UnloadingTakesTheLibraryAndItsTextsAway();
    void UnloadingWithoutDestoryFreesTheContent();
    void UnloadingTakesItsTypesAway();
    void UnloadingTakesItsAccessibleObjectsAway();
    void ManyLivesLeaveNothingBehind();
};

// A host has its libraries in memory before it loads a plug-in, and keeps them.
void PluginTest::initTestCase()
{
    QVERIFY(KXLogic::Instance());
    QVERIFY(KXColor::color(QStringLiteral("pc001"), 1.0).isValid());
}

void PluginTest::TheMetadataStandsInTheLibrary()
{
    const QJsonObject meta = QPluginLoader(LibraryFile()).metaData();
    QCOMPARE(meta.value(QStringLiteral("IID")).toString(), QStringLiteral("com.Interface.IKXWidgetPluginInterface"));
    QCOMPARE(meta.value(QStringLiteral("className")).toString(), QStringLiteral("KXRecordManage"));
    const QJsonObject own = meta.value(QStringLiteral("MetaData")).toObject();
    QCOMPARE(own.size(), 5);
    QCOMPARE(own.value(QStringLiteral("Language")).toString(),
             QStringLiteral("zh_CN,en,es,vi,th,in,it,fr,ru,uk,pl,tr,de"));
    QVERIFY(!own.value(QStringLiteral("company")).toString().isEmpty());
    QCOMPARE(own.value(QStringLiteral("date")).toString(), QStringLiteral("2023.01.31"));
    QCOMPARE(own.value(QStringLiteral("name")).toString(), QStringLiteral("KXRecordManage"));
    QCOMPARE(own.value(QStringLiteral("version")).toString(), QStringLiteral("1.0.0"));
}

// The block as it lies in the file: a mark of 12 bytes, a header of 4, then CBOR.
void PluginTest::TheMetadataKeysAreInOrder()
{
    QFile file(LibraryFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const int iMark = bytes.indexOf("QTMETADATA !");
    QVERIFY(iMark >= 0);
    const QCborMap block = QCborValue::fromCbor(bytes.mid(iMark + 16)).toMap();
    const QCborMap own = block.value(4).toMap(); // 2 is the IID, 3 the class name, 4 the plug-in's own
    QCOMPARE(block.value(2).toString(), QStringLiteral("com.Interface.IKXWidgetPluginInterface"));
    QCOMPARE(block.value(3).toString(), QStringLiteral("KXRecordManage"));
    QStringList keys;
    for (const QCborValue& key : own.keys())
        keys.append(key.toString());
    QCOMPARE(keys.join(QLatin1Char(' ')), QStringLiteral("Language company date name version"));
}

void PluginTest::TheObjectTellsWhatItIs()
{
    Loaded plugin;
    QVERIFY2(plugin.Plugin(), qPrintable(plugin.Error()));
    QCOMPARE(QByteArray(plugin->Id()), QByteArray("{94b7b2ae-700b-0c85-1624-bedf67f1b547}"));
    QCOMPARE(plugin->Name(), QStringLiteral("KXRecordManage"));
    QCOMPARE(plugin->Information(), QStringLiteral("KXRecordManage information"));
    QCOMPARE(plugin->Order(), 1);
    QVERIFY(plugin->IsSupported());
    QCOMPARE(plugin->Query(QStringLiteral("anything")), QString());
    plugin->SetGetDataListener(nullptr);
    std::array<quintptr, 8> noListener; // what would be called through it leads nowhere
    noListener.fill(1);
    plugin->SetGetDataListener(reinterpret_cast<KXLogicPluginGoMain*>(noListener.data()));
    QCOMPARE(std::count(noListener.begin(), noListener.end(), quintptr(1)), 8);

    QObject& object = *plugin.Object();
    QVERIFY(!object.parent());
    QCOMPARE(object.metaObject()->className(), "KXRecordManage");
    QVERIFY(object.qt_metacast("KXRecordManage"));
    QCOMPARE(object.qt_metacast("IKXWidgetPluginInterface"), static_cast<void*>(plugin.Plugin()));
    QCOMPARE(object.qt_metacast("com.Interface.IKXWidgetPluginInterface"), static_cast<void*>(plugin.Plugin()));
    QVERIFY(object.qt_metacast("QObject"));
    QVERIFY(!object.qt_metacast("QWidget"));
    QCOMPARE(object.metaObject()->methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(object.metaObject()->propertyCount(), QObject::staticMetaObject.propertyCount());
}

void PluginTest::ADeletedInstanceIsReplacedByAFreshOne()
{
    QLibrary library(LibraryFile());
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    const auto pInstance = reinterpret_cast<QObject* (*)()>(library.resolve("qt_plugin_instance"));
    QVERIFY(pInstance);
    QPointer<QObject> pFirst = pInstance();
    QVERIFY(pFirst);
    QCOMPARE(pInstance(), pFirst.data());
    qobject_cast<IKXWidgetPluginInterface*>(pFirst)->Init(QStringLiteral("{}"));
    delete pFirst;
    QObject* const pSecond = pInstance();
    auto* pPlugin = qobject_cast<IKXWidgetPluginInterface*>(pSecond);
    QVERIFY(pPlugin);
    QVERIFY(!pPlugin->CenterWidget(QString()));
    QCOMPARE(pInstance(), pSecond);
    delete pSecond;
    library.unload();
}

void PluginTest::InitMakesThePanelOnce()
{
    Loaded plugin;
    QVERIFY(!plugin->CenterWidget(QString()));
    plugin->Start(); // nothing to show yet
    plugin->Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    QWidget* const pPanel = plugin->CenterWidget(QString());
    QVERIFY(pPanel);
    QVERIFY(!pPanel->parent());
    QVERIFY(!pPanel->isVisible());
    QCOMPARE(plugin->CenterWidget(QStringLiteral("any name")), pPanel);
    plugin->Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QCOMPARE(plugin->CenterWidget(QString()), pPanel);
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
    plugin->Stop();
    plugin->Stop();
    plugin->Destory();
}

void PluginTest::TextThatIsNoJsonMakesNoPanel_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("words") << QStringLiteral("no json");
    QTest::newRow("cut") << QStringLiteral("{\"strLanguage\":\"e");
    QTest::newRow("more behind it") << QStringLiteral("{} {}");
}

void PluginTest::TextThatIsNoJsonMakesNoPanel()
{
    QFETCH(QString, text);
    Loaded plugin;
    plugin->Init(text);
    QVERIFY(!plugin->CenterWidget(QString()));
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    plugin->Start();
    plugin->Init(QStringLiteral("{\"strLanguage\":\"en\"}")); // the next try may succeed
    QVERIFY(plugin->CenterWidget(QString()));
    plugin->Destory();
    plugin->Init(text);
    plugin->Destory();
    plugin->Destory();
    QVERIFY(!plugin->CenterWidget(QString()));
}

void PluginTest::AMissingLanguageIsTheBaseLanguage_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("no key") << QStringLiteral("{}");
    QTest::newRow("another key") << QStringLiteral("{\"language\":\"ru\"}");
    QTest::newRow("a number") << QStringLiteral("{\"strLanguage\":5}");
    QTest::newRow("no object") << QStringLiteral("[\"strLanguage\"]");
}

void PluginTest::AMissingLanguageIsTheBaseLanguage()
{
    QFETCH(QString, text);
    Loaded plugin;
    plugin->Init(text);
    QVERIFY(plugin->CenterWidget(QString()));
    QCOMPARE(Translated(), QStringLiteral("Settings"));
    plugin->Destory();
}

void PluginTest::StartShowsThePanel()
{
    Loaded plugin;
    plugin->Init(QStringLiteral("{}"));
    plugin->Start();
    QVERIFY(plugin->CenterWidget(QString())->isVisible());
    QCOMPARE(plugin->CenterWidget(QString())->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen),
             Qt::WindowStates());
    Settle();
    plugin->Destory();
    plugin->Start(); // nothing to show any more
}

void PluginTest::DestoryFreesThePanelAndMayBeCalledAgain()
{
    Loaded plugin;
    plugin->Destory();
    plugin->Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    const QPointer<QWidget> pPanel = plugin->CenterWidget(QString());
    plugin->Stop();
    plugin->Destory();
    QVERIFY(!pPanel);
    QVERIFY(!plugin->CenterWidget(QString()));
    QCOMPARE(Translated(), QString::fromUtf8("Настройки")); // the last language stays in force
    plugin->Destory();
    plugin->Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QVERIFY(plugin->CenterWidget(QString()));
    QCOMPARE(Translated(), QStringLiteral("Settings"));
    plugin->Destory();
}

void PluginTest::UnloadingTakesTheLibraryAndItsTextsAway()
{
    Loaded plugin;
    plugin->Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    plugin->Start();
    Settle();
    plugin->Stop();
    plugin->Destory();
    Settle();
    QCOMPARE(Translated(), QString::fromUtf8("Настройки"));
    QVERIFY2(plugin.Unload(), qPrintable(plugin.Error()));
    QVERIFY(!IsMapped(LibraryFile()));
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    QVERIFY(!QDir(QStringLiteral(":/KXRecordManage")).exists());
    GKXObserver::notify("EventNotifyConfigPluginUpdateLanguage", QVariantList{QStringLiteral("en")});
    Settle();
}

void PluginTest::UnloadingWithoutDestoryFreesTheContent()
{
    Loaded plugin;
    plugin->Init(QStringLiteral("{\"strLanguage\":\"ru\"}"));
    plugin->Start();
    const QPointer<QWidget> pPanel = plugin->CenterWidget(QString());
    Settle();
    QVERIFY(plugin.Unload());
    QVERIFY(!pPanel);
    QVERIFY(!IsMapped(LibraryFile()));
    QCOMPARE(Translated(), QStringLiteral("common_set"));
    Settle();
}

void PluginTest::ManyLivesLeaveNothingBehind()
{
    const ScratchDir folder;
    ProcessUse before;
    for (int iLife = 0; iLife <= 200; ++iLife) {
        {
            Loaded plugin;
            QVERIFY2(plugin.Plugin(), qPrintable(plugin.Error()));
            LiveOnce(plugin, folder.path());
        }
        QVERIFY(!IsMapped(LibraryFile()));
        if (iLife == 0) // the host's own threads, files and caches are there from now on
            before = UseOfThisProcess();
        // A joined thread may be listed a moment longer, the first time too: then there are fewer later.
        QTRY_VERIFY(UseOfThisProcess().iThreads <= before.iThreads);
        QTRY_VERIFY(UseOfThisProcess().iHandles <= before.iHandles);
    }
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    const qint64 lGrown = UseOfThisProcess().lMemoryBytes - before.lMemoryBytes;
    QVERIFY2(lGrown <= MemorySlackBytes(), qPrintable(QStringLiteral("%1 bytes more").arg(lGrown)));
}

// Whatever the library told Qt of itself would lead into memory that is gone.
void PluginTest::UnloadingTakesItsTypesAway()
{
    const QByteArray own("DownloadRecordInfoPtr");
    for (int iLife = 0; iLife < 2; ++iLife) {
        QCOMPARE(QMetaType::type(own), int(QMetaType::UnknownType));
        Loaded plugin;
        plugin->Init(QStringLiteral("{}"));
        QVERIFY(QMetaType::type(own) != QMetaType::UnknownType);
        plugin->Destory();
        QVERIFY(QMetaType::type(own) != QMetaType::UnknownType); // calls that carry it may still be on their way
        plugin->Init(QStringLiteral("{}"));
        plugin->Destory();
        QVERIFY(plugin.Unload());
    }
    QCOMPARE(QMetaType::type(own), int(QMetaType::UnknownType));
}

// What assistive technology asks for after that is made without the library.
void PluginTest::UnloadingTakesItsAccessibleObjectsAway()
{
    Loaded plugin;
    plugin->Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    const ScratchDir folder;
    AskForADownload(folder.path());
    auto* pList = plugin->CenterWidget(QString())->findChild<QWidget*>(QStringLiteral("downloadListView"));
    QAccessibleInterface* pAccessible = QAccessible::queryAccessibleInterface(pList);
    QCOMPARE(pAccessible->text(QAccessible::Name), QStringLiteral("Downloads"));
    QCOMPARE(pAccessible->childCount(), 1);
    const QAccessible::Id row = QAccessible::uniqueId(pAccessible->child(0));
    plugin->Stop();
    plugin->Destory();
    Settle();
    QVERIFY(plugin.Unload());
    QVERIFY(!IsMapped(LibraryFile()));
    QVERIFY(!QAccessible::accessibleInterface(row));
    QWidget another;
    QVERIFY(QAccessible::queryAccessibleInterface(&another));
}

KX_TEST(PluginTest, QApplication)

#include "PluginTest.moc"
