#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtTest/QtTest>

using namespace EndToEnd;

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void HelpIsNoError_data();
    void HelpIsNoError();
    void AMistakeIsToldWithStatus2_data();
    void AMistakeIsToldWithStatus2();
    void EveryFaultIsListedInTheHelp();
};

void CommandLineTest::HelpIsNoError_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("strSaid");
    QTest::newRow("of the program") << QStringList{"--help"_s} << "serve"_s;
    QTest::newRow("of download") << QStringList{"download"_s, "--help"_s} << "Usage: "_s;
    QTest::newRow("of serve") << QStringList{"serve"_s, "-h"_s} << "--port"_s;
    QTest::newRow("beside other options") << QStringList{"download"_s, "--out"_s, "x"_s, "--help"_s} << "--records"_s;
}

void CommandLineTest::HelpIsNoError()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, strSaid);
    const ClientResult result = RunClient(arguments);
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY2(result.strOut.contains(strSaid), result.Said());
    QVERIFY2(result.strErr.isEmpty(), result.Said());
}

void CommandLineTest::AMistakeIsToldWithStatus2_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("strSaid");
    QTest::newRow("no command") << QStringList{} << "no command is given"_s;
    QTest::newRow("unknown command") << QStringList{"upload"_s} << "'upload'"_s;
    QTest::newRow("unknown option") << QStringList{"download"_s, "--fast"_s} << "'fast'"_s;
    QTest::newRow("an option that Qt would take") << QStringList{"download"_s, "-style"_s, "x"_s} << "'style'"_s;
    QTest::newRow("stray word") << QStringList{"download"_s, "all"_s} << "'all'"_s;
    QTest::newRow("missing value") << QStringList{"download"_s, "--out"_s} << "'--out'"_s;
    QTest::newRow("empty value") << QStringList{"download"_s, "--out"_s, ""_s} << "'--out' has an empty value"_s;
    QTest::newRow("given twice") << QStringList{"download"_s, "--json"_s, "a"_s, "--json"_s, "b"_s}
                                 << "'--json' is given 2 times"_s;
    QTest::newRow("time is a word") << QStringList{"download"_s, "--timeout"_s, "soon"_s} << "'soon'"_s;
    QTest::newRow("time is nothing") << QStringList{"download"_s, "--timeout"_s, "0"_s} << "from 1 to"_s;
    QTest::newRow("port too high") << QStringList{"serve"_s, "--port"_s, "65536"_s} << "from 1 to 65535, not '65536'"_s;
    QTest::newRow("unknown fault") << QStringList{"serve"_s, "--fault"_s, "gremlin"_s} << "gremlin"_s;
    QTest::newRow("no such data folder") << QStringList{"serve"_s, "--data"_s, "/nowhere/at/all"_s}
                                         << "/nowhere/at/all"_s;
    QTest::newRow("records that are not there")
        << QStringList{"download"_s, "--out"_s, "%1/out"_s, "--records"_s, "%1/none.json"_s}
        << "none.json: no such file"_s;
    QTest::newRow("config that is a folder")
        << QStringList{"download"_s, "--out"_s, "%1/out"_s, "--config"_s, "%1"_s} << "no such file"_s;
    QTest::newRow("download folder that is a file")
        << QStringList{"download"_s, "--out"_s, "%1/file/out"_s} << "cannot make the download folder"_s;
    QTest::newRow("report in no folder") << QStringList{"download"_s, "--out"_s, "%1/out"_s, "--json"_s,
                                                        "%1/none/report.json"_s}
                                         << "none/report.json"_s;
    QTest::newRow("log in a file") << QStringList{"download"_s, "--out"_s, "%1/out"_s, "--log"_s,
                                                  "%1/file/client.log"_s}
                                   << "cannot write the log file"_s;
    QTest::newRow("database that is none")
        << QStringList{"download"_s, "--out"_s, "%1/out"_s, "--db"_s, "%1/file"_s} << "%1/file"_s;
}

void CommandLineTest::AMistakeIsToldWithStatus2()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, strSaid);
    Workplace place;
    place.Write("file"_s, "this file is in the way, and it is no database either\n");
    arguments.replaceInStrings("%1"_s, place.Path("."_s));
    strSaid.replace("%1"_s, place.Path("."_s));
    const ClientResult result = RunClient(arguments);
    QVERIFY2(result.iExit == 2, result.Said());
    QVERIFY2(result.strErr.contains(strSaid), result.Said());
    QVERIFY2(result.strErr.startsWith("kxclient: "_s) || result.strErr.contains("\nkxclient: "_s), result.Said());
    QCOMPARE(place.Read("file"_s), QByteArray("this file is in the way, and it is no database either\n"));
}

void CommandLineTest::EveryFaultIsListedInTheHelp()
{
    const ClientResult result = RunClient({"serve"_s, "--help"_s});
    for (const char* pszFault : {"cut", "short", "slow", "refuse", "busy"})
        QVERIFY2(result.strOut.contains(QLatin1String(pszFault)), result.Said());
}

KX_TEST(CommandLineTest, QCoreApplication)
#include "CommandLineTest.moc"
