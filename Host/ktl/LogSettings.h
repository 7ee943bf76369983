#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>

#include <string>

// What a host says to its own log; the plug-in knows nothing of it. Thread: any.
namespace KXHost {

struct LogSettings
{
    QString strFilePath;                            // empty: no log file
    std::size_t uMaxFileBytes = 5u * 1024u * 1024u; // a full file is renamed to NAME.1.EXT, and a new one begun
    std::size_t uMaxFiles = 3;                      // renamed files that are kept
    int iConsoleLevel = 2;                          // lines of this level and above go to stderr too; 7 for none
};

// Replaces the settings. Until the first call lines go to stderr only. False when the log file could not be opened:
// that is said on stderr once, and the log goes on without a file.
KX_HOST_EXPORT bool SetLogSettings(const LogSettings& settings);

// From now on the log shows "***" for every occurrence of that text. False for a text of fewer than 3 bytes, which is
// not registered: it would shred every line and hide nothing. Such a password is still masked where the line
// names it ("password=..."), as everything is that a line calls a password, key, token or authorization.
KX_HOST_EXPORT bool AddSecret(const std::string& strSecret);

} // namespace KXHost
