#include "Host/Client/ClientSetup.h"
#include "Host/Client/CommandLine.h"
#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/Platform.h"
#include "Host/Client/PluginHost.h"
#include "Host/Client/Window/MainWindow.h"
#include "Host/Client/Window/WindowStyle.h"

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QApplication>

namespace KXClient {

namespace {

QString Purpose()
{
    return QStringLiteral("Opens the window: recordings to choose from, and the plug-in's panel. The embedded site "
                          "stands in for whatever --config and --records do not give.\n\nExit status: 0 closed by the "
                          "user, 2 wrong input, 3 plug-in not loadable, 5 no display, 130 interrupted.");
}

QString StateFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

QString FirstFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::MoviesLocation) + QLatin1String("/Recordings");
}

// Until the window is closed or the process is to end. The window goes before the plug-in: it gives the panel back.
ExitStatus ShowWindow(DownloadInput& input, PluginHost& plugin, WindowSettings& settings)
{
    ExitStatus status = AllWhole;
    MainWindow window(input, plugin, settings);
    StopSignal stop;
    QObject::connect(&stop, &StopSignal::SignalStop, &window, [&status] {
        status = Interrupted;
        QApplication::quit();
    });
    window.show();
    PrintLine(QStringLiteral("the window is open, recordings go to %1").arg(Printable(settings.strFolder)));
    QApplication::exec();
    return status;
}

ExitStatus Run(const ClientOptions& options, WindowSettings& settings)
{
    DownloadInput input;
    if (!SetUpClient(options, input))
        return InputError;
    ApplyWindowStyle(settings.bDark);
    QString strError;
    PluginHost plugin;
    if (plugin.Open(options.strPluginFile, settings.strLanguage, strError))
        return ShowWindow(input, plugin, settings);
    PrintError(strError);
    return PluginError;
}

} // namespace

int RunGui(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("gui"), Purpose());
    line.Add(QStringLiteral("out"), QStringLiteral("DIR"),
             QStringLiteral("Download folder; without it the one that was chosen last."));
    line.Add(QStringLiteral("settings"), QStringLiteral("FILE"),
             QStringLiteral("What the window remembers; without it %1.").arg(WindowSettings::DefaultFile()));
    AddClientOptions(line, StateFolder());
    if (const std::optional<int> iStatus = line.Parse(arguments))
        return *iStatus;
    ClientOptions options = ReadClientOptions(line, QString(), StateFolder());
    QDir().mkpath(StateFolder());
    if (!StartLogFile(options.strLogFile))
        return InputError;
    const bool bOwnFile = line.IsSet(QStringLiteral("settings"));
    const QString strFile = bOwnFile ? line.Value(QStringLiteral("settings")) : WindowSettings::DefaultFile();
    WindowSettings settings = WindowSettings::Load(strFile);
    if (line.IsSet(QStringLiteral("out")))
        settings.UseFolder(QDir::current().absoluteFilePath(line.Value(QStringLiteral("out"))));
    else if (settings.strFolder.isEmpty())
        settings.UseFolder(FirstFolder());
    options.input.strFolder = settings.strFolder;
    const ExitStatus status = Run(options, settings);
    TearDownClient();
    if (status == AllWhole || status == Interrupted)
        settings.Save(strFile);
    return status;
}

} // namespace KXClient
