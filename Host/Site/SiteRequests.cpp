#include "Host/Site/SiteRequests.h"

#include "Host/Site/SiteCover.h"
#include "Host/Site/SiteTransfer.h"

#include <QtCore/QJsonDocument>

namespace {

constexpr int Unauthorized = 401;
constexpr int NotFound = 404;

struct StatusFault
{
    KXHost::FaultKind kind;
    int iStatus;
};

// The first that a recording meets is answered.
constexpr StatusFault StatusFaults[] = {
    {KXHost::FaultKind::Missing, NotFound},
    {KXHost::FaultKind::Forbidden, 403},
    {KXHost::FaultKind::Busy, 503},
    {KXHost::FaultKind::Refuse, Unauthorized},
};

struct CoverFault
{
    KXHost::FaultKind kind;
    KXHost::CoverState state;
};

constexpr CoverFault CoverFaults[] = {
    {KXHost::FaultKind::CoverMissing, KXHost::CoverState::Missing},
    {KXHost::FaultKind::CoverGarbage, KXHost::CoverState::Garbage},
    {KXHost::FaultKind::CoverNoPicture, KXHost::CoverState::NoPicture},
    {KXHost::FaultKind::CoverWrongKey, KXHost::CoverState::WrongKey},
};

void SendJson(const QJsonDocument& document, httplib::Response& response)
{
    response.set_content(document.toJson().toStdString(), "application/json");
}

// What stands behind the first part of the path for this recording.
QString PathOf(const KXHost::SiteRecording& recording)
{
    if (recording.iType == KXDownLoadList::CloudRecord)
        return recording.strId;
    return recording.strSerial + QLatin1Char('/') + QString::number(recording.iChannel) + QLatin1Char('/') +
           recording.strId;
}

QString Matched(const httplib::Request& request)
{
    return QString::fromStdString(request.matches[1]);
}

} // namespace

namespace KXHost {

SiteRequests::SiteRequests(SiteServer& server, const SiteCatalogue& catalogue, const SiteFaults& faults)
    : m_server(server)
    , m_catalogue(catalogue)
    , m_faults(faults)
{
    m_server.Get("/catalogue\\.json",
                 [this](const Request& request, Response& response) { AnswerCatalogue(request, response); });
    m_server.Get("/config\\.json", [this](const Request&, Response& response) { AnswerConfig(response); });
    m_server.Get("/covers/([^/]+)",
                 [this](const Request& request, Response& response) { AnswerCover(request, response); });
    m_server.Get("/thumbs/([^/]+)\\.jpg",
                 [this](const Request& request, Response& response) { AnswerThumbnail(request, response); });
    for (int iType = 0; iType < static_cast<int>(SiteSources.size()); ++iType)
        m_server.Get(
            std::string("/") + SourceOf(iType).pFolder + "/(.+)",
            [this, iType](const Request& request, Response& response) { AnswerRecording(iType, request, response); });
}

void SiteRequests::AnswerCatalogue(const Request& request, Response& response) const
{
    const QString strFolder = QString::fromStdString(request.get_param_value("folder"));
    SendJson(QJsonDocument(m_catalogue.ToJson(m_server.Port(), strFolder)), response);
}

void SiteRequests::AnswerConfig(Response& response) const
{
    SendJson(QJsonDocument(m_catalogue.ClientConfig(m_server.Port())), response);
}

void SiteRequests::AnswerRecording(int iType, const Request& request, Response& response)
{
    const QString strPath = Matched(request);
    const SiteRecording* pRecording = m_catalogue.Find(strPath.section(QLatin1Char('/'), -1));
    if (pRecording == nullptr || pRecording->iType != iType || PathOf(*pRecording) != strPath)
        response.status = NotFound;
    else if (!AnswerWithFault(*pRecording, response) && IsAllowed(*pRecording, request, response))
        SendRecording(*pRecording, response);
}

bool SiteRequests::AnswerWithFault(const SiteRecording& recording, Response& response)
{
    if (m_faults.Has(FaultKind::Never, recording)) {
        m_server.Hang(); // what stands in the response then is not sent
        return true;
    }
    for (const StatusFault& fault : StatusFaults)
        if (m_faults.Has(fault.kind, recording)) {
            response.status = fault.iStatus;
            if (fault.iStatus == Unauthorized)
                response.set_header("WWW-Authenticate",
                                    m_authenticator.Challenge(SourceOf(recording.iType).auth).toStdString());
            return true;
        }
    return false;
}

bool SiteRequests::IsAllowed(const SiteRecording& recording, const Request& request, Response& response)
{
    const SiteAuthenticator::Request asked{QByteArray::fromStdString(request.method),
                                           QByteArray::fromStdString(request.target),
                                           QByteArray::fromStdString(request.get_header_value("Authorization"))};
    const qint64 lUses = m_faults.Find(FaultKind::StaleNonce, recording).value_or(std::numeric_limits<qint64>::max());
    QByteArray challenge;
    if (m_authenticator.Check(SourceOf(recording.iType).auth, asked, recording.strPassword.toUtf8(), challenge, lUses))
        return true;
    response.status = Unauthorized;
    response.set_header("WWW-Authenticate", challenge.toStdString());
    return false;
}

void SiteRequests::SendRecording(const SiteRecording& recording, Response& response) const
{
    const auto pTransfer = std::make_shared<SiteTransfer>(m_server, m_faults, recording);
    if (pTransfer->Announced() == 0) { // for the library a provider of nothing is one of unknown length
        response.set_content("", "video/mp4");
        return;
    }
    response.set_content_provider(
        static_cast<std::size_t>(pTransfer->Announced()), "video/mp4",
        [pTransfer](std::size_t, std::size_t, httplib::DataSink& sink) { return pTransfer->Send(sink); });
}

CoverState SiteRequests::CoverStateOf(const SiteRecording& recording) const
{
    for (const CoverFault& fault : CoverFaults)
        if (m_faults.Has(fault.kind, recording))
            return fault.state;
    return recording.cover;
}

void SiteRequests::AnswerCover(const Request& request, Response& response) const
{
    const SiteRecording* pRecording = m_catalogue.Find(Matched(request));
    if (pRecording != nullptr && m_faults.Has(FaultKind::CoverNever, *pRecording)) {
        m_server.Hang();
        return;
    }
    const auto cover =
        pRecording != nullptr ? CoverBytes(*pRecording, CoverStateOf(*pRecording)) : std::optional<std::string>();
    if (cover)
        response.set_content(*cover, "application/octet-stream");
    else
        response.status = NotFound;
}

void SiteRequests::AnswerThumbnail(const Request& request, Response& response) const
{
    const SiteRecording* pRecording = m_catalogue.Find(Matched(request));
    const QByteArray picture = pRecording != nullptr ? SampleFile(pRecording->strPicture) : QByteArray();
    if (picture.isEmpty())
        response.status = NotFound;
    else
        response.set_content(picture.toStdString(), "image/jpeg");
}

} // namespace KXHost
