#pragma once

#include <QtCore/QBuffer>
#include <QtCore/QList>
#include <QtCore/QtEndian>
#include <QtGui/QImage>
#include <QtGui/QImageWriter>

// Pictures that are made to harm, and truncated ones. None of them may be shown or saved. All that could be shown of
// them is red.
namespace HostilePictures {

struct Picture
{
    const char* pszName;
    QByteArray bytes;
};

inline QImage Red(int iWidth, int iHeight, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(iWidth, iHeight, format);
    image.fill(Qt::red);
    return image;
}

inline QByteArray Encoded(const QImage& image, const char* pszFormat, bool bProgressive = false)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, pszFormat);
    writer.setProgressiveScanWrite(bProgressive);
    return writer.write(image) ? bytes : QByteArray();
}

// The sum that PNG and gzip use.
inline quint32 Crc32(const QByteArray& bytes)
{
    quint32 uSum = 0xFFFFFFFF;
    for (const char c : bytes) {
        uSum ^= static_cast<uchar>(c);
        for (int iBit = 0; iBit < 8; ++iBit)
            uSum = (uSum >> 1) ^ ((uSum & 1) ? 0xEDB88320 : 0);
    }
    return ~uSum;
}

inline QByteArray Big32(quint32 uValue)
{
    const quint32 uBig = qToBigEndian(uValue);
    return QByteArray(reinterpret_cast<const char*>(&uBig), 4);
}

inline QByteArray Little32(quint32 uValue)
{
    const quint32 uLittle = qToLittleEndian(uValue);
    return QByteArray(reinterpret_cast<const char*>(&uLittle), 4);
}

// Packed as PNG wants it.
inline QByteArray Packed(const QByteArray& bytes)
{
    return qCompress(bytes).mid(4);
}

// Bytes that cannot be packed.
inline QByteArray Noise(int iCount)
{
    QByteArray bytes(iCount, '\0');
    quint32 uState = 1;
    for (char& c : bytes) {
        uState = uState * 1664525 + 1013904223;
        c = static_cast<char>(uState >> 24);
    }
    return bytes;
}

inline QByteArray Gzip(const QByteArray& bytes)
{
    const QByteArray packed = Packed(bytes);
    return QByteArray::fromHex("1f8b0800000000000003") + packed.mid(2, packed.size() - 6) + Little32(Crc32(bytes)) +
           Little32(static_cast<quint32>(bytes.size()));
}

inline QByteArray Chunk(const char* pszName, const QByteArray& data)
{
    return Big32(static_cast<quint32>(data.size())) + pszName + data + Big32(Crc32(pszName + data));
}

// Of 8-bit RGB; `more` are chunks that stand before the pixels.
inline QByteArray Png(quint32 uWidth, quint32 uHeight, const QByteArray& packed, const QByteArray& more = QByteArray(),
                      bool bInterlaced = false)
{
    const QByteArray form = QByteArray::fromHex("08020000") + char(bInterlaced ? 1 : 0);
    return QByteArray("\x89PNG\r\n\x1a\n") + Chunk("IHDR", Big32(uWidth) + Big32(uHeight) + form) + more +
           Chunk("IDAT", packed) + Chunk("IEND", QByteArray());
}

// Packed red lines of a PNG.
inline QByteArray RedLines(int iWidth, int iHeight)
{
    const QByteArray line = QByteArray(1, '\0') + QByteArray("\xFF\0\0", 3).repeated(iWidth);
    return line.repeated(iHeight);
}

// The same, in the seven passes of an interlaced one.
inline QByteArray InterlacedRed(int iWidth, int iHeight)
{
    static const int passes[][4] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                    {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}; // left, top, and their steps
    QByteArray lines;
    for (const auto& pass : passes)
        lines += RedLines((iWidth - pass[0] + pass[2] - 1) / pass[2], (iHeight - pass[1] + pass[3] - 1) / pass[3]);
    return lines;
}

// The last scan stands there that many times more.
inline QByteArray WithScans(QByteArray jpeg, int iMore)
{
    const int iScan = jpeg.lastIndexOf("\xFF\xDA");
    const int iEnd = jpeg.lastIndexOf("\xFF\xD9");
    return jpeg.insert(iEnd, jpeg.mid(iScan, iEnd - iScan).repeated(iMore));
}

// A whole JPEG whose frame says another size.
inline QByteArray JpegOfSize(QByteArray jpeg, const char* pszHeightWidthHex)
{
    const int iFrame = qMax(jpeg.indexOf("\xFF\xC0"), jpeg.indexOf("\xFF\xC2"));
    return jpeg.replace(iFrame + 5, 4, QByteArray::fromHex(pszHeightWidthHex));
}

inline QByteArray Svg(const QByteArray& inside)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='120' "
           "height='68'><rect width='120' height='68' fill='#ff0000'/>" +
           inside + "</svg>";
}

