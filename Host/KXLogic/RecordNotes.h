#pragma once

#include "Host/KXLogic/RunningTransfers.h"

// What the host knows of single recordings, besides what a request says. Thread: any.
namespace KXHost {

ExpectedRecording ExpectedOf(int iRecordType, const std::string& strRecordId);
void NoteBegun(int iRecordType, const std::string& strRecordId);
void NoteReason(int iRecordType, const std::string& strRecordId, const QString& strReason);

} // namespace KXHost
