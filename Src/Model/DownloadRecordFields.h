#pragma once

#include "Model/DownloadRecordInfo.h"

#include <type_traits>

// The streamed fields of each record class, once, in stream order. Whoever writes, reads, names or compares fields
// passes a visitor: visitor("strRecordId", record.strRecordId). `Record` may be const. The run-time field
// lReceivedSize is not in the list on purpose.
namespace KXDownLoadList {

template <class Record, class Visitor>
void VisitBaseFields(Record& record, Visitor&& visitor)
{
    visitor("iRecordType", record.iRecordType);
    visitor("strRecordId", record.strRecordId);
    visitor("lValue1", record.lValue1);
    visitor("lValue2", record.lValue2);
    visitor("strText1", record.strText1);
    visitor("strDeviceId", record.strDeviceId);
    visitor("uValue3", record.uValue3);
    visitor("strDownloadPath", record.strDownloadPath);
    visitor("strStartTime", record.strStartTime);
    visitor("strEndTime", record.strEndTime);
    visitor("lFileSize", record.lFileSize);
    visitor("strPassword", record.strPassword);
    visitor("strText3", record.strText3);
    visitor("strText4", record.strText4);
    visitor("strText5", record.strText5);
    visitor("iValue5", record.iValue5);
    visitor("strPicturePath", record.strPicturePath);
    visitor("strFileName", record.strFileName);
}

// The fields that the class of `record` adds to the base.
template <class Record, class Visitor>
void VisitOwnFields(Record& record, Visitor&& visitor)
{
    using Class = std::remove_const_t<Record>;
    if constexpr (std::is_same_v<Class, DownloadCloudRecordInfo>) {
        visitor("iCloudValue", record.iCloudValue);
        visitor("strCloudText1", record.strCloudText1);
        visitor("strCloudText2", record.strCloudText2);
        visitor("strCloudText3", record.strCloudText3);
        visitor("strCloudText4", record.strCloudText4);
    } else if constexpr (std::is_same_v<Class, DownloadDeviceRecordInfo>) {
        visitor("iDeviceValue", record.iDeviceValue);
        visitor("bUseAltStart", record.bUseAltStart);
        visitor("bCanGetPassword", record.bCanGetPassword);
        visitor("bNeedPassword", record.bNeedPassword);
        visitor("bGotNewPassword", record.bGotNewPassword);
        visitor("bRetriedWithNewPassword", record.bRetriedWithNewPassword);
    } else {
        static_assert(std::is_same_v<Class, DownloadLanModuleRecordInfo>);
        visitor("strLanText1", record.strLanText1);
        visitor("strLanText2", record.strLanText2);
        visitor("strLanText3", record.strLanText3);
        visitor("iLanValue1", record.iLanValue1);
        visitor("strLanText4", record.strLanText4);
        visitor("iLanValue2", record.iLanValue2);
        visitor("iLanValue3", record.iLanValue3);
        visitor("bLanFlag", record.bLanFlag);
    }
}

} // namespace KXDownLoadList
