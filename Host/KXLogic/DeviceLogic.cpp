#include "Host/KXLogic/DeviceLogic.h"

#include "Host/Crypto/DeviceUserInfo.h"
#include "Host/KXLogic/SettingsStore.h"
#include "ktl/TPrintLog.h"

namespace {

constexpr int DeviceRecordType = 1; // whose source's user the answer names

// The result is 0, or 1 when the device is unknown, or 2 when its password cannot be encrypted.
void FillPassword(const KXHost::Settings& settings, const std::string& strDeviceId, KXLogic::LogicMessage& message)
{
    message.iResult = 1;
    const auto found = settings.devicePasswords.constFind(QString::fromStdString(strDeviceId));
    if (found == settings.devicePasswords.constEnd())
        return;
    const KXHost::CipherResult result =
        KXHost::EncryptDeviceUserInfo(strDeviceId, found->toStdString(), message.strPassword);
    message.iResult = result == KXHost::CipherResult::Ok ? 0 : 2;
    message.strUserName = settings.sources[DeviceRecordType].strUser.toStdString();
}

} // namespace

namespace KXHost {

DeviceLogic::DeviceLogic(HostThreads& threads)
    : m_threads(threads)
{}

int DeviceLogic::AttachObserver(KXLogic::IKXLogicObserver* pObserver)
{
    if (pObserver == nullptr)
        return 1;
    const auto tell = [pObserver](const KXLogic::LogicMessage& message) { pObserver->OnLogicMessage(message); };
    return m_observers.Add(pObserver, tell) ? 0 : 1;
}

int DeviceLogic::DetachObserver(KXLogic::IKXLogicObserver* pObserver)
{
    return m_observers.Remove(pObserver) ? 0 : 1;
}

std::int64_t DeviceLogic::RequestDevicePassword(const std::string&, const std::string& strDeviceId, int,
                                                std::int64_t lChannelId, const std::string& strUserInfo, int)
{
    KXLogic::LogicMessage message;
    message.iMessage = KXLogic::DevicePasswordMessage;
    message.lRequest = ++m_lLastRequest;
    message.lChannelId = lChannelId;
    message.strUserInfo = strUserInfo;
    const auto pSettings = CurrentSettings();
    const bool bPosted = m_threads.PostAnswer([this, pSettings, strDeviceId, message]() mutable {
        FillPassword(*pSettings, strDeviceId, message);
        m_observers.Call(message);
    });
    if (!bPosted)
        ktl::TPrintLog::instance()->Log("Host/KXLogic/DeviceLogic", __LINE__, __func__, "KXLogic", 6,
                                        "No answer to a password query, the host is ending.Device:%s",
                                        strDeviceId.c_str());
    return message.lRequest;
}

} // namespace KXHost
