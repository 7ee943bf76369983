#pragma once

#include "Model/DownloadRecordInfo.h"

#include <array>
#include <cstddef>

namespace KXHost {

enum class SiteAuth {
    None,
    Basic,
    Digest,
};

// What differs between the sources. Index: record type.
struct SiteSource
{
    const char* pKey;     // key in the client configuration
    const char* pFolder;  // first part of the URL, and the sub-folder of a data folder
    const char* pUrlTail; // rest of the URL template
    const char* pAuthName;
    SiteAuth auth;
};

constexpr char SiteUser[] = "admin";

constexpr std::array<SiteSource, 4> SiteSources{{
    {"cloud", "cloud", "{recordId}", "none", SiteAuth::None},
    {"device", "device", "{deviceId}/{channel}/{recordId}?begin={begin}&end={end}", "digest", SiteAuth::Digest},
    {"iotLan", "iotlan", "{deviceId}/{channel}/{recordId}", "digest", SiteAuth::Digest},
    {"lanModule", "lanmodule", "{deviceId}/{channel}/{recordId}", "basic", SiteAuth::Basic},
}};

static_assert(KXDownLoadList::CloudRecord == 0 && KXDownLoadList::LanModuleRecord == 3, "the index is the type");

inline const SiteSource& SourceOf(int iType)
{
    return SiteSources[static_cast<std::size_t>(iType)];
}

} // namespace KXHost
