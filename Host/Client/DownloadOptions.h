#pragma once

#include "Host/Client/ClientSetup.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <variant>

namespace KXClient {

// What the command line of "download" says, with every default filled in.
struct DownloadOptions
{
    ClientOptions client;
    QString strJsonFile;
    std::optional<int> iTimeoutSeconds;
};

// The options, with the download folder made; or the exit status when help was printed or something is wrong.
std::variant<DownloadOptions, int> ReadDownloadOptions(const QStringList& arguments);

} // namespace KXClient
