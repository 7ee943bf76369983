#include "Host/Client/Platform.h"

#include <QtCore/QSocketNotifier>
#include <QtCore/QTextCodec>

#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace KXClient {

namespace {

constexpr int StopSignals[] = {SIGINT, SIGTERM, SIGHUP};

int g_stopPipe[2] = {-1, -1};

// Runs inside a signal: only operations that are safe there.
void WriteToPipe(int)
{
    const char cAny = 1;
    const ssize_t lWritten = ::write(g_stopPipe[1], &cAny, 1);
    static_cast<void>(lWritten); // a full pipe holds a wish already
}

// A signal that our parent had ignored for us (nohup) stays ignored, unless it is a direct wish to end.
bool KeepsIgnoring(int iSignal)
{
    struct sigaction current = {};
    return iSignal == SIGHUP && ::sigaction(iSignal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

void SetHandler(int iSignal, void (*pHandler)(int), unsigned uFlags)
{
    struct sigaction action = {};
    action.sa_handler = pHandler;
    action.sa_flags = static_cast<int>(uFlags);
    sigemptyset(&action.sa_mask);
    ::sigaction(iSignal, &action, nullptr);
}

} // namespace

void PreparePlatform()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    SetHandler(SIGPIPE, SIG_IGN, 0);
}

QStringList Arguments(int iCount, char** ppArguments)
{
    QStringList arguments;
    for (int iIndex = 1; iIndex < iCount; ++iIndex)
        arguments.append(QString::fromLocal8Bit(ppArguments[iIndex]));
    return arguments;
}

bool IsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1 && qgetenv("TERM") != "dumb";
}

int TerminalColumns()
{
    struct winsize size = {};
    const bool bKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return bKnown ? size.ws_col : 80;
}

StopSignal::StopSignal(QObject* pParent)
    : QObject(pParent)
{
    if (::pipe2(g_stopPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals keep their default action, which also ends the process
    auto* pNotifier = new QSocketNotifier(g_stopPipe[0], QSocketNotifier::Read, this);
    connect(pNotifier, &QSocketNotifier::activated, this, [this, pNotifier] {
        pNotifier->setEnabled(false);
        emit SignalStop();
    });
    for (int iSignal : StopSignals) {
        if (!KeepsIgnoring(iSignal))
            SetHandler(iSignal, WriteToPipe, SA_RESETHAND | SA_RESTART);
    }
}

StopSignal::~StopSignal()
{
    for (int iSignal : StopSignals) {
        if (!KeepsIgnoring(iSignal))
            SetHandler(iSignal, SIG_DFL, 0);
    }
    for (int& iEnd : g_stopPipe) {
        if (iEnd >= 0)
            ::close(iEnd);
        iEnd = -1;
    }
}

} // namespace KXClient
