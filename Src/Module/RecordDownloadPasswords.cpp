// The engine's password recovery: a device's password after a refusal, a cloud recording's password before its start.

#include "Module/RecordDownloadModule.h"

#include "KXLogic/KXLogicFunctions.h"
#include "KXLogic/KXLogicModules.h"
#include "Module/EngineLog.h"
#include "Module/UnixTime.h"
#include "ktl/Json.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace KXDownLoadList;

namespace {

constexpr int RecordingPassword = 1; // kind of the device's password that is asked for

void LogRecovery(const DownloadRecordInfo& record, const char* pszWhat)
{
    KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnDownloadDeviceRecordState", "%s.Recordname:%s", pszWhat,
                  record.strText4.toUtf8().constData());
}

} // namespace

// A refused transfer is given one more start after a password was fetched, and as many as it takes before that. False
// when the client dropped the task meanwhile; else it is to wait again, or it is given up and outside.
bool RecordDownloadModule::RecoverPassword(const DownloadTaskPtr& pTask, DownloadDeviceRecordInfo& record)
{
    if (!record.bNeedPassword || !record.bCanGetPassword || !m_pDeviceLogic)
        return GiveUp(pTask, "Download failed,the current record can not get password");
    if (m_setGettingPasswordDevice.contains(record.strDeviceId))
        return Requeue(pTask, record, false, "Try download again because this device is getting password");
    if (!record.bGotNewPassword) {
        m_setGettingPasswordDevice.insert(record.strDeviceId);
        return Requeue(pTask, record, true, "Get the password and download again");
    }
    if (record.bRetriedWithNewPassword)
        return GiveUp(pTask, "Download failed,the current record has been tried again with the new password");
    return Requeue(pTask, record, false, "Try download again because Not been retried with the new password");
}

bool RecordDownloadModule::GiveUp(const DownloadTaskPtr& pTask, const char* pszWhy)
{
    LogRecovery(*pTask->pRecord, pszWhy);
    if (pTask->state != TaskState::Ending)
        return false;
    StopDeviceDownload(pTask->strRecordId, StopCode::Refused, QString());
    return !pTask->bDropped;
}

bool RecordDownloadModule::Requeue(const DownloadTaskPtr& pTask, DownloadDeviceRecordInfo& record, bool bAsks,
                                   const char* pszWhy)
{
    record.bRetriedWithNewPassword = true;
    StopDeviceDownload(pTask->strRecordId, StopCode::Retry, QString());
    if (bAsks && pTask->state == TaskState::Entering && m_pDeviceLogic)
        RequestDevicePassword(record);
    else if (bAsks)
        m_setGettingPasswordDevice.remove(record.strDeviceId); // nobody is left to ask for
    if (pTask->state != TaskState::Entering)
        return false;
    LogRecovery(record, pszWhy);
    return pTask->state == TaskState::Entering;
}

// The mutex is held around the host's call, so that an answer on a host thread finds its handle in the list.
void RecordDownloadModule::RequestDevicePassword(const DownloadDeviceRecordInfo& record)
{
    ktl::Json::Value userInfo;
    userInfo["deviceId"] = record.strDeviceId.toStdString();
    userInfo["recordId"] = record.strRecordId.toStdString();
    ++m_mapDevicePwdCount[record.strDeviceId.toStdString()];
    const QMutexLocker lock(&m_pwdRequestMutex);
    m_listPwdRequest.append(m_pDeviceLogic->RequestDevicePassword(
        record.strText1.toStdString(), record.strDeviceId.toStdString(), record.iValue5, record.lValue1,
        userInfo.toStyledString(), RecordingPassword));
}

void RecordDownloadModule::OnLogicMessage(const KXLogic::LogicMessage& message)
{
    if (message.iMessage != KXLogic::DevicePasswordMessage)
        return;
    {
        const QMutexLocker lock(&m_pwdRequestMutex);
        if (!m_listPwdRequest.removeOne(message.lRequest))
            return;
    }
    emit SignalGetDevicePasswordResponse(
        message.iResult, message.lChannelId, QString::fromStdString(message.strUserName),
        QString::fromStdString(message.strPassword), QString::fromStdString(message.strUserInfo));
}

// The local encoding is read first. One that is not UTF-8 gives no JSON, or a device that nobody asked for, where the
// id is not ASCII.
QString RecordDownloadModule::AnsweredDevice(const QString& strUserInfo) const
{
    QJsonValue deviceId;
    for (const QByteArray& text : {strUserInfo.toLocal8Bit(), strUserInfo.toUtf8()}) {
        deviceId = QJsonDocument::fromJson(text).object().value(QLatin1String("deviceId"));
        if (deviceId.isString() && m_setGettingPasswordDevice.contains(deviceId.toString()))
            break;
    }
    return deviceId.toString();
}

