#pragma once

#include "Host/Http/HttpExchange.h"

#include <QtCore/QThread>

#include <map>
#include <mutex>
#include <vector>

namespace KXHost {

// One thread that runs several requests by turns. Its connections are kept open and used again.
class HttpLoop : public QThread
{
public:
    HttpLoop();
    ~HttpLoop() override; // stops all of it and joins
    HttpLoop(const HttpLoop&) = delete;
    HttpLoop& operator=(const HttpLoop&) = delete;

    // False when there is no such thread: the system refused it.
    bool Add(const HttpCallPtr& pCall);
    // Lets the thread look at its requests: one was stopped.
    void Wake();
    // Requests that are not over.
    std::size_t Load() const;

protected:
    void run() override;

private:
    using Exchanges = std::map<CURL*, std::unique_ptr<HttpExchange>>;

    bool TakeNew();
    void BeginDueTurns();
    void EndTurns();
    void EndStopped();
    void CheckTime(HttpClock::time_point now);
    void WaitForMore();
    Exchanges::iterator Finish(Exchanges::iterator it);
    void Detach(CURL* pHandle);
    void EndAll();

    CURLM* const m_pMulti;
    mutable std::mutex m_mutex; // guards the three below
    std::vector<HttpCallPtr> m_new;
    std::size_t m_uLoad = 0;
    bool m_bEnding = false;
    // The thread's own.
    Exchanges m_exchanges;
    std::vector<CURL*> m_attached; // in a turn
    std::vector<CURL*> m_idle;
};

} // namespace KXHost
