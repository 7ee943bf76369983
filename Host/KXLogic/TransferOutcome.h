#pragma once

#include "KXLogic/KXLogicCallbacks.h"

#include <QtCore/QString>

namespace KXHost {

// The values are what a state callback reports; Stopped is reported to nobody.
enum class TransferState {
    Failed = KXLogic::StateCode::Failed,
    Running = KXLogic::StateCode::Running,
    Finished = KXLogic::StateCode::Finished,
    Refused = KXLogic::StateCode::Refused,
    Stopped = -1,
};

struct TransferOutcome
{
    TransferState state = TransferState::Running;
    QString strReason; // for the log; empty when nothing went wrong
};

} // namespace KXHost