void RecordDownloadModule::OnGetDevicePassword(int iResult, int64_t, QString, QString strPwd, QString strUserInfo)
{
    const QString strDeviceId = AnsweredDevice(strUserInfo);
    m_setGettingPasswordDevice.remove(strDeviceId);
    if (iResult == 0) {
        const std::string strClear =
            KXLogicFunctions::AesDecryptDeviceUserInfo(strDeviceId.toStdString(), strPwd.toStdString());
        for (const DownloadTaskPtr& pTask : m_listRunDeviceRecord.Tasks() + m_listWaitDeviceRecord.Tasks()) {
            const auto pRecord = std::dynamic_pointer_cast<DownloadDeviceRecordInfo>(pTask->pRecord);
            if (!pRecord || pRecord->strDeviceId != strDeviceId)
                continue;
            pRecord->strPassword = QString::fromStdString(strClear);
            pRecord->bGotNewPassword = true;
        }
    }
    StartNextDeviceDownload();
}

// A query that the host does not take is answered like one without a result: the task goes on with what it has and
// fails where the user sees it, instead of being held for ever.
void RecordDownloadModule::RequestCloudPassword(const DownloadTaskPtr& pTask, const DownloadCloudRecordInfo& record)
{
    if (m_pCloudLogic && m_pCloudLogic->GetCloudRecordPassword(
                             record.strText1.toStdString(), record.strDeviceId.toStdString(), record.iValue5,
                             record.lValue1, record.strCloudText2.toStdString(), record.strRecordId.toStdString(),
                             UnixTimeOf(record.strStartTime), record.strDownloadPath.toStdString()) == 0)
        return;
    if (m_bShuttingDown)
        return;
    KX_ENGINE_LOG(LogFailure, "RecordDownloadModule::AddDownloadRecord",
                  "The cloud password could not be asked for.Recordname:%s", record.strText4.toUtf8().constData());
    QMetaObject::invokeMethod(
        this, [this, pTask] { ReleaseWithPassword(pTask, pTask->pRecord->strPassword); }, Qt::QueuedConnection);
}

int RecordDownloadModule::CloudPasswordCallback(int ibGet, const char* strPassword, const char* strDeviceSN,
                                                int64_t lChannelId, const char* strRecordId, const char* strPath,
                                                void* pUser)
{
    if (!pUser)
        return -1;
    return QMetaObject::invokeMethod(
        static_cast<RecordDownloadModule*>(pUser), "OnGetCloudPasswordFinished", Qt::QueuedConnection,
        Q_ARG(int, ibGet), Q_ARG(QString, QString::fromUtf8(strPassword)),
        Q_ARG(QString, QString::fromUtf8(strDeviceSN)), Q_ARG(int64_t, lChannelId),
        Q_ARG(QString, QString::fromUtf8(strRecordId)), Q_ARG(QString, QString::fromUtf8(strPath)));
}

void RecordDownloadModule::OnGetCloudPasswordFinished(int ibGet, QString strPassword, QString strDeviceSN, int64_t,
                                                      QString strRecordId, QString strPath)
{
    KX_ENGINE_LOG(LogEvent, "RecordDownloadModule::OnGetCloudPasswordFinished",
                  "ibGet[%d],strPassword[%s],strDeviceSN[%s],strRecordId[%s],strPath[%s]", ibGet,
                  strPassword.toUtf8().constData(), strDeviceSN.toUtf8().constData(), strRecordId.toUtf8().constData(),
                  strPath.toUtf8().constData());
    for (const DownloadTaskPtr& pTask : m_listPendingCloudRecord.TasksOf(strRecordId)) {
        if (pTask->pRecord->strDeviceId == strDeviceSN)
            return ReleaseWithPassword(pTask, strPassword);
    }
}

// The row comes first, then the picture is asked for, and then the task may start.
void RecordDownloadModule::ReleaseWithPassword(const DownloadTaskPtr& pTask, const QString& strPassword)
{
    if (pTask->state != TaskState::Held)
        return;
    pTask->pRecord->strPassword = strPassword;
    Move(pTask, TaskState::Entering);
    emit SignalAddDownloadInfo(pTask->pRecord);
    const auto pRecord = std::dynamic_pointer_cast<DownloadCloudRecordInfo>(pTask->pRecord);
    if (pTask->state == TaskState::Entering && pRecord)
        RequestCloudPicture(*pRecord);
    if (pTask->state != TaskState::Entering)
        return;
    Move(pTask, TaskState::Waiting);
    StartNextCloudDownload();
}
