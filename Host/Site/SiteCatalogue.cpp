#include "Host/Site/SiteCatalogue.h"

#include "Host/Site/SiteSources.h"

#include <QtCore/QDir>

#include <algorithm>

namespace KXHost {

bool SiteCatalogue::Load(const Site::Options& options, QString* pError)
{
    const bool bFolder = !options.strDataDir.isEmpty();
    if (options.cases != Site::Cases::Difficult) {
        m_recordings = bFolder ? FolderRecordings(options.strDataDir, pError) : BuiltInRecordings();
        if (m_recordings.empty())
            return false;
    }
    if (bFolder)
        m_devices = FolderDevices();
    const bool bDifficult = options.cases != Site::Cases::Ordinary;
    if (!bFolder || bDifficult) {
        const SiteDevices devices = BuiltInDevices();
        m_devices.insert(m_devices.end(), devices.begin(), devices.end());
    }
    if (bDifficult) {
        const SiteRecordings difficult = DifficultRecordings();
        m_recordings.insert(m_recordings.end(), difficult.begin(), difficult.end());
    }
    return true;
}

const SiteRecording* SiteCatalogue::Find(const QString& strId) const
{
    const auto it = std::find_if(m_recordings.begin(), m_recordings.end(),
                                 [&](const SiteRecording& recording) { return recording.strId == strId; });
    return it == m_recordings.end() ? nullptr : &*it;
}

QString SiteCatalogue::BaseUrl(int iPort)
{
    return iPort > 0 ? QStringLiteral("http://127.0.0.1:%1").arg(iPort) : QString();
}

QString SiteCatalogue::HashFor(const SiteRecording& recording) const
{
    // Held while hashing: whoever asks meanwhile would only compute the same.
    const std::lock_guard<std::mutex> lock(m_hashMutex);
    QString& strHash = m_hashes[recording.strId];
    if (strHash.isEmpty())
        strHash = HashOf(*recording.pClear);
    return strHash;
}

QJsonObject SiteCatalogue::RecordToJson(const SiteRecording& recording, int iPort) const
{
    QJsonObject record = recording.fields;
    record[QStringLiteral("lFileSize")] = recording.pClear->Size();
    record[QStringLiteral("strText3")] = QStringLiteral("127.0.0.1:%1").arg(iPort);
    if (recording.iType == KXDownLoadList::CloudRecord) {
        record[QStringLiteral("strCloudText3")] = QString(BaseUrl(iPort) + QStringLiteral("/cloud/"));
        if (recording.cover != CoverState::None)
            record[QStringLiteral("strCloudText1")] =
                QString(BaseUrl(iPort) + QStringLiteral("/covers/") + recording.strCoverOwner);
    } else if (recording.iType == KXDownLoadList::DeviceRecord) {
        record[QStringLiteral("thumbnail")] =
            QString(BaseUrl(iPort) + QStringLiteral("/thumbs/") + recording.strId + QStringLiteral(".jpg"));
    } else {
        record[QStringLiteral("strLanText2")] = QStringLiteral("127.0.0.1");
        record[QStringLiteral("iLanValue1")] = iPort;
    }
    return record;
}

QJsonArray SiteCatalogue::ToJson(int iPort, const QString& strDownloadFolder) const
{
    const QDir folder(strDownloadFolder);
    QJsonArray array;
    for (const SiteRecording& recording : m_recordings) {
        QJsonObject record = RecordToJson(recording, iPort);
        record[QStringLiteral("strDownloadPath")] =
            strDownloadFolder.isEmpty() ? recording.strFileName : folder.filePath(recording.strFileName);
        record[QStringLiteral("sha256")] = HashFor(recording);
        record[QStringLiteral("expect")] = recording.strExpect;
        array.append(record);
    }
    return array;
}

QJsonObject SiteCatalogue::ClientConfig(int iPort) const
{
    QJsonObject config;
    for (const SiteSource& source : SiteSources)
        config[QLatin1String(source.pKey)] = QJsonObject{
            {QStringLiteral("url"), QString(BaseUrl(iPort) + QLatin1Char('/') + QLatin1String(source.pFolder) +
                                            QLatin1Char('/') + QLatin1String(source.pUrlTail))},
            {QStringLiteral("auth"), QLatin1String(source.pAuthName)},
            {QStringLiteral("user"), QLatin1String(SiteUser)},
        };
    QJsonObject passwords;
    for (const SiteDevice& device : m_devices)
        passwords[device.strSerial] = device.strTold;
    config[QStringLiteral("devicePasswords")] = passwords;
    return config;
}

} // namespace KXHost
