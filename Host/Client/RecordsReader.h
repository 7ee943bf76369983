#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace KXClient {

// How a download must end, so that the run is what its maker meant it to be.
enum class Expectation {
    Finished,
    Failed,
    Refused,
    Dropped, // the plug-in lets it go before it transfers anything, with a state event or without a word
};

QString ExpectationName(Expectation expectation);

struct RequestedRecord
{
    DownloadRecordInfoPtr pRecord;
    QString strSha256; // of the recording, lower case hex; empty when it is not known
    Expectation expectation = Expectation::Finished;
    QString strThumbnailUrl; // picture of a device's recording; empty when there is none
};

// Reads a JSON array of objects whose keys are the names of the record's fields, and "sha256", "expect" and
// "thumbnail". A relative target is put under `strFolder`; a target outside of it is an error. False, and the reason
// with index and key of the record, when anything is no good.
bool ReadRecords(const QByteArray& text, const QString& strFolder, QVector<RequestedRecord>& records,
                 QString& strError);

} // namespace KXClient
