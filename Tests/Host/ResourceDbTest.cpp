#include "Host/KXBase/ResourceDb.h"
#include "LogFile.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <memory>
#include <thread>
#include <vector>

namespace {

// One statement on a connection of its own, as another program would send it; gives the first value.
QVariant Sql(const QString& strFile, const QString& strSql)
{
    QVariant value;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        database.setDatabaseName(strFile);
        if (database.open()) {
            QSqlQuery query(database);
            if (!query.exec(strSql))
                value = query.lastError().text();
            else if (query.next())
                value = query.value(0);
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    return value;
}

QByteArray Content(const QString& strFile)
{
    QFile file(strFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void WriteFile(const QString& strFile, const QByteArray& strContent)
{
    QFile file(strFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(strContent), qint64{strContent.size()});
}

LocalResourceInfo Recording(const QString& strPath)
{
    LocalResourceInfo info;
    info.strFilePath = strPath;
    info.lRegisterTime = 1700000000;
    info.lBeginTime = 1600000000;
    info.lEndTime = 4294967295;
    info.iResourceKind = 2;
    info.strTitle = QStringLiteral("Front door");
    return info;
}

bool Insert(const LocalResourceInfo& info)
{
    return LocalResourceDbInterface::GetInstance()->Insert(&info);
}

} // namespace

class ResourceDbTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void ThereIsADatabaseOnlyWhileOneIsOpen();
    void AResourceIsReadBackAsItWasInserted();
    void TheFieldsThatWereNotSetAreEmpty();
    void TextsAreBoundNotPasted_data();
    void TextsAreBoundNotPasted();
    void RowsStayWhenTheFileIsClosedAndOpenedAgain();
    void OtherProgramsSeeTheRowsWhileItIsOpen();
    void AResourceWithoutAFileIsRefused();
    void ARowThatCannotBeStoredGivesFalse();
    void AReportIsReadBackAsItWasInserted();
    void ReportsOfManyThreadsAreAllStored();
    void NothingIsStoredOrReadWithoutAnOpenFile();
    void ASecondOpenIsRefusedAndTheFirstGoesOn();
    void AnUnusableFileIsRefusedWithItsReasonAndKept_data();
    void AnUnusableFileIsRefusedWithItsReasonAndKept();
    void ADamagedPageIsRefusedAndKept();
    void ANewerVersionIsRefusedAndKept();
    void ADatabaseOfAnotherProgramIsRefusedAndKept();
    void APlaceWhereNoFileCanBeMadeIsRefused();
    void AnErrorTextIsNotAskedForByEveryone();

private:
    bool Open(QString* pError = nullptr) { return KXHost::OpenResourceDb(m_strFile, pError); }
    void RefusedAndKept(const QString& strReason);

    std::unique_ptr<LogFile> m_pLog;
    std::unique_ptr<ScratchDir> m_pFolder;
    QString m_strFile;
};

void ResourceDbTest::init()
{
    m_pLog = std::make_unique<LogFile>();
    m_pFolder = std::make_unique<ScratchDir>();
    m_strFile = m_pFolder->filePath(QString::fromUtf8("r\xC3\xA9sources.db"));
}

void ResourceDbTest::cleanup()
{
    KXHost::CloseResourceDb();
    m_pLog.reset();
    QVERIFY(m_pFolder->remove());
}

void ResourceDbTest::ThereIsADatabaseOnlyWhileOneIsOpen()
{
    QVERIFY(LocalResourceDbInterface::GetInstance() == nullptr);
    QString strError(QStringLiteral("untouched"));
    QVERIFY(Open(&strError));
    QCOMPARE(strError, QString());
    QVERIFY(LocalResourceDbInterface::GetInstance() != nullptr);
    KXHost::CloseResourceDb();
    QVERIFY(LocalResourceDbInterface::GetInstance() == nullptr);
    QVERIFY(QFile::exists(m_strFile));
}

void ResourceDbTest::AResourceIsReadBackAsItWasInserted()
{
    QVERIFY(Open());
    LocalResourceInfo info = Recording(QStringLiteral("/d/a.mp4"));
    info.strThumbPath = QStringLiteral("/d/a.jpg");
    info.iFavourite = 1;
    QVERIFY(Insert(info));
    QVERIFY(Insert(Recording(QStringLiteral("/d/b.mp4"))));
    QVERIFY(Insert(Recording(QStringLiteral("/d/a.mp4")))); // downloaded again: a row of its own
    const QVector<LocalResourceInfo> listRows = KXHost::Resources();
    QCOMPARE(listRows.size(), 3);
    QCOMPARE(listRows.at(0).strFilePath, QStringLiteral("/d/a.mp4"));
    QCOMPARE(listRows.at(0).lRegisterTime, qint64{1700000000});
    QCOMPARE(listRows.at(0).lBeginTime, qint64{1600000000});
    QCOMPARE(listRows.at(0).lEndTime, qint64{4294967295});
    QCOMPARE(listRows.at(0).iResourceKind, 2);
    QCOMPARE(listRows.at(0).strTitle, QStringLiteral("Front door"));
    QCOMPARE(listRows.at(0).strThumbPath, QStringLiteral("/d/a.jpg"));
    QCOMPARE(listRows.at(0).iFavourite, 1);
    QCOMPARE(listRows.at(1).strFilePath, QStringLiteral("/d/b.mp4"));
    QCOMPARE(listRows.at(2).strFilePath, QStringLiteral("/d/a.mp4"));
}

void ResourceDbTest::TheFieldsThatWereNotSetAreEmpty()
{
    QVERIFY(Open());
    LocalResourceInfo info;
    info.strFilePath = QStringLiteral("/d/a.mp4");
    QVERIFY(Insert(info));
    QCOMPARE(KXHost::Resources().value(0).strTitle, QString());
    QCOMPARE(KXHost::Resources().value(0).iResourceKind, 0);
}

void ResourceDbTest::TextsAreBoundNotPasted_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a statement") << QStringLiteral("'); DROP TABLE resources; --");
    QTest::newRow("a question mark and a colon name") << QStringLiteral("? :title");
    QTest::newRow("other scripts") << QString::fromUtf8("T\xC3\xBCr \xE4\xB8\xAD\xF0\x9F\x8E\xA5");
    QTest::newRow("a long text") << QString(200000, QLatin1Char('x'));
}

void ResourceDbTest::TextsAreBoundNotPasted()
{
    QFETCH(QString, text);
    QVERIFY(Open());
    LocalResourceInfo info = Recording(text);
    info.strTitle = text;
    QVERIFY(Insert(info));
    KXHost::DownloadReport report;
    report.strDeviceId = text;
    report.strRecordId = text;
    QVERIFY(KXHost::InsertDownloadReport(report));
    QCOMPARE(KXHost::Resources().value(0).strFilePath, text);
    QCOMPARE(KXHost::Resources().value(0).strTitle, text);
    QCOMPARE(KXHost::DownloadReports().value(0).strDeviceId, text);
    QCOMPARE(KXHost::DownloadReports().value(0).strRecordId, text);
}

void ResourceDbTest::RowsStayWhenTheFileIsClosedAndOpenedAgain()
{
    QVERIFY(Open());
    QVERIFY(Insert(Recording(QStringLiteral("/d/a.mp4"))));
    QVERIFY(KXHost::InsertDownloadReport(KXHost::DownloadReport()));
    KXHost::CloseResourceDb();
    QVERIFY(Open());
    QCOMPARE(KXHost::Resources().size(), 1);
    QCOMPARE(KXHost::DownloadReports().size(), 1);
    KXHost::CloseResourceDb();
    QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files).size(), 1); // nothing is left beside it
}

