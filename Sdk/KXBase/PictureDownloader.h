#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>

class IPictureDownloaderListener;

// Fetches pictures by URL into local files.
//
// Thread: every operation on a thread with a running Qt event loop.
class PictureDownloader
{
public:
    // The one downloader of the process; null when the host has none.
    static KX_HOST_EXPORT PictureDownloader* Instance();

    // From now on `pListener` hears every result. It stays owned by the caller.
    virtual void Attach(IPictureDownloaderListener* pListener) = 0;
    // When it returns, no notification for `pListener` is running or will run.
    virtual void Detach(IPictureDownloaderListener* pListener) = 0;
    // Asks for one picture. Each call is answered exactly once; an empty or malformed URL is a failed download.
    virtual void get(const QString& strUrl) = 0;

protected:
    ~PictureDownloader() = default;
};
