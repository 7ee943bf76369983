#pragma once

#include "Host/Site/ByteSource.h"
#include "Host/Site/SiteFaults.h"
#include "Host/Site/SiteServer.h"

namespace KXHost {

// Sends one recording as the body of one response, with the faults that concern the body.
class SiteTransfer
{
public:
    SiteTransfer(const SiteServer& server, const SiteFaults& faults, const SiteRecording& recording);

    qint64 Announced() const { return m_lAnnounced; }
    // Sends the next part; false ends the connection.
    bool Send(httplib::DataSink& sink);

private:
    std::string_view NextPiece();

    const SiteServer& m_server;
    const std::unique_ptr<ByteReader> m_pReader;
    qint64 m_lAnnounced = 0;
    qint64 m_lLeft = 0;      // still to be sent, which may be less or more than was announced
    qint64 m_lToPromise = 0; // still to be sent until the announced length is reached
    bool m_bStalls = false;  // stays silent when nothing is left
    qint64 m_lRate = 0;      // bytes per second; 0 is as fast as can be
};

} // namespace KXHost
