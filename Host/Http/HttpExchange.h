#pragma once

#include "Host/Http/HttpReplyHead.h"
#include "Host/Http/HttpTypes.h"

#include <curl/curl.h>

#include <array>
#include <atomic>
#include <memory>

namespace KXHost {

// What a client and the one who asked share of a request.
struct HttpCall
{
    HttpRequest request;
    std::shared_ptr<HttpReceiver> pReceiver; // until it was told the end
    const void* pLoop = nullptr;             // whose it is; compared only
    std::atomic<bool> bStopped{false};
};
using HttpCallPtr = std::shared_ptr<HttpCall>;

// A request on its way through redirects, a challenge and retries to its end, each a turn of one curl handle.
// Thread: that of its loop.
class HttpExchange
{
public:
    // The handle is fresh; it stays the caller's, who takes it back when this object is gone.
    HttpExchange(HttpCallPtr pCall, CURL* pHandle);
    HttpExchange(const HttpExchange&) = delete;
    HttpExchange& operator=(const HttpExchange&) = delete;

    bool IsStopped() const { return m_pCall->bStopped; }
    void Stop() { m_pCall->bStopped = true; }

    // Sets the handle up for the next turn.
    void Prepare();
    // False when that turn was the last one; otherwise the next one may begin at NextTurn.
    bool OnTurnEnd(CURLcode code);
    HttpClock::time_point NextTurn() const { return m_nextTurn; }

    // When to call OnTime, at the latest.
    HttpClock::time_point Deadline() const;
    // False when time is out.
    bool OnTime(HttpClock::time_point now);
    // Tells the receiver how it ended, and lets go of it.
    void TellEnd();

private:
    static std::size_t OnHeader(char* pData, std::size_t uSize, std::size_t uCount, void* pThis);
    static std::size_t OnBody(char* pData, std::size_t uSize, std::size_t uCount, void* pThis);
    static int OnTrace(CURL* pHandle, curl_infotype type, char* pData, std::size_t uSize, void* pThis);

    void SetUpTransport();
    void SetUpHeaders();
    bool TakeHead();
    bool TakeBody(const char* pData, std::size_t uSize);
    bool JudgeHead();
    bool JudgeBody();
    bool HasMoreOnWire() const;
    bool OnCurlFailure(CURLcode code);
    bool OnAnswer();
    bool Redirect();
    bool Authenticate();
    bool RetryLater();
    bool Again(std::chrono::milliseconds pause);
    bool End(HttpResult result, const QString& strReason);

    struct FreeHeaders
    {
        void operator()(curl_slist* pHeaders) const { curl_slist_free_all(pHeaders); }
    };

    const HttpCallPtr m_pCall;
    CURL* const m_pHandle;
    QUrl m_url; // of this turn
    QByteArray m_strAuthorization;
    std::unique_ptr<curl_slist, FreeHeaders> m_pHeaders;
    std::array<char, CURL_ERROR_SIZE> m_error = {};
    HttpReplyHead m_head;
    qint64 m_lBody = 0;   // bytes of this turn's body
    qint64 m_lOnWire = 0; // the same with what came behind its announced end
    int m_iRedirects = 0;
    int m_iRetries = 0;
    int m_iAnswers = 0; // to challenges
    bool m_bBodyCut = false;
    bool m_bBetweenTurns = true;
    bool m_bOver = false; // decided inside a turn
    HttpEnd m_end;
    HttpClock::time_point m_begin;
    HttpClock::time_point m_lastActivity;
    HttpClock::time_point m_nextTurn;
};

} // namespace KXHost
