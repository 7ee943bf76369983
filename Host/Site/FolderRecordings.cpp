#include "Host/Site/SiteRecording.h"
#include "Host/Site/SiteSources.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace {

constexpr char Password[] = "folder";
constexpr qint64 FirstCloudId = 4611686018427500001;
constexpr int ClipSeconds = 60; // the files do not say how long they are

QString SerialOf(int iType)
{
    return QStringLiteral("KXFOLDER000") + QString::number(iType);
}

int TypeOf(const QString& strRelativePath)
{
    const QString strFolder = strRelativePath.section(QLatin1Char('/'), 0, 0);
    for (int iType = 0; iType < static_cast<int>(KXHost::SiteSources.size()); ++iType)
        if (strFolder.compare(QLatin1String(KXHost::SourceOf(iType).pFolder), Qt::CaseInsensitive) == 0)
            return iType;
    return KXDownLoadList::CloudRecord;
}

QStringList RelativePaths(const QDir& folder)
{
    QStringList paths;
    QDirIterator it(folder.path(), {QStringLiteral("*.mp4")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        paths += folder.relativeFilePath(it.next());
    paths.sort();
    return paths;
}

QJsonObject Fields(const KXHost::SiteRecording& recording, const QFileInfo& file)
{
    const QDateTime end = file.lastModified();
    const QString strFormat = QStringLiteral("yyyyMMddTHHmmss");
    QJsonObject fields{
        {QStringLiteral("iRecordType"), recording.iType},
        {QStringLiteral("strRecordId"), recording.strId},
        {QStringLiteral("lValue1"), 1},
        {QStringLiteral("lValue2"), 1},
        {QStringLiteral("strText1"), QStringLiteral("folder")},
        {QStringLiteral("strDeviceId"), recording.strSerial},
        {QStringLiteral("strStartTime"), end.addSecs(-ClipSeconds).toString(strFormat)},
        {QStringLiteral("strEndTime"), end.toString(strFormat)},
        {QStringLiteral("strPassword"), recording.strPassword},
        {QStringLiteral("strText4"), file.completeBaseName()},
        {QStringLiteral("iValue5"), recording.iChannel},
    };
    if (recording.iType == KXDownLoadList::DeviceRecord) {
        fields[QStringLiteral("bCanGetPassword")] = true;
        fields[QStringLiteral("bNeedPassword")] = true;
    }
    return fields;
}

KXHost::SiteRecording Recording(const QFileInfo& file, int iType, int iNumber)
{
    KXHost::SiteRecording recording;
    recording.iType = iType;
    recording.strSerial = SerialOf(iType);
    recording.strId = iType == KXDownLoadList::CloudRecord
                          ? QString::number(FirstCloudId + iNumber)
                          : QString(recording.strSerial + QStringLiteral("_") + QString::number(iNumber + 1));
    recording.strFileName = file.fileName();
    recording.strPassword = QLatin1String(Password);
    recording.strExpect = QStringLiteral("finished");
    recording.fields = Fields(recording, file);
    recording.pClear = KXHost::FileSource(file.filePath());
    recording.pServed = recording.pClear;
    recording.strCoverOwner = recording.strId;
    return recording;
}

} // namespace

namespace KXHost {

SiteRecordings FolderRecordings(const QString& strFolder, QString* pError)
{
    const QDir folder(strFolder);
    const QStringList paths = folder.exists() ? RelativePaths(folder) : QStringList();
    if (paths.isEmpty())
        *pError = folder.exists() ? QStringLiteral("There are no MP4 files in %1").arg(strFolder)
                                  : QStringLiteral("There is no folder %1").arg(strFolder);
    SiteRecordings recordings;
    for (const QString& strPath : paths) {
        const QFileInfo file(folder.filePath(strPath));
        if (!file.isReadable()) {
            *pError = QStringLiteral("%1 cannot be read").arg(file.filePath());
            return {};
        }
        recordings.push_back(Recording(file, TypeOf(strPath), static_cast<int>(recordings.size())));
    }
    return recordings;
}

SiteDevices FolderDevices()
{
    SiteDevices devices;
    for (int iType = 0; iType < static_cast<int>(SiteSources.size()); ++iType)
        devices.push_back({SerialOf(iType), QLatin1String(Password), QLatin1String(Password)});
    return devices;
}

} // namespace KXHost
