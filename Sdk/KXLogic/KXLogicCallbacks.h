#pragma once

#include <QtCore/qglobal.h>

#include <cstdint>

// Plain callbacks of the logic modules. They are called on threads of the host; `pUser` is the pointer given at
// registration; texts are UTF-8, null-terminated, and valid only during the call. The result is ignored by the host.
namespace KXLogic {

// What a state callback's `iCode` says of a transfer; a host may report others, too.
namespace StateCode {
constexpr int Failed = 0;
constexpr int Running = 1;
constexpr int Finished = 2; // the file is complete and flushed
constexpr int Refused = 3;  // by the source: credentials
constexpr int CloudAbort = 100;
} // namespace StateCode

// `iLength` is the count of bytes received since the last data callback.
using CloudStateCallback = int (*)(qint64 iRecordID, int iCode, void* pUser);
using CloudDataCallback = int (*)(qint64 iRecordID, int iLength, void* pUser);
using RecordStateCallback = int (*)(const char* strRecordID, int iCode, void* pUser);
using RecordDataCallback = int (*)(const char* strRecordID, int iLength, void* pUser);

// Answer to GetCloudRecordPassword. `ibGet` is 1 when a password was found, else 0; the other values but the password
// are those of the query.
using CloudPasswordCallback = int (*)(int ibGet, const char* strPassword, const char* strDeviceSN,
                                      std::int64_t lChannelId, const char* strRecordId, const char* strPath,
                                      void* pUser);

} // namespace KXLogic
