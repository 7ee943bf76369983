#include "Host/Client/DeviceThumbnails.h"

#include "KXBase/GKXObserver.h"
#include "KXBase/PictureDownloader.h"
#include "Model/HostEvents.h"

namespace KXClient {

DeviceThumbnails::DeviceThumbnails()
{
    PictureDownloader::Instance()->Attach(this);
}

DeviceThumbnails::~DeviceThumbnails()
{
    PictureDownloader::Instance()->Detach(this);
}

void DeviceThumbnails::Fetch(const QString& strRecordId, const QString& strUrl)
{
    if (strUrl.isEmpty() || m_recordIds.contains(strUrl))
        return;
    m_recordIds.insert(strUrl, strRecordId);
    PictureDownloader::Instance()->get(strUrl);
}

// Every listener hears of every picture, also of those that the plug-in asked for.
void DeviceThumbnails::OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath)
{
    const QString strRecordId = m_recordIds.take(strUrl);
    if (iResult == 0 && !strRecordId.isEmpty())
        GKXObserver::notify(HostEvents::DeviceRecordThumbsPath, QVariantList{strRecordId, strLocalPath});
}

} // namespace KXClient
