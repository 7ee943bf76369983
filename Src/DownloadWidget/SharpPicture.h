#pragma once

#include <QtGui/QImage>
#include <QtGui/QImageReader>

// A drawing of the resources in its own size, with the pixels of a screen of that ratio.
inline QImage SharpPicture(const QString& strPath, qreal dRatio)
{
    QImageReader reader(strPath);
    reader.setScaledSize(reader.size() * dRatio);
    QImage image = reader.read();
    image.setDevicePixelRatio(dRatio);
    return image;
}
