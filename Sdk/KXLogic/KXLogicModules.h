#pragma once

#include "KXLogic/IKXLogicObserver.h"
#include "KXLogic/KXDownloadRequests.h"
#include "KXLogic/KXLogicCallbacks.h"

// The three logic modules that a plug-in reaches through KXLogic::Instance().
//
// Thread: every operation may be called on any thread, also from inside a callback, unless it says otherwise.
// Ownership: modules belong to the host and live until it ends. Errors: operations give 0 for success.
namespace KXLogic {

// Base of all modules; the id given to GetLogicMdl fixes which class stands behind it.
class ILogicModule
{
protected:
    ~ILogicModule() = default;
};

// Module 5: transfers. One user pointer per callback; a later registration replaces an earlier one. A start for a
// record that this source is transferring already is refused (not 0), as is one whose request the host cannot serve.
// After a start that gave 0 the host reports states until one of 0, 2, 3 or 100, or until the transfer is stopped. A
// start that was refused is logged and dropped: nobody else hears of it, and its row goes on waiting. So refuse what
// must not happen, and let what failed start and then report state 0.
class IDownloadLogic : public ILogicModule
{
public:
    virtual int StartCloudRecordDownload(const CloudDownloadRequest& request) = 0;
    virtual int StartDeviceRecordDownload(const DeviceDownloadRequest& request) = 0;
    // The other way to reach a device's recording, for devices that ask for it.
    virtual int StartDeviceRecordDownloadAlt(const DeviceDownloadRequest& request) = 0;
    virtual int StartIOTLanRecordDownload(const IOTLanDownloadRequest& request) = 0;
    virtual int StartLanModuleRecordDownload(const LanModuleDownloadRequest& request) = 0;

    // When a stop returns, the transfer writes no more to its file and the file is closed; a state that was already on
    // its way may still arrive. Not 0 when there is no such transfer.
    virtual int StopCloudRecordDownload(qint64 lRecordId) = 0;
    virtual int StopDeviceRecordDownload(const std::string& strRecordId) = 0;
    virtual int StopIOTLanRecordDownload(const std::string& strRecordId) = 0;
    virtual int StopLanModuleRecordDownload(const std::string& strRecordId) = 0;

    virtual int SetCloudDataCallback(void* pUser, CloudDataCallback pCallback) = 0;
    virtual int SetCloudStateCallback(void* pUser, CloudStateCallback pCallback) = 0;
    virtual int SetLanModuleDataCallback(void* pUser, RecordDataCallback pCallback) = 0;
    virtual int SetLanModuleStateCallback(void* pUser, RecordStateCallback pCallback) = 0;
    virtual int SetIOTLanDataCallback(void* pUser, RecordDataCallback pCallback) = 0;
    virtual int SetIOTLanStateCallback(void* pUser, RecordStateCallback pCallback) = 0;
    virtual int SetDeviceDataCallback(void* pUser, RecordDataCallback pCallback) = 0;
    virtual int SetDeviceStateCallback(void* pUser, RecordStateCallback pCallback) = 0;

    // A barrier: when it returns, the host has stopped that user's transfers and closed their files, and no callback
    // for that user is running or will run. Not to be called from inside a callback.
    virtual int UnregisterCallbacks(void* pUser) = 0;

protected:
    ~IDownloadLogic() = default;
};

// Module 3: the cloud.
class ICloudLogic : public ILogicModule
{
public:
    virtual int SetCloudPasswordCallback(void* pUser, CloudPasswordCallback pCallback) = 0;
    // A barrier like UnregisterCallbacks.
    virtual int UnregisterCloudPasswordCallback(void* pUser) = 0;

    // Asks for the password of an encrypted cloud recording. The answer comes by the callback on a host thread, never
    // inside this call. `lBeginTime` is in Unix seconds; `strPath` is returned unchanged.
    virtual int GetCloudRecordPassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                       int iChannelNo, std::int64_t lChannelId, const std::string& strKeyText,
                                       const std::string& strRecordId, qint64 lBeginTime,
                                       const std::string& strPath) = 0;

    // Opens an encrypted picture: both pictures are Base64 texts. 0 success, 2 wrong key, anything else another
    // failure. May take long; called on a worker thread.
    virtual int DecryptPicture(const std::string& strPictureBase64, const std::string& strKeyText,
                               const std::string& strDeviceId, const std::string& strPassword,
                               std::string& strClearBase64) = 0;

    // Reports a finished download. `iSourceKind`: 0 cloud, 1 device or IOT LAN, 2 LAN module. Times in Unix seconds.
    virtual int ReportRecordDownloaded(const std::string& strDeviceId, int iChannelNo, qint64 lBeginTime,
                                       qint64 lEndTime, int iSourceKind, const std::string& strRecordId) = 0;

protected:
    ~ICloudLogic() = default;
};

// Module 2: devices.
class IDeviceLogic : public ILogicModule
{
public:
    // The observer stays owned by the caller.
    virtual int AttachObserver(IKXLogicObserver* pObserver) = 0;
    // A barrier: when it returns, the observer is in no call and gets none.
    virtual int DetachObserver(IKXLogicObserver* pObserver) = 0;

    // Asks for the current password of a device. Gives the handle of the request, which the answer (message 1144)
    // carries; it is never 0. The answer comes on a host thread, never inside this call, and this call does not wait
    // for that thread. `strUserInfo` is returned unchanged; `iKind` is 1 for a recording's password.
    //
    // Each request is answered exactly once, after at most 30 seconds: with a result other than 0 when nothing was
    // found by then. Until all are answered no device transfer starts.
    virtual std::int64_t RequestDevicePassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                               int iChannelNo, std::int64_t lChannelId, const std::string& strUserInfo,
                                               int iKind) = 0;

protected:
    ~IDeviceLogic() = default;
};

} // namespace KXLogic