void ResourceDbTest::OtherProgramsSeeTheRowsWhileItIsOpen()
{
    QVERIFY(Open());
    QVERIFY(Insert(Recording(QStringLiteral("/d/a.mp4"))));
    QCOMPARE(Sql(m_strFile, QStringLiteral("SELECT file_path FROM resources")).toString(), QStringLiteral("/d/a.mp4"));
    QCOMPARE(Sql(m_strFile, QStringLiteral("PRAGMA journal_mode")).toString(), QStringLiteral("wal"));
    QCOMPARE(Sql(m_strFile, QStringLiteral("PRAGMA user_version")).toInt(), 1);
}

void ResourceDbTest::AResourceWithoutAFileIsRefused()
{
    QVERIFY(Open());
    QVERIFY(!Insert(LocalResourceInfo()));
    QVERIFY(!LocalResourceDbInterface::GetInstance()->Insert(nullptr));
    QCOMPARE(KXHost::Resources().size(), 0);
    QCOMPARE(m_pLog->Lines().size(), 2);
}

void ResourceDbTest::ARowThatCannotBeStoredGivesFalse()
{
    QVERIFY(Open());
    Sql(m_strFile, QStringLiteral("DROP TABLE resources"));
    Sql(m_strFile, QStringLiteral("DROP TABLE download_reports"));
    QVERIFY(!Insert(Recording(QStringLiteral("/d/a.mp4"))));
    QVERIFY(!KXHost::InsertDownloadReport(KXHost::DownloadReport()));
    QCOMPARE(KXHost::Resources().size(), 0);
    QCOMPARE(KXHost::DownloadReports().size(), 0);
    QCOMPARE(m_pLog->Lines().filter(QStringLiteral("[error]")).size(), 4);
}

