#pragma once

#include "Model/DownloadRecordInfo.h"

#include <QtCore/QByteArray>

// Records with a different value in every field, and the bytes that they are in a stream: big-endian numbers, texts as
// a 32-bit count of bytes and UTF-16, one byte for a flag.
namespace FilledRecords {

inline void FillBase(KXDownLoadList::DownloadRecordInfo& record, int iRecordType)
{
    record.iRecordType = iRecordType;
    record.strRecordId = QStringLiteral("7");
    record.lValue1 = 72623859790382856; // 0x0102030405060708
    record.lValue2 = -2;
    record.strText1 = QStringLiteral("a");
    record.strDeviceId = QStringLiteral("b");
    record.uValue3 = 1;
    record.strDownloadPath = QString::fromUtf8("/v/ä.mp4");
    record.strStartTime = QStringLiteral("c");
    record.strEndTime = QStringLiteral("d");
    record.lFileSize = 16;
    record.lReceivedSize = 99;
    record.strPassword = QStringLiteral("e");
    record.strText3 = QStringLiteral("f");
    record.strText4 = QStringLiteral("g");
    record.strText5 = QStringLiteral("h");
    record.iValue5 = -5;
    record.strPicturePath = QStringLiteral("i");
    record.strFileName = QStringLiteral("j");
}

// The base part without the record type in front.
constexpr char BaseBytes[] = "000000020037"                             // strRecordId
                             "0102030405060708"                         // lValue1
                             "fffffffffffffffe"                         // lValue2
                             "000000020061"                             // strText1
                             "000000020062"                             // strDeviceId
                             "0000000000000001"                         // uValue3
                             "00000010002f0076002f00e4002e006d00700034" // strDownloadPath
                             "000000020063"                             // strStartTime
                             "000000020064"                             // strEndTime
                             "0000000000000010"                         // lFileSize
                             "000000020065"                             // strPassword
                             "000000020066"                             // strText3
                             "000000020067"                             // strText4
                             "000000020068"                             // strText5
                             "fffffffb"                                 // iValue5
                             "000000020069"                             // strPicturePath
                             "00000002006a";                            // strFileName

inline KXDownLoadList::DownloadCloudRecordInfo Cloud()
{
    KXDownLoadList::DownloadCloudRecordInfo record;
    FillBase(record, 0);
    record.iCloudValue = 6;
    record.strCloudText1 = QStringLiteral("k");
    record.strCloudText2 = QStringLiteral("l");
    record.strCloudText3 = QStringLiteral("m");
    record.strCloudText4 = QStringLiteral("n");
    return record;
}

constexpr char CloudBytes[] = "00000006"      // iCloudValue
                              "00000002006b"  // strCloudText1
                              "00000002006c"  // strCloudText2
                              "00000002006d"  // strCloudText3
                              "00000002006e"; // strCloudText4

inline KXDownLoadList::DownloadDeviceRecordInfo Device()
{
    KXDownLoadList::DownloadDeviceRecordInfo record;
    FillBase(record, 1);
    record.iDeviceValue = 7;
    record.bUseAltStart = true;
    record.bNeedPassword = true;
    record.bGotNewPassword = true;
    return record;
}

constexpr char DeviceBytes[] = "00000007" // iDeviceValue
                               "01"       // bUseAltStart
                               "00"       // bCanGetPassword
                               "01"       // bNeedPassword
                               "01"       // bGotNewPassword
                               "00";      // bRetriedWithNewPassword

inline KXDownLoadList::DownloadLanModuleRecordInfo Lan(int iRecordType)
{
    KXDownLoadList::DownloadLanModuleRecordInfo record;
    FillBase(record, iRecordType);
    record.strLanText1 = QStringLiteral("k");
    record.strLanText2 = QStringLiteral("l");
    record.strLanText3 = QStringLiteral("m");
    record.iLanValue1 = 8;
    record.strLanText4 = QStringLiteral("n");
    record.iLanValue2 = 9;
    record.iLanValue3 = 10;
    record.bLanFlag = true;
    return record;
}

constexpr char LanBytes[] = "00000002006b" // strLanText1
                            "00000002006c" // strLanText2
                            "00000002006d" // strLanText3
                            "00000008"     // iLanValue1
                            "00000002006e" // strLanText4
                            "00000009"     // iLanValue2
                            "0000000a"     // iLanValue3
                            "01";          // bLanFlag

// The whole stream of one record, in hex.
inline QByteArray Hex(int iRecordType, const char* pszOwnBytes)
{
    return QByteArray("0000000") + QByteArray::number(iRecordType) + BaseBytes + pszOwnBytes;
}

} // namespace FilledRecords
