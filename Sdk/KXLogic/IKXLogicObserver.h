#pragma once

#include <cstdint>
#include <string>

namespace KXLogic {

constexpr int DevicePasswordMessage = 1144; // answer to RequestDevicePassword

// A message of a logic module to its observers.
struct LogicMessage
{
    int iMessage = 0;
    std::int64_t lRequest = 0; // handle that the asking operation returned
    int iResult = 0;           // 0 success
    std::int64_t lChannelId = -1;
    std::string strUserName;
    std::string strPassword; // as stored by the host: open it with KXLogicFunctions::AesDecryptDeviceUserInfo
    std::string strUserInfo; // user data of the request, unchanged
};

// Hears the messages of a logic module.
//
// Thread: a thread of the host; messages of one module arrive one at a time.
class IKXLogicObserver
{
public:
    virtual void OnLogicMessage(const LogicMessage& message) = 0;

protected:
    ~IKXLogicObserver() = default;
};

} // namespace KXLogic
