#include "KXBase/PictureDownloader.h"

#include "Host/KXBase/PictureFetcher.h"
#include "Host/KXBase/PictureListenerPort.h"
#include "Host/KXBase/PictureSettings.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtCore/QUrl>

namespace {

constexpr int Fetched = 0;
constexpr int NotFetched = 1;

bool IsFetchable(const QString& strUrl)
{
    const QUrl url(strUrl, QUrl::StrictMode);
    const QString strScheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (strScheme == QLatin1String("http") || strScheme == QLatin1String("https"));
}

// Thread: any; the lock covers the list of listeners only. The transfers have a thread of their own, so that results
// do not depend on which thread asked.
class HttpPictureDownloader final : public PictureDownloader
{
public:
    HttpPictureDownloader();
    ~HttpPictureDownloader();

    void Attach(IPictureDownloaderListener* pListener) override;
    void Detach(IPictureDownloaderListener* pListener) override;
    void get(const QString& strUrl) override;

private:
    void Announce(int iResult, const QString& strUrl, const QString& strPath);

    QMutex m_mutex;
    QHash<IPictureDownloaderListener*, PictureListenerPort*> m_mapPorts;
    QThread m_thread;
    PictureFetcher* m_pFetcher; // lives on m_thread, which deletes it when it ends
};

HttpPictureDownloader::HttpPictureDownloader()
    : m_pFetcher(new PictureFetcher)
{
    m_pFetcher->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_pFetcher, &QObject::deleteLater);
    QObject::connect(
        m_pFetcher, &PictureFetcher::SignalFetched, m_pFetcher,
        [this](const QString& strUrl, const QString& strPath) {
            Announce(strPath.isEmpty() ? NotFetched : Fetched, strUrl, strPath);
        },
        Qt::DirectConnection);
    m_thread.setObjectName(QStringLiteral("PictureDownloader"));
    m_thread.start();
}

// The network thread ends first: it posts to the ports.
HttpPictureDownloader::~HttpPictureDownloader()
{
    m_thread.quit();
    m_thread.wait();
    for (PictureListenerPort* pPort : qAsConst(m_mapPorts))
        pPort->Close();
}

void HttpPictureDownloader::Attach(IPictureDownloaderListener* pListener)
{
    const QMutexLocker lock(&m_mutex);
    if (pListener != nullptr && !m_mapPorts.contains(pListener))
        m_mapPorts.insert(pListener, new PictureListenerPort(pListener));
}

void HttpPictureDownloader::Detach(IPictureDownloaderListener* pListener)
{
    QMutexLocker lock(&m_mutex);
    PictureListenerPort* const pPort = m_mapPorts.take(pListener);
    lock.unlock();
    if (pPort != nullptr)
        pPort->Close();
}

void HttpPictureDownloader::get(const QString& strUrl)
{
    if (!IsFetchable(strUrl))
        return Announce(NotFetched, strUrl, QString());
    QMetaObject::invokeMethod(
        m_pFetcher, [pFetcher = m_pFetcher, strUrl] { pFetcher->Fetch(strUrl); }, Qt::QueuedConnection);
}

void HttpPictureDownloader::Announce(int iResult, const QString& strUrl, const QString& strPath)
{
    const QMutexLocker lock(&m_mutex);
    for (PictureListenerPort* pPort : qAsConst(m_mapPorts))
        pPort->Post(iResult, strUrl, strPath);
}

QMutex s_mutex; // guards both below
KXHost::PictureLimits s_limits;
HttpPictureDownloader* s_pDownloader = nullptr; // from the first call of Instance to the end of the application object

void EndDownloader()
{
    QMutexLocker lock(&s_mutex);
    HttpPictureDownloader* const pDownloader = std::exchange(s_pDownloader, nullptr);
    lock.unlock();
    delete pDownloader;
}

} // namespace

PictureDownloader* PictureDownloader::Instance()
{
    const QMutexLocker lock(&s_mutex);
    if (s_pDownloader == nullptr && QCoreApplication::instance() != nullptr) {
        s_pDownloader = new HttpPictureDownloader;
        qAddPostRoutine(EndDownloader);
    }
    return s_pDownloader;
}

void KXHost::SetPictureLimits(const PictureLimits& limits)
{
    const QMutexLocker lock(&s_mutex);
    s_limits = limits;
}

KXHost::PictureLimits KXHost::GetPictureLimits()
{
    const QMutexLocker lock(&s_mutex);
    return s_limits;
}
