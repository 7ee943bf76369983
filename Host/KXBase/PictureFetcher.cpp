#include "Host/KXBase/PictureFetcher.h"

#include "Host/KXBase/HostLog.h"
#include "Host/KXBase/PictureTransfer.h"

#include <QtCore/QUrl>

namespace {

constexpr int MostTransfers = 6; // what a browser allows itself per server

} // namespace

// The transfers end, unannounced, before their folder goes.
PictureFetcher::~PictureFetcher()
{
    qDeleteAll(findChildren<PictureTransfer*>());
}

void PictureFetcher::Fetch(const QString& strUrl)
{
    m_queueUrls.enqueue(strUrl);
    StartNext();
}

void PictureFetcher::StartNext()
{
    while (m_iRunning < MostTransfers && !m_queueUrls.isEmpty()) {
        ++m_iRunning;
        const QString strPath = m_folder.filePath(QStringLiteral("picture%1").arg(++m_uFileNumber));
        auto* pTransfer = new PictureTransfer(m_queueUrls.dequeue(), strPath, KXHost::GetPictureLimits());
        pTransfer->setParent(this);
        connect(pTransfer, &PictureTransfer::SignalFinished, this, &PictureFetcher::OnTransferFinished);
        connect(pTransfer, &PictureTransfer::SignalFinished, pTransfer, &QObject::deleteLater);
        pTransfer->Start();
    }
}

void PictureFetcher::OnTransferFinished(const QString& strUrl, const QString& strPath, const QString& strReason)
{
    --m_iRunning;
    if (!strReason.isEmpty()) {
        // A query may carry an access token; the log needs none.
        const QString strShown = QUrl(strUrl).toDisplayString(QUrl::RemoveQuery | QUrl::RemoveUserInfo);
        LogFailure("Host/KXBase/PictureFetcher", __LINE__, "PictureFetcher::OnTransferFinished",
                   QStringLiteral("picture[%1] not fetched: %2").arg(strShown, strReason));
    }
    emit SignalFetched(strUrl, strPath);
    StartNext();
}
