#include "Host/KXLogic/Transfer.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace KXHost {

namespace {

constexpr std::chrono::milliseconds ReportPause(100); // about ten data callbacks a second

bool IsText(const QByteArray& strType)
{
    return strType.startsWith("text/") || strType == "application/xhtml+xml" || strType == "application/json";
}

} // namespace

Transfer::Transfer(TransferOrder order)
    : m_order(std::move(order))
    , m_lastReport(HttpClock::now())
{}

// Without a length and without chunks a cut could not be told from the end, unless it is known what must come.
bool Transfer::OnHead(const HttpHead& head)
{
    m_strHost = head.strHost;
    if (IsText(head.strType))
        m_outcome = {TransferState::Failed,
                     QStringLiteral("%1 sends a page (%2) instead of a recording; check the address")
                         .arg(head.strHost, QString::fromLatin1(head.strType))};
    else if (head.lLength < 0 && !head.bChunked && !m_order.pSink->CanTellWhole())
        m_outcome = {TransferState::Failed,
                     QStringLiteral("%1 sends the recording without its length, so that a cut could not be told")
                         .arg(head.strHost)};
    return m_outcome.state == TransferState::Running;
}

bool Transfer::OnData(const char* pData, std::size_t uSize)
{
    m_lReceived += static_cast<qint64>(uSize);
    ReportRunning();
    std::size_t uClearSize = 0;
    m_outcome = m_order.pSink->Write(pData, uSize, uClearSize);
    m_lUnreported += static_cast<qint64>(uClearSize);
    if (HttpClock::now() - m_lastReport >= ReportPause)
        ReportData();
    return m_outcome.state == TransferState::Running;
}

void Transfer::OnEnd(const HttpEnd& end)
{
    const TransferOutcome outcome = OutcomeOf(end);
    m_order.pSink->Stop();
    if (outcome.state == TransferState::Finished)
        ReportRunning();
    if (outcome.state != TransferState::Stopped)
        ReportData();
    m_order.onOutcome(outcome);
}

TransferOutcome Transfer::OutcomeOf(const HttpEnd& end)
{
    switch (end.result) {
    case HttpResult::Whole:
        break;
    case HttpResult::Failed:
        return {TransferState::Failed, end.strReason};
    case HttpResult::Refused:
        return {TransferState::Refused, end.strReason};
    case HttpResult::GivenUp:
        return m_outcome;
    case HttpResult::Stopped:
        return {TransferState::Stopped, QString()};
    }
    if (m_lReceived == 0 && !m_order.pSink->IsStopped())
        return {TransferState::Failed, QStringLiteral("%1 sends an empty recording").arg(m_strHost)};
    return m_order.pSink->Finish();
}

void Transfer::ReportRunning()
{
    if (!std::exchange(m_bRunningReported, true))
        m_order.onOutcome({TransferState::Running, QString()});
}

void Transfer::ReportData()
{
    while (m_lUnreported > 0) {
        const qint64 lLength = std::min<qint64>(m_lUnreported, std::numeric_limits<int>::max());
        m_lUnreported -= lLength;
        m_order.onData(static_cast<int>(lLength));
    }
    m_lastReport = HttpClock::now();
}

HttpClock::time_point Transfer::Due() const
{
    return m_lUnreported > 0 ? m_lastReport + ReportPause : HttpClock::time_point::max();
}

} // namespace KXHost
