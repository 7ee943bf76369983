// Paths that a recording cannot be written to, by the rules of two systems.

#include "Host/KXLogic/TargetPath.h"
#include "TestMain.h"

#include <QtTest/QtTest>

using KXHost::FileNames;

class TargetPathTest : public QObject
{
    Q_OBJECT

private slots:
    void WindowsNames_data();
    void WindowsNames();
    void OtherSystemsTakeAnyName();
};

void TargetPathTest::WindowsNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("problem");
    const QString none;
    QTest::newRow("drive") << QStringLiteral("C:/d/Front door.mp4") << none;
    QTest::newRow("drive, backslashes") << QStringLiteral("C:\\d\\.\\..\\a.mp4") << none;
    QTest::newRow("network") << QStringLiteral("//server/share/a.mp4") << none;
    QTest::newRow("long path") << QStringLiteral("\\\\?\\C:\\d\\a.mp4") << none;
    QTest::newRow("begins like a device") << QStringLiteral("C:/d/Console 1.mp4") << none;
    QTest::newRow("a device's number is one digit") << QStringLiteral("C:/d/COM10.mp4") << none;
    QTest::newRow("other alphabet") << QStringLiteral("C:/d/北门.mp4") << none;

    const QString device = QStringLiteral("Windows has a device of the name \"%1\"");
    for (const char* pszName : {"CON.mp4", "nul", "Aux.tar.mp4", "COM1.mp4", "lpt9.mp4", "PRN .mp4", "CONOUT$"}) {
        const QString strName = QString::fromLatin1(pszName);
        QTest::newRow(pszName) << QString(QStringLiteral("C:/d/") + strName) << device.arg(strName);
    }
    QTest::newRow("a folder") << QStringLiteral("C:/nul/a.mp4") << device.arg(QStringLiteral("nul"));

    const QString character = QStringLiteral("Windows forbids a character of the name \"%1\"");
    for (const char* pszName : {"12:30.mp4", "a?.mp4", "a*.mp4", "<a>.mp4", "a|b.mp4", "a\"b.mp4", "a\tb.mp4"}) {
        const QString strName = QString::fromLatin1(pszName);
        QTest::newRow(pszName) << QString(QStringLiteral("C:/d/") + strName) << character.arg(strName);
    }
    const QString end = QStringLiteral("Windows drops the end of the name \"%1\"");
    QTest::newRow("ends with a dot") << QStringLiteral("C:/d./a.mp4") << end.arg(QStringLiteral("d."));
    QTest::newRow("ends with a blank") << QStringLiteral("C:/d/a.mp4 ") << end.arg(QStringLiteral("a.mp4 "));
}

void TargetPathTest::WindowsNames()
{
    QFETCH(QString, path);
    QFETCH(QString, problem);
    QCOMPARE(KXHost::TargetProblem(path, FileNames::Windows), problem);
}

void TargetPathTest::OtherSystemsTakeAnyName()
{
    QCOMPARE(KXHost::TargetProblem(QStringLiteral("/d/12:30 <a>?.mp4"), FileNames::Any), QString());
    QCOMPARE(KXHost::TargetProblem(QStringLiteral("/d/CON.mp4"), FileNames::Any), QString());
}

KX_TEST(TargetPathTest, QCoreApplication)
#include "TargetPathTest.moc"
