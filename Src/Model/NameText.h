#pragma once

#include <QtCore/QString>

#include <algorithm>

// Names come from servers, devices and files. Some characters in them would turn the direction in which the rest of a
// line is read, also of what stands around the name, or make "gpj.exe" look like "exe.jpg".
namespace NameText {

inline bool TurnsDirection(QChar character)
{
    const ushort u = character.unicode();
    const bool bMark = u == 0x200E || u == 0x200F || u == 0x061C;
    return bMark || (u >= 0x202A && u <= 0x202E) || (u >= 0x2066 && u <= 0x2069); // embeddings and isolates
}

// The name as it is shown: without those characters.
inline QString Shown(QString strName)
{
    const auto* pEnd = std::remove_if(strName.begin(), strName.end(), TurnsDirection);
    strName.truncate(static_cast<int>(pEnd - strName.constBegin()));
    return strName;
}

} // namespace NameText
