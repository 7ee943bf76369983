// Which translator the application has, and which texts the panel shows.

#include "PluginRig.h"
#include "TestMain.h"

#include <QtWidgets/QLabel>

namespace {

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
    void cleanup() { PluginRig::RemoveTranslators(); }
    void ACodeGivesItsOwnFileOrTheBaseFile_data();
    void ACodeGivesItsOwnFileOrTheBaseFile();
    void AListOfAnotherLengthLeavesNoTranslator_data();
    void AListOfAnotherLengthLeavesNoTranslator();
    void TheSameCodeTwiceIsOneTranslator();
    void ThePanelsTextsFollow();
    void ATranslatorThatFoundNothingIsNotInstalled();
    void ThePanelsTextsFollowALanguageThatIsNotThere();
    void TheTranslatorOutlivesTheContent();
    void ANewLifeReplacesTheLeftTranslator();
};

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
    PluginRig rig(PluginRig::In("fr"));
    QVERIFY(PluginRig::Translated() != text);
    rig.SendLanguages({code});
    QCOMPARE(PluginRig::Translated(), text);
    rig.Plugin().Destory();

    rig.Init(PluginRig::In(code));
    QCOMPARE(PluginRig::Translated(), text);
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
    PluginRig rig(PluginRig::In("ru"));
    rig.SendLanguages(list);
    QCOMPARE(PluginRig::Translated(), QStringLiteral("common_set"));
    QCOMPARE(rig.TextOf("btnSetting"), QString::fromUtf8("Настройки")); // not retold
    rig.SendLanguage("en");
    QCOMPARE(PluginRig::Translated(), QStringLiteral("Settings"));
}

void LanguageTest::TheSameCodeTwiceIsOneTranslator()
{
    PluginRig rig(PluginRig::In("ru"));
    rig.SendLanguage("ru");
    rig.SendLanguage("ru");
    QCOMPARE(PluginRig::Translated(), QString::fromUtf8("Настройки"));
    rig.SendLanguages({}); // takes one away: nothing is left
    QCOMPARE(PluginRig::Translated(), QStringLiteral("common_set"));
}

void LanguageTest::ThePanelsTextsFollow()
{
    PluginRig rig(PluginRig::In("en"));
    QCOMPARE(rig.TextOf("btnAllStart"), QStringLiteral("Pause all"));
    rig.SendLanguage("ru");
    QCOMPARE(rig.TextOf("btnAllStart"), QString::fromUtf8("Приостановить все"));
    QCOMPARE(rig.TextOf("btnSetting"), QString::fromUtf8("Настройки"));
    QCOMPARE(rig.Panel()->findChild<QLabel*>(QStringLiteral("labelText"))->text(), QString::fromUtf8("Нет загрузок"));
}

void LanguageTest::ATranslatorThatFoundNothingIsNotInstalled()
{
    PluginRig rig(PluginRig::In("ru"));
    const LanguageChanges changes;
    rig.SendLanguageThatIsNotThere();
    QCOMPARE(changes.iCount, 1); // the old one went
    rig.SendLanguages({});
    QCOMPARE(changes.iCount, 1);
    rig.SendLanguage("en");
    QCOMPARE(changes.iCount, 2);
}

void LanguageTest::ThePanelsTextsFollowALanguageThatIsNotThere()
{
    PluginRig rig(PluginRig::In("ru"));
    rig.SendLanguageThatIsNotThere();
    QCOMPARE(rig.TextOf("btnAllStart"), QStringLiteral("pc_download_video_suspend_all"));
    QCOMPARE(rig.TextOf("btnSetting"), QStringLiteral("common_set"));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void LanguageTest::TheTranslatorOutlivesTheContent()
{
    PluginRig rig(PluginRig::In("ru"));
    rig.Plugin().Destory();
    QCOMPARE(PluginRig::Translated(), QString::fromUtf8("Настройки"));
    rig.SendLanguage("en"); // nobody listens any more
    QCOMPARE(PluginRig::Translated(), QString::fromUtf8("Настройки"));
}

void LanguageTest::ANewLifeReplacesTheLeftTranslator()
{
    PluginRig rig{PluginRig::Unstarted()};
    for (const char* pszCode : {"ru", "ja", "en"}) {
        rig.Init(PluginRig::In(pszCode));
        rig.Plugin().Destory();
    }
    QCOMPARE(PluginRig::Translated(), QStringLiteral("Settings"));
    rig.Init(PluginRig::In("ru"));
    rig.SendLanguages({});
    QCOMPARE(PluginRig::Translated(), QStringLiteral("common_set")); // none of the four is left
}

KX_TEST(LanguageTest, QApplication)

#include "LanguageTest.moc"