void ResourceDbTest::AReportIsReadBackAsItWasInserted()
{
    QVERIFY(Open());
    KXHost::DownloadReport report;
    report.strDeviceId = QStringLiteral("D1");
    report.iChannelNo = -1;
    report.lBeginTime = 1600000000;
    report.lEndTime = 4294967295;
    report.iSourceKind = 2;
    report.strRecordId = QStringLiteral("9007199254740993");
    report.lReportedTime = 1700000001;
    QVERIFY(KXHost::InsertDownloadReport(report));
    const QVector<KXHost::DownloadReport> listReports = KXHost::DownloadReports();
    QCOMPARE(listReports.size(), 1);
    QCOMPARE(listReports.at(0).strDeviceId, QStringLiteral("D1"));
    QCOMPARE(listReports.at(0).iChannelNo, -1);
    QCOMPARE(listReports.at(0).lBeginTime, qint64{1600000000});
    QCOMPARE(listReports.at(0).lEndTime, qint64{4294967295});
    QCOMPARE(listReports.at(0).iSourceKind, 2);
    QCOMPARE(listReports.at(0).strRecordId, QStringLiteral("9007199254740993"));
    QCOMPARE(listReports.at(0).lReportedTime, qint64{1700000001});
}

void ResourceDbTest::ReportsOfManyThreadsAreAllStored()
{
    QVERIFY(Open());
    std::vector<std::thread> listThreads;
    listThreads.reserve(4);
    for (int iThread = 0; iThread < 4; ++iThread) {
        listThreads.emplace_back([iThread] {
            for (int i = 0; i < 50; ++i) {
                KXHost::DownloadReport report;
                report.strRecordId = QString::number(iThread * 100 + i);
                KXHost::InsertDownloadReport(report);
            }
        });
    }
    QVERIFY(Insert(Recording(QStringLiteral("/d/a.mp4"))));
    for (std::thread& thread : listThreads)
        thread.join();
    QSet<QString> setIds;
    for (const KXHost::DownloadReport& report : KXHost::DownloadReports())
        setIds.insert(report.strRecordId);
    QCOMPARE(setIds.size(), 200);
    QVERIFY(setIds.contains(QStringLiteral("349")));
}

void ResourceDbTest::NothingIsStoredOrReadWithoutAnOpenFile()
{
    QVERIFY(!KXHost::InsertDownloadReport(KXHost::DownloadReport()));
    QCOMPARE(KXHost::Resources().size(), 0);
    QCOMPARE(KXHost::DownloadReports().size(), 0);
    QCOMPARE(m_pLog->Lines().filter(QStringLiteral("no resource database is open")).size(), 3);
    KXHost::CloseResourceDb();
}

