// Places that a recording cannot be written to, or only just: each with its clear error, and nothing overwritten.

#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtTest/QtTest>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

using namespace EndToEnd;

namespace {

const QString Device = QStringLiteral("KXD2S0048816_1_20240318T071111"); // 102,400 bytes

} // namespace

class HostileTargetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void AReadOnlyFolder();
    void APathOfMoreThan260Characters();
    void ANameThatTurnsItsLine();
    void AFileThatAnotherProcessHolds();
    void ANameThatTheSystemForbids_data();
    void ANameThatTheSystemForbids();

private:
    QJsonArray RecordFor(const QString& strTarget) const;

    ServedSite m_site;
};

void HostileTargetTest::initTestCase()
{
    QVERIFY(m_site.Start());
    QVERIFY(m_site.FetchRecords());
}

QJsonArray HostileTargetTest::RecordFor(const QString& strTarget) const
{
    QJsonObject record = m_site.Record(Device);
    record["strDownloadPath"_s] = strTarget;
    return {record};
}

void HostileTargetTest::AReadOnlyFolder()
{
    const QString strVolume = qEnvironmentVariable("KX_SMALL_VOLUME");
    QFile reason(strVolume + "/reason"_s);
    if (strVolume.isEmpty())
        QSKIP("no volume was made for this run", "");
    if (reason.open(QIODevice::ReadOnly))
        QSKIP(reason.readAll().constData(), "");
    Workplace place;
    QStringList arguments = place.Download(m_site.Config(), RecordFor("a.mp4"_s));
    arguments[arguments.indexOf("--out"_s) + 1] = strVolume + "/read-only"_s;
    const ClientResult result = RunClient(arguments);
    QVERIFY2(result.iExit == 2, result.Said());
    QVERIFY2(result.strErr.contains("read-only"_s), result.Said());
    QCOMPARE(QDir(strVolume + "/read-only"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 0);
}

void HostileTargetTest::APathOfMoreThan260Characters()
{
    Workplace place;
    const QString strFolder = QString(120, QLatin1Char('f')) + QLatin1Char('/') + QString(120, QLatin1Char('g'));
    const QString strTarget = strFolder + QLatin1Char('/') + QString(60, QLatin1Char('h')) + ".mp4"_s;
    const ClientResult result = RunClient(place.Download(m_site.Config(), RecordFor(strTarget)));
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY(place.OutPath(strTarget).size() > 305);
    QCOMPARE(place.Read("out/"_s + strTarget).size(), 102400);
}

// The table and the lines before it leave out what would turn them; the file has its own name.
void HostileTargetTest::ANameThatTurnsItsLine()
{
    Workplace place;
    const QString strTarget = QStringLiteral("clip %1gpj.mp4").arg(QChar(0x202E));
    const ClientResult result = RunClient(place.Download(m_site.Config(), RecordFor(strTarget)));
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY2(result.strOut.count("clip gpj.mp4"_s) == 2, result.Said());
    QVERIFY(!result.strOut.contains(QChar(0x202E)));
    QCOMPARE(place.Read("out/"_s + strTarget).size(), 102400);
}

void HostileTargetTest::AFileThatAnotherProcessHolds()
{
#if defined(Q_OS_WIN)
    Workplace place;
    place.Write("out/hall.mp4"_s, "mine");
    const std::wstring strFile = QDir::toNativeSeparators(place.OutPath("hall.mp4"_s)).toStdWString();
    HANDLE hFile = CreateFileW(strFile.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    QVERIFY(hFile != INVALID_HANDLE_VALUE);
    const ClientResult result = RunClient(place.Download(m_site.Config(), RecordFor("hall.mp4"_s)));
    CloseHandle(hFile);
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(place.Read("out/hall.mp4"_s), QByteArray("mine"));
    QCOMPARE(place.Read("out/hall(1).mp4"_s).size(), 102400);
#else
    QSKIP("here a file is never closed to others by being open", "");
#endif
}

void HostileTargetTest::ANameThatTheSystemForbids_data()
{
    QTest::addColumn<QString>("strName");
    QTest::addColumn<QString>("strReason");
    QTest::newRow("a device") << "CON.mp4"_s
                              << "Windows has a device of the name \"CON.mp4\""_s;
    QTest::newRow("a stream") << "12:30.mp4"_s
                              << "Windows forbids a character of the name \"12:30.mp4\""_s;
    QTest::newRow("a wildcard") << "what?.mp4"_s
                                << "Windows forbids a character of the name \"what?.mp4\""_s;
}

void HostileTargetTest::ANameThatTheSystemForbids()
{
    QFETCH(QString, strName);
    QFETCH(QString, strReason);
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_site.Config(), RecordFor(strName)));
#if defined(Q_OS_WIN)
    QVERIFY2(result.iExit == 1, result.Said());
    QVERIFY2(result.Said().contains(strReason.toUtf8()), result.Said());
    QCOMPARE(QDir(place.Path("out"_s)).entryList(QDir::Files).size(), 0);
#else
    Q_UNUSED(strReason)
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(place.Read("out/"_s + strName).size(), 102400);
#endif
}

KX_TEST(HostileTargetTest, QCoreApplication)
#include "HostileTargetTest.moc"
