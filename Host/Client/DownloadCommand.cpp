#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/DownloadInput.h"
#include "Host/Client/DownloadOptions.h"
#include "Host/Client/DownloadRun.h"
#include "Host/Client/PluginHost.h"
#include "Host/Client/RegistrationCheck.h"

#include <QtCore/QSaveFile>

#include <algorithm>

namespace KXClient {

namespace {

bool OpenReport(const QString& strFile, QSaveFile& report)
{
    report.setFileName(strFile);
    if (strFile.isEmpty() || report.open(QIODevice::WriteOnly))
        return true;
    PrintError(QStringLiteral("%1: %2").arg(strFile, report.errorString()));
    return false;
}

bool WriteReport(const QVector<Outcome>& outcomes, QSaveFile& report)
{
    if (!report.isOpen())
        return true;
    report.write(QByteArray::fromStdString(ReportJson(outcomes).dump(2)) + '\n');
    if (report.commit())
        return true;
    PrintError(QStringLiteral("%1: %2").arg(report.fileName(), report.errorString()));
    return false;
}

// Loads the plug-in, downloads, and takes the plug-in through its end before the result is told.
ExitStatus Download(const DownloadOptions& options, const DownloadInput& input, QVector<Outcome>& outcomes)
{
    QString strError;
    PluginHost plugin;
    if (!plugin.Open(options.client.strPluginFile, QStringLiteral("en"), strError)) {
        PrintError(strError);
        return PluginError;
    }
    const RegistrationCheck registration;
    DownloadRun run(input.Records(), options.client.input.strFolder, options.iTimeoutSeconds);
    PrintLine(QStringLiteral("downloading %1 recordings to %2")
                  .arg(input.Records().size())
                  .arg(Printable(options.client.input.strFolder)));
    PrintExpectations(input.Records());
    const ExitStatus status = run.Execute();
    plugin.Close();
    outcomes = run.Outcomes();
    registration.Apply(outcomes);
    return status;
}

// What went wrong goes to standard error, too, where a script looks for it.
void TellFailures(const QVector<Outcome>& outcomes, ExitStatus status)
{
    for (const Outcome& outcome : outcomes) {
        const QString strRecord = outcome.SourceText() + QLatin1Char(' ') + outcome.task.request.pRecord->strRecordId;
        if (status == TimedOut && outcome.task.state == TaskState::Outstanding)
            PrintError(QStringLiteral("time out: %1 is not finished").arg(strRecord));
        else if (status == AllWhole && !outcome.IsAsExpected())
            PrintError(QStringLiteral("%1 did not end as expected: %2").arg(strRecord, outcome.FullStateText()));
    }
}

ExitStatus Judge(const QVector<Outcome>& outcomes)
{
    const auto isAsExpected = [](const Outcome& outcome) { return outcome.IsAsExpected(); };
    return std::all_of(outcomes.begin(), outcomes.end(), isAsExpected) ? AllWhole : SomeFailed;
}

int Run(const DownloadOptions& options)
{
    DownloadInput input;
    QSaveFile report;
    if (!OpenReport(options.strJsonFile, report) || !StartLogFile(options.client.strLogFile) ||
        !SetUpClient(options.client, input))
        return InputError;

    QVector<Outcome> outcomes;
    const ExitStatus status = Download(options, input, outcomes);
    if (status == PluginError)
        return status;
    TellFailures(outcomes, status);
    PrintReport(outcomes, options.client.input.strFolder);
    if (!WriteReport(outcomes, report))
        return InputError;
    return status == AllWhole ? Judge(outcomes) : status;
}

} // namespace

int RunDownload(const QStringList& arguments)
{
    const std::variant<DownloadOptions, int> read = ReadDownloadOptions(arguments);
    const auto* pOptions = std::get_if<DownloadOptions>(&read);
    return pOptions ? Run(*pOptions) : std::get<int>(read);
}

} // namespace KXClient
