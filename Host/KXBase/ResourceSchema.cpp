#include "Host/KXBase/ResourceSchema.h"

#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {

// Step i leads from version i to version i + 1. A released step is never changed: a later version adds one.
const QVector<QStringList>& Steps()
{
    static const QVector<QStringList> s_listSteps{
        {QStringLiteral("CREATE TABLE resources (id INTEGER PRIMARY KEY, file_path TEXT NOT NULL,"
                        " register_time INTEGER NOT NULL, begin_time INTEGER NOT NULL, end_time INTEGER NOT NULL,"
                        " kind INTEGER NOT NULL, title TEXT NOT NULL, thumb_path TEXT NOT NULL,"
                        " favourite INTEGER NOT NULL)"),
         QStringLiteral("CREATE TABLE download_reports (id INTEGER PRIMARY KEY, device_id TEXT NOT NULL,"
                        " channel_no INTEGER NOT NULL, begin_time INTEGER NOT NULL, end_time INTEGER NOT NULL,"
                        " source_kind INTEGER NOT NULL, record_id TEXT NOT NULL, reported_time INTEGER NOT NULL)")},
    };
    return s_listSteps;
}

// The first value that a statement gives; `strFault` is set when it fails.
QVariant Ask(const QSqlDatabase& database, const QString& strSql, QString& strFault)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(strSql)) {
        strFault = query.lastError().text();
        return QVariant();
    }
    return query.next() ? query.value(0) : QVariant();
}

QString CheckContent(const QSqlDatabase& database, int& iVersion)
{
    QString strFault;
    const QString strCheck = Ask(database, QStringLiteral("PRAGMA quick_check(1)"), strFault).toString();
    if (strFault.isEmpty() && strCheck != QLatin1String("ok"))
        return QStringLiteral("the file is damaged: %1").arg(strCheck);
    iVersion = Ask(database, QStringLiteral("PRAGMA user_version"), strFault).toInt();
    const int iTables = Ask(database, QStringLiteral("SELECT count(*) FROM sqlite_master"), strFault).toInt();
    if (!strFault.isEmpty())
        return strFault;
    if (iVersion < 0 || (iVersion == 0 && iTables > 0))
        return QStringLiteral("the file is no resource database");
    if (iVersion > Steps().size())
        return QStringLiteral("the file has version %1, the newest one known here is %2")
            .arg(iVersion)
            .arg(Steps().size());
    return QString();
}

QString TakeSteps(const QSqlDatabase& database, int iVersion)
{
    QString strFault;
    for (; iVersion < Steps().size() && strFault.isEmpty(); ++iVersion) {
        QStringList listStatements = Steps().at(iVersion);
        listStatements << QStringLiteral("PRAGMA user_version = %1").arg(iVersion + 1);
        for (const QString& strSql : qAsConst(listStatements)) {
            if (strFault.isEmpty())
                Ask(database, strSql, strFault);
        }
    }
    return strFault;
}

} // namespace

QString ResourceSchema::Prepare(const QSqlDatabase& database)
{
    // The write lock is taken first: two clients that start together must not both make the tables, and a file that
    // cannot be written is found out now.
    QString strFault;
    int iVersion = 0;
    Ask(database, QStringLiteral("BEGIN IMMEDIATE"), strFault);
    if (!strFault.isEmpty())
        return strFault;
    strFault = CheckContent(database, iVersion);
    if (strFault.isEmpty())
        strFault = TakeSteps(database, iVersion);
    const bool bGood = strFault.isEmpty();
    Ask(database, bGood ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK"), strFault);
    if (!strFault.isEmpty())
        return strFault;
    // Readers such as the command line shell do not stop the client; a killed client loses at most the last row.
    Ask(database, QStringLiteral("PRAGMA journal_mode = WAL"), strFault);
    Ask(database, QStringLiteral("PRAGMA synchronous = NORMAL"), strFault);
    return strFault;
}
