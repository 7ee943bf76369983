#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <optional>

// The volume that the engine's disk guard measures, in place of the real one (linked instead of
// Src/Module/DiskFreeSpace.cpp). A fresh rig resets it: 1 GiB free, nothing asked. Thread: the GUI thread.
namespace ScriptedDisk {

constexpr quint64 MiB = 1024 * 1024;

void Reset();
// No value: the query fails.
void SetFreeBytes(std::optional<quint64> freeBytes);
// The folders that were asked for, in order, as UTF-8.
const QList<QByteArray>& Asked();

} // namespace ScriptedDisk
