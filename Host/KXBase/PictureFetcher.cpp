#include "Host/KXBase/PictureFetcher.h"

#include "Host/KXBase/HostLog.h"
#include "Host/KXBase/PictureTransfer.h"

#include <QtCore/QUrl>

#include <utility>

namespace {

constexpr std::size_t MostTransfers = 6; // what a browser allows itself per server

} // namespace

// One that has just finished still counts while it announces itself, and the next one starts meanwhile.
PictureFetcher::PictureFetcher(Fetched fetched)
    : m_fetched(std::move(fetched))
    , m_http(1, 2 * MostTransfers)
{}

PictureFetcher::~PictureFetcher()
{
    m_http.End();
}

void PictureFetcher::Fetch(const QString& strUrl)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_queueUrls.enqueue(strUrl);
    }
    StartNext();
}

void PictureFetcher::StartNext()
{
    while (true) {
        QString strUrl;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_uRunning >= MostTransfers || m_queueUrls.isEmpty())
                return;
            ++m_uRunning;
            strUrl = m_queueUrls.dequeue();
        }
        if (!Start(strUrl))
            OnFinished(strUrl, QString(), QStringLiteral("the system gives no thread for it"));
    }
}

bool PictureFetcher::Start(const QString& strUrl)
{
    const KXHost::PictureLimits limits = KXHost::GetPictureLimits();
    KXHost::HttpRequest request;
    request.url = QUrl(strUrl, QUrl::StrictMode);
    request.iStallTimeoutMs = limits.iTimeoutMs;
    request.iTimeoutMs = limits.iTimeoutMs;
    quint64 uFileNumber = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        uFileNumber = ++m_uFileNumber;
    }
    const auto finished = [this, strUrl](const QString& strPath, const QString& strReason) {
        OnFinished(strUrl, strPath, strReason);
        StartNext();
    };
    const QString strPath = m_folder.filePath(QStringLiteral("picture%1").arg(uFileNumber));
    return m_http.Start(request, std::make_shared<PictureTransfer>(strPath, limits, finished)) != nullptr;
}

void PictureFetcher::OnFinished(const QString& strUrl, const QString& strPath, const QString& strReason)
{
    if (!strReason.isEmpty()) {
        // A query may carry an access token; the log needs none.
        const QString strShown = QUrl(strUrl).toDisplayString(QUrl::RemoveQuery | QUrl::RemoveUserInfo);
        LogFailure("Host/KXBase/PictureFetcher", __LINE__, "PictureFetcher::OnFinished",
                   QStringLiteral("picture[%1] not fetched: %2").arg(strShown, strReason));
    }
    m_fetched(strUrl, strPath);
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_uRunning;
}
