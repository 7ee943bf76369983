#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace KXHost {

// A thread of the host with an event loop.
class HostThread : public QThread
{
public:
    HostThread();
    ~HostThread() override; // ends the loop and joins
    HostThread(const HostThread&) = delete;
    HostThread& operator=(const HostThread&) = delete;

    // Runs the task on this thread, later.
    void Post(std::function<void()> task);
    // The object on this thread that dies with its loop; what belongs to the thread is its child.
    QObject* Context() { return m_pContext; }

    std::atomic<bool> m_bBusy{false}; // set by the pool, cleared by the borrower when it is done

protected:
    void run() override;

private:
    QObject* m_pContext;
};

// The threads of the logic modules: one for each running transfer, so that a slow callback holds up no other
// transfer, and one for all answers, so that they arrive one at a time. Threads are kept and used again. Thread: any.
class HostThreads
{
public:
    static constexpr std::size_t MaxTransfers = 32; // those that were stopped just now count until they notice

    // `pEnd` is called when the application object is destroyed; it must lead to JoinAll.
    explicit HostThreads(QtCleanUpFunction pEnd);
    ~HostThreads();

    // Both give false when the host is ending or has no application object; RunTransfer also when too many run.
    bool RunTransfer(const std::function<void(HostThread&)>& task);
    bool PostAnswer(std::function<void()> task);
    // Ends all threads; what they had not begun yet is dropped.
    void JoinAll();

private:
    bool CanRun();
    HostThread* TakeIdle();

    const QtCleanUpFunction m_pEnd;
    std::mutex m_mutex; // guards all below
    bool m_bEndArranged = false;
    std::vector<std::unique_ptr<HostThread>> m_transferThreads;
    std::unique_ptr<HostThread> m_pAnswerThread;
};

} // namespace KXHost
