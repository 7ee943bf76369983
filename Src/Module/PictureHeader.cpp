#include "Module/PictureHeader.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

quint16 Big16(const QByteArray& bytes, int iAt)
{
    return qFromBigEndian<quint16>(bytes.constData() + iAt);
}

quint32 Big32(const QByteArray& bytes, int iAt)
{
    return qFromBigEndian<quint32>(bytes.constData() + iAt);
}

quint16 Little16(const QByteArray& bytes, int iAt)
{
    return qFromLittleEndian<quint16>(bytes.constData() + iAt);
}

quint32 Little32(const QByteArray& bytes, int iAt)
{
    return qFromLittleEndian<quint32>(bytes.constData() + iAt);
}

constexpr int LongestSide = 65535;

// A size that a decoder may be given; an empty one otherwise.
QSize SizeOf(qint64 lWidth, qint64 lHeight)
{
    const bool bTaken = lWidth > 0 && lHeight > 0 && lWidth <= LongestSide && lHeight <= LongestSide;
    return bTaken ? QSize(static_cast<int>(lWidth), static_cast<int>(lHeight)) : QSize();
}

namespace Jpeg {

constexpr uchar Baseline = 0xC0;
constexpr uchar StartOfImage = 0xD8;
constexpr uchar EndOfImage = 0xD9;
constexpr uchar StartOfScan = 0xDA;

// Arithmetic coding and progressive forms too; a decoder knows no others.
bool IsKnownFrame(uchar uMarker)
{
    constexpr std::array<uchar, 5> known = {0xC0, 0xC1, 0xC2, 0xC9, 0xCA};
    return std::find(known.begin(), known.end(), uMarker) != known.end();
}

bool IsOtherFrame(uchar uMarker)
{
    constexpr std::array<uchar, 5> noFrames = {0xC4, 0xC8, 0xC9, 0xCA, 0xCC};
    return uMarker >= 0xC3 && uMarker <= 0xCF && std::find(noFrames.begin(), noFrames.end(), uMarker) == noFrames.end();
}

bool StandsAlone(uchar uMarker)
{
    return uMarker == 0x01 || (uMarker >= 0xD0 && uMarker <= 0xD7);
}

// The next marker at or after that place, which is moved behind it; 0 when there is none. Coded data is passed over as
// a decoder does it: there 0xFF is followed by 0.
uchar NextMarker(const QByteArray& bytes, int& iAt)
{
    const char* const pEnd = bytes.constData() + bytes.size();
    const char* p = bytes.constData() + iAt;
    while (p < pEnd && (p = static_cast<const char*>(memchr(p, 0xFF, static_cast<std::size_t>(pEnd - p))))) {
        while (p < pEnd && *p == '\xFF')
            ++p;
        if (p < pEnd && *p++ != 0) {
            iAt = static_cast<int>(p - bytes.constData());
            return static_cast<uchar>(p[-1]);
        }
    }
    return 0;
}

struct Frame
{
    uchar uKind = 0;
    QSize size;
    int iComponents = 0;
    int iScans = 0;
    int iFirstScanComponents = 0;
};

// A segment with its length in front; false when no decoder should see it.
bool TakeSegment(uchar uMarker, const QByteArray& segment, Frame& frame)
{
    if (IsKnownFrame(uMarker)) {
        if (frame.uKind != 0 || segment.size() < 8)
            return false;
        frame.uKind = uMarker;
        frame.size = SizeOf(Big16(segment, 5), Big16(segment, 3));
        frame.iComponents = static_cast<uchar>(segment[7]);
        return !frame.size.isEmpty();
    }
    if (uMarker == StartOfScan) {
        if (frame.uKind == 0 || segment.size() < 3)
            return false;
        if (frame.iScans++ == 0)
            frame.iFirstScanComponents = static_cast<uchar>(segment[2]);
    }
    return !IsOtherFrame(uMarker) && uMarker != StartOfImage;
}

// Each scan goes over all blocks, also one without data; a block is up to 32 pixels wide and high. One more scan costs
// about a quarter of what it costs to make the pixels.
qint64 WorkOf(const Frame& frame)
{
    const auto whole = [](int iSide) { return qint64(iSide + 31) / 32 * 32; };
    return whole(frame.size.width()) * whole(frame.size.height()) * (frame.iScans + 3) / 4;
}

PictureHeader Header(const QByteArray& bytes)
{
    Frame frame;
    int iAt = 2;
    while (const uchar uMarker = NextMarker(bytes, iAt)) {
        if (uMarker == EndOfImage && frame.iScans > 0) {
            const bool bOnePass =
                frame.uKind == Baseline && frame.iScans == 1 && frame.iFirstScanComponents == frame.iComponents;
            return {"jpeg", frame.size, WorkOf(frame), bOnePass, bytes};
        }
        if (StandsAlone(uMarker))
            continue;
        const int iLength = iAt + 2 <= bytes.size() ? Big16(bytes, iAt) : 0;
        if (iLength < 2 || iLength > bytes.size() - iAt)
            return {};
        if (!TakeSegment(uMarker, QByteArray::fromRawData(bytes.constData() + iAt, iLength), frame))
            return {};
        iAt += iLength;
    }
    return {};
}

} // namespace Jpeg

