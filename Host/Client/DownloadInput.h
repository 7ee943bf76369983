#pragma once

#include "Host/Client/RecordsReader.h"
#include "Host/KXLogic/HostSettings.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

namespace KXHost {
class Site;
}

namespace KXClient {

struct InputOptions
{
    QString strConfigFile;        // empty: the sources are those of the embedded site
    QString strRecordsFile;       // empty: the embedded site's catalogue
    QString strFolder;            // absolute download folder
    QStringList faults;           // of the embedded site
    bool bDifficultCases = false; // the embedded site has those that need recovery or must fail, and no others
};

// What to download and from where. The embedded site runs as long as this lives, when anything is asked of it.
class DownloadInput
{
public:
    DownloadInput();
    ~DownloadInput();

    // False, with the reason, when anything is no good.
    bool Read(const InputOptions& options, QString& strError);

    const KXHost::Settings& Settings() const { return m_settings; }
    const QVector<RequestedRecord>& Records() const { return m_records; }

    // Puts every target into another folder, under the name that it has in the present one.
    void MoveTargets(const QString& strFolder);

private:
    bool StartSite(const InputOptions& options, QString& strError);
    bool ReadRecordList(const InputOptions& options, QString& strError);
    bool CheckSources(QString& strError) const;

    std::unique_ptr<KXHost::Site> m_pSite;
    QString m_strFolder; // that the targets are in
    KXHost::Settings m_settings;
    QVector<RequestedRecord> m_records;
};

} // namespace KXClient
