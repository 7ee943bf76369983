#include "Host/Site/BuiltInTable.h"
#include "Host/Site/SiteRecording.h"

#include <QtCore/QFile>

#include <algorithm>

// Outside of any namespace, as the macro demands; without it the linker drops the resources of a static library.
static void KeepSamples()
{
    Q_INIT_RESOURCE(KXSite);
}

namespace {

using namespace KXHost::BuiltIn;
using KXDownLoadList::CloudRecord;
using KXDownLoadList::DeviceRecord;

QString Text(const char* pText)
{
    return QString::fromUtf8(pText);
}

const Device& DeviceOf(const Row& row)
{
    const QLatin1String serial(row.pSerial);
    return *std::find_if(std::begin(Devices), std::end(Devices),
                         [&](const Device& device) { return serial == QLatin1String(device.pSerial); });
}

QJsonObject CommonFields(const Row& row, const Device& device)
{
    // The password of an encrypted recording is asked for, so its record carries none.
    const bool bPasswordKnown = (row.uMarks & (Encrypted | StalePassword)) == 0;
    const QString strOld = (row.uMarks & StalePassword) != 0 ? QStringLiteral("last year's") : QString();
    return {
        {QStringLiteral("iRecordType"), row.iType},
        {QStringLiteral("strRecordId"), Text(row.pId)},
        {QStringLiteral("lValue1"), device.lChannelBase + row.iChannel},
        {QStringLiteral("lValue2"), device.lStorage},
        {QStringLiteral("strText1"), Text(device.pAccount)},
        {QStringLiteral("strDeviceId"), Text(device.pSerial)},
        {QStringLiteral("strStartTime"), Text(row.pBegin)},
        {QStringLiteral("strEndTime"), Text(row.pEnd)},
        {QStringLiteral("strPassword"), bPasswordKnown ? Text(device.pTrue) : strOld},
        {QStringLiteral("strText4"), Text(row.pTitle)},
        {QStringLiteral("iValue5"), row.iChannel},
    };
}

void AddCloudFields(const Row& row, QJsonObject& fields)
{
    fields[QStringLiteral("iCloudValue")] = 1;
    fields[QStringLiteral("strCloudText4")] = QString(QStringLiteral("picture-key-") + Text(row.pSerial));
    if ((row.uMarks & Encrypted) != 0)
        fields[QStringLiteral("strCloudText2")] = QString(QStringLiteral("record-key-") + Text(row.pId));
}

void AddDeviceFields(const Row& row, QJsonObject& fields)
{
    const bool bRecoverable = (row.uMarks & NoRecovery) == 0;
    fields[QStringLiteral("iDeviceValue")] = 1;
    fields[QStringLiteral("bUseAltStart")] = (row.uMarks & AltStart) != 0;
    fields[QStringLiteral("bCanGetPassword")] = bRecoverable;
    fields[QStringLiteral("bNeedPassword")] = true;
}

void AddLanFields(const Row& row, const Device& device, QJsonObject& fields)
{
    fields[QStringLiteral("strLanText1")] = Text(device.pSerial);
    fields[QStringLiteral("strLanText3")] = Text(device.pTrue);
    fields[QStringLiteral("strLanText4")] = QString(QStringLiteral("sub-") + QString::number(row.iChannel));
    fields[QStringLiteral("iLanValue2")] = 1;
    fields[QStringLiteral("iLanValue3")] = 2;
    fields[QStringLiteral("bLanFlag")] = false;
}

QJsonObject Fields(const Row& row, const Device& device)
{
    QJsonObject fields = CommonFields(row, device);
    if (row.iType == CloudRecord)
        AddCloudFields(row, fields);
    else if (row.iType == DeviceRecord)
        AddDeviceFields(row, fields);
    else
        AddLanFields(row, device, fields);
    return fields;
}

KXHost::SiteRecording Recording(const Row& row)
{
    const Device& device = DeviceOf(row);
    const QString strSample = Text(row.pSample);
    KXHost::SiteRecording recording;
    recording.iType = row.iType;
    recording.strId = Text(row.pId);
    recording.strSerial = Text(row.pSerial);
    recording.iChannel = row.iChannel;
    recording.strFileName = Text(row.pFileName);
    recording.strPassword = Text(device.pTrue);
    recording.strExpect = Text(row.pExpect);
    recording.fields = Fields(row, device);
    recording.pClear = KXHost::PaddedSource(KXHost::SampleFile(strSample + QStringLiteral(".mp4")), row.lSize);
    recording.pServed = recording.pClear;
    if ((row.uMarks & Encrypted) != 0)
        recording.pServed =
            KXHost::SealedSource(recording.pClear, device.pTrue,
                                 recording.fields.value(QStringLiteral("strCloudText2")).toString().toStdString());
    recording.strPicture = strSample + QStringLiteral(".jpg");
    recording.cover = row.cover;
    recording.strCoverOwner = Text(row.pCoverOwner != nullptr ? row.pCoverOwner : row.pId);
    return recording;
}

template <std::size_t Count>
KXHost::SiteRecordings Recordings(const Row (&rows)[Count])
{
    KXHost::SiteRecordings recordings;
    std::transform(std::begin(rows), std::end(rows), std::back_inserter(recordings), Recording);
    return recordings;
}

} // namespace

namespace KXHost {

QByteArray SampleFile(const QString& strName)
{
    KeepSamples();
    QFile file(QStringLiteral(":/KXSite/Samples/") + strName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SiteDevices BuiltInDevices()
{
    SiteDevices devices;
    for (const Device& device : Devices)
        devices.push_back({Text(device.pSerial), Text(device.pTrue), Text(device.pTold)});
    return devices;
}

SiteRecordings BuiltInRecordings()
{
    return Recordings(Basic);
}

SiteRecordings DifficultRecordings()
{
    return Recordings(Difficult);
}

} // namespace KXHost
