#include "Host/Client/ClientSetup.h"
#include "Host/Client/CommandLine.h"
#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/PluginHost.h"
#include "Host/Client/Window/Languages.h"
#include "Host/Client/Window/MainWindow.h"
#include "Host/Client/Window/Scene.h"
#include "Host/Client/Window/WindowStyle.h"
#include "Host/ktl/LogSettings.h"

#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

namespace KXClient {

namespace {

constexpr int DefaultTimeoutSeconds = 60;
constexpr int NoConsole = 7;

QString Purpose()
{
    return QStringLiteral("Opens the window, downloads from the embedded site until rows that wait, download, are "
                          "paused and have failed are in view together, and writes a picture of that. What was "
                          "downloaded is removed.\n\nExit status: 0 written, 2 wrong input, 3 plug-in not loadable, 4 "
                          "time out, 5 no display.");
}

struct Options
{
    QString strPicture;
    QString strPluginFile;
    QString strLanguage;
    bool bDark = false;
    int iTimeoutSeconds = DefaultTimeoutSeconds;
};

bool Write(const QImage& picture, QSaveFile& file)
{
    if (picture.save(&file, "PNG") && file.commit())
        return true;
    PrintError(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    return false;
}

ExitStatus Play(const Options& options, DownloadInput& input, PluginHost& plugin, const QString& strFolder,
                QSaveFile& file)
{
    WindowSettings settings;
    settings.UseFolder(strFolder);
    settings.strLanguage = options.strLanguage;
    MainWindow window(input, plugin, settings);
    window.show();
    Scene scene(window, *plugin.Panel());
    const std::optional<QImage> picture = scene.Play(options.iTimeoutSeconds);
    if (!picture) {
        PrintError(QStringLiteral("time out: ") + scene.Missing().join(QStringLiteral("; ")));
        return TimedOut;
    }
    if (!Write(*picture, file))
        return InputError;
    PrintLine(QStringLiteral("%1: %2 x %3, %4")
                  .arg(Printable(options.strPicture), QString::number(picture->width()),
                       QString::number(picture->height()), scene.Seen()));
    return AllWhole;
}

ExitStatus Run(const Options& options, const QTemporaryDir& folder)
{
    const QString strFolder = folder.filePath(QStringLiteral("Recordings"));
    KXHost::LogSettings quiet; // a download fails on purpose
    quiet.iConsoleLevel = NoConsole;
    KXHost::SetLogSettings(quiet);
    ClientOptions client;
    client.input.strFolder = strFolder;
    client.input.faults = Scene::Faults();
    client.strDatabaseFile = folder.filePath(QStringLiteral("resources.db"));
    DownloadInput input;
    QSaveFile file(options.strPicture);
    if (!file.open(QIODevice::WriteOnly)) {
        PrintError(QStringLiteral("%1: %2").arg(options.strPicture, file.errorString()));
        return InputError;
    }
    if (!SetUpClient(client, input))
        return InputError;
    ApplyWindowStyle(options.bDark);
    QString strError;
    PluginHost plugin;
    if (plugin.Open(options.strPluginFile, options.strLanguage, strError))
        return Play(options, input, plugin, strFolder, file);
    PrintError(strError);
    return PluginError;
}

void AddOptions(CommandLine& line)
{
    const auto add = [&line](const char* pszName, const char* pszValue, const char* pszPurpose) {
        line.Add(QLatin1String(pszName), QLatin1String(pszValue), QLatin1String(pszPurpose));
    };
    add("to", "FILE", "The picture, in PNG; must be given.");
    add("plugin", "FILE", "The plug-in library; without it the one beside this program.");
    add("language", "CODE", "Language of the plug-in; without it en.");
    add("timeout", "SECONDS", "Give up after so long; without it after 60.");
    line.AddFlag(QStringLiteral("dark"), QStringLiteral("In dark colours."));
}

// Nothing when a value is missing or wrong, which is said then.
std::optional<Options> ReadOptions(const CommandLine& line)
{
    const auto valueOr = [&line](const QString& strName, const QString& strDefault) {
        return line.IsSet(strName) ? line.Value(strName) : strDefault;
    };
    Options options;
    options.strPicture = line.Value(QStringLiteral("to"));
    options.strPluginFile = valueOr(QStringLiteral("plugin"), PluginHost::DefaultFile());
    options.strLanguage = valueOr(QStringLiteral("language"), QStringLiteral("en"));
    options.bDark = line.IsSet(QStringLiteral("dark"));
    if (options.strPicture.isEmpty() || !IsLanguage(options.strLanguage)) {
        PrintError(options.strPicture.isEmpty()
                       ? QStringLiteral("screenshot: option '--to' is missing (see kxclient screenshot --help)")
                       : QStringLiteral("screenshot: there is no language '%1'").arg(options.strLanguage));
        return std::nullopt;
    }
    if (line.IsSet(QStringLiteral("timeout"))) {
        const std::optional<int> iSeconds = line.Number(QStringLiteral("timeout"), 0, 3600);
        if (!iSeconds)
            return std::nullopt;
        options.iTimeoutSeconds = *iSeconds;
    }
    return options;
}

} // namespace

int RunScreenshot(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("screenshot"), Purpose());
    AddOptions(line);
    if (const std::optional<int> iStatus = line.Parse(arguments))
        return *iStatus;
    const std::optional<Options> options = ReadOptions(line);
    if (!options)
        return InputError;
    const QTemporaryDir folder;
    const ExitStatus status = Run(*options, folder);
    TearDownClient();
    return status;
}

} // namespace KXClient
