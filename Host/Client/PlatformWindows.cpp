#include "Host/Client/Platform.h"

#include <QtCore/QMetaObject>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <windows.h>

#include <shellapi.h>

namespace KXClient {

namespace {

QMutex g_mutex; // guards the pointer below
StopSignal* g_pStopSignal = nullptr;

// Runs on a thread that the system makes for it.
BOOL WINAPI OnConsoleEvent(DWORD)
{
    QMutexLocker lock(&g_mutex);
    if (!g_pStopSignal)
        return FALSE;
    QMetaObject::invokeMethod(g_pStopSignal, "SignalStop", Qt::QueuedConnection);
    g_pStopSignal = nullptr;
    return TRUE;
}

HANDLE Output()
{
    return ::GetStdHandle(STD_OUTPUT_HANDLE);
}

} // namespace

void PreparePlatform()
{
    ::SetConsoleOutputCP(CP_UTF8);
}

QStringList Arguments(int, char**)
{
    QStringList arguments;
    int iCount = 0;
    LPWSTR* ppArguments = ::CommandLineToArgvW(::GetCommandLineW(), &iCount);
    for (int iIndex = 1; ppArguments && iIndex < iCount; ++iIndex)
        arguments.append(QString::fromWCharArray(ppArguments[iIndex]));
    ::LocalFree(ppArguments);
    return arguments;
}

bool IsTerminal()
{
    DWORD uMode = 0;
    return ::GetConsoleMode(Output(), &uMode) && ::SetConsoleMode(Output(), uMode | 0x0004); // virtual terminal
}

int TerminalColumns()
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    return ::GetConsoleScreenBufferInfo(Output(), &info) ? info.srWindow.Right - info.srWindow.Left + 1 : 80;
}

StopSignal::StopSignal(QObject* pParent)
    : QObject(pParent)
{
    QMutexLocker lock(&g_mutex);
    g_pStopSignal = this;
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

StopSignal::~StopSignal()
{
    QMutexLocker lock(&g_mutex);
    g_pStopSignal = nullptr;
    ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
}

} // namespace KXClient
