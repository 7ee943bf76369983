#include "KXLogic/KXLogic.h"

#include "Host/Crypto/DeviceUserInfo.h"
#include "Host/KXLogic/CloudLogic.h"
#include "Host/KXLogic/DeviceLogic.h"
#include "Host/KXLogic/DownloadLogic.h"
#include "Host/KXLogic/HostThreads.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "KXLogic/KXLogicFunctions.h"

namespace {

class ModuleRegistry final : public KXLogic::IModuleRegistry
{
public:
    ModuleRegistry();

    KXLogic::ILogicModule* GetLogicMdl(int iId) override;
    void End();
    const KXHost::DownloadLogic& Download() const { return m_download; }

private:
    KXHost::HostThreads m_threads;
    KXHost::DownloadLogic m_download{m_threads};
    KXHost::CloudLogic m_cloud{m_threads};
    KXHost::DeviceLogic m_device{m_threads};
};

ModuleRegistry& Registry()
{
    static ModuleRegistry registry;
    return registry;
}

// The threads end with the application object: later, in the destructors of statics, Qt is half gone, and on Windows
// no thread can be joined any more.
ModuleRegistry::ModuleRegistry()
    : m_threads([] { Registry().End(); })
{}

KXLogic::ILogicModule* ModuleRegistry::GetLogicMdl(int iId)
{
    switch (iId) {
    case KXLogic::DeviceModule:
        return &m_device;
    case KXLogic::CloudModule:
        return &m_cloud;
    case KXLogic::DownloadModule:
        return &m_download;
    default:
        return nullptr;
    }
}

void ModuleRegistry::End()
{
    m_download.StopAll();
    m_threads.JoinAll();
}

} // namespace

QVector<KXHost::RunningTransfer> KXHost::RunningTransfers()
{
    return Registry().Download().Running();
}

KXLogic::IModuleRegistry* KXLogic::Instance()
{
    return &Registry();
}

std::string KXLogicFunctions::AesDecryptDeviceUserInfo(std::string strDeviceId, std::string strPassword)
{
    std::string strClear;
    KXHost::DecryptDeviceUserInfo(strDeviceId, strPassword, strClear);
    return strClear;
}
