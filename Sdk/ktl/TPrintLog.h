#pragma once

#include "KXSdkGlobal.h"

namespace ktl {

// The host's log.
//
// Thread: Log may be called on any thread, also while the caller holds a lock; it never calls back.
// Errors: none are reported; a line that cannot be written is lost in the host, never in the caller.
class TPrintLog
{
public:
    // The one log of the process; never null, valid until the process ends.
    static KX_HOST_EXPORT TPrintLog* instance();

    // Writes one line. `pszFile`, `pszFunction` and `pszModule` are null-terminated and copied; `pszModule` may be
    // empty. `iLevel` is 2 for an ordinary event and 6 for a failure. `pszFormat` is printf's, texts are UTF-8.
    // The sink masks passwords and keys, whatever the line says.
    virtual void Log(const char* pszFile, int iLine, const char* pszFunction, const char* pszModule, int iLevel,
                     const char* pszFormat, ...) Q_ATTRIBUTE_FORMAT_PRINTF(7, 8) = 0;

protected:
    ~TPrintLog() = default;
};

} // namespace ktl
