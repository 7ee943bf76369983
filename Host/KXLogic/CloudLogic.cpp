#include "Host/KXLogic/CloudLogic.h"

#include "Host/Crypto/PictureCipher.h"
#include "Host/KXBase/ResourceDb.h"
#include "Host/KXLogic/RecordNotes.h"
#include "Host/KXLogic/SettingsStore.h"
#include "Host/ktl/LogSettings.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>

namespace KXHost {

CloudLogic::CloudLogic(HostThreads& threads)
    : m_threads(threads)
{}

int CloudLogic::SetCloudPasswordCallback(void* pUser, KXLogic::CloudPasswordCallback pCallback)
{
    if (pCallback == nullptr)
        m_passwordCallbacks.Replace(pUser, nullptr);
    else
        m_passwordCallbacks.Replace(pUser, [pUser, pCallback](const PasswordAnswer& answer) {
            pCallback(answer.bFound ? 1 : 0, answer.strPassword.c_str(), answer.strDeviceId.c_str(), answer.lChannelId,
                      answer.strRecordId.c_str(), answer.strPath.c_str(), pUser);
        });
    return 0;
}

int CloudLogic::UnregisterCloudPasswordCallback(void* pUser)
{
    m_passwordCallbacks.Remove(pUser);
    return 0;
}

int CloudLogic::GetCloudRecordPassword(const std::string&, const std::string& strDeviceId, int, std::int64_t lChannelId,
                                       const std::string& strKeyText, const std::string& strRecordId, qint64,
                                       const std::string& strPath)
{
    AddSecret(strKeyText);
    const auto pSettings = CurrentSettings();
    const auto found = pSettings->devicePasswords.constFind(QString::fromStdString(strDeviceId));
    PasswordAnswer answer;
    answer.bFound = found != pSettings->devicePasswords.constEnd();
    if (answer.bFound)
        answer.strPassword = found->toStdString();
    else
        NoteReason(0, strRecordId,
                   QStringLiteral("no password is configured for device %1, and the recording is encrypted")
                       .arg(QString::fromStdString(strDeviceId)));
    answer.strDeviceId = strDeviceId;
    answer.lChannelId = lChannelId;
    answer.strRecordId = strRecordId;
    answer.strPath = strPath;
    return m_threads.PostAnswer([this, answer] { m_passwordCallbacks.Call(answer); }) ? 0 : 1;
}

int CloudLogic::DecryptPicture(const std::string& strPictureBase64, const std::string& strKeyText,
                               const std::string& strDeviceId, const std::string& strPassword,
                               std::string& strClearBase64)
{
    const QByteArray sealed = QByteArray::fromBase64(QByteArray::fromStdString(strPictureBase64));
    std::string strClear;
    const CipherResult result =
        KXHost::DecryptPicture(sealed.toStdString(), strKeyText, strDeviceId, strPassword, strClear);
    if (result == CipherResult::Ok)
        strClearBase64 = QByteArray::fromStdString(strClear).toBase64().toStdString();
    return static_cast<int>(result);
}

int CloudLogic::ReportRecordDownloaded(const std::string& strDeviceId, int iChannelNo, qint64 lBeginTime,
                                       qint64 lEndTime, int iSourceKind, const std::string& strRecordId)
{
    DownloadReport report;
    report.strDeviceId = QString::fromStdString(strDeviceId);
    report.iChannelNo = iChannelNo;
    report.lBeginTime = lBeginTime;
    report.lEndTime = lEndTime;
    report.iSourceKind = iSourceKind;
    report.strRecordId = QString::fromStdString(strRecordId);
    report.lReportedTime = QDateTime::currentSecsSinceEpoch();
    return InsertDownloadReport(report) ? 0 : 1;
}

} // namespace KXHost
