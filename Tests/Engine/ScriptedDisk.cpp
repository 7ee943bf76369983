#include "Engine/ScriptedDisk.h"

#include "Module/DiskFreeSpace.h"

namespace {

struct Volume
{
    std::optional<quint64> freeBytes = 1024 * ScriptedDisk::MiB;
    QList<QByteArray> asked;
};

Volume g_volume;

} // namespace

void ScriptedDisk::Reset()
{
    g_volume = Volume();
}

void ScriptedDisk::SetFreeBytes(std::optional<quint64> freeBytes)
{
    g_volume.freeBytes = freeBytes;
}

const QList<QByteArray>& ScriptedDisk::Asked()
{
    return g_volume.asked;
}

std::optional<quint64> FreeBytesOfVolume(const QString& strFolder)
{
    g_volume.asked.append(strFolder.toUtf8());
    return g_volume.freeBytes;
}
