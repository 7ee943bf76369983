#pragma once

#include "ktl/TPrintLog.h"

// One log line of the panel. Its line numbers are the panel's own, fixed names of the places that log: tools of the
// client search for them, so they do not move with the source.
#define KX_PANEL_LOG(line, level, function, ...)                                                                       \
    ktl::TPrintLog::instance()->Log("Src/DownloadWidget/DownloadWidget", line, function, "", level, __VA_ARGS__)

constexpr int PanelLogEvent = 2;
constexpr int PanelLogFailure = 6;
