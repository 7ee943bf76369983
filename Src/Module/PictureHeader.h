#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>

// What the bytes of a picture say before any of it is decoded. Pictures come from devices and servers and may be made
// to harm: only JPEG, PNG and BMP are taken, told by their content, and only whole ones.
//
// Thread: any; the functions share nothing.
struct PictureHeader
{
    const char* pszFormat = nullptr; // as Qt calls it; null when it is no picture, not a whole one, or too much work
    QSize size;
    qint64 lWork = 0;      // the pixels, counted again for each time that the decoder goes over them
    bool bOnePass = false; // a baseline JPEG of one scan, a PNG that is not interlaced, a BMP
    QByteArray bytes;      // for the decoder: of a PNG only what its pixels are made of

    qint64 Pixels() const { return qint64(size.width()) * size.height(); }
    // At most a picture of 8K, which is about half a second of one processor.
    static constexpr qint64 MaxWork = 36 * 1024 * 1024;
    static PictureHeader Of(const QByteArray& bytes);
};
