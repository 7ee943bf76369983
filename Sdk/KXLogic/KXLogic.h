#pragma once

#include "KXLogic/KXLogicModules.h"
#include "KXSdkGlobal.h"

namespace KXLogic {

constexpr int DeviceModule = 2;   // IDeviceLogic
constexpr int CloudModule = 3;    // ICloudLogic
constexpr int DownloadModule = 5; // IDownloadLogic

// Gives the host's logic modules.
class IModuleRegistry
{
public:
    // The module of that id, of the class named beside the id above, or null when the host has none.
    virtual ILogicModule* GetLogicMdl(int iId) = 0;

protected:
    ~IModuleRegistry() = default;
};

// The one registry of the process; never null. Thread: any.
KX_HOST_EXPORT IModuleRegistry* Instance();

} // namespace KXLogic
