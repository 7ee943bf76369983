#pragma once

#include "KXSdkGlobal.h"

// What the reference client says to its own colour table; the plug-in knows nothing of it. Thread: the GUI thread.
namespace KXHost {

// Chooses the table that KXColor answers from; the light one until the first call. What was painted, or styled, stays
// as it is until it is painted or styled again.
KX_HOST_EXPORT void SetDarkTheme(bool bDark);
KX_HOST_EXPORT bool IsDarkTheme();

} // namespace KXHost
