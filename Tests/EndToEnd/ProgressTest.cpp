#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

using namespace EndToEnd;

// What a person sees while recordings arrive.
class ProgressTest : public QObject
{
    Q_OBJECT

private slots:
    void ATerminalShowsALinePerRunningTask();
    void AFileHasALinePerFinishedTask();
};

namespace {

const QString LanModule = QStringLiteral("KXM3G0007719_1_20240402T090000");

// Half a second for the recording: several ticks of the display.
bool StartSlowSite(ServedSite& site)
{
    return site.Start({"--fault"_s, "slow=4000000"_s}) && site.FetchRecords();
}

} // namespace

void ProgressTest::ATerminalShowsALinePerRunningTask()
{
    const QString strScript = QStandardPaths::findExecutable("script"_s);
    if (strScript.isEmpty())
        return QTest::qSkip("there is no program that lends a terminal", __FILE__, __LINE__);
    ServedSite site;
    QVERIFY(StartSlowSite(site));
    Workplace place;
    QString strCommand = "stty cols 90; "_s + QCoreApplication::applicationDirPath() + "/kxclient"_s;
    for (const QString& strArgument : place.Download(site.Config(), {site.Record(LanModule)}))
        strCommand += " '"_s + strArgument + "'"_s;
    QProcess terminal;
    terminal.start(strScript, {"-qefc"_s, strCommand, "/dev/null"_s});
    QVERIFY(terminal.waitForFinished(60000));
    const QString strShown = QString::fromUtf8(terminal.readAllStandardOutput());
    QVERIFY2(terminal.exitCode() == 0, qPrintable(strShown));

    const QRegularExpression progress("lanModule  Module camera 1\\.mp4 +\\[(#+)\\.+\\] +(\\d+)% .* of 2\\.0 MiB"_s);
    QVERIFY2(progress.match(strShown).hasMatch(), qPrintable(strShown));
    QVERIFY2(strShown.contains("\033[1A\r\033[J"_s), "the line is redrawn in its place");
    for (const QString& strLine : strShown.split(QRegularExpression("[\r\n]+|\033\\[[0-9]*[AJ]"_s)))
        QVERIFY2(!progress.match(strLine).hasMatch() || strLine.size() <= 90, qPrintable(strLine));
    QVERIFY2(strShown.contains("1 recordings, 1 whole, 0 failed"_s), qPrintable(strShown));
}

void ProgressTest::AFileHasALinePerFinishedTask()
{
    ServedSite site;
    QVERIFY(StartSlowSite(site));
    Workplace place;
    const ClientResult result = RunClient(place.Download(site.Config(), {site.Record(LanModule)}));
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(result.OutLines().value(1), "whole     lanModule     2.0 MiB  Module camera 1.mp4"_s);
    QCOMPARE(result.OutLines().value(2), QString()); // the table follows
    QVERIFY2(!result.strOut.contains(QChar(0x1B)), result.Said());
}

KX_TEST(ProgressTest, QCoreApplication)
#include "ProgressTest.moc"
