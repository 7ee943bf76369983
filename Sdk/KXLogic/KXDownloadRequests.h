#pragma once

#include <QtCore/qglobal.h>

#include <string>

// What a transfer is started with. Texts are UTF-8; times are Unix seconds, 4294967295 when the recording's time text
// is no time. Request records are plain values: the host copies what it needs before the start operation returns.
namespace KXLogic {

// Fields that every source has.
struct DownloadRequest
{
    std::string strRecordId;      // key of the transfer in callbacks and stop operations
    std::string strDeviceId;      // serial of the device
    std::string strDeviceAccount; // device-side identifier: account or domain of the device
    std::string strAddress;       // transfer address or token
    std::string strPassword;      // password of the stream; may be empty
    int iChannelNo = -1;          // channel number
    std::string strFilePath;      // target file; its directory exists, the file may exist and is replaced
    qint64 lBeginTime = 0;
    qint64 lEndTime = 0;
};

struct CloudDownloadRequest : DownloadRequest
{
    static constexpr int RecordingKind = 5; // the only kind that this plug-in asks for

    qint64 lRecordId = 0; // strRecordId as a number; 0 when it is none
    int iRequestKind = RecordingKind;
    qint64 lChannelId = -1;
    qint32 iStorageId = -1;      // low 32 bits of the storage id
    int iCloudKind = -1;         // cloud storage kind
    std::string strKeyText;      // key text of an encrypted recording; empty when it is not encrypted
    std::string strCloudAddress; // address of the cloud stream
};

struct DeviceDownloadRequest : DownloadRequest
{
    int iStream = -1; // device stream number
};

// The LAN module and the IOT LAN source are addressed alike.
struct LanModuleDownloadRequest : DownloadRequest
{
    std::string strModuleSerial;
    std::string strModuleAddress;
    std::string strModuleToken;
    int iModulePort = -1;
    std::string strSubModule;
    int iStream = -1;
    int iKind = -1;
    bool bEncrypted = false;
};

using IOTLanDownloadRequest = LanModuleDownloadRequest;

} // namespace KXLogic
