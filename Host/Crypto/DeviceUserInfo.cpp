#include "Host/Crypto/DeviceUserInfo.h"

#include <QtCore/QByteArray>

namespace {

std::vector<std::string> DeviceSecrets(const std::string& strDeviceId)
{
    return {"KX reference client device password", strDeviceId};
}

} // namespace

namespace KXHost {

CipherResult EncryptDeviceUserInfo(const std::string& strDeviceId, const std::string& strClear, std::string& strText)
{
    std::string strSealed;
    const CipherResult result = SealWhole(SealedKind::DevicePassword, DeviceSecrets(strDeviceId), strClear, strSealed);
    if (result == CipherResult::Ok)
        strText = QByteArray::fromStdString(strSealed).toBase64().toStdString();
    return result;
}

CipherResult DecryptDeviceUserInfo(const std::string& strDeviceId, const std::string& strText, std::string& strClear)
{
    const std::string strSealed = QByteArray::fromBase64(QByteArray::fromStdString(strText)).toStdString();
    return OpenWhole(SealedKind::DevicePassword, DeviceSecrets(strDeviceId), strSealed, strClear);
}

} // namespace KXHost
