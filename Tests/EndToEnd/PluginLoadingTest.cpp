#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

QString Beside(const QString& strPattern)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    return folder.filePath(folder.entryList({strPattern}, QDir::Files).value(0));
}

QString PlatformPlugin()
{
    const QDir folder(QLibraryInfo::location(QLibraryInfo::PluginsPath) + "/platforms"_s);
    return folder.filePath(folder.entryList({"*qoffscreen*"_s}, QDir::Files).value(0));
}

} // namespace

class PluginLoadingTest : public QObject
{
    Q_OBJECT

private slots:
    void WhatIsNoPluginOfOursEndsWithStatus3_data();
    void WhatIsNoPluginOfOursEndsWithStatus3();
    void ACopyElsewhereWorks();
};

void PluginLoadingTest::WhatIsNoPluginOfOursEndsWithStatus3_data()
{
    QTest::addColumn<QString>("strFile");
    QTest::addColumn<int>("iKeptBytes"); // of a copy; -1 for the file itself
    QTest::addColumn<QString>("strSaid");
    const QString strOurs = "*KXRecordManage.*"_s;
    QTest::newRow("no file") << "/nowhere/plugin.so"_s << -1 << "no such file"_s;
    QTest::newRow("a folder") << QDir::tempPath() << -1 << "no such file"_s;
    QTest::newRow("no library") << QFileInfo(QStringLiteral(KX_SOME_TEXT_FILE)).absoluteFilePath() << -1
                                << "is no plug-in of the interface"_s;
    QTest::newRow("an empty file") << Beside(strOurs) << 0 << "is no plug-in of the interface"_s;
    QTest::newRow("half a plug-in") << Beside(strOurs) << 200000 << "is no plug-in of the interface"_s;
    QTest::newRow("a library that is no plug-in") << Beside("*KXLogic.*"_s) << -1 << "is no plug-in of the interface"_s;
    QTest::newRow("a plug-in of another interface")
        << PlatformPlugin() << -1 << "QPlatformIntegrationFactoryInterface"_s;
    QTest::newRow("not supported") << Beside("*KXUnsupportedPlugin.*"_s) << -1 << "does not support this client"_s;
    QTest::newRow("no widget") << Beside("*KXWidgetlessPlugin.*"_s) << -1 << "made no widget"_s;
}

void PluginLoadingTest::WhatIsNoPluginOfOursEndsWithStatus3()
{
    QFETCH(QString, strFile);
    QFETCH(int, iKeptBytes);
    QFETCH(QString, strSaid);
    Workplace place;
    if (iKeptBytes >= 0) {
        QFile original(strFile);
        QVERIFY2(original.open(QIODevice::ReadOnly), qPrintable(strFile));
        place.Write("broken.so"_s, original.read(iKeptBytes));
        strFile = place.Path("broken.so"_s);
    }
    const QJsonObject config{{"cloud"_s, QJsonObject{{"url"_s, "http://127.0.0.1:9/"_s}}}};
    const QJsonObject record{{"iRecordType"_s, 0}, {"strRecordId"_s, "1"_s}, {"strDownloadPath"_s, "a.mp4"_s}};
    const ClientResult result = RunClient(place.Download(config, {record}) + QStringList{"--plugin"_s, strFile});
    QVERIFY2(result.iExit == 3, result.Said());
    QVERIFY2(result.strErr.contains(strFile), result.Said());
    QVERIFY2(result.strErr.contains(strSaid), result.Said());
}

void PluginLoadingTest::ACopyElsewhereWorks()
{
    ServedSite site;
    QVERIFY(site.Start());
    QVERIFY(site.FetchRecords());
    Workplace place;
    const QString strCopy = place.Path("other plug-in.so"_s);
    QVERIFY(QFile::copy(Beside("*KXRecordManage.*"_s), strCopy));
    const QJsonArray records{site.Record("KXD2S0048816_1_20240318T071111"_s)};
    const ClientResult result = RunClient(place.Download(site.Config(), records) + QStringList{"--plugin"_s, strCopy});
    QVERIFY2(result.iExit == 0, result.Said());
}

KX_TEST(PluginLoadingTest, QCoreApplication)
#include "PluginLoadingTest.moc"
