#include "Host/Site/Site.h"

#include "Host/Site/SiteRequests.h"

namespace KXHost {

struct Site::Private
{
    SiteCatalogue catalogue;
    SiteFaults faults;
    SiteServer server; // ends its threads before what they use goes
    SiteRequests requests{server, catalogue, faults};
};

Site::Site() = default;

Site::~Site()
{
    Stop();
}

bool Site::Start(const Options& options, QString* pError)
{
    Stop();
    QString strError;
    auto pSite = std::make_unique<Private>();
    if (pSite->catalogue.Load(options, &strError) &&
        pSite->faults.Parse(options.faults, pSite->catalogue.Recordings(), &strError) &&
        !pSite->server.Start(options.iPort))
        strError = QStringLiteral("Port %1 of 127.0.0.1 cannot be listened on").arg(options.iPort);
    if (pError != nullptr)
        *pError = strError;
    if (!strError.isEmpty())
        return false;
    m_pPrivate = std::move(pSite); // only now: a site that did not start answers nothing
    return true;
}

void Site::Stop()
{
    if (m_pPrivate != nullptr)
        m_pPrivate->server.Stop();
    m_pPrivate.reset();
}

int Site::Port() const
{
    return m_pPrivate != nullptr ? m_pPrivate->server.Port() : 0;
}

QString Site::BaseUrl() const
{
    return SiteCatalogue::BaseUrl(Port());
}

QJsonArray Site::Catalogue(const QString& strDownloadFolder) const
{
    return m_pPrivate != nullptr ? m_pPrivate->catalogue.ToJson(Port(), strDownloadFolder) : QJsonArray();
}

QJsonObject Site::ClientConfig() const
{
    return m_pPrivate != nullptr ? m_pPrivate->catalogue.ClientConfig(Port()) : QJsonObject();
}

QStringList Site::FaultHelp()
{
    return SiteFaults::Help();
}

} // namespace KXHost
