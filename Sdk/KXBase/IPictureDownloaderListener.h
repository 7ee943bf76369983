#pragma once

#include <QtCore/QString>

// Hears what became of each picture that was asked for.
class IPictureDownloaderListener
{
public:
    // `iResult` 0: the picture, as served, is in the file `strLocalPath`, which stays until the host ends. Any other
    // result: it could not be fetched and `strLocalPath` is empty. `strUrl` is the URL as it was given to `get`.
    // Thread: the thread that attached the listener, never inside `get` itself.
    virtual void OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath) = 0;

protected:
    ~IPictureDownloaderListener() = default;
};
