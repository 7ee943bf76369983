#include "Client/WindowUser.h"

#include "Host/KXLogic/RunningTransfers.h"
#include "TestMain.h"

#include <QtCore/QSettings>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

// How the window ends, and what is left of it.
class WindowQuitTest : public QObject
{
    Q_OBJECT

private slots:
    void ClosingAsksWhileTransfersRun();
    void ClosingAsksNothingWhenNothingRuns();
    void WhereTheWindowWasIsRemembered();
    void ThePluginIsUnmapped();
    void WhatIsWrongEndsItBeforeItOpens_data();
    void WhatIsWrongEndsItBeforeItOpens();
};

namespace {

const QString Stairwell = QStringLiteral("Stairwell, motion");
const QStringList Slow{QStringLiteral("--fault"), QStringLiteral("slow=500@KXD2S0048816_1_20240318T071111")};

} // namespace

void WindowQuitTest::ClosingAsksWhileTransfersRun()
{
    WindowUser user;
    const QString strPartial = user.Path(QStringLiteral("out/Stairwell.mp4"));
    const int iStatus = user.Open(user.Options(Slow), [&] {
        user.Check(Stairwell);
        user.Press("download");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(strPartial).size() > 0, 30000);
        user.AnswerNext(QStringLiteral("&Keep downloading"));
        QVERIFY(!user.Window().close());
        QVERIFY(user.IsOpen());
        QCOMPARE(KXHost::RunningTransfers().size(), 1);
        user.AnswerNext(QStringLiteral("&Stop and quit"));
        QVERIFY(user.Window().close());
    });
    QCOMPARE(iStatus, 0);
    QCOMPARE(KXHost::RunningTransfers().size(), 0);
    QVERIFY2(!QFileInfo::exists(strPartial), "what is stopped leaves no half file");
    QVERIFY(!user.IsOpen());
}

void WindowQuitTest::ClosingAsksNothingWhenNothingRuns()
{
    WindowUser user;
    const int iStatus = user.Open(user.Options(), [&] {
        QVERIFY(user.Window().close());
        QVERIFY(!QApplication::activeModalWidget());
    });
    QCOMPARE(iStatus, 0);
}

void WindowQuitTest::WhereTheWindowWasIsRemembered()
{
    WindowUser user;
    QSize size;
    user.Open(user.Options(), [&] {
        user.Window().resize(user.Window().width() + 60, user.Window().height() + 40);
        size = user.Window().size();
        user.Window().close();
    });
    user.Open(user.Options(), [&] { QCOMPARE(user.Window().size(), size); });
    {
        QSettings settings(user.Path(QStringLiteral("kx.ini")), QSettings::IniFormat);
        settings.setValue(QStringLiteral("window/geometry"), QByteArray("no geometry"));
        settings.setValue(QStringLiteral("window/splitter"), QByteArray("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
    }
    user.Open(user.Options(), [&] {
        QVERIFY(user.IsOpen());
        QVERIFY(user.Window().width() > 900);
    });
}

void WindowQuitTest::ThePluginIsUnmapped()
{
#if defined(Q_OS_LINUX)
    const auto isMapped = [] {
        QFile maps(QStringLiteral("/proc/self/maps"));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libKXRecordManage.so");
    };
    WindowUser user;
    bool bMappedWhileOpen = false;
    user.Open(user.Options(), [&] { bMappedWhileOpen = isMapped(); });
    QVERIFY(bMappedWhileOpen);
    QVERIFY(!isMapped());
#else
    QSKIP("reads Linux's own list of mapped files", "");
#endif
}

void WindowQuitTest::WhatIsWrongEndsItBeforeItOpens_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("iStatus");
    const auto row = [](const char* pszName, const char* pszOption, const char* pszValue, int iStatus) {
        QTest::newRow(pszName) << QStringList{QLatin1String(pszOption), QLatin1String(pszValue)} << iStatus;
    };
    row("no such fault", "--fault", "gremlins", 2);
    row("no such configuration", "--config", "/none/such.json", 2);
    row("no such plug-in", "--plugin", "/none/such.so", 3);
    row("no such option", "--colour", "red", 2);
}

void WindowQuitTest::WhatIsWrongEndsItBeforeItOpens()
{
    QFETCH(QStringList, options);
    QFETCH(int, iStatus);
    WindowUser user;
    bool bOpened = false;
    QCOMPARE(user.Open(user.Options(options), [&] { bOpened = true; }), iStatus);
    QVERIFY(!bOpened);
}

KX_TEST(WindowQuitTest, QApplication)
#include "WindowQuitTest.moc"
