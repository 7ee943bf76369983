#pragma once

#include "Host/Site/ByteSource.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <vector>

namespace KXHost {

enum class CoverState {
    None,      // the recording names none
    Sound,     // encrypted with the key that the record names
    WrongKey,  // encrypted with another key
    Missing,   // the URL leads nowhere
    NoPicture, // opens with the right key, but is no picture
    Garbage,   // is not encrypted data at all
};

// A recording that the site serves, with all that a client may learn about it and what it must know to get it.
struct SiteRecording
{
    int iType = -1;
    QString strId;
    QString strSerial;
    int iChannel = 1;
    QString strFileName;
    QString strPassword; // what the source demands, or the key of what is encrypted: of the device or module
    QString strExpect;
    QJsonObject fields; // of the record; those that name this site, the folder and the size are added by the catalogue
    ByteSourcePtr pClear;
    ByteSourcePtr pServed; // what goes over the wire: the clear or the encrypted recording
    QString strPicture;    // sample picture: thumbnail, and cover of a cloud recording
    CoverState cover = CoverState::None;
    QString strCoverOwner; // id of the recording whose cover this one shows; its own as a rule
};

using SiteRecordings = std::vector<SiteRecording>;

// A serial with its passwords: the one that the device demands and the one that a client is told.
struct SiteDevice
{
    QString strSerial;
    QString strTrue;
    QString strTold;
};

using SiteDevices = std::vector<SiteDevice>;

QByteArray SampleFile(const QString& strName);

SiteDevices BuiltInDevices();
SiteRecordings BuiltInRecordings();
SiteRecordings DifficultRecordings();

// The MP4 files under a folder, those in a sub-folder named like a source as recordings of that source. An empty list
// sets the error.
SiteRecordings FolderRecordings(const QString& strFolder, QString* pError);
SiteDevices FolderDevices();

} // namespace KXHost
