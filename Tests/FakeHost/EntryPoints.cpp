// What the contract exports, led to the living world. Outside a world the host has nothing: calls are dropped.
#include "FakeHost/FakeWorld.h"
#include "KXBase/GKXObserver.h"
#include "KXLogic/KXLogic.h"
#include "KXLogic/KXLogicFunctions.h"
#include "ktl/TMutex.h"

#include <mutex>

namespace {

class WorldlessLog final : public ktl::TPrintLog
{
public:
    Q_ATTRIBUTE_FORMAT_PRINTF(7, 8)
    void Log(const char*, int, const char*, const char*, int, const char*, ...) override {}
};

class Registry final : public KXLogic::IModuleRegistry
{
public:
    KXLogic::ILogicModule* GetLogicMdl(int iId) override
    {
        FakeWorld* const pWorld = FakeWorld::Current();
        return pWorld ? pWorld->Module(iId) : nullptr;
    }
};

} // namespace

ktl::TPrintLog* ktl::TPrintLog::instance()
{
    static WorldlessLog worldless;
    FakeWorld* const pWorld = FakeWorld::Current();
    return pWorld ? static_cast<TPrintLog*>(&pWorld->Log()) : &worldless;
}

ktl::TMutex::TMutex()
    : m_pNative(new std::mutex)
{}

ktl::TMutex::~TMutex()
{
    delete static_cast<std::mutex*>(m_pNative);
}

void ktl::TMutex::lock()
{
    static_cast<std::mutex*>(m_pNative)->lock();
}

void ktl::TMutex::unlock()
{
    static_cast<std::mutex*>(m_pNative)->unlock();
    if (FakeWorld* const pWorld = FakeWorld::Current())
        pWorld->Unlocked();
}

void GKXObserver::attach(const char* pszEvent, const QObject* pReceiver, const char* pszSlot)
{
    if (FakeWorld* const pWorld = FakeWorld::Current())
        pWorld->Bus().Attach(pszEvent, pReceiver, pszSlot);
}

void GKXObserver::notify(const char* pszEvent, const QVariant& payload)
{
    if (FakeWorld* const pWorld = FakeWorld::Current())
        pWorld->Bus().Notify(pszEvent, {payload}, true);
}

void GKXObserver::notify(const char* pszEvent, const QVariantList& payload)
{
    if (FakeWorld* const pWorld = FakeWorld::Current())
        pWorld->Bus().Notify(pszEvent, payload, false);
}

PictureDownloader* PictureDownloader::Instance()
{
    FakeWorld* const pWorld = FakeWorld::Current();
    return pWorld ? pWorld->PicturesOrNull() : nullptr;
}

LocalResourceDbInterface* LocalResourceDbInterface::GetInstance()
{
    FakeWorld* const pWorld = FakeWorld::Current();
    return pWorld ? pWorld->DatabaseOrNull() : nullptr;
}

KXLogic::IModuleRegistry* KXLogic::Instance()
{
    static Registry registry;
    return &registry;
}

std::string KXLogicFunctions::AesDecryptDeviceUserInfo(std::string strDeviceId, std::string strPassword)
{
    FakeWorld* const pWorld = FakeWorld::Current();
    return pWorld ? pWorld->ClearDevicePassword(strDeviceId, strPassword) : std::string();
}
