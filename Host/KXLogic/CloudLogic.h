#pragma once

#include "Host/KXLogic/CallbackList.h"
#include "Host/KXLogic/HostThreads.h"
#include "KXLogic/KXLogicModules.h"

namespace KXHost {

// Module 3: passwords from the settings, pictures by the host's cipher, reports into the host's database.
class CloudLogic final : public KXLogic::ICloudLogic
{
public:
    explicit CloudLogic(HostThreads& threads);

    int SetCloudPasswordCallback(void* pUser, KXLogic::CloudPasswordCallback pCallback) override;
    int UnregisterCloudPasswordCallback(void* pUser) override;
    int GetCloudRecordPassword(const std::string& strDeviceAccount, const std::string& strDeviceId, int iChannelNo,
                               std::int64_t lChannelId, const std::string& strKeyText, const std::string& strRecordId,
                               qint64 lBeginTime, const std::string& strPath) override;
    int DecryptPicture(const std::string& strPictureBase64, const std::string& strKeyText,
                       const std::string& strDeviceId, const std::string& strPassword,
                       std::string& strClearBase64) override;
    int ReportRecordDownloaded(const std::string& strDeviceId, int iChannelNo, qint64 lBeginTime, qint64 lEndTime,
                               int iSourceKind, const std::string& strRecordId) override;

private:
    struct PasswordAnswer
    {
        bool bFound = false;
        std::string strPassword;
        std::string strDeviceId;
        std::int64_t lChannelId = -1;
        std::string strRecordId;
        std::string strPath;
    };

    HostThreads& m_threads;
    CallbackList<const PasswordAnswer&> m_passwordCallbacks;
};

} // namespace KXHost
