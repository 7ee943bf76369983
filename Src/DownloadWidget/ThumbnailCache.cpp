#include "DownloadWidget/ThumbnailCache.h"

#include "Module/PictureReading.h"

#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr QSize ThumbnailSize(120, 68);
constexpr qreal CornerRadius = 4;
// A picture that can only be decoded whole: 4,096 by 4,096 pixels take about 0.14 s and 64 MiB. One of 4K fits.
constexpr qint64 MaxPixelsAsAWhole = 16LL * 1024 * 1024;

bool IsAffordable(const QImageReader& reader)
{
    const QSize size = reader.size();
    return reader.supportsOption(QImageIOHandler::ClipRect) ||
           qAbs(qint64(size.width())) * qAbs(qint64(size.height())) <= MaxPixelsAsAWhole;
}

// The top left part of a picture, as much as shows; a null image when it cannot or must not be read.
QImage ReadVisiblePart(const QString& strPath)
{
    QImageReader reader(strPath);
    reader.setDecideFormatFromContent(true);
    if (!IsReasonablePicture(reader) || !IsAffordable(reader))
        return QImage();
    const QSize size = reader.size();
    if (size.isValid())
        reader.setClipRect(QRect(QPoint(0, 0), size.boundedTo(ThumbnailSize)));
    return reader.read();
}

QImage Rounded(const QImage& picture)
{
    QImage canvas(ThumbnailSize, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath corners;
    corners.addRoundedRect(QRectF(QPointF(0, 0), ThumbnailSize), CornerRadius, CornerRadius);
    painter.setClipPath(corners);
    painter.drawImage(0, 0, picture);
    return canvas;
}

} // namespace

std::shared_ptr<ThumbnailCache> ThumbnailCache::Shared()
{
    static std::weak_ptr<ThumbnailCache> s_cache;
    std::shared_ptr<ThumbnailCache> pCache = s_cache.lock();
    if (!pCache) {
        pCache = std::make_shared<ThumbnailCache>();
        s_cache = pCache;
    }
    return pCache;
}

QImage ThumbnailCache::Thumbnail(const QString& strPath)
{
    const QFileInfo file(strPath);
    if (strPath.isEmpty() || !file.isFile()) // to open a pipe would wait for its writer
        return DefaultThumbnail();
    const Entry* pKnown = m_entries.object(strPath);
    if (pKnown && pKnown->lSize == file.size() && pKnown->modified == file.lastModified())
        return pKnown->image;
    const QImage picture = ReadVisiblePart(strPath);
    const QImage thumbnail = picture.isNull() ? DefaultThumbnail() : Rounded(picture);
    m_entries.insert(strPath, new Entry{file.size(), file.lastModified(), thumbnail});
    return thumbnail;
}

const QImage& ThumbnailCache::DefaultThumbnail()
{
    if (m_default.isNull())
        m_default = Rounded(QImage(QStringLiteral(":/KXRecordManage/images/pic_default.svg")));
    return m_default;
}
