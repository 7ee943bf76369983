#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/DownloadInput.h"
#include "Host/Client/DownloadOptions.h"
#include "Host/Client/DownloadRun.h"
#include "Host/Client/PluginHost.h"
#include "Host/Client/RegistrationCheck.h"
#include "Host/KXBase/ResourceDb.h"
#include "Host/ktl/LogSettings.h"

#include <QtCore/QSaveFile>

#include <algorithm>

using KXDownLoadList::DownloadCloudRecordInfo;
using KXDownLoadList::DownloadLanModuleRecordInfo;
using KXDownLoadList::DownloadRecordInfo;

namespace KXClient {

namespace {

QStringList SecretsOf(const DownloadRecordInfo& record, const KXHost::Settings& settings)
{
    QStringList secrets{record.strPassword};
    if (const auto* pCloud = dynamic_cast<const DownloadCloudRecordInfo*>(&record))
        secrets << pCloud->strCloudText2 << pCloud->strCloudText4;
    else if (const auto* pLan = dynamic_cast<const DownloadLanModuleRecordInfo*>(&record))
        secrets << pLan->strLanText3;
    // Otherwise it is an address.
    if (settings.sources[static_cast<size_t>(record.iRecordType)].strUrl.contains(QLatin1String("{token}")))
        secrets << record.strText3;
    return secrets;
}

// The log hides passwords and keys whatever a line calls them.
void HideSecrets(const DownloadInput& input)
{
    for (const QString& strPassword : input.Settings().devicePasswords)
        KXHost::AddSecret(strPassword.toStdString());
    for (const RequestedRecord& request : input.Records()) {
        for (const QString& strSecret : SecretsOf(*request.pRecord, input.Settings()))
            KXHost::AddSecret(strSecret.toStdString());
    }
}

bool StartLogFile(const QString& strFile)
{
    KXHost::LogSettings settings;
    settings.strFilePath = strFile;
    settings.iConsoleLevel = FailureLevel;
    if (KXHost::SetLogSettings(settings))
        return true;
    PrintError(QStringLiteral("cannot write the log file %1").arg(strFile));
    return false;
}

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
    if (!plugin.Open(options.strPluginFile, QStringLiteral("en"), strError)) {
        PrintError(strError);
        return PluginError;
    }
    const RegistrationCheck registration;
    DownloadRun run(input.Records(), options.input.strFolder, options.iTimeoutSeconds);
    PrintLine(QStringLiteral("downloading %1 recordings to %2")
                  .arg(input.Records().size())
                  .arg(Printable(options.input.strFolder)));
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
            PrintError(QStringLiteral("%1 did not end as expected: %2").arg(strRecord, outcome.StateText()));
    }
}

ExitStatus Judge(const QVector<Outcome>& outcomes)
{
    const auto isAsExpected = [](const Outcome& outcome) { return outcome.IsAsExpected(); };
    return std::all_of(outcomes.begin(), outcomes.end(), isAsExpected) ? AllWhole : SomeFailed;
}

int Run(const DownloadOptions& options)
{
    QString strError;
    DownloadInput input;
    QSaveFile report;
    if (!OpenReport(options.strJsonFile, report) || !StartLogFile(options.strLogFile))
        return InputError;
    if (!input.Read(options.input, strError) || !KXHost::OpenResourceDb(options.strDatabaseFile, &strError)) {
        PrintError(strError);
        return InputError;
    }
    HideSecrets(input);
    KXHost::Configure(input.Settings());

    QVector<Outcome> outcomes;
    const ExitStatus status = Download(options, input, outcomes);
    if (status == PluginError)
        return status;
    TellFailures(outcomes, status);
    PrintReport(outcomes, options.input.strFolder);
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
