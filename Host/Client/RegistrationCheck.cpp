#include "Host/Client/RegistrationCheck.h"

#include "Host/KXBase/ResourceDb.h"

#include <QtCore/QPair>
#include <QtCore/QSet>

namespace KXClient {

namespace {

// Source kind of a download report; index: record type. The IOT LAN counts as a device.
constexpr int ReportedKind[] = {0, 1, 1, 2};

} // namespace

RegistrationCheck::RegistrationCheck()
    : m_iResources(KXHost::Resources().size())
    , m_iReports(KXHost::DownloadReports().size())
{}

void RegistrationCheck::Apply(QVector<Outcome>& outcomes) const
{
    QSet<QString> paths;
    for (const LocalResourceInfo& resource : KXHost::Resources().mid(m_iResources))
        paths.insert(resource.strFilePath);
    QSet<QPair<int, QString>> reports;
    for (const KXHost::DownloadReport& report : KXHost::DownloadReports().mid(m_iReports))
        reports.insert({report.iSourceKind, report.strRecordId});

    for (Outcome& outcome : outcomes) {
        if (!outcome.IsWhole())
            continue;
        const auto& record = *outcome.task.request.pRecord;
        if (!paths.contains(outcome.task.strPath))
            outcome.strProblem = QStringLiteral("no row in the resource database");
        else if (!reports.contains({ReportedKind[record.iRecordType], record.strRecordId}))
            outcome.strProblem = QStringLiteral("no download report");
    }
}

} // namespace KXClient
