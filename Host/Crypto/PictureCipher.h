#pragma once

#include "Host/Crypto/SealedStream.h"

namespace KXHost {

// An encrypted cover picture, whole in memory: opened by its key text, the device id and the password, all UTF-8.
// `strSealed` and `strClear` hold bytes and are set only when the result is Ok. Thread: any.
CipherResult EncryptPicture(const std::string& strClear, const std::string& strKeyText, const std::string& strDeviceId,
                            const std::string& strPassword, std::string& strSealed);
CipherResult DecryptPicture(const std::string& strSealed, const std::string& strKeyText, const std::string& strDeviceId,
                            const std::string& strPassword, std::string& strClear);

} // namespace KXHost
