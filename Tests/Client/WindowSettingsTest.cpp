#include "Host/Client/Window/WindowSettings.h"
#include "Host/LogFile.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using KXClient::WindowSettings;

// What the window remembers, and what becomes of a file that is no good.
class WindowSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void EverythingComesBack();
    void AMissingFileGivesTheDefaults();
    void AWrongValueGivesItsDefaultAndALine_data();
    void AWrongValueGivesItsDefaultAndALine();
    void AnUnreadableFileGivesTheDefaultsAndALine_data();
    void AnUnreadableFileGivesTheDefaultsAndALine();
    void AnUnreadableFileIsKeptAside();
    void AFolderInTheFilesPlaceIsLeftAlone();
    void RecentFoldersAreTheLatestFirstAndFew();
};

namespace {

QString FolderNamed(const char* pszName)
{
    return QDir::tempPath() + QLatin1Char('/') + QString::fromUtf8(pszName);
}

void Write(const QString& strFile, const QByteArray& text)
{
    QFile file(strFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

void CompareDefaults(const WindowSettings& settings)
{
    QCOMPARE(settings.strFolder, QString());
    QCOMPARE(settings.recentFolders, QStringList());
    QCOMPARE(settings.strLanguage, QStringLiteral("en"));
    QCOMPARE(settings.bDark, false);
    QCOMPARE(settings.geometry, QByteArray());
    QCOMPARE(settings.splitter, QByteArray());
}

} // namespace

void WindowSettingsTest::EverythingComesBack()
{
    const LogFile log;
    const QString strFile = log.Folder() + QStringLiteral("/new folder/kx.ini");
    WindowSettings settings;
    settings.strFolder = FolderNamed(u8"Aufnahmen, été – 北门; 50 %");
    settings.recentFolders = QStringList{settings.strFolder, FolderNamed("b")};
    settings.strLanguage = QStringLiteral("zh_CN");
    settings.bDark = true;
    settings.geometry = QByteArray("\0\x01geometry\xFF", 11);
    settings.splitter = QByteArray("\xFE\0splitter", 10);
    QVERIFY(settings.Save(strFile));

    const WindowSettings again = WindowSettings::Load(strFile);
    QCOMPARE(again.strFolder, FolderNamed(u8"Aufnahmen, été – 北门; 50 %"));
    QCOMPARE(again.recentFolders, QStringList({FolderNamed(u8"Aufnahmen, été – 北门; 50 %"), FolderNamed("b")}));
    QCOMPARE(again.strLanguage, QStringLiteral("zh_CN"));
    QCOMPARE(again.bDark, true);
    QCOMPARE(again.geometry, QByteArray("\0\x01geometry\xFF", 11));
    QCOMPARE(again.splitter, QByteArray("\xFE\0splitter", 10));
    QCOMPARE(log.Lines(), QStringList());
}

void WindowSettingsTest::AMissingFileGivesTheDefaults()
{
    const LogFile log;
    CompareDefaults(WindowSettings::Load(log.Folder() + QStringLiteral("/none.ini")));
    QCOMPARE(log.Lines(), QStringList());
}

void WindowSettingsTest::AWrongValueGivesItsDefaultAndALine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("strKey");
    const auto row = [](const char* pszName, const QByteArray& text, const char* pszKey) {
        QTest::newRow(pszName) << text << QString::fromLatin1(pszKey);
    };
    row("a language that the plug-in has not", "[window]\nlanguage=xx\n", "window/language");
    row("a list as the language", "[window]\nlanguage=en, de\n", "window/language");
    row("a relative folder", "[download]\nfolder=some/where\n", "download/folder");
    row("a resource as the folder", "[download]\nfolder=:/KXClient\n", "download/folder");
    row("a relative recent folder", "[download]\nrecentFolders=/a, b\n", "download/recentFolders");
    row("too many recent folders", "[download]\nrecentFolders=/1, /2, /3, /4, /5, /6, /7, /8, /9\n",
        "download/recentFolders");
    row("a number as the colours", "[window]\ndark=7\n", "window/dark");
}

void WindowSettingsTest::AWrongValueGivesItsDefaultAndALine()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, strKey);
    const LogFile log;
    const QString strFile = log.Folder() + QStringLiteral("/kx.ini");
    Write(strFile, text);
    CompareDefaults(WindowSettings::Load(strFile));
    QCOMPARE(log.Lines().size(), 1);
    QVERIFY2(log.Lines().constFirst().endsWith(strKey + QStringLiteral(" is no good")),
             qPrintable(log.Lines().join(QLatin1Char(' '))));
}

void WindowSettingsTest::AnUnreadableFileGivesTheDefaultsAndALine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("no INI file") << QByteArray("[window\nlanguage=de\n");
    QTest::newRow("binary") << QByteArray("\x7F"
                                          "ELF\0\0\0\0",
                                          8);
    QTest::newRow("a serialized value") << QByteArray("[window]\nlanguage=de\ngeometry=@Variant(\\0\\0\\0\\t\\x7f)\n");
    QTest::newRow("too large") << QByteArray("[window]\nlanguage=de\n") + QByteArray(70000, ';');
}

void WindowSettingsTest::AnUnreadableFileGivesTheDefaultsAndALine()
{
    QFETCH(QByteArray, text);
    const LogFile log;
    const QString strFile = log.Folder() + QStringLiteral("/kx.ini");
    Write(strFile, text);
    CompareDefaults(WindowSettings::Load(strFile));
    QCOMPARE(log.Lines().size(), 1);
    QVERIFY(log.Lines().constFirst().contains(strFile));
}

void WindowSettingsTest::AnUnreadableFileIsKeptAside()
{
    const LogFile log;
    const QString strFile = log.Folder() + QStringLiteral("/kx.ini");
    Write(strFile, "[window\nlanguage=de\n");
    WindowSettings settings = WindowSettings::Load(strFile);
    settings.strLanguage = QStringLiteral("fr");
    QVERIFY(settings.Save(strFile));
    QCOMPARE(WindowSettings::Load(strFile).strLanguage, QStringLiteral("fr"));
    QFile aside(strFile + QStringLiteral(".bad"));
    QVERIFY(aside.open(QIODevice::ReadOnly));
    QCOMPARE(aside.readAll(), QByteArray("[window\nlanguage=de\n"));
}

void WindowSettingsTest::AFolderInTheFilesPlaceIsLeftAlone()
{
    const LogFile log;
    const QString strFile = log.Folder() + QStringLiteral("/kx.ini");
    QVERIFY(QDir().mkpath(strFile));
    CompareDefaults(WindowSettings::Load(strFile));
    QVERIFY(!WindowSettings().Save(strFile));
    QCOMPARE(log.Lines().size(), 2);
    QVERIFY(QFileInfo(strFile).isDir());
}

void WindowSettingsTest::RecentFoldersAreTheLatestFirstAndFew()
{
    WindowSettings settings;
    for (const char* pszName : {"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8", "/9", "/3/"})
        settings.UseFolder(QString::fromLatin1(pszName));
    QCOMPARE(settings.strFolder, QStringLiteral("/3"));
    const QStringList wanted{QStringLiteral("/3"), QStringLiteral("/9"), QStringLiteral("/8"), QStringLiteral("/7"),
                             QStringLiteral("/6"), QStringLiteral("/5"), QStringLiteral("/4"), QStringLiteral("/2")};
    QCOMPARE(settings.recentFolders, wanted);
}

KX_TEST(WindowSettingsTest, QCoreApplication)
#include "WindowSettingsTest.moc"
