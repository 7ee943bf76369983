#include "Host/Client/ClientSetup.h"

#include "Host/Client/CommandLine.h"
#include "Host/Client/Console.h"
#include "Host/Client/PluginHost.h"
#include "Host/KXBase/ResourceDb.h"
#include "Host/ktl/LogSettings.h"

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

} // namespace

void AddClientOptions(CommandLine& line, const QString& strStateFolder)
{
    const auto add = [&line](const char* pszName, const QString& strPurpose) {
        line.Add(QLatin1String(pszName), QStringLiteral("FILE"), strPurpose);
    };
    add("config", QStringLiteral("JSON object: where each source is, and the device passwords."));
    add("records", QStringLiteral("JSON array of the records to download, keyed by the record's field names."));
    add("plugin", QStringLiteral("The plug-in library; without it the one beside this program."));
    add("log", QStringLiteral("Log file; without it %1/kxclient.log.").arg(strStateFolder));
    add("db", QStringLiteral("Resource database; without it %1/resources.db.").arg(strStateFolder));
    line.Add(QStringLiteral("fault"), QStringLiteral("NAME[=VALUE]"),
             QStringLiteral("Let the embedded site misbehave (see kxclient serve --help); may be given several times."),
             true);
    line.AddFlag(QStringLiteral("difficult"),
                 QStringLiteral("Let the embedded site offer the recordings that need recovery or must fail instead."));
}

ClientOptions ReadClientOptions(const CommandLine& line, const QString& strFolder, const QString& strStateFolder)
{
    const auto valueOr = [&line](const QString& strName, const QString& strDefault) {
        return line.IsSet(strName) ? line.Value(strName) : strDefault;
    };
    ClientOptions options;
    options.input.strFolder = strFolder;
    options.input.strConfigFile = line.Value(QStringLiteral("config"));
    options.input.strRecordsFile = line.Value(QStringLiteral("records"));
    options.input.faults = line.Values(QStringLiteral("fault"));
    options.input.bDifficultCases = line.IsSet(QStringLiteral("difficult"));
    options.strPluginFile = valueOr(QStringLiteral("plugin"), PluginHost::DefaultFile());
    options.strLogFile = valueOr(QStringLiteral("log"), strStateFolder + QLatin1String("/kxclient.log"));
    options.strDatabaseFile = valueOr(QStringLiteral("db"), strStateFolder + QLatin1String("/resources.db"));
    return options;
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

bool SetUpClient(const ClientOptions& options, DownloadInput& input)
{
    QString strError;
    if (!input.Read(options.input, strError) || !KXHost::OpenResourceDb(options.strDatabaseFile, &strError)) {
        PrintError(strError);
        return false;
    }
    HideSecrets(input);
    KXHost::Configure(input.Settings());
    return true;
}

void TearDownClient()
{
    KXHost::CloseResourceDb();
}

} // namespace KXClient
