#pragma once

#include <QtCore/QString>

// Where the picture of a recording lies: beside it, ".mp4" replaced by ".jpg" wherever it stands, case-sensitive. A
// path without ".mp4" is its own picture path.
inline QString PicturePathOf(const QString& strVideoPath)
{
    QString strPath = strVideoPath;
    return strPath.replace(QLatin1String(".mp4"), QLatin1String(".jpg"));
}
