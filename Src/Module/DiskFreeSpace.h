#pragma once

#include <QtCore/QByteArray>

#include <optional>

// Bytes that this user may still write on the volume of a folder; nothing when the question cannot be answered.
// `folder` is in the local 8-bit encoding. Thread: any. The unit tests link a scripted function in its place.
std::optional<quint64> FreeBytesOfVolume(const QByteArray& folder);
