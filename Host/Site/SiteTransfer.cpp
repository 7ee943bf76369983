#include "Host/Site/SiteTransfer.h"

#include <algorithm>

namespace {

constexpr qint64 MostAtOnce = 1 << 20;
constexpr std::chrono::milliseconds PacePause(100);
constexpr qint64 PausesPerSecond = 10;

// Without an intermediate product that could overflow.
qint64 Part(qint64 lSize, qint64 lPercent)
{
    return lSize / 100 * lPercent + lSize % 100 * lPercent / 100;
}

} // namespace

namespace KXHost {

SiteTransfer::SiteTransfer(const SiteServer& server, const SiteFaults& faults, const SiteRecording& recording)
    : m_server(server)
    , m_pReader(recording.pServed->Open())
    , m_lAnnounced(recording.pServed->Size())
    , m_lLeft(m_lAnnounced)
{
    // In this order: a transfer may be short and cut as well, and the cut is then a part of what it would send.
    if (const auto percent = faults.Find(FaultKind::Short, recording))
        m_lAnnounced = m_lLeft = Part(m_lLeft, *percent);
    if (const auto bytes = faults.Find(FaultKind::WrongLength, recording))
        m_lAnnounced = std::max<qint64>(m_lAnnounced + *bytes, 1);
    if (const auto percent = faults.Find(FaultKind::Cut, recording))
        m_lLeft = Part(m_lLeft, *percent);
    if (const auto percent = faults.Find(FaultKind::Stall, recording)) {
        m_lLeft = Part(m_lLeft, *percent);
        m_bStalls = true;
    }
    m_lToPromise = m_lAnnounced;
    m_lRate = faults.Find(FaultKind::Slow, recording).value_or(0);
}

std::string_view SiteTransfer::NextPiece()
{
    const qint64 lPaced = m_lRate > 0 ? std::max<qint64>(m_lRate / PausesPerSecond, 1) : MostAtOnce;
    return m_pReader->Next(static_cast<std::size_t>(std::min({lPaced, MostAtOnce, m_lLeft})));
}

bool SiteTransfer::Send(httplib::DataSink& sink)
{
    if (m_bStalls && m_lLeft <= 0) {
        m_server.Hang();
        return false;
    }
    // The library stops asking at the announced length: what goes beyond it goes in the same turn.
    do {
        const std::string_view piece = m_lLeft > 0 ? NextPiece() : std::string_view();
        if (piece.empty() || !sink.write(piece.data(), piece.size()))
            return false;
        m_lLeft -= static_cast<qint64>(piece.size());
        m_lToPromise -= static_cast<qint64>(piece.size());
        if (m_lRate > 0 && m_lLeft > 0 && !m_server.Pause(PacePause))
            return false;
    } while (m_lToPromise <= 0 && m_lLeft > 0);
    // More was sent than announced: what follows on this connection could not be understood.
    return m_lToPromise >= 0;
}

} // namespace KXHost
