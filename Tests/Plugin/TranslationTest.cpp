// The texts of every language: complete, with their number.

#include "TestMain.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtTest/QTest>

namespace {

constexpr const char* Codes[] = {"bg", "cs", "da", "de", "en", "es", "et", "fi", "fr",   "hu",
                                 "in", "it", "ja", "ko", "lt", "lv", "nl", "pl", "pt",   "ro",
                                 "ru", "sk", "sr", "sv", "th", "tr", "uk", "vi", "zh_CN"};

struct Text
{
    const char* pszContext;
    const char* pszKey;
};
constexpr Text KnownTexts[] = {
    {"DownloadItem", "mobile_common_download_manager_download_failure"},
    {"DownloadItem", "mobile_common_download_manager_wait_download"},
    {"DownloadItem", "panel_pause"},
    {"DownloadItem", "row_action_delete"},
    {"DownloadItem", "row_action_pause"},
    {"DownloadItem", "row_action_resume"},
    {"DownloadItem", "row_action_retry"},
    {"DownloadWidget", "common_download_list"},
    {"DownloadWidget", "common_set"},
    {"DownloadWidget", "ib_mobile_common_download_manager_no_download_task"},
    {"DownloadWidget", "pc_download_video_resume_all"},
    {"DownloadWidget", "pc_download_video_suspend_all"},
    {"DownloadWidget", "play_multiple_views_total"},
};

QString FileRead(const QString& strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The keys that the plug-in's sources ask to translate, and those that its form does; the form's own placeholders have
// no underscore.
QStringList KeysInSources()
{
    static const QRegularExpression Asked(
        QStringLiteral("\\b(?:tr|translate|QT_TRANSLATE_NOOP)\\(\\s*(?:\"\\w+\",\\s*)?\"([^\"]+)\"|"
                       "<string>(\\w+_\\w+)</string>"));
    QSet<QString> keys;
    QDirIterator files(QStringLiteral(KX_SOURCE_DIR "/Src"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString strSource = FileRead(files.next());
        auto matches = Asked.globalMatch(strSource);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            keys.insert(match.captured(match.lastCapturedIndex()));
        }
    }
    QStringList list = keys.values();
    list.sort();
    return list;
}

} // namespace

class TranslationTest : public QObject
{
    Q_OBJECT

private slots:
    void ThereAreThirtyFiles();
    void TheSourcesAskForTheKnownTextsOnly();
    void EverySourceFileOfTextsIsComplete_data() { EveryFile(); }
    void EverySourceFileOfTextsIsComplete();
    void EveryTextIsTranslated_data() { EveryFile(); }
    void EveryTextIsTranslated();
    void TheCountKeepsItsNumber_data() { EveryFile(); }
    void TheCountKeepsItsNumber();

private:
    static void EveryFile();
};

void TranslationTest::EveryFile()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("base") << QStringLiteral("KXRecordManage");
    for (const char* pszCode : Codes)
        QTest::newRow(pszCode) << QStringLiteral("KXRecordManage_") + QString::fromUtf8(pszCode);
}

void TranslationTest::ThereAreThirtyFiles()
{
    const QStringList found = QDir(QStringLiteral(":/KXRecordManage/Translates")).entryList(QDir::Files, QDir::Name);
    QStringList expected{QStringLiteral("KXRecordManage.qm")};
    for (const char* pszCode : Codes)
        expected.append(QStringLiteral("KXRecordManage_%1.qm").arg(QString::fromUtf8(pszCode)));
    QCOMPARE(found, expected);
    QCOMPARE(found.size(), 30);
}

void TranslationTest::TheSourcesAskForTheKnownTextsOnly()
{
    QStringList known;
    for (const Text& text : KnownTexts)
        known.append(QString::fromUtf8(text.pszKey));
    known.sort();
    QCOMPARE(KeysInSources(), known);
}

void TranslationTest::EverySourceFileOfTextsIsComplete()
{
    QFETCH(QString, name);
    const QString strTexts = FileRead(QStringLiteral(KX_SOURCE_DIR "/Res/Translates/%1.ts").arg(name));
    const QStringList keys = KeysInSources();
    QVERIFY(!keys.isEmpty());
    for (const QString& strKey : keys)
        QVERIFY2(strTexts.contains(QStringLiteral("<source>%1</source>").arg(strKey)), qPrintable(strKey));
    for (const char* pszLeftover : {"unfinished", "obsolete", "vanished", "<translation></translation>"})
        QVERIFY2(!strTexts.contains(QString::fromUtf8(pszLeftover)), pszLeftover);
}

void TranslationTest::EveryTextIsTranslated()
{
    QFETCH(QString, name);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/KXRecordManage/Translates/%1.qm").arg(name)));
    for (const Text& text : KnownTexts) {
        const QString strText = translator.translate(text.pszContext, text.pszKey, nullptr, 1);
        QVERIFY2(!strText.trimmed().isEmpty(), text.pszKey);
        QVERIFY2(strText != QString::fromUtf8(text.pszKey), text.pszKey);
        QCOMPARE(strText, strText.trimmed());
    }
}

void TranslationTest::TheCountKeepsItsNumber()
{
    QFETCH(QString, name);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/KXRecordManage/Translates/%1.qm").arg(name)));
    for (const int iCount : {0, 1, 2, 5, 21}) {
        const QString strText = translator.translate("DownloadWidget", "play_multiple_views_total", nullptr, iCount);
        QVERIFY2(strText.count(QStringLiteral("%1")) == 1, qPrintable(strText));
        QVERIFY2(strText.count(QLatin1Char('%')) == 1, qPrintable(strText));
    }
}

KX_TEST(TranslationTest, QApplication)

#include "TranslationTest.moc"
