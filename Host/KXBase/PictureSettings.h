#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/qglobal.h>

// Limits of the picture downloader that a host may set; the plug-in knows nothing of them. Thread: any; they hold for
// transfers that start later.
namespace KXHost {

struct PictureLimits
{
    qint64 lMaxBytes = 32 * 1024 * 1024; // a larger picture is a failed download
    int iTimeoutMs = 30 * 1000;          // for the whole transfer: a recording waits for its picture
};

KX_HOST_EXPORT void SetPictureLimits(const PictureLimits& limits);
KX_HOST_EXPORT PictureLimits GetPictureLimits();

} // namespace KXHost
