#pragma once

#include "KXSdkGlobal.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// A thread of the fake host, foreign to the plug-in: no Qt event loop. Jobs run one after the other.
class KX_HOST_EXPORT HostThread
{
public:
    using Job = std::function<void()>;

    HostThread();
    // Runs what was posted, then joins.
    ~HostThread();
    HostThread(const HostThread&) = delete;
    HostThread& operator=(const HostThread&) = delete;

    void Post(Job job);
    // Posts and waits until the job is done; on this thread itself it just runs.
    void Run(const Job& job);

private:
    void Loop();

    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    std::deque<Job> m_jobs;
    bool m_bEnding = false;
    std::thread m_thread; // last: it uses all the others
};

// Counts the calls that are inside a registered callback, so that an unregistration can wait for them.
class KX_HOST_EXPORT CallbackBarrier
{
public:
    // False when nobody is registered; otherwise Leave must follow.
    bool Enter();
    void Leave();
    void Open();
    // Lets nobody in any more and waits for those inside.
    void Close();

private:
    std::mutex m_mutex;
    std::condition_variable m_empty;
    bool m_bOpen = false;
    int m_iInside = 0;
};
