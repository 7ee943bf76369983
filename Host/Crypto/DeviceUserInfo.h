#pragma once

#include "Host/Crypto/SealedStream.h"

namespace KXHost {

// The form in which the host stores and hands out a device password: sealed for that one device, as Base64 text.
// The key comes from the device id and a constant of the host, so this keeps passwords out of messages and logs; it
// does not keep them from someone who has the host's program. Thread: any.
CipherResult EncryptDeviceUserInfo(const std::string& strDeviceId, const std::string& strClear, std::string& strText);
CipherResult DecryptDeviceUserInfo(const std::string& strDeviceId, const std::string& strText, std::string& strClear);

} // namespace KXHost
