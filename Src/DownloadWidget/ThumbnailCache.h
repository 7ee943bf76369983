#pragma once

#include <QtCore/QCache>
#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QThread>
#include <QtCore/QVector>
#include <QtGui/QImage>

#include <memory>

class DownloadItem;

// The thumbnails of the rows, rounded and ready to be drawn. A row asks at every paint; the file is looked at each time
// and read again only when its size or time changed. What its header promises to be cheap is decoded at once, the rest
// on a thread of the cache: the row shows the default picture until then.
//
// Thread: the GUI thread. Ownership: the panel keeps it for its rows; its end waits for the picture under way, which is
// given up.
class ThumbnailCache : public QObject
{
    Q_OBJECT

public:
    static std::shared_ptr<ThumbnailCache> Shared();
    ThumbnailCache() = default;
    ~ThumbnailCache() override;

    // The picture of that file, or the default picture when there is no file, it is no picture, or it is not ready:
    // then `row` is repainted when it is. The default picture has the pixels of a screen of that ratio.
    QImage Thumbnail(const QString& strPath, DownloadItem& row, qreal dRatio);

private:
    struct State
    {
        qint64 lSize;
        QDateTime modified;
    };
    struct Entry
    {
        State state;
        QImage image; // null: it is no picture
    };

    QImage Picture(const QString& strPath, DownloadItem& row);
    static QImage ReadAtOnce(const QString& strPath, bool& bLater);
    void ReadLater(const QString& strPath, const State& state);
    void OnRead(const QString& strPath, const State& state, const QImage& picture);
    QImage Keep(const QString& strPath, const State& state, const QImage& picture);
    const QImage& DefaultThumbnail(qreal dRatio);

    QCache<QString, Entry> m_entries{256}; // thumbnails; each takes 32 kB
    QImage m_default;
    QHash<QString, QVector<QPointer<DownloadItem>>> m_waiting; // rows, by the path of a picture under way
    QThread m_thread;                                          // runs from the first picture that is not cheap
    QObject m_reader;                                          // lives on that thread; calls are queued to it
};
