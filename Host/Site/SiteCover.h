#pragma once

#include "Host/Site/SiteRecording.h"

#include <optional>
#include <string>

namespace KXHost {

// The bytes of a recording's cover as the site sends them in that state; nothing when it has none.
std::optional<std::string> CoverBytes(const SiteRecording& recording, CoverState state);

} // namespace KXHost
