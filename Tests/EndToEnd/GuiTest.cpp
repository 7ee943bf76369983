#include "EndToEnd/ClientProcess.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <csignal>

using namespace EndToEnd;

// The window's process: what it says and how it ends. (What happens in the window is tested from within.)
class GuiTest : public QObject
{
    Q_OBJECT

private slots:
    void TheWindowEndsOnASignalAndRemembers();
    void AWrongSettingsFileIsLoggedAndNoObstacle();
    void WithoutADisplayItSaysSo();
    void HelpNeedsNoDisplay();
    void ThePictureShowsRowsOfAllStates();
    void APictureThatCannotBeTakenOrWrittenSaysWhy_data();
    void APictureThatCannotBeTakenOrWrittenSaysWhy();

private:
    static QStringList Gui(const Workplace& place);
    static void StopWhenOpen(RunningClient& client);

    ScratchDir m_folder;
};

namespace {

// Of the host's colour table.
constexpr QRgb Accent = 0xFF1F6FEB;
constexpr QRgb Error = 0xFFD93036;

int CountOf(const QImage& picture, QRgb uColour)
{
    int iCount = 0;
    for (int iY = 0; iY < picture.height(); ++iY) {
        for (int iX = 0; iX < picture.width(); ++iX)
            iCount += picture.pixel(iX, iY) == uColour ? 1 : 0;
    }
    return iCount;
}

} // namespace

QStringList GuiTest::Gui(const Workplace& place)
{
    return {"gui"_s,
            "--out"_s,
            place.Path("out"_s),
            "--settings"_s,
            place.Path("kx.ini"_s),
            "--log"_s,
            place.Path("kx.log"_s),
            "--db"_s,
            place.Path("kx.db"_s)};
}

void GuiTest::StopWhenOpen(RunningClient& client)
{
    QTRY_VERIFY_WITH_TIMEOUT(client.Out().contains("the window is open"_s), 60000);
    client.Signal(SIGTERM);
    const ClientResult result = client.Finish();
    QVERIFY2(result.iExit == 130, result.Said());
}

void GuiTest::TheWindowEndsOnASignalAndRemembers()
{
#if defined(Q_OS_WIN)
    return QTest::qSkip("a console event cannot be sent to one process only", __FILE__, __LINE__);
#endif
    Workplace place;
    RunningClient client;
    QVERIFY(client.Start(Gui(place)));
    StopWhenOpen(client);
    QVERIFY2(place.Read("kx.ini"_s).contains("language=en"), place.Read("kx.ini"_s).constData());
}

void GuiTest::AWrongSettingsFileIsLoggedAndNoObstacle()
{
#if defined(Q_OS_WIN)
    return QTest::qSkip("a console event cannot be sent to one process only", __FILE__, __LINE__);
#endif
    Workplace place;
    place.Write("kx.ini"_s, "\x7F"
                            "ELF, no settings");
    RunningClient client;
    QVERIFY(client.Start(Gui(place)));
    StopWhenOpen(client);
    QVERIFY2(place.Read("kx.log"_s).contains("kx.ini: is no INI file"), place.Read("kx.log"_s).constData());
    QCOMPARE(place.Read("kx.ini.bad"_s), QByteArray("\x7F"
                                                    "ELF, no settings"));
    QVERIFY2(place.Read("kx.ini"_s).contains("language=en"), place.Read("kx.ini"_s).constData());
}

void GuiTest::WithoutADisplayItSaysSo()
{
#if defined(Q_OS_WIN)
    return QTest::qSkip("there is always a display", __FILE__, __LINE__);
#endif
    Workplace place;
    for (const QString& strCommand : {"gui"_s, "screenshot"_s}) {
        const ClientResult result = RunClient({strCommand}, {"QT_QPA_PLATFORM=none such"_s});
        QVERIFY2(result.iExit == 5, result.Said());
        QVERIFY2(result.strErr.startsWith("kxclient: no window can be shown: "_s), result.Said());
        QVERIFY2(result.strErr.count(QLatin1Char('\n')) == 1, result.Said());
    }
}

void GuiTest::HelpNeedsNoDisplay()
{
    const ClientResult result = RunClient({"gui"_s, "--help"_s}, {"QT_QPA_PLATFORM=none such"_s});
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY2(result.strOut.contains("--settings"_s), result.Said());
}

void GuiTest::ThePictureShowsRowsOfAllStates()
{
    Workplace place;
    const ClientResult result = RunClient({"screenshot"_s, "--to"_s, place.Path("window.png"_s)});
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(result.strErr, QString());
    QVERIFY2(result.LastOutLine().endsWith("2 downloading, 1 waiting, 1 paused, 1 failed; 4 thumbnails"_s),
             result.Said());
    const QImage picture(place.Path("window.png"_s), "PNG");
    QVERIFY2(picture.width() >= 1300 && picture.height() >= 588, "the panel takes 630 x 564 of it");
    // Two progress bars of 300 pixels, at least 62 and 24 per cent full and 6 pixels high; the failed row's text.
    QVERIFY2(CountOf(picture, Accent) > (186 + 72) * 4, "the bars of what is downloading");
    QVERIFY2(CountOf(picture, Error) > 20, "the text of what has failed");
}

void GuiTest::APictureThatCannotBeTakenOrWrittenSaysWhy_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("iStatus");
    QTest::addColumn<QString>("strSaid");
    QTest::newRow("no file") << QStringList{} << 2 << "option '--to' is missing"_s;
    QTest::newRow("no such folder") << QStringList{"--to"_s, "/none/such/a.png"_s} << 2 << "/none/such/a.png: "_s;
    QTest::newRow("no such language") << QStringList{"--to"_s, "/none/such/a.png"_s, "--language"_s, "xx"_s} << 2
                                      << "there is no language 'xx'"_s;
    const QString strFile = m_folder.filePath("a.png"_s);
    QTest::newRow("no such plug-in") << QStringList{"--to"_s, strFile, "--plugin"_s, "/none/such.so"_s} << 3
                                     << "no such file"_s;
    QTest::newRow("no time") << QStringList{"--to"_s, strFile, "--timeout"_s, "0"_s} << 4 << "time out: "_s;
}

void GuiTest::APictureThatCannotBeTakenOrWrittenSaysWhy()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, iStatus);
    QFETCH(QString, strSaid);
    const ClientResult result = RunClient(QStringList{"screenshot"_s} + arguments);
    QVERIFY2(result.iExit == iStatus, result.Said());
    QVERIFY2(result.strErr.contains(strSaid), result.Said());
    QVERIFY2(QDir(m_folder.path()).isEmpty(), "no half picture");
}

KX_TEST(GuiTest, QCoreApplication)
#include "GuiTest.moc"
