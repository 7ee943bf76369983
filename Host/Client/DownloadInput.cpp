#include "Host/Client/DownloadInput.h"

#include "Host/Client/ConfigReader.h"
#include "Host/Client/JsonReading.h"
#include "Host/Site/Site.h"

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>

namespace KXClient {

namespace {

// Puts what a reader says into the context of its file.
template <class Read>
bool InFile(const QString& strFile, QString& strError, Read&& read)
{
    const std::optional<QByteArray> text = ReadInput(strFile, strError);
    if (!text)
        return false;
    if (read(*text))
        return true;
    strError = strFile + QLatin1String(": ") + strError;
    return false;
}

} // namespace

DownloadInput::DownloadInput() = default;
DownloadInput::~DownloadInput() = default;

bool DownloadInput::Read(const InputOptions& options, QString& strError)
{
    m_strFolder = options.strFolder;
    const bool bNeedsSite = options.strConfigFile.isEmpty() || options.strRecordsFile.isEmpty();
    if (!bNeedsSite && (!options.faults.isEmpty() || options.bDifficultCases)) {
        strError = QStringLiteral("--fault and --difficult are for the embedded site, which --config and --records "
                                  "leave nothing to do");
        return false;
    }
    if (bNeedsSite && !StartSite(options, strError))
        return false;
    const auto readConfig = [&](const QByteArray& text) { return ReadConfig(text, m_settings, strError); };
    if (!options.strConfigFile.isEmpty() && !InFile(options.strConfigFile, strError, readConfig))
        return false;
    return ReadRecordList(options, strError) && CheckSources(strError);
}

void DownloadInput::MoveTargets(const QString& strFolder)
{
    const QDir from(m_strFolder);
    const QDir to(strFolder);
    for (const RequestedRecord& request : m_records)
        request.pRecord->strDownloadPath = to.filePath(from.relativeFilePath(request.pRecord->strDownloadPath));
    m_strFolder = strFolder;
}

bool DownloadInput::StartSite(const InputOptions& options, QString& strError)
{
    KXHost::Site::Options siteOptions;
    siteOptions.faults = options.faults;
    siteOptions.cases = options.bDifficultCases ? KXHost::Site::Cases::Difficult : KXHost::Site::Cases::Ordinary;
    m_pSite = std::make_unique<KXHost::Site>();
    return m_pSite->Start(siteOptions, &strError) &&
           ReadConfig(QJsonDocument(m_pSite->ClientConfig()).toJson(), m_settings, strError);
}

bool DownloadInput::ReadRecordList(const InputOptions& options, QString& strError)
{
    const auto readList = [&](const QByteArray& text) {
        return ReadRecords(text, options.strFolder, m_records, strError);
    };
    if (!options.strRecordsFile.isEmpty())
        return InFile(options.strRecordsFile, strError, readList);
    return readList(QJsonDocument(m_pSite->Catalogue(options.strFolder)).toJson());
}

// A source without a URL would refuse to start, and nobody would ever hear of its records again.
bool DownloadInput::CheckSources(QString& strError) const
{
    for (const RequestedRecord& request : m_records) {
        const int iType = request.pRecord->iRecordType;
        if (m_settings.sources[static_cast<size_t>(iType)].strUrl.isEmpty()) {
            strError = QStringLiteral("record %1 needs the source \"%2\", which the configuration does not name")
                           .arg(request.pRecord->strRecordId, QLatin1String(SourceKeys[iType]));
            return false;
        }
    }
    return true;
}

} // namespace KXClient
