#pragma once

#include "Host/Site/SiteAuthenticator.h"
#include "Host/Site/SiteCatalogue.h"
#include "Host/Site/SiteFaults.h"
#include "Host/Site/SiteServer.h"

namespace KXHost {

// Answers the requests of the site. Thread: its operations run on the server's threads.
class SiteRequests
{
public:
    SiteRequests(SiteServer& server, const SiteCatalogue& catalogue, const SiteFaults& faults);

private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    void AnswerCatalogue(const Request& request, Response& response) const;
    void AnswerConfig(Response& response) const;
    void AnswerRecording(int iType, const Request& request, Response& response);
    void AnswerCover(const Request& request, Response& response) const;
    void AnswerThumbnail(const Request& request, Response& response) const;

    bool AnswerWithFault(const SiteRecording& recording, Response& response);
    bool IsAllowed(const SiteRecording& recording, const Request& request, Response& response);
    void SendRecording(const SiteRecording& recording, Response& response) const;
    CoverState CoverStateOf(const SiteRecording& recording) const;

    SiteServer& m_server;
    const SiteCatalogue& m_catalogue;
    const SiteFaults& m_faults;
    SiteAuthenticator m_authenticator;
};

} // namespace KXHost
