#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QString>
#include <QtCore/QVector>

// What the host shows of its own transfers. Thread: any.
namespace KXHost {

struct RunningTransfer
{
    int iRecordType = -1;
    QString strRecordId;
    QString strFilePath;
    qint64 lReceived = 0; // bytes of the recording so far
};

// The transfers that run now, source by source.
KX_HOST_EXPORT QVector<RunningTransfer> RunningTransfers();

// Whether a transfer of that recording was ever begun, however it ended.
KX_HOST_EXPORT bool WasTransferStarted(int iRecordType, const QString& strRecordId);

} // namespace KXHost
