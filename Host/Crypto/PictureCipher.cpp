#include "Host/Crypto/PictureCipher.h"

namespace KXHost {

CipherResult EncryptPicture(const std::string& strClear, const std::string& strKeyText, const std::string& strDeviceId,
                            const std::string& strPassword, std::string& strSealed)
{
    return SealWhole(SealedKind::Picture, {strKeyText, strDeviceId, strPassword}, strClear, strSealed);
}

CipherResult DecryptPicture(const std::string& strSealed, const std::string& strKeyText, const std::string& strDeviceId,
                            const std::string& strPassword, std::string& strClear)
{
    return OpenWhole(SealedKind::Picture, {strKeyText, strDeviceId, strPassword}, strSealed, strClear);
}

} // namespace KXHost