void ResourceDbTest::ASecondOpenIsRefusedAndTheFirstGoesOn()
{
    QVERIFY(Open());
    QString strError;
    QVERIFY(!KXHost::OpenResourceDb(m_pFolder->filePath(QStringLiteral("second.db")), &strError));
    QVERIFY2(strError.contains(QLatin1String("open already")), qPrintable(strError));
    QVERIFY(Insert(Recording(QStringLiteral("/d/a.mp4"))));
    QCOMPARE(KXHost::Resources().size(), 1);
    QVERIFY(!QFile::exists(m_pFolder->filePath(QStringLiteral("second.db"))));
}

// The file is refused, its name and the reason are told, and not one byte of it changes.
void ResourceDbTest::RefusedAndKept(const QString& strReason)
{
    const QByteArray strBefore = Content(m_strFile);
    QString strError;
    QVERIFY(!Open(&strError));
    QVERIFY2(strError.contains(strReason), qPrintable(strError));
    QVERIFY2(strError.contains(m_strFile), qPrintable(strError));
    QVERIFY(LocalResourceDbInterface::GetInstance() == nullptr);
    QVERIFY(Content(m_strFile) == strBefore);
    QCOMPARE(m_pLog->Lines().filter(strReason).size(), 1);
}

void ResourceDbTest::AnUnusableFileIsRefusedWithItsReasonAndKept_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a text") << QByteArray("this is a letter, not a database\n").repeated(100);
    QTest::newRow("a short text") << QByteArray("hello");
    QTest::newRow("a bad head") << QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\xFF');
}

void ResourceDbTest::AnUnusableFileIsRefusedWithItsReasonAndKept()
{
    QFETCH(QByteArray, content);
    WriteFile(m_strFile, content);
    RefusedAndKept(QStringLiteral("not a database"));
}

void ResourceDbTest::ADamagedPageIsRefusedAndKept()
{
    QVERIFY(Open());
    for (int i = 0; i < 200; ++i)
        QVERIFY(Insert(Recording(QStringLiteral("/d/%1.mp4").arg(i))));
    KXHost::CloseResourceDb();
    QByteArray strContent = Content(m_strFile);
    QVERIFY(strContent.size() > 5 * 4096);
    strContent.replace(4 * 4096, 4096, QByteArray(4096, '\x5A'));
    WriteFile(m_strFile, strContent);
    RefusedAndKept(QStringLiteral("damaged"));
}

void ResourceDbTest::ANewerVersionIsRefusedAndKept()
{
    QVERIFY(Open());
    KXHost::CloseResourceDb();
    Sql(m_strFile, QStringLiteral("PRAGMA user_version = 99"));
    RefusedAndKept(QStringLiteral("version 99, the newest one known here is 1"));
}

void ResourceDbTest::ADatabaseOfAnotherProgramIsRefusedAndKept()
{
    Sql(m_strFile, QStringLiteral("CREATE TABLE songs (title TEXT)"));
    RefusedAndKept(QStringLiteral("no resource database"));
}

void ResourceDbTest::APlaceWhereNoFileCanBeMadeIsRefused()
{
    for (const QString& strPlace :
         {QString(), m_pFolder->path(), m_pFolder->filePath(QStringLiteral("none/resources.db"))}) {
        QString strError;
        QVERIFY(!KXHost::OpenResourceDb(strPlace, &strError));
        QVERIFY2(strError.contains(QLatin1String("no file can be made there")), qPrintable(strError));
    }
    QVERIFY(!QFile::exists(m_pFolder->filePath(QStringLiteral("none"))));
}

void ResourceDbTest::AnErrorTextIsNotAskedForByEveryone()
{
    QVERIFY(!KXHost::OpenResourceDb(QString(), nullptr));
    QCOMPARE(m_pLog->Lines().size(), 1);
}

KX_TEST(ResourceDbTest, QCoreApplication)
#include "ResourceDbTest.moc"
