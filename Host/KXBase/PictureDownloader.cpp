#include "KXBase/PictureDownloader.h"

#include "Host/KXBase/PictureFetcher.h"
#include "Host/KXBase/PictureListenerPort.h"
#include "Host/KXBase/PictureSettings.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QMutexLocker>
#include <QtCore/QUrl>

#include <memory>
#include <utility>

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

// Thread: any; the lock covers the list of listeners only.
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
    std::unique_ptr<PictureFetcher> m_pFetcher;
};

HttpPictureDownloader::HttpPictureDownloader()
    : m_pFetcher(std::make_unique<PictureFetcher>([this](const QString& strUrl, const QString& strPath) {
        Announce(strPath.isEmpty() ? NotFetched : Fetched, strUrl, strPath);
    }))
{}

// The transfers end first: they post to the ports.
HttpPictureDownloader::~HttpPictureDownloader()
{
    m_pFetcher.reset();
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
    m_pFetcher->Fetch(strUrl);
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
