#pragma once

#include "Module/PictureHeader.h"

#include <QtCore/QString>
#include <QtGui/QImage>

// Reading pictures that nobody vouches for, within bounds of memory and time. A null image is what cannot be read.
//
// Thread: any. On a thread whose interruption is requested no file is read, and decoding ends as soon as the decoder
// asks for more bytes; so a thread that reads pictures is told so before it is waited for.
namespace SafePicture {

constexpr qint64 MaxFileBytes = 64 * 1024 * 1024;

// What is decoded at once, where somebody waits. Packed bytes unfold to up to a thousand times their number, also
// behind the last pixel; a PNG of more of them is not cheap.
constexpr qint64 MaxCheapFileBytes = 8 * 1024 * 1024;
constexpr qint64 MaxCheapPixels = 4 * 1024 * 1024;
constexpr int MaxCheapPackedBytes = 256 * 1024;
bool IsCheap(const PictureHeader& header);

// All bytes of a file, none of one that is too large for a picture; false when it cannot be opened. What is no regular
// file counts as that: to open a pipe would wait for its writer, and a device may have no end.
bool ReadFile(const QString& strPath, QByteArray& bytes);

// The pixels, or only those of the top left part. After ten seconds it is given up.
QImage Decode(const PictureHeader& header, const QSize& part = QSize());

// Writes the picture in the form of the path's suffix, over what was there. False when the bytes are no picture; then
// nothing is written, nor on a path that is not called like a picture.
bool Save(const QByteArray& bytes, const QString& strPath);

} // namespace SafePicture
