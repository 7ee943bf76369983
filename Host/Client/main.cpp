#include "Host/Client/Commands.h"
#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/Platform.h"
#include "Host/ktl/LogSettings.h"
#include "ktl/TPrintLog.h"

#include <QtWidgets/QApplication>

#include <memory>

using namespace KXClient;

namespace {

struct SubCommand
{
    const char* pszName;
    const char* pszPurpose;
    bool bWidgets; // the plug-in's are widgets, also when nobody sees them
    int (*pRun)(const QStringList& arguments);
};

constexpr SubCommand SubCommands[] = {
    {"download", "download recordings without a window and check what arrived", true, RunDownload},
    {"serve", "run the embedded site alone", false, RunServe},
};

const SubCommand* Find(const QString& strName)
{
    for (const SubCommand& command : SubCommands) {
        if (strName == QLatin1String(command.pszName))
            return &command;
    }
    return nullptr;
}

std::unique_ptr<QCoreApplication> MakeApplication(bool bWidgets, int& iCount, char** ppArguments)
{
    if (!bWidgets)
        return std::make_unique<QCoreApplication>(iCount, ppArguments);
    qputenv("QT_QPA_PLATFORM", "offscreen"); // no window is shown
    return std::make_unique<QApplication>(iCount, ppArguments);
}

// What Qt and the plug-in say to Qt's own output goes to the log: standard error is for failures.
void LogQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& strMessage)
{
    const int iLevel = type == QtDebugMsg || type == QtInfoMsg ? 2 : type == QtWarningMsg ? 4 : FailureLevel;
    ktl::TPrintLog::instance()->Log(context.file ? context.file : "Qt", context.line,
                                    context.function ? context.function : "", "Qt", iLevel, "%s",
                                    strMessage.toUtf8().constData());
}

void StartLog()
{
    KXHost::LogSettings settings;
    settings.iConsoleLevel = FailureLevel;
    KXHost::SetLogSettings(settings);
    qInstallMessageHandler(LogQtMessage);
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
    const auto pApplication = MakeApplication(pCommand && pCommand->bWidgets, iProgramOnly, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kxclient"));
    return pCommand ? pCommand->pRun(arguments.mid(1)) : RunWithoutCommand(arguments.value(0));
}
