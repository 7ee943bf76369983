#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>
#include <QtCore/QVector>

// What a client tells the host of recordings, and what the host shows of its own transfers. Thread: any.
namespace KXHost {

// What is known of a recording before it comes.
struct ExpectedRecording
{
    qint64 lSize = -1; // bytes of the file; -1 when it is not known
    QString strSha256; // of the file, lower case hex; empty when it is not known
};

// Transfers of it that start later fail when something else comes.
KX_HOST_EXPORT void ExpectRecording(int iRecordType, const QString& strRecordId, const ExpectedRecording& expected);

struct RunningTransfer
{
    int iRecordType = -1;
    QString strRecordId;
    QString strFilePath;
    qint64 lReceived = 0; // bytes of the recording so far
};

// The transfers that run now, source by source.
KX_HOST_EXPORT QVector<RunningTransfer> RunningTransfers();

// Whether a transfer of that recording was ever begun, however it ended. A start that was refused began none.
KX_HOST_EXPORT bool WasTransferBegun(int iRecordType, const QString& strRecordId);

// Why the last transfer of it failed or was refused, or why it was not even started, in one sentence for people. Empty
// when nothing went wrong.
KX_HOST_EXPORT QString TransferReason(int iRecordType, const QString& strRecordId);

} // namespace KXHost
