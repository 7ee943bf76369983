#include "Module/DiskFreeSpace.h"

#ifdef Q_OS_WIN

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <string>

#include <windows.h>

namespace {

// The folder's short name, of ASCII letters, where the volume keeps such names; else what was given.
QString ShortName(const QString& strFolder)
{
    wchar_t szShort[MAX_PATH] = {};
    const std::wstring strNative = QDir::toNativeSeparators(strFolder).toStdWString();
    const DWORD uLength = GetShortPathNameW(strNative.c_str(), szShort, MAX_PATH);
    const bool bFound = uLength > 0 && uLength < MAX_PATH;
    return bFound ? QString::fromWCharArray(szShort, static_cast<int>(uLength)) : strFolder;
}

bool IsNarrow(const QString& strText)
{
    return QString::fromLocal8Bit(strText.toLocal8Bit()) == strText;
}

// A text of the ANSI code page for a folder on the same volume: its name, its short name, or the nearest folder above
// that has either.
QByteArray NarrowFolder(const QString& strFolder)
{
    QString strPlace = strFolder;
    while (!IsNarrow(strPlace)) {
        const QString strShort = ShortName(strPlace);
        if (IsNarrow(strShort))
            return strShort.toLocal8Bit();
        const QString strAbove = QFileInfo(strPlace).path();
        if (strAbove == strPlace)
            break;
        strPlace = strAbove;
    }
    return strPlace.toLocal8Bit();
}

} // namespace

std::optional<quint64> FreeBytesOfVolume(const QString& strFolder)
{
    ULARGE_INTEGER available;
    if (!GetDiskFreeSpaceExA(NarrowFolder(strFolder).constData(), &available, nullptr, nullptr))
        return std::nullopt;
    return available.QuadPart;
}

#else

#include <QtCore/QByteArray>

#include <sys/statvfs.h>

std::optional<quint64> FreeBytesOfVolume(const QString& strFolder)
{
    struct statvfs volume;
    if (statvfs(strFolder.toLocal8Bit().constData(), &volume) != 0)
        return std::nullopt;
    return static_cast<quint64>(volume.f_bavail) * volume.f_frsize;
}

#endif
