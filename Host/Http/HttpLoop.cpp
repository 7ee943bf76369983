#include "Host/Http/HttpLoop.h"

#include <algorithm>
#include <utility>

namespace KXHost {

namespace {

constexpr long MostConnections = 8; // kept open
constexpr std::chrono::milliseconds LongestWait(60 * 1000);

} // namespace

HttpLoop::HttpLoop()
    : m_pMulti(curl_multi_init())
{
    curl_multi_setopt(m_pMulti, CURLMOPT_MAXCONNECTS, MostConnections);
    setObjectName(QStringLiteral("HttpLoop"));
    start();
}

HttpLoop::~HttpLoop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bEnding = true;
    }
    Wake();
    wait();
    for (CURL* pHandle : m_idle)
        curl_easy_cleanup(pHandle);
    curl_multi_cleanup(m_pMulti);
}

bool HttpLoop::Add(const HttpCallPtr& pCall)
{
    if (!isRunning() || m_pMulti == nullptr)
        return false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_new.push_back(pCall);
        ++m_uLoad;
    }
    Wake();
    return true;
}

void HttpLoop::Wake()
{
    curl_multi_wakeup(m_pMulti);
}

std::size_t HttpLoop::Load() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_uLoad;
}

void HttpLoop::run()
{
    while (m_pMulti != nullptr && TakeNew()) {
        EndStopped();
        BeginDueTurns();
        // Before what came meanwhile is read: a slow receiver of one request must not count against another.
        const HttpClock::time_point now = HttpClock::now();
        int iRunning = 0;
        curl_multi_perform(m_pMulti, &iRunning);
        EndTurns();
        CheckTime(now);
        WaitForMore();
    }
    EndAll();
}

// False when the loop is to end.
bool HttpLoop::TakeNew()
{
    std::vector<HttpCallPtr> calls;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_bEnding)
            return false;
        calls.swap(m_new);
    }
    for (HttpCallPtr& pCall : calls) {
        if (m_idle.empty())
            m_idle.push_back(curl_easy_init());
        CURL* const pHandle = m_idle.back();
        m_idle.pop_back();
        m_exchanges.emplace(pHandle, std::make_unique<HttpExchange>(std::move(pCall), pHandle));
    }
    return true;
}

void HttpLoop::BeginDueTurns()
{
    const HttpClock::time_point now = HttpClock::now();
    for (const auto& [pHandle, pExchange] : m_exchanges) {
        const bool bAttached = std::find(m_attached.begin(), m_attached.end(), pHandle) != m_attached.end();
        if (bAttached || pExchange->NextTurn() > now)
            continue;
        pExchange->Prepare();
        curl_multi_add_handle(m_pMulti, pHandle);
        m_attached.push_back(pHandle);
    }
}

void HttpLoop::EndTurns()
{
    int iLeft = 0;
    while (const CURLMsg* pMessage = curl_multi_info_read(m_pMulti, &iLeft)) {
        if (pMessage->msg != CURLMSG_DONE)
            continue;
        CURL* const pHandle = pMessage->easy_handle;
        const CURLcode code = pMessage->data.result;
        const auto found = m_exchanges.find(pHandle);
        const bool bGoesOn = found->second->OnTurnEnd(code);
        Detach(pHandle);
        if (!bGoesOn)
            Finish(found);
    }
}

void HttpLoop::EndStopped()
{
    for (auto it = m_exchanges.begin(); it != m_exchanges.end();)
        it = it->second->IsStopped() ? Finish(it) : std::next(it);
}

void HttpLoop::CheckTime(HttpClock::time_point now)
{
    for (auto it = m_exchanges.begin(); it != m_exchanges.end();)
        it = it->second->OnTime(now) ? std::next(it) : Finish(it);
}

void HttpLoop::WaitForMore()
{
    HttpClock::time_point deadline = HttpClock::now() + LongestWait;
    for (const auto& [pHandle, pExchange] : m_exchanges)
        deadline = std::min(deadline, pExchange->Deadline());
    // Rounded up: a wait that ends just before the deadline would be followed by many that wait for nothing.
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - HttpClock::now());
    curl_multi_poll(m_pMulti, nullptr, 0, static_cast<int>(std::max<qint64>(wait.count() + 1, 0)), nullptr);
}

HttpLoop::Exchanges::iterator HttpLoop::Finish(Exchanges::iterator it)
{
    CURL* const pHandle = it->first;
    Detach(pHandle);
    curl_easy_reset(pHandle);
    m_idle.push_back(pHandle);
    const std::unique_ptr<HttpExchange> pExchange = std::move(it->second);
    const auto next = m_exchanges.erase(it);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        --m_uLoad;
    }
    pExchange->TellEnd();
    return next;
}

void HttpLoop::Detach(CURL* pHandle)
{
    const auto found = std::find(m_attached.begin(), m_attached.end(), pHandle);
    if (found == m_attached.end())
        return;
    m_attached.erase(found);
    curl_multi_remove_handle(m_pMulti, pHandle);
}

// Also of what was added last: each receiver hears its end.
void HttpLoop::EndAll()
{
    for (auto it = m_exchanges.begin(); it != m_exchanges.end();) {
        it->second->Stop();
        it = Finish(it);
    }
    std::vector<HttpCallPtr> calls;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        calls.swap(m_new);
    }
    for (const HttpCallPtr& pCall : calls)
        std::exchange(pCall->pReceiver, nullptr)->OnEnd({HttpResult::Stopped, QString()});
}

} // namespace KXHost
