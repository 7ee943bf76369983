#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

const QString Cloud = QStringLiteral("4611686018427400102");
const QString Device = QStringLiteral("KXD2S0048816_1_20240318T071111");
const QString IOTLan = QStringLiteral("KXB1L6600342_1_20240401T074500");

} // namespace

// Where recordings go, and what is kept about them.
class TargetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void AFileThatExistsIsNotOverwritten();
    void TwoRecordingsOfOneNameAreTwoFiles();
    void NamesSurviveAPlainLocale();
    void FoldersAreMade();
    void TheFileIsWhatTheSiteServes();
    void EachFileIsRegisteredAndReported();
    void TheReportSaysWhatIsTrue();
    void ADamagedFileIsNoticed_data();
    void ADamagedFileIsNoticed();

private:
    QJsonObject Record(const QString& strRecordId, const QString& strTarget) const;

    ServedSite m_site;
};

void TargetTest::initTestCase()
{
    QVERIFY(m_site.Start());
    QVERIFY(m_site.FetchRecords());
}

QJsonObject TargetTest::Record(const QString& strRecordId, const QString& strTarget) const
{
    QJsonObject record = m_site.Record(strRecordId);
    record["strDownloadPath"_s] = strTarget;
    return record;
}

void TargetTest::AFileThatExistsIsNotOverwritten()
{
    Workplace place;
    place.Write("out/hall.mp4"_s, "mine");
    place.Write("out/hall(1).mp4"_s, "mine, too");
    const ClientResult result = RunClient(place.Download(m_site.Config(), {Record(Device, "hall.mp4"_s)}));
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(place.Read("out/hall.mp4"_s), QByteArray("mine"));
    QCOMPARE(place.Read("out/hall(1).mp4"_s), QByteArray("mine, too"));
    QCOMPARE(place.Read("out/hall(2).mp4"_s).size(), 102400);
}

void TargetTest::TwoRecordingsOfOneNameAreTwoFiles()
{
    Workplace place;
    const QJsonArray records{Record(Device, "hall.mp4"_s), Record(IOTLan, "hall.mp4"_s)};
    const ClientResult result = RunClient(place.Download(m_site.Config(), records));
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(place.Read("out/hall.mp4"_s).size(), 102400);
    QCOMPARE(place.Read("out/hall(1).mp4"_s).size(), 655360);
}

void TargetTest::NamesSurviveAPlainLocale()
{
    Workplace place;
    const QString strName = "Žižkov – 駐車場 ünd Кот.mp4"_s;
    const ClientResult result =
        RunClient(place.Download(m_site.Config(), {Record(Device, strName)}), {"LC_ALL=C"_s, "LANG=C"_s});
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY2(result.strOut.contains(strName), result.Said());
    QCOMPARE(QDir(place.Path("out"_s)).entryList(QDir::Files), QStringList{strName});
}

void TargetTest::FoldersAreMade()
{
    Workplace place;
    const ClientResult result =
        RunClient(place.Download(m_site.Config(), {Record(Device, "2024/march 18/../hall.mp4"_s)}));
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(place.Read("out/2024/hall.mp4"_s).size(), 102400);
}

void TargetTest::TheFileIsWhatTheSiteServes()
{
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_site.Config(), {Record(Cloud, "gate.mp4"_s)}));
    QVERIFY2(result.iExit == 0, result.Said());
    const QByteArray served = m_site.Served("/cloud/"_s + Cloud);
    QCOMPARE(served.size(), 2750003);
    QVERIFY(place.Read("out/gate.mp4"_s) == served);
}

void TargetTest::EachFileIsRegisteredAndReported()
{
    Workplace place;
    const QJsonArray records{Record(Device, "hall.mp4"_s), Record(IOTLan, "bell.mp4"_s)};
    const ClientResult result = RunClient(place.Download(m_site.Config(), records));
    QVERIFY2(result.iExit == 0, result.Said());
    QVERIFY(QFileInfo(place.OutPath(".kxclient/kxclient.log"_s)).size() > 0);

    QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE"_s);
    database.setDatabaseName(place.OutPath(".kxclient/resources.db"_s));
    QVERIFY(database.open());
    QStringList tables = database.tables();
    tables.sort();
    QCOMPARE(tables.size(), 2);
    for (const QString& strTable : tables) {
        QSqlQuery query("SELECT COUNT(*) FROM "_s + strTable, database);
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toInt(), 2);
    }
}

void TargetTest::TheReportSaysWhatIsTrue()
{
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_site.Config(), {Record(Device, "hall.mp4"_s)}));
    QVERIFY2(result.iExit == 0, result.Said());
    const QJsonObject report = place.Report();
    QCOMPARE(report.value("recordings"_s).toInt(), 1);
    QCOMPARE(report.value("whole"_s).toInt(), 1);
    QCOMPARE(report.value("failed"_s).toInt(-1), 0);
    const QJsonObject entry = report.value("list"_s).toArray().at(0).toObject();
    QCOMPARE(entry.value("source"_s).toString(), "device"_s);
    QCOMPARE(entry.value("iRecordType"_s).toInt(), 1);
    QCOMPARE(entry.value("strRecordId"_s).toString(), Device);
    QCOMPARE(entry.value("size"_s).toInt(), 102400);
    QCOMPARE(entry.value("file"_s).toString(), place.OutPath("hall.mp4"_s));
    QCOMPARE(entry.value("state"_s).toString(), "whole"_s);
    QCOMPARE(entry.value("whole"_s).toBool(), true);
    QVERIFY(entry.value("milliseconds"_s).toInt() > 0);
}

void TargetTest::ADamagedFileIsNoticed_data()
{
    QTest::addColumn<QString>("strKey");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("strState");
    QTest::newRow("another size") << "lFileSize"_s << QJsonValue(102401)
                                  << "failed: what arrived has 102400 bytes instead of 102401"_s;
    QTest::newRow("another content") << "sha256"_s << QJsonValue(QString(64, QLatin1Char('0')))
                                     << "failed: what arrived is another recording: it has SHA-256 "_s;
}

void TargetTest::ADamagedFileIsNoticed()
{
    QFETCH(QString, strKey);
    QFETCH(QJsonValue, value);
    QFETCH(QString, strState);
    QJsonObject record = Record(Device, "hall.mp4"_s);
    record[strKey] = value;
    Workplace place;
    const ClientResult result = RunClient(place.Download(m_site.Config(), {record}));
    QVERIFY2(result.iExit == 1, result.Said());
    QCOMPARE(result.LastOutLine(), "1 recordings, 0 whole, 1 failed"_s);
    QVERIFY2(result.strOut.contains(strState), result.Said());
}

KX_TEST(TargetTest, QCoreApplication)
#include "TargetTest.moc"
