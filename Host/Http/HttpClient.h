#pragma once

#include "Host/Http/HttpTypes.h"

#include <memory>
#include <mutex>
#include <vector>

namespace KXHost {

struct HttpCall;
class HttpLoop;

// Runs requests on a few threads of its own, which begin when they are needed. Thread: any.
class HttpClient
{
public:
    // While no more requests run than there are threads, each has one to itself.
    HttpClient(std::size_t uThreads, std::size_t uMostCalls);
    ~HttpClient();
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    // Null, and the receiver hears nothing, when too many run already or the system gives no thread. Stopped ones count
    // until their end was told.
    std::shared_ptr<HttpCall> Start(const HttpRequest& request, std::shared_ptr<HttpReceiver> pReceiver);
    // Ends it at once, on its own thread: this does not wait.
    void Stop(const std::shared_ptr<HttpCall>& pCall);
    // Stops all and joins the threads; not on one of them. A later start begins new ones.
    void End();

private:
    HttpLoop* LeastBusy();

    const std::size_t m_uThreads;
    const std::size_t m_uMostCalls;
    std::mutex m_mutex; // guards what follows
    std::vector<std::unique_ptr<HttpLoop>> m_loops;
};

} // namespace KXHost
