#pragma once

#include "Host/Http/HttpClient.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

#include <functional>
#include <memory>
#include <mutex>

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

protected:
    void run() override;

private:
    QObject* m_pContext; // dies with the loop
};

// The threads of the logic modules: those of the transfers, and one for all answers, so that they arrive one at a time.
// Thread: any.
class HostThreads
{
public:
    // More than a plug-in runs at once: a slow callback holds up no other transfer.
    static constexpr std::size_t TransferThreads = 8;
    static constexpr std::size_t MaxTransfers = 32;

    // `pEnd` is called when the application object is destroyed; it must lead to JoinAll.
    explicit HostThreads(QtCleanUpFunction pEnd);
    ~HostThreads();

    // Both give nothing when the host is ending or has no application object; RunTransfer also when too many run.
    std::shared_ptr<HttpCall> RunTransfer(const HttpRequest& request, std::shared_ptr<HttpReceiver> pReceiver);
    bool PostAnswer(std::function<void()> task);
    void StopTransfer(const std::shared_ptr<HttpCall>& pCall) { m_http.Stop(pCall); }
    // Ends all threads; what they had not begun yet is dropped.
    void JoinAll();

private:
    bool CanRun();

    const QtCleanUpFunction m_pEnd;
    HttpClient m_http{TransferThreads, MaxTransfers};
    std::mutex m_mutex; // guards all below
    bool m_bEndArranged = false;
    std::unique_ptr<HostThread> m_pAnswerThread;
};

} // namespace KXHost
