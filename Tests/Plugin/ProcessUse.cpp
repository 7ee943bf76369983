#include "ProcessUse.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>

#include <malloc.h>
#include <tlhelp32.h>

namespace {

int Threads()
{
    const HANDLE hSnapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof(entry);
    int iThreads = 0;
    for (BOOL bMore = Thread32First(hSnapshot, &entry); bMore; bMore = Thread32Next(hSnapshot, &entry))
        iThreads += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(hSnapshot);
    return iThreads;
}

// The C runtime's heap, block by block.
qint64 HeapBytes()
{
    qint64 lBytes = 0;
    _HEAPINFO block = {};
    while (_heapwalk(&block) == _HEAPOK)
        lBytes += block._useflag == _USEDENTRY ? qint64(block._size) : 0;
    return lBytes;
}

} // namespace

ProcessUse UseOfThisProcess()
{
    DWORD dwHandles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &dwHandles);
    return {Threads(), int(dwHandles), HeapBytes()};
}

qint64 MemorySlackBytes()
{
    return 16 * 1024;
}

bool IsMapped(const QString& strLibraryFile)
{
    return GetModuleHandleW(reinterpret_cast<const wchar_t*>(QFileInfo(strLibraryFile).fileName().utf16())) != nullptr;
}
#else
#include <malloc.h>

namespace {

int EntriesOf(const char* pszFolder)
{
    return QDir(QString::fromUtf8(pszFolder)).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

// Sanitizers bring a heap of their own, of which mallinfo2 knows nothing; they look for leaks themselves.
ProcessUse UseOfThisProcess()
{
    const struct mallinfo2 heap = mallinfo2();
    return {EntriesOf("/proc/self/task"), EntriesOf("/proc/self/fd"), qint64(heap.uordblks + heap.hblkhd)};
}

// The C library reads its tunables when the process starts.
qint64 MemorySlackBytes()
{
    return qgetenv("GLIBC_TUNABLES").contains("tcache_count=0") ? 16 * 1024 : 256 * 1024;
}

bool IsMapped(const QString& strLibraryFile)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(QFileInfo(strLibraryFile).fileName().toUtf8());
}
#endif
