#pragma once

#include "Host/KXBase/ResourceDb.h"

#include <QtCore/QThread>
#include <QtCore/QVariantList>

#include <functional>

class QSqlQuery;

// The open database file. A QSqlDatabase serves one thread only, so the file has a thread of its own, and every call is
// made there while the caller waits.
//
// Thread: any, one call at a time.
class ResourceStore
{
public:
    ResourceStore();
    ~ResourceStore();

    // Returns the reason why the file cannot be used.
    QString Open(const QString& strFile);
    // Each returns the reason when it failed.
    QString InsertResource(const LocalResourceInfo& info);
    QString InsertReport(const KXHost::DownloadReport& report);
    QString ReadResources(QVector<LocalResourceInfo>& listResources);
    QString ReadReports(QVector<KXHost::DownloadReport>& listReports);

private:
    QString OnThread(const std::function<QString()>& work);
    QString Insert(const QString& strSql, const QVariantList& listValues);
    QString Read(const QString& strSql, const std::function<void(const QSqlQuery&)>& row);

    QThread m_thread;
    QObject* m_pContext; // lives on m_thread
    const QString m_strConnection;
};
