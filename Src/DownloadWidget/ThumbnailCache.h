#pragma once

#include <QtCore/QCache>
#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <memory>

// The thumbnails of the rows, rounded and ready to be drawn. A row asks at every paint; the file is looked at each time
// and decoded again only when its size or time changed. Of a format whose reader can do so (JPEG, the clients' own)
// only the part that shows is decoded; of another (PNG) all of it, so that a large picture of such a format is not
// read.
//
// Thread: the GUI thread. Ownership: the panel keeps it for its rows.
class ThumbnailCache
{
public:
    static std::shared_ptr<ThumbnailCache> Shared();

    // The picture of that file, or the default picture when there is no file or it is no picture.
    QImage Thumbnail(const QString& strPath);

private:
    struct Entry
    {
        qint64 lSize;
        QDateTime modified;
        QImage image;
    };

    const QImage& DefaultThumbnail();

    QCache<QString, Entry> m_entries{256}; // thumbnails; each takes 32 kB
    QImage m_default;
};