namespace Png {

constexpr char Signature[] = "\x89PNG\r\n\x1a\n";
constexpr int ChunkFrame = 12; // length, name, check sum
constexpr int FirstChunk = 8;
constexpr int HeaderLength = 13;

// What is not here can be packed so that it unfolds to a thousand times its length: texts, colour profiles.
bool MakesPixels(const QByteArray& chunk)
{
    const QByteArray name = chunk.mid(4, 4);
    return name == "IHDR" || name == "PLTE" || name == "tRNS" || name == "IDAT" || name == "IEND";
}

// The bytes of packed pixels are never many more than those of the pixels, of which there are up to eight each. A
// decoder would unfold also what follows the last pixel.
bool IsFilled(const PictureHeader& header)
{
    constexpr qint64 AnyHeader = 64 * 1024;
    return header.bytes.size() <= header.Pixels() * 8 + AnyHeader;
}

PictureHeader Start(const QByteArray& bytes)
{
    const QByteArray head = bytes.mid(FirstChunk, ChunkFrame + HeaderLength);
    if (head.size() < ChunkFrame + HeaderLength || Big32(head, 0) != HeaderLength || head.mid(4, 4) != "IHDR")
        return {};
    const bool bDeep = head[16] == 16;
    const bool bInterlaced = head[20] != 0;
    const QSize size = SizeOf(Big32(head, 8), Big32(head, 12));
    const qint64 lWork = qint64(size.width()) * size.height() * (bDeep ? 2 : 1) * (bInterlaced ? 2 : 1);
    return {size.isEmpty() ? nullptr : "png", size, lWork, !bInterlaced, bytes.left(FirstChunk)};
}

PictureHeader Header(const QByteArray& bytes)
{
    PictureHeader header = Start(bytes);
    int iAt = FirstChunk;
    while (header.pszFormat && bytes.size() - iAt >= ChunkFrame) {
        const qint64 lLength = qint64(Big32(bytes, iAt)) + ChunkFrame;
        if (lLength > bytes.size() - iAt)
            break;
        const QByteArray chunk = QByteArray::fromRawData(bytes.constData() + iAt, static_cast<int>(lLength));
        if (MakesPixels(chunk))
            header.bytes += chunk;
        if (chunk.mid(4, 4) == "IEND")
            return IsFilled(header) ? header : PictureHeader();
        iAt += static_cast<int>(lLength);
    }
    return {};
}

} // namespace Png

namespace Bmp {

constexpr int FileHeader = 14;
constexpr int OldInfo = 12; // the first form has 16-bit sides
constexpr int Uncompressed = 0;
constexpr int WithMasks = 3;

struct Info
{
    qint64 lLength = 0; // of the info header
    qint64 lWidth = 0;
    qint64 lHeight = 0; // below zero when it is stored from top to bottom
    int iDepth = 0;
    quint32 uCompression = Uncompressed;
    quint32 uColors = 0;
};

Info InfoOf(const QByteArray& bytes)
{
    Info info;
    info.lLength = bytes.size() >= FileHeader + OldInfo ? Little32(bytes, FileHeader) : 0;
    if (info.lLength == OldInfo) {
        info.lWidth = Little16(bytes, 18);
        info.lHeight = Little16(bytes, 20);
        info.iDepth = Little16(bytes, 24);
    } else if (info.lLength >= 40 && info.lLength <= bytes.size() - FileHeader) {
        info.lWidth = static_cast<qint32>(Little32(bytes, 18));
        info.lHeight = static_cast<qint32>(Little32(bytes, 22));
        info.iDepth = Little16(bytes, 28);
        info.uCompression = Little32(bytes, 30);
        info.uColors = Little32(bytes, 46);
    }
    return info;
}

// Where the pixels begin: where the file says, but not inside of what stands before them.
qint64 PixelsAt(const QByteArray& bytes, const Info& info)
{
    constexpr qint64 Masks = 12;
    qint64 lColors = 0;
    if (info.iDepth <= 8)
        lColors = info.uColors != 0 ? qint64(info.uColors) : qint64(1) << info.iDepth;
    const qint64 lHead = FileHeader + info.lLength + (info.uCompression == WithMasks && info.lLength == 40 ? Masks : 0);
    return std::max<qint64>(Little32(bytes, 10), lHead + lColors * (info.lLength == OldInfo ? 3 : 4));
}

// A packed one is not taken: it may leave pixels out, which would show what was in memory before.
PictureHeader Header(const QByteArray& bytes)
{
    const Info info = InfoOf(bytes);
    const QSize size = SizeOf(info.lWidth, qAbs(info.lHeight));
    if (size.isEmpty() || (info.uCompression != Uncompressed && info.uCompression != WithMasks))
        return {};
    const qint64 lLine = (info.lWidth * info.iDepth + 31) / 32 * 4;
    if (PixelsAt(bytes, info) + lLine * size.height() > bytes.size())
        return {};
    return {"bmp", size, qint64(size.width()) * size.height(), true, bytes};
}

} // namespace Bmp

} // namespace

PictureHeader PictureHeader::Of(const QByteArray& bytes)
{
    PictureHeader header;
    if (bytes.startsWith("\xFF\xD8\xFF"))
        header = Jpeg::Header(bytes);
    else if (bytes.startsWith(Png::Signature))
        header = Png::Header(bytes);
    else if (bytes.startsWith("BM"))
        header = Bmp::Header(bytes);
    return header.lWork <= MaxWork ? header : PictureHeader();
}
