#pragma once

#include "Host/KXLogic/HostSettings.h"

#include <memory>

namespace KXHost {

// The settings of this moment; never null. Thread: any.
std::shared_ptr<const Settings> CurrentSettings();

} // namespace KXHost
