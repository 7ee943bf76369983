#pragma once

#include <QtGui/QImageReader>

// True when a picture may be decoded: its size is known and not above 64 megapixels. A larger one would take memory and
// time for nothing. A height below zero is a bitmap that is stored from top to bottom.
inline bool IsReasonablePicture(const QImageReader& reader)
{
    constexpr qint64 MaxPixels = 64LL * 1024 * 1024;
    const QSize size = reader.size();
    return size != QSize() && qAbs(qint64(size.width())) * qAbs(qint64(size.height())) <= MaxPixels;
}
