#pragma once

#include <QtCore/QDateTime>

#include <limits>

// The time text of a record ("yyyyMMddTHHmmss", local time) as Unix seconds in 32 bits; 4294967295 for a text that is
// no time, or for a time outside 1970 to 2106, as the client's other parts expect it.
inline quint32 UnixTimeOf(const QString& strTime)
{
    constexpr quint32 NoTime = std::numeric_limits<quint32>::max();
    const QDateTime time = QDateTime::fromString(strTime, QStringLiteral("yyyyMMddTHHmmss"));
    if (!time.isValid())
        return NoTime;
    const qint64 lSeconds = time.toSecsSinceEpoch();
    return lSeconds >= 0 && lSeconds < NoTime ? static_cast<quint32>(lSeconds) : NoTime;
}
