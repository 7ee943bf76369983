#include "Host/Client/RecordsReader.h"

#include "Host/Client/JsonReading.h"
#include "Model/DownloadRecordFields.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include <algorithm>

namespace KXClient {

namespace {

constexpr struct
{
    const char* pszName;
    Expectation expectation;
} ExpectationNames[] = {
    {"finished", Expectation::Finished},
    {"failed", Expectation::Failed},
    {"refused", Expectation::Refused},
    {"dropped", Expectation::Dropped},
};

template <class Record>
DownloadRecordInfoPtr TakeFields(ObjectReader& reader)
{
    const auto pRecord = std::make_shared<Record>();
    const auto take = [&reader](const char* pszKey, auto& field) { reader.Take(pszKey, field); };
    KXDownLoadList::VisitBaseFields(*pRecord, take);
    KXDownLoadList::VisitOwnFields(*pRecord, take);
    return pRecord;
}

// Index: record type. The type chooses the class, and with it the keys that are known.
constexpr DownloadRecordInfoPtr (*TakeRecord[])(ObjectReader&) = {
    TakeFields<KXDownLoadList::DownloadCloudRecordInfo>,
    TakeFields<KXDownLoadList::DownloadDeviceRecordInfo>,
    TakeFields<KXDownLoadList::DownloadLanModuleRecordInfo>,
    TakeFields<KXDownLoadList::DownloadLanModuleRecordInfo>,
};

// The cloud knows a recording by number only; a text that is not that number's text would never be reported again.
void CheckId(ObjectReader& reader, const KXDownLoadList::DownloadRecordInfo& record)
{
    if (record.strRecordId.isEmpty())
        reader.Fail("strRecordId", QStringLiteral("is missing"));
    else if (record.iRecordType == KXDownLoadList::CloudRecord &&
             QString::number(record.strRecordId.toLongLong()) != record.strRecordId)
        reader.Fail("strRecordId", QStringLiteral("must be a decimal 64-bit number for the cloud"));
}

void PutTargetUnder(const QString& strFolder, ObjectReader& reader, KXDownLoadList::DownloadRecordInfo& record)
{
    const QString strGiven = QDir::fromNativeSeparators(record.strDownloadPath);
    if (strGiven.isEmpty())
        return reader.Fail("strDownloadPath", QStringLiteral("is missing"));
    const QDir folder(strFolder);
    const QString strTarget = QDir::cleanPath(folder.absoluteFilePath(strGiven));
    if (strGiven.endsWith(QLatin1Char('/')) || !strTarget.startsWith(folder.absolutePath() + QLatin1Char('/')))
        return reader.Fail("strDownloadPath", QStringLiteral("must name a file in %1").arg(folder.absolutePath()));
    record.strDownloadPath = strTarget;
}

void CheckTime(ObjectReader& reader, const char* pszKey, const QString& strTime)
{
    if (!strTime.isEmpty() && !QDateTime::fromString(strTime, QStringLiteral("yyyyMMddTHHmmss")).isValid())
        reader.Fail(pszKey, QStringLiteral("must be a time like 20260131T235900"));
}

void TakeSha256(ObjectReader& reader, RequestedRecord& request)
{
    static const QRegularExpression hex(QStringLiteral("\\A[0-9a-f]{64}\\z"));
    if (!reader.Take("sha256", request.strSha256))
        return;
    request.strSha256 = request.strSha256.toLower();
    if (!hex.match(request.strSha256).hasMatch())
        reader.Fail("sha256", QStringLiteral("must be 64 hexadecimal digits"));
}

void TakeExpectation(ObjectReader& reader, RequestedRecord& request)
{
    QString strName;
    if (!reader.Take("expect", strName))
        return;
    for (const auto& known : ExpectationNames) {
        if (strName == QLatin1String(known.pszName)) {
            request.expectation = known.expectation;
            return;
        }
    }
    reader.Fail("expect", QStringLiteral("must be finished, failed, refused or dropped"));
}

QString ReadRecord(const Json& json, const QString& strPath, const QString& strFolder, RequestedRecord& request)
{
    ObjectReader reader(json, strPath);
    qint32 iType = -1;
    if (!reader.Take("iRecordType", iType) || iType < 0 || iType > KXDownLoadList::LanModuleRecord) {
        reader.Fail("iRecordType", QStringLiteral("must be a number from 0 to 3"));
        return reader.Error();
    }
    request.pRecord = TakeRecord[iType](reader);
    TakeSha256(reader, request);
    TakeExpectation(reader, request);
    reader.Take("thumbnail", request.strThumbnailUrl);
    reader.RefuseTheRest();
    CheckId(reader, *request.pRecord);
    CheckTime(reader, "strStartTime", request.pRecord->strStartTime);
    CheckTime(reader, "strEndTime", request.pRecord->strEndTime);
    PutTargetUnder(strFolder, reader, *request.pRecord);
    return reader.Error();
}

} // namespace

QString ExpectationName(Expectation expectation)
{
    const auto* pKnown = std::find_if(std::begin(ExpectationNames), std::end(ExpectationNames),
                                      [expectation](const auto& known) { return known.expectation == expectation; });
    return QLatin1String(pKnown->pszName);
}

bool ReadRecords(const QByteArray& text, const QString& strFolder, QVector<RequestedRecord>& records, QString& strError)
{
    const std::optional<Json> json = ParseJson(text, strError);
    if (!json)
        return false;
    if (!json->is_array() || json->empty()) {
        strError = QStringLiteral("must be an array of at least one record");
        return false;
    }
    QSet<QPair<int, QString>> known;
    for (const Json& element : *json) {
        const QString strPath = QStringLiteral("[%1]").arg(records.size());
        RequestedRecord request;
        strError = ReadRecord(element, strPath, strFolder, request);
        if (!strError.isEmpty())
            return false;
        const auto key = qMakePair(request.pRecord->iRecordType, request.pRecord->strRecordId);
        if (known.contains(key)) {
            strError = strPath + QLatin1String(".strRecordId: this source has a record of that id before");
            return false;
        }
        known.insert(key);
        records.append(request);
    }
    return true;
}

} // namespace KXClient
