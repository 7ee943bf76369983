#include "Module/SafePicture.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

#include <algorithm>
#include <cstring>

namespace {

constexpr int LongestMs = 10000;

bool IsInterrupted()
{
    return QThread::currentThread()->isInterruptionRequested();
}

// Gives its bytes until the thread shall end or the time is over; a decoder cannot be stopped otherwise. No QBuffer:
// out of one a decoder takes everything at once.
class LimitedBytes final : public QIODevice
{
public:
    explicit LimitedBytes(const QByteArray& bytes)
        : m_bytes(bytes)
    {
        open(ReadOnly | Unbuffered);
    }

    qint64 size() const override { return m_bytes.size(); }
    bool IsGivenUp() const { return IsInterrupted() || m_deadline.hasExpired(); }

protected:
    qint64 readData(char* pData, qint64 lMost) override
    {
        if (IsGivenUp())
            return -1;
        const qint64 lCount = std::min(lMost, m_bytes.size() - pos());
        if (lCount > 0)
            memcpy(pData, m_bytes.constData() + pos(), static_cast<std::size_t>(lCount));
        return std::max<qint64>(lCount, 0);
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    const QDeadlineTimer m_deadline{LongestMs};
};

} // namespace

bool SafePicture::IsCheap(const PictureHeader& header)
{
    const bool bPacked = qstrcmp(header.pszFormat, "png") == 0;
    return header.bOnePass && header.Pixels() <= MaxCheapPixels &&
           (!bPacked || header.bytes.size() <= MaxCheapPackedBytes);
}

bool SafePicture::ReadFile(const QString& strPath, QByteArray& bytes)
{
    QFile file(strPath);
    if (IsInterrupted() || !QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.size() <= MaxFileBytes ? file.read(MaxFileBytes) : QByteArray();
    return true;
}

QImage SafePicture::Decode(const PictureHeader& header, const QSize& part)
{
    if (!header.pszFormat)
        return QImage();
    LimitedBytes bytes(header.bytes);
    QImageReader reader(&bytes, header.pszFormat);
    reader.setAutoDetectImageFormat(false);
    if (part.isValid())
        reader.setClipRect(QRect(QPoint(0, 0), header.size.boundedTo(part)));
    QImage image;
    const bool bRead = reader.read(&image);
    // Pixels may name colours that the picture does not have; those would be taken from the memory behind its table.
    if (image.colorCount() > 0)
        image.setColorCount(1 << image.depth());
    // A decoder that gets no more bytes may paint the rest grey and call that a picture.
    return bRead && !bytes.IsGivenUp() ? image : QImage();
}

// QImage::save empties an existing file before it finds that it cannot write such a picture. A recording that is not
// called ".mp4" is its own picture's target, and must stay; one that is called like a picture becomes it.
bool SafePicture::Save(const QByteArray& bytes, const QString& strPath)
{
    const QImage image = Decode(PictureHeader::Of(bytes));
    if (image.isNull())
        return false;
    const QByteArray format = QFileInfo(strPath).suffix().toLower().toLatin1();
    if (QImageWriter::supportedImageFormats().contains(format))
        image.save(strPath);
    return true;
}
