#pragma once

#include "Host/Http/HttpTypes.h"
#include "KXSdkGlobal.h"

#include <QtCore/QHash>
#include <QtCore/QString>

#include <array>

namespace KXHost {

// Where one source's recordings come from.
struct SourceSettings
{
    // URL template with the fields {deviceId} {channel} {recordId} {begin} {end} {token}: values are percent-encoded,
    // begin and end are Unix seconds, the token is the request's address. Empty: the source refuses to start.
    QString strUrl;
    Auth auth = Auth::None;
    QString strUser;            // the password comes with each request
    bool bInsecure = false;     // a basic password may go over plain http to another machine
    qint64 lBytesPerSecond = 0; // of each transfer; 0: as fast as it comes
    int iRetries = 2;           // when the server is busy or ends the connection without an answer
};

struct Settings
{
    std::array<SourceSettings, 4> sources; // index: record type, 0 cloud, 1 device, 2 IOT LAN, 3 LAN module
    // Device serial to its current clear password, which is also that of the device's encrypted cloud recordings.
    QHash<QString, QString> devicePasswords;
    int iStallTimeoutMs = 30000; // a transfer that receives nothing for so long has failed
};

// Replaces the settings of the logic modules; transfers and queries that run already keep the old ones. Thread: any.
KX_HOST_EXPORT void Configure(const Settings& settings);

} // namespace KXHost
