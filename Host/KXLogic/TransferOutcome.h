#pragma once

#include <QtCore/QString>

namespace KXHost {

// The values are the state codes of the contract; Stopped is reported to nobody.
enum class TransferState {
    Failed = 0,
    Running = 1,
    Finished = 2,
    Refused = 3,
    Stopped = -1,
};

struct TransferOutcome
{
    TransferState state = TransferState::Running;
    QString strReason; // for the log; empty when nothing went wrong
};

} // namespace KXHost
