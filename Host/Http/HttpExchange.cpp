#include "Host/Http/HttpExchange.h"

#include "Host/Http/HttpDigest.h"
#include "Host/Http/HttpReason.h"
#include "Host/Http/HttpRules.h"

#include <QtCore/QRandomGenerator>

#include <algorithm>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

namespace KXHost {

namespace {

constexpr int MostRedirects = 5;
constexpr int MostAnswers = 3;               // to challenges
constexpr qint64 MostOtherBytes = 64 * 1024; // of a body that is no recording
constexpr long BufferBytes = 256 * 1024;
constexpr long LeastBufferBytes = 1024;
constexpr std::chrono::seconds LongestPause(60);
constexpr std::chrono::milliseconds RetryPause(250);
constexpr int HttpOk = 200;

QByteArray TargetOf(const QUrl& url)
{
    const QUrl target = url.adjusted(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
    const QByteArray encoded = target.toEncoded();
    return encoded.startsWith('/') ? encoded : '/' + encoded;
}

QByteArray NewClientNonce()
{
    std::array<quint32, 4> words = {};
    QRandomGenerator::system()->fillRange(words.data(), static_cast<qsizetype>(words.size()));
    return QByteArray(reinterpret_cast<const char*>(words.data()), sizeof(words)).toHex();
}

// A limited transfer reads in small pieces, or it would rest for longer than a stalled one may.
long BufferFor(qint64 lBytesPerSecond)
{
    if (lBytesPerSecond <= 0)
        return BufferBytes;
    return static_cast<long>(std::clamp<qint64>(lBytesPerSecond / 10, LeastBufferBytes, BufferBytes));
}

} // namespace

HttpExchange::HttpExchange(HttpCallPtr pCall, CURL* pHandle)
    : m_pCall(std::move(pCall))
    , m_pHandle(pHandle)
    , m_url(m_pCall->request.url)
    , m_begin(HttpClock::now())
    , m_lastActivity(m_begin)
    , m_nextTurn(m_begin)
{}

void HttpExchange::Prepare()
{
    m_head = HttpReplyHead();
    m_lBody = 0;
    m_lOnWire = 0;
    m_bBodyCut = false;
    m_bBetweenTurns = false;
    m_error[0] = '\0';
    m_lastActivity = HttpClock::now();
    curl_easy_reset(m_pHandle);
    const QUrl url = m_url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    curl_easy_setopt(m_pHandle, CURLOPT_URL, url.toEncoded().constData());
    curl_easy_setopt(m_pHandle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(m_pHandle, CURLOPT_ERRORBUFFER, m_error.data());
    curl_easy_setopt(m_pHandle, CURLOPT_HEADERFUNCTION, &HttpExchange::OnHeader);
    curl_easy_setopt(m_pHandle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(m_pHandle, CURLOPT_WRITEFUNCTION, &HttpExchange::OnBody);
    curl_easy_setopt(m_pHandle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(m_pHandle, CURLOPT_DEBUGFUNCTION, &HttpExchange::OnTrace);
    curl_easy_setopt(m_pHandle, CURLOPT_DEBUGDATA, this);
    curl_easy_setopt(m_pHandle, CURLOPT_VERBOSE, 1L);
    SetUpTransport();
    SetUpHeaders();
}

void HttpExchange::SetUpTransport()
{
    const HttpRequest& request = m_pCall->request;
    curl_easy_setopt(m_pHandle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(m_pHandle, CURLOPT_QUICK_EXIT, 1L); // a stop waits for no name server
    curl_easy_setopt(m_pHandle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(m_pHandle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(m_pHandle, CURLOPT_PATH_AS_IS, 1L); // the digest is that of the path as it was given
    curl_easy_setopt(m_pHandle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(m_pHandle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.iStallTimeoutMs) * 2);
    curl_easy_setopt(m_pHandle, CURLOPT_MAX_RECV_SPEED_LARGE, static_cast<curl_off_t>(request.lBytesPerSecond));
    curl_easy_setopt(m_pHandle, CURLOPT_BUFFERSIZE, BufferFor(request.lBytesPerSecond));
    if (IsLoopback(m_url))
        curl_easy_setopt(m_pHandle, CURLOPT_PROXY, "");
}

// What is served is taken as it is: compressed on the way, its length would say nothing.
void HttpExchange::SetUpHeaders()
{
    m_pHeaders.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
    if (!m_strAuthorization.isEmpty()) {
        const QByteArray line = "Authorization: " + m_strAuthorization;
        curl_slist_append(m_pHeaders.get(), line.constData());
    }
    curl_easy_setopt(m_pHandle, CURLOPT_HTTPHEADER, m_pHeaders.get());
}

std::size_t HttpExchange::OnHeader(char* pData, std::size_t uSize, std::size_t uCount, void* pThis)
{
    auto& exchange = *static_cast<HttpExchange*>(pThis);
    exchange.m_lastActivity = HttpClock::now();
    const bool bHadHead = exchange.m_head.IsComplete();
    if (!exchange.m_head.Add(pData, uSize * uCount)) {
        exchange.End(HttpResult::Failed, QStringLiteral("%1 sends more than %2 KiB of headers")
                                             .arg(HostText(exchange.m_url))
                                             .arg(HttpReplyHead::MostBytes / 1024));
        return 0;
    }
    const bool bGoOn = bHadHead || !exchange.m_head.IsComplete() || exchange.TakeHead();
    return bGoOn && !exchange.m_pCall->bStopped ? uSize * uCount : 0;
}

std::size_t HttpExchange::OnBody(char* pData, std::size_t uSize, std::size_t uCount, void* pThis)
{
    auto& exchange = *static_cast<HttpExchange*>(pThis);
    const bool bGoOn = !exchange.m_pCall->bStopped && exchange.TakeBody(pData, uSize * uCount);
    exchange.m_lastActivity = HttpClock::now(); // the time in the receiver is not the server's
    return bGoOn ? uSize * uCount : 0;
}

// Curl drops what comes behind the announced end of a body: what it has read already is seen here alone.
int HttpExchange::OnTrace(CURL*, curl_infotype type, char*, std::size_t uSize, void* pThis)
{
    if (type == CURLINFO_DATA_IN)
        static_cast<HttpExchange*>(pThis)->m_lOnWire += static_cast<qint64>(uSize);
    return 0;
}

// And what it has not read yet. (Behind a body over TLS there may well be something: news of the session.)
bool HttpExchange::HasMoreOnWire() const
{
    curl_socket_t socket = CURL_SOCKET_BAD;
    char cAny = 0;
    return m_url.scheme() == QLatin1String("http") &&
           curl_easy_getinfo(m_pHandle, CURLINFO_ACTIVESOCKET, &socket) == CURLE_OK && socket != CURL_SOCKET_BAD &&
           ::recv(socket, &cAny, 1, MSG_PEEK) > 0; // the sockets of curl do not block
}

bool HttpExchange::TakeHead()
{
    if (m_head.Status() != HttpOk)
        return true;
    if (!JudgeHead())
        return false;
    HttpHead head;
    head.strHost = HostText(m_url);
    head.lLength = m_head.Length();
    head.bChunked = m_head.IsChunked();
    head.strType = m_head.Value("content-type").split(';').first().trimmed().toLower();
    return m_pCall->pReceiver->OnHead(head) || End(HttpResult::GivenUp, QString());
}

bool HttpExchange::TakeBody(const char* pData, std::size_t uSize)
{
    m_lBody += static_cast<qint64>(uSize);
    if (m_head.Status() == HttpOk)
        return m_pCall->pReceiver->OnData(pData, uSize) || End(HttpResult::GivenUp, QString());
    m_bBodyCut = m_lBody > MostOtherBytes;
    return !m_bBodyCut;
}

bool HttpExchange::JudgeHead()
{
    const QByteArray encoding = m_head.Value("content-encoding").toLower();
    if (m_head.HasDifferingLengths())
        return End(HttpResult::Failed, QStringLiteral("%1 says two different lengths").arg(HostText(m_url)));
    if (!encoding.isEmpty() && encoding != "identity")
        return End(HttpResult::Failed, QStringLiteral("%1 sends it compressed (%2), which nobody asked for")
                                           .arg(HostText(m_url), QString::fromLatin1(encoding)));
    return true;
}

bool HttpExchange::JudgeBody()
{
    const qint64 lLength = m_head.Length();
    if (lLength >= 0 && (m_lOnWire > lLength || HasMoreOnWire()))
        return End(
            HttpResult::Failed,
            QStringLiteral("%1 sends more than the %2 bytes that it announced").arg(HostText(m_url)).arg(lLength));
    return End(HttpResult::Whole, QString());
}

bool HttpExchange::OnTurnEnd(CURLcode code)
{
    if (m_bOver || m_pCall->bStopped)
        return false;
    if (code != CURLE_OK && !m_bBodyCut)
        return OnCurlFailure(code);
    return m_head.IsComplete() ? OnAnswer() : OnCurlFailure(CURLE_RECV_ERROR);
}

// A connection that ends before the first byte was closed in front of the request: nothing is lost by asking again.
bool HttpExchange::OnCurlFailure(CURLcode code)
{
    const bool bUnanswered = code == CURLE_GOT_NOTHING || code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR;
    if (bUnanswered && !m_head.HasBegun() && m_iRetries < m_pCall->request.iRetries) {
        ++m_iRetries;
        return Again(RetryPause);
    }
    CurlFailure failure;
    failure.code = code;
    curl_easy_getinfo(m_pHandle, CURLINFO_SSL_VERIFYRESULT, &failure.lVerifyResult);
    failure.strDetail = QString::fromUtf8(m_error.data());
    failure.lReceived = m_lBody;
    failure.lLength = m_head.Length();
    return End(HttpResult::Failed, ReasonOf(m_url, failure));
}

// Each step ends the request or prepares another turn.
bool HttpExchange::OnAnswer()
{
    switch (m_head.Status()) {
    case HttpOk:
        return JudgeBody();
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        return Redirect();
    case 401:
        return Authenticate();
    case 403:
        return End(HttpResult::Refused, ReasonOfStatus(m_url, m_head.Status()));
    case 429:
    case 503:
        return RetryLater();
    default:
        return End(HttpResult::Failed, ReasonOfStatus(m_url, m_head.Status()));
    }
}

bool HttpExchange::Redirect()
{
    const QUrl target = m_url.resolved(QUrl::fromEncoded(m_head.Value("location")));
    const QString strProblem = RedirectProblem(m_url, target);
    if (m_head.Value("location").isEmpty() || !strProblem.isEmpty())
        return End(HttpResult::Failed, strProblem.isEmpty() ? ReasonOfStatus(m_url, m_head.Status()) : strProblem);
    if (++m_iRedirects > MostRedirects)
        return End(
            HttpResult::Failed,
            QStringLiteral("%1 redirects more than %2 times").arg(HostText(m_pCall->request.url)).arg(MostRedirects));
    m_url = target;
    m_strAuthorization.clear();
    return Again(std::chrono::milliseconds(0));
}

// Once for each address, and again when only the server's nonce had become too old.
bool HttpExchange::Authenticate()
{
    const HttpRequest& request = m_pCall->request;
    const QList<HttpChallenge> challenges = ReadChallenges(m_head.Values("www-authenticate"));
    const HttpChallenge* const pDigest = ChooseDigest(challenges);
    const bool bOffersBasic = std::any_of(challenges.begin(), challenges.end(),
                                          [](const HttpChallenge& each) { return each.strScheme == "basic"; });
    const bool bGiven = !m_strAuthorization.isEmpty();
    const bool bMayGive = IsSameOrigin(request.url, m_url);
    if (bMayGive && request.auth == Auth::Basic && bOffersBasic && !bGiven) {
        if (!MaySendReadable(m_url, request.bInsecure))
            return End(HttpResult::Failed,
                       QStringLiteral("%1 asks for a basic password over plain http, where anyone could read it; use "
                                      "https or digest, or set the source's \"insecure\" to true")
                           .arg(HostText(m_url)));
        m_strAuthorization =
            "Basic " + QString(request.strUser + QLatin1Char(':') + request.strPassword).toUtf8().toBase64();
        return Again(std::chrono::milliseconds(0));
    }
    if (bMayGive && request.auth == Auth::Digest && pDigest != nullptr && (!bGiven || IsStale(*pDigest)) &&
        ++m_iAnswers <= MostAnswers) {
        m_strAuthorization = DigestAnswer(*pDigest, {request.strUser.toUtf8(), request.strPassword.toUtf8()},
                                          TargetOf(m_url), NewClientNonce());
        return Again(std::chrono::milliseconds(0));
    }
    return End(HttpResult::Refused, ReasonOfRefusal(request, m_url, challenges, bGiven));
}

bool HttpExchange::RetryLater()
{
    curl_off_t lSeconds = 0;
    curl_easy_getinfo(m_pHandle, CURLINFO_RETRY_AFTER, &lSeconds);
    const bool bAsked = !m_head.Value("retry-after").isEmpty();
    if (!bAsked || std::chrono::seconds(lSeconds) > LongestPause || m_iRetries >= m_pCall->request.iRetries)
        return End(HttpResult::Failed, ReasonOfStatus(m_url, m_head.Status()));
    ++m_iRetries;
    return Again(std::chrono::seconds(lSeconds));
}

bool HttpExchange::Again(std::chrono::milliseconds pause)
{
    m_nextTurn = HttpClock::now() + pause;
    m_lastActivity = m_nextTurn;
    m_bBetweenTurns = true;
    return true;
}

HttpClock::time_point HttpExchange::Deadline() const
{
    const HttpRequest& request = m_pCall->request;
    HttpClock::time_point deadline =
        std::min(m_lastActivity + std::chrono::milliseconds(request.iStallTimeoutMs), m_pCall->pReceiver->Due());
    if (m_bBetweenTurns)
        deadline = std::min(deadline, m_nextTurn);
    if (request.iTimeoutMs > 0)
        deadline = std::min(deadline, m_begin + std::chrono::milliseconds(request.iTimeoutMs));
    return deadline;
}

bool HttpExchange::OnTime(HttpClock::time_point now)
{
    const HttpRequest& request = m_pCall->request;
    if (m_pCall->pReceiver->Due() <= now) {
        m_pCall->pReceiver->OnDue();
        m_lastActivity += HttpClock::now() - now; // the time in the receiver is not the server's
    }
    if (now - m_lastActivity >= std::chrono::milliseconds(request.iStallTimeoutMs))
        return End(HttpResult::Failed, QStringLiteral("%1 sent nothing for %2 seconds")
                                           .arg(HostText(m_url))
                                           .arg(request.iStallTimeoutMs / 1000.0));
    if (request.iTimeoutMs > 0 && now - m_begin >= std::chrono::milliseconds(request.iTimeoutMs))
        return End(HttpResult::Failed, QStringLiteral("%1 did not send all of it within %2 seconds")
                                           .arg(HostText(m_url))
                                           .arg(request.iTimeoutMs / 1000.0));
    return true;
}

void HttpExchange::TellEnd()
{
    const std::shared_ptr<HttpReceiver> pReceiver = std::move(m_pCall->pReceiver); // which may hold the call
    pReceiver->OnEnd(m_pCall->bStopped ? HttpEnd{HttpResult::Stopped, QString()} : m_end);
}

bool HttpExchange::End(HttpResult result, const QString& strReason)
{
    if (!m_bOver)
        m_end = {result, strReason};
    m_bOver = true;
    return false;
}

} // namespace KXHost
