#include "Module/DiskFreeSpace.h"

#ifdef Q_OS_WIN

#include <windows.h>

std::optional<quint64> FreeBytesOfVolume(const QByteArray& folder)
{
    ULARGE_INTEGER available;
    if (!GetDiskFreeSpaceExA(folder.constData(), &available, nullptr, nullptr))
        return std::nullopt;
    return available.QuadPart;
}

#else

#include <sys/statvfs.h>

std::optional<quint64> FreeBytesOfVolume(const QByteArray& folder)
{
    struct statvfs volume;
    if (statvfs(folder.constData(), &volume) != 0)
        return std::nullopt;
    return static_cast<quint64>(volume.f_bavail) * volume.f_frsize;
}

#endif
