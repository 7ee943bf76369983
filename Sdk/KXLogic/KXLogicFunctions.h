#pragma once

#include "KXSdkGlobal.h"

#include <string>

namespace KXLogicFunctions {

// Opens a device password as the host stores it (LogicMessage::strPassword); an empty text when it was not encrypted
// for this device. Thread: any.
KX_HOST_EXPORT std::string AesDecryptDeviceUserInfo(std::string strDeviceId, std::string strPassword);

} // namespace KXLogicFunctions
