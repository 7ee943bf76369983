#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>

constexpr qint64 MaxPicturePixels = 64LL * 1024 * 1024;
constexpr qint64 MaxPictureBytes = 4 * MaxPicturePixels + 64 * 1024; // a bitmap of that many pixels, with its header

// All bytes of a file, none of one that is too large for a picture; false when it cannot be opened. What is no regular
// file counts as that: to open a pipe would wait for its writer, and a device may have no end.
inline bool ReadPictureFile(const QString& strPath, QByteArray& bytes)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.size() <= MaxPictureBytes ? file.readAll() : QByteArray();
    return true;
}

// True when a picture may be decoded: its size is known and not above 64 megapixels. A larger one would take memory and
// time for nothing. A height below zero is a bitmap that is stored from top to bottom.
inline bool IsReasonablePicture(const QImageReader& reader)
{
    const QSize size = reader.size();
    return size != QSize() && qAbs(qint64(size.width())) * qAbs(qint64(size.height())) <= MaxPicturePixels;
}