// `named` is a local path that an SVG may name.
inline QList<Picture> Bombs(const QByteArray& named)
{
    const QByteArray png = Encoded(Red(40, 30), "PNG");
    const QByteArray progressive = Encoded(Red(1600, 1200), "JPG", true);
    const QByteArray bmp = Encoded(Red(8, 8), "BMP");
    return {
        {"an SVG", Svg(QByteArray())},
        {"an SVG that names a file", Svg("<image width='120' height='68' xlink:href='" + named + "'/>")},
        {"an SVGZ that unfolds to two megabytes", Gzip(Svg("<!--" + QByteArray(2000000, ' ') + "-->"))},
        {"a GIF", QByteArray::fromHex("47494638396101000100f00000ff0000ffffff2c00000000010001000002024401003b")},
        {"an XBM", "#define x_width 8\n#define x_height 1\nstatic char x_bits[] = { 0x00 };\n"},
        {"a PPM", "P6\n2 1\n255\n\xFF\x01\x01\xFF\x01\x01"},
        {"an ICO", Encoded(Red(16, 16), "ICO")},
        {"a progressive JPEG of a thousand scans", WithScans(progressive, 1000)},
        {"a JPEG of a thousand scans", WithScans(Encoded(Red(1600, 1200), "JPG"), 1000)},
        {"a small progressive JPEG of 200,000 scans", WithScans(Encoded(Red(16, 16), "JPG", true), 200000)},
        {"a JPEG that is said to be of 65,500 by 65,500 pixels", JpegOfSize(Encoded(Red(8, 8), "JPG"), "ffdcffdc")},
        {"a progressive one", JpegOfSize(Encoded(Red(8, 8), "JPG", true), "ffdcffdc")},
        {"a JPEG of no height", JpegOfSize(Encoded(Red(8, 8), "JPG"), "00000008")},
        {"a PNG of two gigapixels", Png(65535, 32768, Packed(RedLines(8, 8)))},
        {"a PNG of the greatest size", Png(0x7FFFFFFF, 0x7FFFFFFF, Packed(RedLines(8, 8)))},
        {"a PNG of no width", Png(0, 8, Packed(RedLines(8, 8)))},
        {"a PNG with far more behind its pixels", Png(8, 8, Packed(RedLines(8, 8) + Noise(100000)))},
        {"a PNG without its last line", Png(8, 8, Packed(RedLines(8, 7)))},
        {"a PNG of no pixels", Png(8, 8, Packed(QByteArray()))},
        {"a PNG without a header", QByteArray(png).remove(8, 25)},
        {"a PNG of a length beyond its end", QByteArray(png).replace(33, 4, QByteArray::fromHex("7fffffff"))},
        {"a BMP of 60,000 by 60,000 pixels", QByteArray(bmp).replace(18, 8, QByteArray::fromHex("60ea000060ea0000"))},
        {"a BMP of the greatest size", QByteArray(bmp).replace(18, 8, QByteArray::fromHex("ffffff7fffffff7f"))},
        {"a BMP of the lowest height", QByteArray(bmp).replace(22, 4, QByteArray::fromHex("00000080"))},
        {"a BMP of a width below zero", QByteArray(bmp).replace(18, 4, QByteArray::fromHex("f8ffffff"))},
        {"a BMP whose pixels begin behind its end", QByteArray(bmp).replace(10, 4, QByteArray::fromHex("f6ffff7f"))},
        {"a BMP with a huge header", QByteArray(bmp).replace(14, 4, QByteArray::fromHex("ffffff7f"))},
        {"a BMP that leaves its pixels out",
         Encoded(Red(40, 30, QImage::Format_Indexed8), "BMP").replace(30, 4, QByteArray::fromHex("01000000"))},
    };
}

inline QList<Picture> Truncated()
{
    const QByteArray jpeg = Encoded(Red(40, 30), "JPG");
    const QByteArray progressive = Encoded(Red(40, 30), "JPG", true);
    const QByteArray png = Encoded(Red(40, 30), "PNG");
    const QByteArray bmp = Encoded(Red(40, 30), "BMP");
    return {
        {"a JPEG without its end", jpeg.chopped(2)},
        {"a JPEG without half of its end", jpeg.chopped(1)},
        {"a JPEG cut in its pixels", jpeg.left(jpeg.indexOf("\xFF\xDA") + 20)},
        {"a JPEG cut before its pixels", jpeg.left(jpeg.indexOf("\xFF\xDA"))},
        {"a JPEG cut in its header", jpeg.left(20)},
        {"a JPEG of its beginning and its end", jpeg.left(20) + jpeg.right(2)},
        {"a progressive JPEG without its end", progressive.chopped(2)},
        {"a PNG without its end", png.chopped(12)},
        {"a PNG without its last byte", png.chopped(1)},
        {"a PNG cut in its pixels", png.left(60)},
        {"a PNG cut in its header", png.left(24)},
        {"a PNG of its signature", png.left(8)},
        {"a BMP without its last byte", bmp.chopped(1)},
        {"a BMP cut in its pixels", bmp.left(bmp.size() / 2)},
        {"a BMP cut before its pixels", bmp.left(54)},
        {"a BMP cut in its header", bmp.left(40)},
        {"a BMP of one bit without its last byte",
         Encoded(Red(40, 30).convertToFormat(QImage::Format_Mono), "BMP").chopped(1)},
        {"a BMP that is stored from top to bottom, without its last byte",
         QByteArray(bmp).replace(22, 4, QByteArray::fromHex("e2ffffff")).chopped(1)},
    };
}

} // namespace HostilePictures
