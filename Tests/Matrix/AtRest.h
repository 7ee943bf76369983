#pragma once

#include "Matrix/Outside.h"

// What holds when nothing is on its way and no question is open. Differences are noted with the transfers.
namespace AtRest {

// Transfers, rows and entries belong together, and no place is idle while a task could start.
void Check(Outside& outside);
// Resumes what is paused, tries again what failed, and finishes one transfer after the other: every row must go that
// way, and all places must be free then.
void RunToEnd(Outside& outside);
// Nothing is left of the tasks that were: each of those ids is taken anew and goes its way.
void CheckNothingIsLeft(Outside& outside, const QStringList& ids);
// After the stop of the plug-in.
void CheckStopped(Outside& outside, const QStringList& ids);

} // namespace AtRest
