#include "Host/Http/HttpClient.h"

#include "Host/Http/HttpLoop.h"

#include <algorithm>
#include <utility>

namespace KXHost {

HttpClient::HttpClient(std::size_t uThreads, std::size_t uMostCalls)
    : m_uThreads(uThreads)
    , m_uMostCalls(uMostCalls)
{
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_UNUSED(initialised)
}

HttpClient::~HttpClient()
{
    End();
}

std::shared_ptr<HttpCall> HttpClient::Start(const HttpRequest& request, std::shared_ptr<HttpReceiver> pReceiver)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::size_t uCalls = 0;
    for (const auto& pLoop : m_loops)
        uCalls += pLoop->Load();
    HttpLoop* const pLoop = uCalls < m_uMostCalls ? LeastBusy() : nullptr;
    auto pCall = std::make_shared<HttpCall>();
    pCall->request = request;
    pCall->pReceiver = std::move(pReceiver);
    pCall->pLoop = pLoop;
    return pLoop != nullptr && pLoop->Add(pCall) ? pCall : nullptr;
}

void HttpClient::Stop(const std::shared_ptr<HttpCall>& pCall)
{
    pCall->bStopped = true;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& pLoop : m_loops) {
        if (pLoop.get() == pCall->pLoop)
            pLoop->Wake();
    }
}

// Joined by leaving the scope, without the lock: a callback that still runs may start another request.
void HttpClient::End()
{
    std::vector<std::unique_ptr<HttpLoop>> loops;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        loops.swap(m_loops);
    }
}

// The first of several: its connections are the ones used last.
HttpLoop* HttpClient::LeastBusy()
{
    const auto found = std::min_element(m_loops.begin(), m_loops.end(), [](const auto& pOne, const auto& pOther) {
        return pOne->Load() < pOther->Load();
    });
    if (found != m_loops.end() && ((*found)->Load() == 0 || m_loops.size() >= m_uThreads))
        return found->get();
    m_loops.push_back(std::make_unique<HttpLoop>());
    return m_loops.back().get();
}

} // namespace KXHost
