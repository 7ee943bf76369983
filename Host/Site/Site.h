#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

namespace KXHost {

// A small HTTP site with recordings of all four sources, cover pictures and device thumbnails, for demonstrations and
// tests on one machine. It listens on 127.0.0.1 only.
//
//   /catalogue.json?folder=DIR              Catalogue(DIR)
//   /config.json                            ClientConfig()
//   /cloud/RECORD                           no authentication
//   /device/SERIAL/CHANNEL/RECORD           HTTP Digest, user "admin", password of the device
//   /iotlan/SERIAL/CHANNEL/RECORD           likewise
//   /lanmodule/SERIAL/CHANNEL/RECORD        HTTP Basic, user "admin", token of the module
//   /covers/NAME                            cover picture of a cloud recording, encrypted
//   /thumbs/RECORD.jpg                      thumbnail of a recording, plain JPEG
//
// Thread: Start, Stop and destruction on one thread; everything else on any thread while the site runs.
class Site
{
public:
    enum class Cases {
        Ordinary,
        Difficult, // those that need recovery or must fail
        All,       // ordinary ones first
    };

    struct Options
    {
        int iPort = 0;      // 0: any free one
        QString strDataDir; // serve the MP4 files of this folder as the ordinary recordings
        QStringList faults; // NAME[=VALUE][@RECORD or @SOURCE], see FaultHelp
        Cases cases = Cases::Ordinary;
    };

    Site();
    ~Site();

    // False when the port, the folder or a fault is no good; `pError`, which may be null, says which.
    bool Start(const Options& options, QString* pError);
    // Ends every connection, also those that hang in a fault, and all threads, within a second.
    void Stop();

    int Port() const;        // 0 while the site does not run
    QString BaseUrl() const; // "http://127.0.0.1:PORT"; empty while the site does not run

    // One object per recording. Its keys are names of record fields, with strDownloadPath in the given folder, and
    //   "sha256"  of the clear recording, in hex (the first call reads every recording once to get it)
    //   "expect"  how its download must end: "finished", "refused" or "dropped"
    //   "thumbnail"  URL of its picture, for a device's recording
    QJsonArray Catalogue(const QString& strDownloadFolder) const;
    // What a client needs to reach this site: keys "cloud", "device", "iotLan" and "lanModule", each an object with
    // "url", "auth" and "user"; and "devicePasswords", passwords by serial. The password of an encrypted cloud
    // recording is that of its device. The fields of the URL templates are {deviceId}, {channel} and {recordId}.
    QJsonObject ClientConfig() const;

    // One line per fault: name, value and effect.
    static QStringList FaultHelp();

private:
    struct Private;
    std::unique_ptr<Private> m_pPrivate;
};

} // namespace KXHost
