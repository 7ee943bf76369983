#pragma once

#include <QtCore/QString>

#include <optional>

// Bytes that this user may still write on the volume of a folder; nothing when the question cannot be answered. The
// system is asked by narrow text in the local encoding. Thread: any. The unit tests link a scripted function in its
// place.
std::optional<quint64> FreeBytesOfVolume(const QString& strFolder);
