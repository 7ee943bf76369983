#pragma once

// Where a task stands in the engine. One state says in which of its source's queues it is, too.
enum class TaskState {
    Outside,  // in no queue: not taken in yet, or done with
    Held,     // pending: its password or its picture is being fetched; no row yet
    Entering, // waiting queue: it is being announced, or put back after a refusal; not to be started yet
    Waiting,  // waiting queue
    Starting, // waiting queue: the host's start is on the stack
    Running,  // running list
    Ending,   // running list: its transfer has ended, and the client or the database is being told
    Stopping  // running list: the host's stop is due or on the stack
};

// One way from a state to another. There are no others.
struct TaskArrow
{
    TaskState from;
    TaskState to;
};

constexpr TaskArrow TaskArrows[] = {
    {TaskState::Outside, TaskState::Held},      // asked for; of a source that holds its tasks first
    {TaskState::Outside, TaskState::Entering},  // asked for; of any other source
    {TaskState::Held, TaskState::Entering},     // password or picture is settled
    {TaskState::Held, TaskState::Outside},      // paused, deleted, wrong picture key
    {TaskState::Entering, TaskState::Waiting},  // the panel knows it
    {TaskState::Entering, TaskState::Outside},  // paused, deleted, disk full, all inside its announcement
    {TaskState::Waiting, TaskState::Starting},  // a place is free
    {TaskState::Waiting, TaskState::Outside},   // paused, deleted, disk full
    {TaskState::Starting, TaskState::Running},  // the host took it
    {TaskState::Starting, TaskState::Outside},  // the host refused it
    {TaskState::Starting, TaskState::Stopping}, // paused, deleted, disk full, all inside its start
    {TaskState::Running, TaskState::Ending},    // the host reports an end
    {TaskState::Running, TaskState::Stopping},  // paused, deleted, disk full
    {TaskState::Ending, TaskState::Stopping},   // the end asks for a stop, or the client dropped it when it heard
    {TaskState::Ending, TaskState::Outside},    // finished
    {TaskState::Stopping, TaskState::Outside},  // the host has stopped it
    {TaskState::Stopping, TaskState::Entering}, // the host has stopped it, and it waits again for a password
};

constexpr bool IsTaskArrow(TaskState from, TaskState to)
{
    for (const TaskArrow& arrow : TaskArrows) {
        if (arrow.from == from && arrow.to == to)
            return true;
    }
    return false;
}
