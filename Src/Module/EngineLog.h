#pragma once

#include "ktl/TPrintLog.h"

// Levels of the host's logger.
constexpr int LogEvent = 2;
constexpr int LogFailure = 6;

// One log line of the engine: KX_ENGINE_LOG(level, "Class::Method", format, ...), format as printf's, texts in UTF-8.
#define KX_ENGINE_LOG(level, function, ...)                                                                            \
    ktl::TPrintLog::instance()->Log("Src/Module/RecordDownloadModule", __LINE__, function, "", level, __VA_ARGS__)
