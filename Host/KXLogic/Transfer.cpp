#include "Host/KXLogic/Transfer.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr qint64 ReadBufferSize = 1024 * 1024;           // what the network may be ahead of the disk
constexpr std::size_t PieceSize = 256 * 1024;            // one write
constexpr int TickMs = 25;                               // so soon a stop is noticed
constexpr int ReportMs = 100;                            // about ten data callbacks a second
constexpr int StartupMs = 4 * NetworkManager::StartupMs; // several transfers start at once
constexpr int MaxRedirects = 5;
constexpr int HttpOk = 200;

bool IsLoopback(const QString& strHost)
{
    return strHost == QLatin1String("localhost") || QHostAddress(strHost).isLoopback();
}

bool IsSameOrigin(const QUrl& one, const QUrl& other)
{
    const auto port = [](const QUrl& url) { return url.port(url.scheme() == QLatin1String("https") ? 443 : 80); };
    return one.scheme() == other.scheme() && one.host() == other.host() && port(one) == port(other);
}

int StatusOf(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

} // namespace

namespace KXHost {

Transfer::Transfer(TransferOrder order, QObject* pParent)
    : QObject(pParent)
    , m_order(std::move(order))
    , m_manager(this)
    , m_buffer(PieceSize)
{
    if (IsLoopback(m_order.url.host()))
        m_manager.setProxy(QNetworkProxy::NoProxy);
    connect(&m_manager, &QNetworkAccessManager::authenticationRequired, this,
            [this](QNetworkReply*, QAuthenticator* pAuthenticator) { OnAuthenticationRequired(pAuthenticator); });
    connect(&m_tick, &QTimer::timeout, this, &Transfer::OnTick);
}

// Whatever the network thread still waits for is dropped before it is joined.
Transfer::~Transfer()
{
    if (m_pReply != nullptr) {
        m_pReply->disconnect(this);
        QCoreApplication::removePostedEvents(m_pReply);
    }
    m_manager.Destroy(m_pReply);
    m_order.pSink->Stop();
}

void Transfer::Start()
{
    QTimer::singleShot(StartupMs, this, [this] {
        if (!m_bEnded)
            Get(m_order.url);
    });
    m_lastActivity.start();
    m_lastReport.start();
    m_tick.start(TickMs);
}

void Transfer::Get(const QUrl& url)
{
    QNetworkRequest request(url);
    // The file gets what the source holds: no compression on the way, which would also change the byte count.
    request.setRawHeader("Accept-Encoding", "identity");
    m_pReply = m_manager.get(request);
    m_pReply->setReadBufferSize(ReadBufferSize);
    connect(m_pReply, &QNetworkReply::readyRead, this, &Transfer::OnReadyRead);
    connect(m_pReply, &QNetworkReply::finished, this, &Transfer::OnFinished);
    m_lastActivity.start();
}

void Transfer::OnReadyRead()
{
    m_lastActivity.start();
    if (BodyIsRecording())
        ReadBody();
    else
        m_pReply->skip(m_pReply->bytesAvailable());
}

void Transfer::OnFinished()
{
    OnReadyRead();
    if (m_bEnded || FollowRedirect())
        return;
    TransferOutcome outcome = CheckReply();
    if (outcome.state == TransferState::Running)
        outcome = m_order.pSink->Finish();
    if (outcome.state == TransferState::Finished)
        ReportRunning();
    End(outcome);
}

void Transfer::OnTick()
{
    if (m_order.pSink->IsStopped())
        return End({TransferState::Stopped, QString()});
    if (m_lastReport.hasExpired(ReportMs))
        ReportData();
    if (m_lastActivity.hasExpired(m_order.iStallTimeoutMs))
        End({TransferState::Failed, QStringLiteral("nothing received for %1 ms").arg(m_order.iStallTimeoutMs)});
}

// By hand, for Qt follows to another scheme too. False when there is nothing to follow.
bool Transfer::FollowRedirect()
{
    const QVariant target = m_pReply->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (!target.isValid() || m_pReply->error() != QNetworkReply::NoError)
        return false;
    const QUrl url = m_pReply->url().resolved(target.toUrl());
    if (url.scheme() != m_order.url.scheme()) {
        End({TransferState::Failed, QStringLiteral("redirected to another scheme")});
    } else if (++m_iRedirects > MaxRedirects) {
        End({TransferState::Failed, QStringLiteral("redirected more than %1 times").arg(MaxRedirects)});
    } else {
        Get(url); // the old reply stays with the manager
    }
    return true;
}

// Qt asks again when the credentials were wrong; without an answer the reply ends with status 401.
void Transfer::OnAuthenticationRequired(QAuthenticator* pAuthenticator)
{
    const bool bOwnSource = IsSameOrigin(m_order.url, m_pReply->url());
    if (m_bCredentialsGiven || m_order.auth == Auth::None || !bOwnSource)
        return;
    m_bCredentialsGiven = true;
    pAuthenticator->setUser(m_order.strUser);
    pAuthenticator->setPassword(m_order.strPassword);
}

void Transfer::ReadBody()
{
    while (!m_bEnded && m_pReply->bytesAvailable() > 0) {
        const qint64 lSize = m_pReply->read(m_buffer.data(), static_cast<qint64>(m_buffer.size()));
        if (lSize <= 0)
            return;
        m_lReceived += lSize;
        ReportRunning();
        std::size_t uClearSize = 0;
        const TransferOutcome outcome =
            m_order.pSink->Write(m_buffer.data(), static_cast<std::size_t>(lSize), uClearSize);
        m_lUnreported += static_cast<qint64>(uClearSize);
        if (outcome.state != TransferState::Running)
            End(outcome);
    }
}

// Without a length a cut could not be told: Qt takes the end of the connection for the end of such a body, and at times
// even when its chunks broke off.
bool Transfer::BodyIsRecording() const
{
    const QByteArray encoding = m_pReply->rawHeader("Content-Encoding").toLower();
    return StatusOf(*m_pReply) == HttpOk && (encoding.isEmpty() || encoding == "identity") &&
           m_pReply->header(QNetworkRequest::ContentLengthHeader).isValid();
}

// Running when the whole body came.
TransferOutcome Transfer::CheckReply() const
{
    const int iStatus = StatusOf(*m_pReply);
    if (iStatus == 401 || iStatus == 403)
        return {TransferState::Refused, QStringLiteral("refused with HTTP status %1").arg(iStatus)};
    // Codes below 100 are those of the network; the texts of the others repeat the URL.
    if (m_pReply->error() != QNetworkReply::NoError && m_pReply->error() < 100)
        return {TransferState::Failed, m_pReply->errorString()};
    if (iStatus != HttpOk)
        return {TransferState::Failed, QStringLiteral("HTTP status %1").arg(iStatus)};
    if (m_pReply->error() != QNetworkReply::NoError)
        return {TransferState::Failed, QStringLiteral("network error %1").arg(static_cast<int>(m_pReply->error()))};
    if (!BodyIsRecording())
        return {TransferState::Failed, QStringLiteral("compressed, or sent without a length")};
    const qint64 lLength = m_pReply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (lLength != m_lReceived)
        return {TransferState::Failed, QStringLiteral("%1 of %2 bytes received").arg(m_lReceived).arg(lLength)};
    return {};
}

void Transfer::ReportRunning()
{
    if (m_bRunningReported)
        return;
    m_bRunningReported = true;
    m_order.onOutcome({TransferState::Running, QString()});
    m_lastActivity.start(); // the time in the callback is not the source's
}

void Transfer::ReportData()
{
    if (m_lUnreported == 0)
        return;
    while (m_lUnreported > 0) {
        const qint64 lLength = std::min<qint64>(m_lUnreported, std::numeric_limits<int>::max());
        m_lUnreported -= lLength;
        m_order.onData(static_cast<int>(lLength));
    }
    m_lastActivity.start();
    m_lastReport.start();
}

void Transfer::End(const TransferOutcome& outcome)
{
    if (m_bEnded)
        return;
    m_bEnded = true;
    m_tick.stop();
    if (m_pReply != nullptr)
        m_pReply->disconnect(this); // it ends with this object
    m_order.pSink->Stop();
    if (outcome.state != TransferState::Stopped)
        ReportData();
    m_order.onOutcome(outcome);
    deleteLater();
}

} // namespace KXHost
