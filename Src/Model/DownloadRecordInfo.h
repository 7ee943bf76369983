#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <limits>
#include <memory>

class QDataStream;

// The download tasks, shared by the plug-in and the host that writes them to the stream.
//
// A stream of records has no count and no tag: records of one class lie back to back, and the record type sent beside
// the stream tells the class. Stream version and byte order are the defaults of QDataStream.
//
// Thread: a record belongs to the GUI thread once it is queued. Ownership: by DownloadRecordInfoPtr only, always made
// with std::make_shared of the concrete class, so that the right destructor runs without a virtual one.
namespace KXDownLoadList {

constexpr int CloudRecord = 0;
constexpr int DeviceRecord = 1;
constexpr int IOTLanRecord = 2;
constexpr int LanModuleRecord = 3;

class DownloadRecordInfo
{
public:
    DownloadRecordInfo() = default;
    DownloadRecordInfo(const DownloadRecordInfo&) = default;

    // Write and read the streamed fields, in the order of DownloadRecordFields.h. A stream that ends early leaves the
    // record partly filled; QDataStream::status() tells.
    virtual QDataStream& Serialize(QDataStream& stream) const;
    virtual QDataStream& Deserialize(QDataStream& stream);

    qint32 iRecordType = -1;
    QString strRecordId;                                   // the cloud reads it as a decimal 64-bit integer
    qint64 lValue1 = -1;                                   // channel id
    qint64 lValue2 = -1;                                   // storage id
    QString strText1;                                      // device-side identifier: account or domain of the device
    QString strDeviceId;                                   // device serial
    quint64 uValue3 = std::numeric_limits<quint64>::max(); // host cookie
    QString strDownloadPath;   // target file; the engine replaces it with a path that is free
    QString strStartTime;      // "yyyyMMddTHHmmss"
    QString strEndTime;        // "yyyyMMddTHHmmss"
    qint64 lFileSize = -1;     // bytes
    qint64 lReceivedSize = -1; // bytes; run-time only, never in the stream
    QString strPassword;       // password of the stream
    QString strText3;          // transfer address or token
    QString strText4;          // display title
    QString strText5;          // host cookie
    qint32 iValue5 = -1;       // channel number
    QString strPicturePath;    // local picture shown in the row
    QString strFileName;       // file name part of the path as it was received

protected:
    DownloadRecordInfo& operator=(const DownloadRecordInfo&) = default;
    ~DownloadRecordInfo() = default;
};

class DownloadCloudRecordInfo final : public DownloadRecordInfo
{
public:
    QDataStream& Serialize(QDataStream& stream) const override;
    QDataStream& Deserialize(QDataStream& stream) override;

    qint32 iCloudValue = -1; // cloud storage kind
    QString strCloudText1;   // cover picture URL
    QString strCloudText2;   // key text of an encrypted recording
    QString strCloudText3;   // cloud stream address
    QString strCloudText4;   // picture key text
};

class DownloadDeviceRecordInfo final : public DownloadRecordInfo
{
public:
    QDataStream& Serialize(QDataStream& stream) const override;
    QDataStream& Deserialize(QDataStream& stream) override;

    qint32 iDeviceValue = -1;             // device stream number
    bool bUseAltStart = false;            // start with StartDeviceRecordDownloadAlt
    bool bCanGetPassword = false;         // the host can supply this device's password
    bool bNeedPassword = false;           // the device's recordings are password protected
    bool bGotNewPassword = false;         // a fetched password is in strPassword
    bool bRetriedWithNewPassword = false; // requeued once for its password
};

// Serves the LAN module and the IOT LAN source; the record type tells them apart.
class DownloadLanModuleRecordInfo final : public DownloadRecordInfo
{
public:
    QDataStream& Serialize(QDataStream& stream) const override;
    QDataStream& Deserialize(QDataStream& stream) override;

    QString strLanText1;    // module serial
    QString strLanText2;    // address
    QString strLanText3;    // token
    qint32 iLanValue1 = -1; // port
    QString strLanText4;    // sub-module
    qint32 iLanValue2 = -1; // stream
    qint32 iLanValue3 = -1; // kind
    bool bLanFlag = false;  // encrypted
};

} // namespace KXDownLoadList

using DownloadRecordInfoPtr = std::shared_ptr<KXDownLoadList::DownloadRecordInfo>;
