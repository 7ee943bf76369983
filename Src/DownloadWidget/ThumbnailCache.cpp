#include "DownloadWidget/ThumbnailCache.h"

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/PanelLog.h"
#include "DownloadWidget/SharpPicture.h"
#include "Module/SafePicture.h"

#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr QSize ThumbnailSize(120, 68);
constexpr qreal CornerRadius = 4;

QImage Rounded(const QImage& picture)
{
    QImage canvas(ThumbnailSize * picture.devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(picture.devicePixelRatioF());
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath corners;
    corners.addRoundedRect(QRectF(QPointF(0, 0), ThumbnailSize), CornerRadius, CornerRadius);
    painter.setClipPath(corners);
    painter.drawImage(0, 0, picture);
    return canvas;
}

// Runs on the cache's thread.
QImage ReadPicture(const QString& strPath)
{
    QByteArray bytes;
    if (!SafePicture::ReadFile(strPath, bytes))
        return QImage();
    return SafePicture::Decode(PictureHeader::Of(bytes), ThumbnailSize);
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

ThumbnailCache::~ThumbnailCache()
{
    m_thread.requestInterruption();
    m_thread.quit();
    m_thread.wait();
}

QImage ThumbnailCache::Thumbnail(const QString& strPath, DownloadItem& row, qreal dRatio)
{
    const QImage picture = Picture(strPath, row);
    return picture.isNull() ? DefaultThumbnail(dRatio) : picture;
}

// Null for the default picture.
QImage ThumbnailCache::Picture(const QString& strPath, DownloadItem& row)
{
    const QFileInfo file(strPath);
    if (strPath.isEmpty() || !file.isFile()) // to open a pipe would wait for its writer
        return QImage();
    const State state{file.size(), file.lastModified()};
    const Entry* pKnown = m_entries.object(strPath);
    if (pKnown && pKnown->state.lSize == state.lSize && pKnown->state.modified == state.modified)
        return pKnown->image;
    const auto waiting = m_waiting.find(strPath);
    if (waiting != m_waiting.end()) {
        if (!waiting->contains(&row))
            waiting->append(&row);
        return QImage();
    }
    bool bLater = state.lSize > SafePicture::MaxCheapFileBytes;
    const QImage picture = bLater ? QImage() : ReadAtOnce(strPath, bLater);
    if (!bLater)
        return Keep(strPath, state, picture);
    m_waiting.insert(strPath, {&row});
    ReadLater(strPath, state);
    return QImage();
}

// `bLater` becomes true when the picture must be left to the thread.
QImage ThumbnailCache::ReadAtOnce(const QString& strPath, bool& bLater)
{
    QByteArray bytes;
    if (!SafePicture::ReadFile(strPath, bytes))
        return QImage();
    const PictureHeader header = PictureHeader::Of(bytes);
    bLater = header.pszFormat && !SafePicture::IsCheap(header);
    return bLater ? QImage() : SafePicture::Decode(header, ThumbnailSize);
}

void ThumbnailCache::ReadLater(const QString& strPath, const State& state)
{
    if (!m_thread.isRunning()) {
        m_reader.moveToThread(&m_thread);
        m_thread.start(); // never a lower priority: its end is waited for
    }
    QMetaObject::invokeMethod(
        &m_reader,
        [this, strPath, state] {
            const QImage picture = ReadPicture(strPath);
            QMetaObject::invokeMethod(
                this, [=] { OnRead(strPath, state, picture); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

// A file that changed meanwhile is read again at the next paint.
void ThumbnailCache::OnRead(const QString& strPath, const State& state, const QImage& picture)
{
    Keep(strPath, state, picture);
    const QVector<QPointer<DownloadItem>> rows = m_waiting.take(strPath);
    for (const QPointer<DownloadItem>& pRow : rows) {
        if (pRow)
            pRow->update();
    }
}

QImage ThumbnailCache::Keep(const QString& strPath, const State& state, const QImage& picture)
{
    if (picture.isNull())
        KX_PANEL_LOG(52, PanelLogFailure, "DownloadItem::paint", "no picture[%s]", strPath.toUtf8().constData());
    const QImage thumbnail = picture.isNull() ? picture : Rounded(picture);
    m_entries.insert(strPath, new Entry{state, thumbnail});
    return thumbnail;
}

const QImage& ThumbnailCache::DefaultThumbnail(qreal dRatio)
{
    if (m_default.isNull() || m_default.devicePixelRatioF() != dRatio)
        m_default = Rounded(SharpPicture(QStringLiteral(":/KXRecordManage/images/pic_default.svg"), dRatio));
    return m_default;
}
