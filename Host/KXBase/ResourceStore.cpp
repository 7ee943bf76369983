#include "Host/KXBase/ResourceStore.h"

#include "Host/KXBase/ResourceSchema.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {

// A null text would be a NULL in the table.
QVariant Text(const QString& strText)
{
    return strText.isNull() ? QVariant(QStringLiteral("")) : QVariant(strText);
}

QString OpenConnection(const QString& strConnection, const QString& strFile)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), strConnection);
    database.setDatabaseName(strFile);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    return database.open() ? ResourceSchema::Prepare(database) : database.lastError().text();
}

} // namespace

ResourceStore::ResourceStore()
    : m_pContext(new QObject)
    , m_strConnection(QStringLiteral("KXResourceStore"))
{
    m_pContext->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_pContext, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("ResourceStore"));
    m_thread.start();
}

ResourceStore::~ResourceStore()
{
    OnThread([this] {
        QSqlDatabase::removeDatabase(m_strConnection);
        return QString();
    });
    m_thread.quit();
    m_thread.wait();
}

QString ResourceStore::OnThread(const std::function<QString()>& work)
{
    QString strFault;
    QMetaObject::invokeMethod(
        m_pContext, [&work, &strFault] { strFault = work(); }, Qt::BlockingQueuedConnection);
    return strFault;
}

QString ResourceStore::Open(const QString& strFile)
{
    const QFileInfo file(strFile);
    if (strFile.isEmpty() || file.isDir() || !file.absoluteDir().exists())
        return QStringLiteral("no file can be made there");
    return OnThread([this, &strFile] { return OpenConnection(m_strConnection, strFile); });
}

QString ResourceStore::Insert(const QString& strSql, const QVariantList& listValues)
{
    return OnThread([this, &strSql, &listValues] {
        QSqlQuery query(QSqlDatabase::database(m_strConnection));
        if (!query.prepare(strSql))
            return query.lastError().text();
        for (const QVariant& value : listValues)
            query.addBindValue(value);
        return query.exec() ? QString() : query.lastError().text();
    });
}

QString ResourceStore::Read(const QString& strSql, const std::function<void(const QSqlQuery&)>& row)
{
    return OnThread([this, &strSql, &row] {
        QSqlQuery query(QSqlDatabase::database(m_strConnection));
        query.setForwardOnly(true);
        if (!query.exec(strSql))
            return query.lastError().text();
        while (query.next())
            row(query);
        return query.lastError().isValid() ? query.lastError().text() : QString();
    });
}

QString ResourceStore::InsertResource(const LocalResourceInfo& info)
{
    return Insert(QStringLiteral("INSERT INTO resources (file_path, register_time, begin_time, end_time, kind, title,"
                                 " thumb_path, favourite) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                  {Text(info.strFilePath), info.lRegisterTime, info.lBeginTime, info.lEndTime, info.iResourceKind,
                   Text(info.strTitle), Text(info.strThumbPath), info.iFavourite});
}

QString ResourceStore::InsertReport(const KXHost::DownloadReport& report)
{
    return Insert(QStringLiteral("INSERT INTO download_reports (device_id, channel_no, begin_time, end_time,"
                                 " source_kind, record_id, reported_time) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                  {Text(report.strDeviceId), report.iChannelNo, report.lBeginTime, report.lEndTime, report.iSourceKind,
                   Text(report.strRecordId), report.lReportedTime});
}

QString ResourceStore::ReadResources(QVector<LocalResourceInfo>& listResources)
{
    return Read(QStringLiteral("SELECT file_path, register_time, begin_time, end_time, kind, title, thumb_path,"
                               " favourite FROM resources ORDER BY id"),
                [&listResources](const QSqlQuery& row) {
                    LocalResourceInfo info;
                    info.strFilePath = row.value(0).toString();
                    info.lRegisterTime = row.value(1).toLongLong();
                    info.lBeginTime = row.value(2).toLongLong();
                    info.lEndTime = row.value(3).toLongLong();
                    info.iResourceKind = row.value(4).toInt();
                    info.strTitle = row.value(5).toString();
                    info.strThumbPath = row.value(6).toString();
                    info.iFavourite = row.value(7).toInt();
                    listResources.append(info);
                });
}

QString ResourceStore::ReadReports(QVector<KXHost::DownloadReport>& listReports)
{
    return Read(QStringLiteral("SELECT device_id, channel_no, begin_time, end_time, source_kind, record_id,"
                               " reported_time FROM download_reports ORDER BY id"),
                [&listReports](const QSqlQuery& row) {
                    KXHost::DownloadReport report;
                    report.strDeviceId = row.value(0).toString();
                    report.iChannelNo = row.value(1).toInt();
                    report.lBeginTime = row.value(2).toLongLong();
                    report.lEndTime = row.value(3).toLongLong();
                    report.iSourceKind = row.value(4).toInt();
                    report.strRecordId = row.value(5).toString();
                    report.lReportedTime = row.value(6).toLongLong();
                    listReports.append(report);
                });
}
