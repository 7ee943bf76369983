#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/Platform.h"
#include "Host/ktl/LogSettings.h"
#include "ktl/TPrintLog.h"

#include <QtWidgets/QApplication>

#include <cstdlib>
#include <memory>

using namespace KXClient;

namespace {

enum class Display {
    None,
    Hidden, // the plug-in has widgets, also when nobody sees them
    Shown,
};

struct SubCommand
{
    const char* pszName;
    const char* pszPurpose;
    Display display;
    int (*pRun)(const QStringList& arguments);
};

constexpr SubCommand SubCommands[] = {
    {"download", "download recordings without a window and check what arrived", Display::Hidden, RunDownload},
    {"gui", "open the window", Display::Shown, RunGui},
    {"screenshot", "write a picture of the window in the middle of downloads", Display::Shown, RunScreenshot},
    {"serve", "run the embedded site alone", Display::None, RunServe},
};

const SubCommand* Find(const QString& strName)
{
    for (const SubCommand& command : SubCommands) {
        if (strName == QLatin1String(command.pszName))
            return &command;
    }
    return nullptr;
}

// While the application is made: Qt's last words about the display, which it gives up with the whole process.
bool g_bConnecting = false;
QString g_strDisplayProblem;

// Qt aborts where it finds no display; a program that cannot show a window says so and ends.
[[noreturn]] void EndWithoutDisplay(const QString& strMessage)
{
    const QString strReason =
        g_strDisplayProblem.isEmpty() ? strMessage.section(QLatin1Char('\n'), 0, 0) : g_strDisplayProblem;
    PrintError(QStringLiteral("no window can be shown: ") + strReason);
    std::_Exit(NoDisplay);
}

// What Qt and the plug-in say to Qt's own output goes to the log: standard error is for failures.
void LogQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& strMessage)
{
    if (g_bConnecting && type == QtFatalMsg)
        EndWithoutDisplay(strMessage);
    if (g_bConnecting && g_strDisplayProblem.isEmpty())
        g_strDisplayProblem = strMessage;
    const int iLevel = type == QtDebugMsg || type == QtInfoMsg ? 2 : type == QtWarningMsg ? 4 : FailureLevel;
    ktl::TPrintLog::instance()->Log(context.file ? context.file : "Qt", context.line,
                                    context.function ? context.function : "", "Qt", iLevel, "%s",
                                    strMessage.toUtf8().constData());
}

std::unique_ptr<QCoreApplication> MakeApplication(Display display, int& iCount, char** ppArguments)
{
    if (display == Display::None)
        return std::make_unique<QCoreApplication>(iCount, ppArguments);
    if (display == Display::Hidden)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    g_bConnecting = true;
    auto pApplication = std::make_unique<QApplication>(iCount, ppArguments);
    g_bConnecting = false;
    return pApplication;
}

void StartLog()
{
    KXHost::LogSettings settings;
    settings.iConsoleLevel = FailureLevel;
    KXHost::SetLogSettings(settings);
    qInstallMessageHandler(LogQtMessage);
}

// Help can be read anywhere.
Display DisplayOf(const SubCommand* pCommand, const QStringList& arguments)
{
    const bool bHelp = arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h"));
    return !pCommand || bHelp ? Display::None : pCommand->display;
}

QString Usage()
{
    QString strUsage = QStringLiteral("Usage: kxclient COMMAND [options]\n\nA client of the recording download "
                                      "plug-in.\n\nCommands:\n");
    for (const SubCommand& command : SubCommands)
        strUsage += QStringLiteral("  %1  %2\n")
                        .arg(QLatin1String(command.pszName), -10)
                        .arg(QLatin1String(command.pszPurpose));
    return strUsage + QStringLiteral("\n\"kxclient COMMAND --help\" lists the options of a command.\n");
}

int RunWithoutCommand(const QString& strName)
{
    if (strName == QLatin1String("--help") || strName == QLatin1String("-h")) {
        PrintRaw(Usage());
        return AllWhole;
    }
    PrintError(strName.isEmpty() ? QStringLiteral("no command is given (see kxclient --help)")
                                 : QStringLiteral("unknown command '%1' (see kxclient --help)").arg(strName));
    return InputError;
}

} // namespace

int main(int argc, char** argv)
{
    PreparePlatform();
    StartLog();
    const QStringList arguments = Arguments(argc, argv);
    const SubCommand* pCommand = Find(arguments.value(0));
    int iProgramOnly = 1;
    const auto pApplication = MakeApplication(DisplayOf(pCommand, arguments), iProgramOnly, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kxclient"));
    return pCommand ? pCommand->pRun(arguments.mid(1)) : RunWithoutCommand(arguments.value(0));
}
