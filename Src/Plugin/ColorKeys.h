#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>

// Replaces the keys of a colour table by their values, one key after the other in ascending order, each over the whole
// text: a value that holds a later key is replaced again.
inline void ReplaceColorKeys(QString& strText, const QMap<QString, QString>& colors)
{
    for (auto color = colors.cbegin(); color != colors.cend(); ++color)
        strText.replace(color.key(), color.value());
}
