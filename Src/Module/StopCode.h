#pragma once

// What a task is stopped for; decides whether its partial file stays.
enum class StopCode {
    Retry = 0, // it is queued again, for a password
    Finished = 2,
    Failed = 3, // the file goes, where the source does not keep it
    Refused = 4,
    Paused = 5,
    Deleted = 6 // the file goes
};
