#pragma once

#include "KXBase/LocalResourceDbInterface.h"

#include <QtCore/QString>
#include <QtCore/QVector>

// The host's side of the local resource database: a SQLite file that is opened once and closed at the end.
//
// Thread: any; LocalResourceDbInterface::GetInstance gives null while no file is open.
namespace KXHost {

// One finished download as it was reported to the cloud. Times are Unix seconds.
struct DownloadReport
{
    QString strDeviceId;
    int iChannelNo = 0;
    qint64 lBeginTime = 0;
    qint64 lEndTime = 0;
    int iSourceKind = 0; // 0 cloud, 1 device or IOT LAN, 2 LAN module
    QString strRecordId;
    qint64 lReportedTime = 0;
};

// Opens the file, or makes it when there is none; its folder must exist. False with the reason in `*pError` (may be
// null) when one is open already, or the file is damaged, no resource database, read-only, or written by a newer
// version. Such a file stays as it is.
KX_HOST_EXPORT bool OpenResourceDb(const QString& strFile, QString* pError);
// Closes the file; harmless when none is open. The end of the application object does the same.
KX_HOST_EXPORT void CloseResourceDb();

// False when it could not be stored; the log tells why.
KX_HOST_EXPORT bool InsertDownloadReport(const DownloadReport& report);

// In the order of their insertion; empty, with a log line, when they cannot be read.
KX_HOST_EXPORT QVector<LocalResourceInfo> Resources();
KX_HOST_EXPORT QVector<DownloadReport> DownloadReports();

} // namespace KXHost
