#include "Host/Client/DownloadOptions.h"

#include "Host/Client/CommandLine.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

namespace KXClient {

namespace {

QString Purpose()
{
    return QStringLiteral("Downloads recordings through the plug-in, without a window, and checks every file. The "
                          "embedded site stands in for whatever --config and --records do not give.\n\nExit status: 0 "
                          "all recordings whole, 1 some failed or refused, 2 wrong input, 3 plug-in not loadable, 4 "
                          "time out, 130 interrupted.");
}

void AddOptions(CommandLine& line)
{
    const auto add = [&line](const char* pszName, const char* pszValue, const char* pszPurpose) {
        line.Add(QLatin1String(pszName), QLatin1String(pszValue), QLatin1String(pszPurpose));
    };
    add("out", "DIR", "Download folder; without it a new one in the user's download folder.");
    add("json", "FILE", "Write the result to this file, too.");
    add("timeout", "SECONDS", "Give up after so long; without it when nothing arrives for 600 seconds.");
    AddClientOptions(line, QStringLiteral("DIR/.kxclient"));
}

// Makes the download folder and a place in it for what the client keeps; an empty text, the reason printed, on failure.
QString MadeFolder(const QString& strAsked)
{
    QString strFolder = strAsked;
    if (strFolder.isEmpty())
        strFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1String("/kxclient-") +
                    QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    strFolder = QDir::cleanPath(QDir::current().absoluteFilePath(strFolder));
    if (QDir().mkpath(strFolder + QLatin1String("/.kxclient")))
        return strFolder;
    PrintError(QStringLiteral("cannot make the download folder %1").arg(strFolder));
    return QString();
}

std::optional<DownloadOptions> OptionsOf(const CommandLine& line)
{
    DownloadOptions options;
    if (line.IsSet(QStringLiteral("timeout"))) {
        options.iTimeoutSeconds = line.Number(QStringLiteral("timeout"), 1, 1000000);
        if (!options.iTimeoutSeconds)
            return std::nullopt;
    }
    const QString strFolder = MadeFolder(line.Value(QStringLiteral("out")));
    if (strFolder.isEmpty())
        return std::nullopt;
    options.client = ReadClientOptions(line, strFolder, strFolder + QLatin1String("/.kxclient"));
    options.strJsonFile = line.Value(QStringLiteral("json"));
    return options;
}

} // namespace

std::variant<DownloadOptions, int> ReadDownloadOptions(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("download"), Purpose());
    AddOptions(line);
    if (const std::optional<int> iStatus = line.Parse(arguments))
        return *iStatus;
    const std::optional<DownloadOptions> options = OptionsOf(line);
    if (!options)
        return InputError;
    return *options;
}

} // namespace KXClient
