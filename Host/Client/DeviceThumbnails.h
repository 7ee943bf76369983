#pragma once

#include "KXBase/IPictureDownloaderListener.h"

#include <QtCore/QHash>
#include <QtCore/QString>

namespace KXClient {

// Fetches the pictures of device recordings and hands them to the plug-in, which shows each in the recording's row and
// keeps it beside the file. (Covers of cloud recordings are the plug-in's own affair.) Thread: the GUI thread.
class DeviceThumbnails final : private IPictureDownloaderListener
{
public:
    DeviceThumbnails();
    ~DeviceThumbnails();
    DeviceThumbnails(const DeviceThumbnails&) = delete;
    DeviceThumbnails& operator=(const DeviceThumbnails&) = delete;

    // Harmless without a URL. The plug-in ignores a picture whose row is gone when it comes.
    void Fetch(const QString& strRecordId, const QString& strUrl);

private:
    void OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath) override;

    QHash<QString, QString> m_recordIds; // that wait, by URL
};

} // namespace KXClient
