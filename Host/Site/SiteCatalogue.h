#pragma once

#include "Host/Site/Site.h"
#include "Host/Site/SiteRecording.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>

#include <mutex>

namespace KXHost {

// The recordings and devices of a site. Thread: any, once it is loaded.
class SiteCatalogue
{
public:
    bool Load(const Site::Options& options, QString* pError);

    const SiteRecordings& Recordings() const { return m_recordings; }
    const SiteRecording* Find(const QString& strId) const;

    QJsonArray ToJson(int iPort, const QString& strDownloadFolder) const;
    QJsonObject ClientConfig(int iPort) const;

    static QString BaseUrl(int iPort);

private:
    QString HashFor(const SiteRecording& recording) const;
    QJsonObject RecordToJson(const SiteRecording& recording, int iPort) const;

    SiteRecordings m_recordings;
    SiteDevices m_devices;
    mutable std::mutex m_hashMutex;
    mutable QHash<QString, QString> m_hashes; // by record id, each computed once
};

} // namespace KXHost
