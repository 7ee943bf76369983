// The engine's picture pipeline: cover pictures are asked for, decrypted on their own thread, and settle held tasks.

#include "Module/RecordDownloadModule.h"

#include "KXBase/PictureDownloader.h"
#include "KXLogic/KXLogicCallbacks.h"
#include "Module/EngineLog.h"
#include "Module/StateEvent.h"

#include <QtCore/QFileInfo>

#include <algorithm>

using namespace KXDownLoadList;

namespace {

constexpr int WrongKey = 2; // result of the host's decryption

} // namespace

void RecordDownloadModule::RequestCloudPicture(const DownloadCloudRecordInfo& record)
{
    const QString strUrl = record.strCloudText1;
    m_mapCloudPicture[strUrl].infos.append({record.strRecordId, record.strDeviceId, record.strText1, record.strPassword,
                                            record.strCloudText4, record.strDownloadPath, record.strCloudText2});
    if (m_pPictureDownloader) {
        m_pPictureDownloader->get(strUrl);
        return;
    }
    // A host without pictures answers like one that cannot fetch this one.
    QMetaObject::invokeMethod(
        this, [this, strUrl] { OnPictureDownloaded(-1, strUrl, QString()); }, Qt::QueuedConnection);
}

// One notification settles every request for its URL that is not with the decrypter yet.
void RecordDownloadModule::OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath)
{
    const auto pictures = m_mapCloudPicture.find(strUrl);
    if (pictures == m_mapCloudPicture.end() || m_bShuttingDown)
        return;
    const QList<CloudPictureInfo> undecrypted = pictures->infos.mid(pictures->iDecrypting);
    if (iResult == 0 && m_pPictrueDecrypt && m_pCloudLogic) {
        // The cover is saved before the transfer starts; of a task that was deleted meanwhile nothing shall appear.
        for (const CloudPictureInfo& info : undecrypted) {
            if (IsGoingOn(info))
                MakeFolderOf(info.strDownloadPath);
        }
        DecryptPictures(strUrl, strLocalPath);
        return;
    }
    pictures->infos.erase(pictures->infos.begin() + pictures->iDecrypting, pictures->infos.end());
    if (pictures->infos.isEmpty())
        m_mapCloudPicture.erase(pictures);
    for (const CloudPictureInfo& info : undecrypted) {
        if (!WasListed(info)) // such a one was resumed when it is held, and waits for its password again
            PictureReady(info, QString());
    }
}

// Nothing in here leaves the engine, so that the jobs stand in the order of their requests.
void RecordDownloadModule::DecryptPictures(const QString& strUrl, const QString& strLocalPath)
{
    const auto pictures = m_mapCloudPicture.find(strUrl);
    if (pictures == m_mapCloudPicture.end() || !m_pPictrueDecrypt)
        return; // the client ended the plug-in when a folder was logged
    for (; pictures->iDecrypting < pictures->infos.size(); ++pictures->iDecrypting) {
        const CloudPictureInfo& info = pictures->infos[pictures->iDecrypting];
        m_pPictrueDecrypt->Enqueue(
            {strUrl, strLocalPath, info.strPictureKey, info.strDeviceId, info.strPassword, info.strDownloadPath});
    }
}

// The request that a result belongs to, taken out of those of its URL: the decrypter answers in the order of its jobs.
std::optional<RecordDownloadModule::CloudPictureInfo> RecordDownloadModule::TakeDecrypted(const QString& strUrl)
{
    const auto pictures = m_mapCloudPicture.find(strUrl);
    if (pictures == m_mapCloudPicture.end())
        return std::nullopt;
    const CloudPictureInfo info = pictures->infos.takeFirst();
    pictures->iDecrypting = qMax(pictures->iDecrypting - 1, 0);
    if (pictures->infos.isEmpty())
        m_mapCloudPicture.erase(pictures);
    return info;
}

void RecordDownloadModule::OnPictureUnreadable(QString strUrl, QString strDownloadPath)
{
    const std::optional<CloudPictureInfo> info = TakeDecrypted(strUrl);
    if (!info || m_bShuttingDown)
        return;
    KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::OnPictureUnreadable", "The cover picture of %s could not be read.",
                  strDownloadPath.toUtf8().constData());
    if (!WasListed(*info))
        PictureReady(*info, QString());
}

void RecordDownloadModule::OnPictureDecrptFinished(int iCode, QString strUrl, QString strDecrptLocalPicpath)
{
    const std::optional<CloudPictureInfo> taken = TakeDecrypted(strUrl);
    if (!taken)
        return;
    const CloudPictureInfo& info = *taken;

    // A cover that arrives after its recording was dropped would lie there for ever.
    if (iCode == 0 && (m_bShuttingDown || !IsGoingOn(info)) && !QFileInfo::exists(info.strDownloadPath))
        RemoveFileJpg(info.strDownloadPath);
    if (m_bShuttingDown)
        return;
    if (iCode == 0 && WasListed(info)) {
        emit SignalUpdateCloudPictureInfo(info.strRecordId, strDecrptLocalPicpath);
    } else if (iCode == 0) {
        PictureReady(info, strDecrptLocalPicpath);
    } else if (iCode == WrongKey) {
        KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnPictureDecrptFinished", "%s", "Decrpt picture DecKeyError.");
        DropWrongKeyTask(info);
    } else if (!WasListed(info)) {
        PictureReady(info, QString());
    }
}

// An encrypted recording's picture is asked for when its password is there, and it has its row then.
bool RecordDownloadModule::WasListed(const CloudPictureInfo& info)
{
    return !info.strDeviceAccount.isEmpty() && !info.strKeyText.isEmpty();
}

// True while the engine has the task that this picture was asked for.
bool RecordDownloadModule::IsGoingOn(const CloudPictureInfo& info) const
{
    const DownloadTasks tasks = TasksOf(Sources[CloudRecord], info.strRecordId);
    return std::any_of(tasks.begin(), tasks.end(), [&info](const DownloadTaskPtr& pTask) {
        return !pTask->bDropped && pTask->pRecord->strDownloadPath == info.strDownloadPath;
    });
}

// Releases the task that is held for this picture.
void RecordDownloadModule::PictureReady(const CloudPictureInfo& info, const QString& strPath)
{
    const DownloadTaskPtr pTask = HeldTask(info);
    if (!pTask)
        return;
    pTask->pRecord->strPicturePath = strPath;
    Move(pTask, TaskState::Entering);
    Enter(pTask);
}

// The row of a task that was resumed would wait for ever if it were not told, too.
void RecordDownloadModule::DropWrongKeyTask(const CloudPictureInfo& info)
{
    const DownloadTaskPtr pTask = HeldTask(info);
    if (!pTask)
        return;
    NotifyState(StateEventOf(*pTask->pRecord, KXLogic::StateCode::Refused));
    if (pTask->state != TaskState::Held)
        return; // the client dropped it when it heard of the state
    Move(pTask, TaskState::Outside);
    if (pTask->bHasRow)
        emit SignalDownloadRecordStates(pTask->strRecordId, KXLogic::StateCode::Refused, false);
}

// Each task has a target path of its own, also where record ids repeat.
DownloadTaskPtr RecordDownloadModule::HeldTask(const CloudPictureInfo& info) const
{
    for (const DownloadTaskPtr& pTask : m_listPendingCloudRecord.TasksOf(info.strRecordId)) {
        if (pTask->pRecord->strDownloadPath == info.strDownloadPath)
            return pTask;
    }
    return nullptr;
}
