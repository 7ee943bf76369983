#pragma once

#include "Host/KXLogic/CallbackList.h"
#include "Host/KXLogic/HostThreads.h"
#include "KXLogic/KXLogicModules.h"

#include <atomic>

namespace KXHost {

// Module 2: device passwords from the settings.
class DeviceLogic final : public KXLogic::IDeviceLogic
{
public:
    explicit DeviceLogic(HostThreads& threads);

    int AttachObserver(KXLogic::IKXLogicObserver* pObserver) override;
    int DetachObserver(KXLogic::IKXLogicObserver* pObserver) override;
    std::int64_t RequestDevicePassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                       int iChannelNo, std::int64_t lChannelId, const std::string& strUserInfo,
                                       int iKind) override;

private:
    HostThreads& m_threads;
    CallbackList<const KXLogic::LogicMessage&> m_observers;
    std::atomic<std::int64_t> m_lLastRequest{0};
};

} // namespace KXHost
