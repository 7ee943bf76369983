// The engine's file-system duties: target folders and paths, free space, partial files, and the registration of
// finished ones.

#include "Module/RecordDownloadModule.h"

#include "KXBase/LocalResourceDbInterface.h"
#include "KXLogic/KXLogicModules.h"
#include "Module/DiskFreeSpace.h"
#include "Module/EngineLog.h"
#include "Module/PicturePath.h"
#include "Module/UnixTime.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

using namespace KXDownLoadList;

namespace {

constexpr quint64 MinFreeMiB = 50;
constexpr int RecordingKind = 2; // of LocalResourceInfo

void RemoveLogged(const QString& strPath)
{
    if (!QFile::exists(strPath))
        return;
    const bool bRemoved = QFile::remove(strPath);
    KX_ENGINE_LOG(bRemoved ? LogEvent : LogFailure, "RecordDownloadModule::RemoveFileJpg", "remove file[%s]",
                  strPath.toUtf8().constData());
}

// "(n)" goes before the last "." of the file name, or at the end of a name without one.
QString NumberedPath(const QString& strFilePath, int iCounter)
{
    const int iName = strFilePath.size() - QFileInfo(strFilePath).fileName().size();
    const int iDot = strFilePath.lastIndexOf(QLatin1Char('.'));
    QString strNumbered = strFilePath;
    return strNumbered.insert(iDot < iName ? strFilePath.size() : iDot, QStringLiteral("(%1)").arg(iCounter));
}

} // namespace

bool RecordDownloadModule::EnsureDownloadPathExists(const QString& strFilePath)
{
    if (strFilePath.isEmpty())
        return false;
    const bool bExists = MakeFolderOf(strFilePath);
    if (!bExists)
        KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::EnsureDownloadPathExists",
                      "Failed to create download directory: %s",
                      QFileInfo(strFilePath).absolutePath().toUtf8().constData());
    return bExists;
}

// Says nothing of a failure: of one task's folder it is told once, at its start.
bool RecordDownloadModule::MakeFolderOf(const QString& strFilePath)
{
    const QString strDir = QFileInfo(strFilePath).absolutePath();
    if (QDir(strDir).exists())
        return true;
    if (!QDir().mkpath(strDir))
        return false;
    KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::EnsureDownloadPathExists", "Created download directory: %s",
                  strDir.toUtf8().constData());
    return true;
}

bool RecordDownloadModule::IsFreePath(const QString& strFilePath)
{
    if (m_promisedPaths.IsTaken(strFilePath))
        return false;
    return !m_folderListing.MayExist(strFilePath) || !QFileInfo::exists(strFilePath);
}

void RecordDownloadModule::ForgetTakenNames()
{
    m_folderListing = FolderListing();
    m_mapNextCounter.clear();
}

QString RecordDownloadModule::MakeUniqueFilePath(const QString& strFilePath)
{
    if (IsFreePath(strFilePath))
        return strFilePath;
    int& iNext = m_mapNextCounter[strFilePath]; // many tasks of one name must not count from 1 each
    QString strCandidate;
    do {
        strCandidate = NumberedPath(strFilePath, ++iNext);
    } while (!IsFreePath(strCandidate));
    return strCandidate;
}

// Measures only while the guard is armed, and disarms it once there is room again.
bool RecordDownloadModule::JudgeDiskIsFull()
{
    if (!m_bDiskGuardArmed)
        return false;
    const quint64 uFreeMiB = FreeBytesOfVolume(m_strDownloadDir).value_or(0) >> 20;
    if (uFreeMiB < MinFreeMiB) {
        KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::JudgeDiskIsFull", "%s",
                      "The free disk space is less than 50 MB.");
        return true;
    }
    m_bDiskGuardArmed = false;
    return false;
}

void RecordDownloadModule::RemoveFileJpg(const QString& strFilePath)
{
    RemoveLogged(strFilePath);
    RemoveLogged(PicturePathOf(strFilePath));
}

void RecordDownloadModule::RegisterFinishedFile(const Source& source, const DownloadTaskPtr& pTask)
{
    const DownloadRecordInfo& record = *pTask->pRecord;
    LocalResourceInfo info;
    info.strFilePath = record.strDownloadPath;
    info.lRegisterTime = QDateTime::currentSecsSinceEpoch();
    info.lBeginTime = UnixTimeOf(record.strStartTime);
    info.lEndTime = UnixTimeOf(record.strEndTime);
    info.iResourceKind = RecordingKind;
    info.strTitle = record.strText4;
    if (LocalResourceDbInterface* pDatabase = LocalResourceDbInterface::GetInstance())
        pDatabase->Insert(&info);
    if (m_pCloudLogic && pTask->state == TaskState::Ending)
        m_pCloudLogic->ReportRecordDownloaded(record.strDeviceId.toStdString(), record.iValue5, info.lBeginTime,
                                              info.lEndTime, source.iReportedKind, record.strRecordId.toStdString());
}

void RecordDownloadModule::RegisterCloudFinishedFile(const DownloadTaskPtr& pTask)
{
    RegisterFinishedFile(Sources[CloudRecord], pTask);
}

void RecordDownloadModule::RegisterDeviceFinishedFile(const DownloadTaskPtr& pTask)
{
    RegisterFinishedFile(Sources[DeviceRecord], pTask);
}

void RecordDownloadModule::RegisterIOTLanFinishedFile(const DownloadTaskPtr& pTask)
{
    RegisterFinishedFile(Sources[IOTLanRecord], pTask);
}

void RecordDownloadModule::RegisterLanModuleFinishedFile(const DownloadTaskPtr& pTask)
{
    RegisterFinishedFile(Sources[LanModuleRecord], pTask);
}
