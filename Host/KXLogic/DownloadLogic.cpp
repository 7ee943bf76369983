#include "Host/KXLogic/DownloadLogic.h"

#include <string>

namespace {

// The cloud names its recordings by number, the others by text; inside the host all are texts.
int SetNumbered(KXHost::TransferSource::Callbacks& callbacks, void* pUser, int (*pCallback)(qint64, int, void*))
{
    if (pCallback == nullptr)
        callbacks.Replace(pUser, nullptr);
    else
        callbacks.Replace(pUser, [pUser, pCallback](const std::string& strKey, int iValue) {
            pCallback(std::stoll(strKey), iValue, pUser);
        });
    return 0;
}

int SetNamed(KXHost::TransferSource::Callbacks& callbacks, void* pUser, int (*pCallback)(const char*, int, void*))
{
    if (pCallback == nullptr)
        callbacks.Replace(pUser, nullptr);
    else
        callbacks.Replace(pUser, [pUser, pCallback](const std::string& strKey, int iValue) {
            pCallback(strKey.c_str(), iValue, pUser);
        });
    return 0;
}

} // namespace

namespace KXHost {

DownloadLogic::DownloadLogic(HostThreads& threads)
    : m_cloud(0, "cloud", threads)
    , m_device(1, "device", threads)
    , m_iotLan(2, "IOT LAN", threads)
    , m_lanModule(3, "LAN module", threads)
    , m_sources{&m_cloud, &m_device, &m_iotLan, &m_lanModule}
{}

int DownloadLogic::StartCloudRecordDownload(const KXLogic::CloudDownloadRequest& request)
{
    return m_cloud.Start(std::to_string(request.lRecordId), request, request.strKeyText);
}

int DownloadLogic::StartDeviceRecordDownload(const KXLogic::DeviceDownloadRequest& request)
{
    return m_device.Start(request.strRecordId, request, std::string());
}

// Both ways lead to the same HTTP source.
int DownloadLogic::StartDeviceRecordDownloadAlt(const KXLogic::DeviceDownloadRequest& request)
{
    return StartDeviceRecordDownload(request);
}

int DownloadLogic::StartIOTLanRecordDownload(const KXLogic::IOTLanDownloadRequest& request)
{
    return m_iotLan.Start(request.strRecordId, request, std::string());
}

int DownloadLogic::StartLanModuleRecordDownload(const KXLogic::LanModuleDownloadRequest& request)
{
    return m_lanModule.Start(request.strRecordId, request, std::string());
}

int DownloadLogic::StopCloudRecordDownload(qint64 lRecordId)
{
    return m_cloud.Stop(std::to_string(lRecordId));
}

int DownloadLogic::StopDeviceRecordDownload(const std::string& strRecordId)
{
    return m_device.Stop(strRecordId);
}

int DownloadLogic::StopIOTLanRecordDownload(const std::string& strRecordId)
{
    return m_iotLan.Stop(strRecordId);
}

int DownloadLogic::StopLanModuleRecordDownload(const std::string& strRecordId)
{
    return m_lanModule.Stop(strRecordId);
}

int DownloadLogic::SetCloudDataCallback(void* pUser, KXLogic::CloudDataCallback pCallback)
{
    return SetNumbered(m_cloud.m_dataCallbacks, pUser, pCallback);
}

int DownloadLogic::SetCloudStateCallback(void* pUser, KXLogic::CloudStateCallback pCallback)
{
    return SetNumbered(m_cloud.m_stateCallbacks, pUser, pCallback);
}

int DownloadLogic::SetLanModuleDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return SetNamed(m_lanModule.m_dataCallbacks, pUser, pCallback);
}

int DownloadLogic::SetLanModuleStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return SetNamed(m_lanModule.m_stateCallbacks, pUser, pCallback);
}

int DownloadLogic::SetIOTLanDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return SetNamed(m_iotLan.m_dataCallbacks, pUser, pCallback);
}

int DownloadLogic::SetIOTLanStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return SetNamed(m_iotLan.m_stateCallbacks, pUser, pCallback);
}

int DownloadLogic::SetDeviceDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return SetNamed(m_device.m_dataCallbacks, pUser, pCallback);
}

int DownloadLogic::SetDeviceStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return SetNamed(m_device.m_stateCallbacks, pUser, pCallback);
}

int DownloadLogic::UnregisterCallbacks(void* pUser)
{
    for (TransferSource* pSource : m_sources)
        pSource->Unregister(pUser);
    return 0;
}

QVector<RunningTransfer> DownloadLogic::Running() const
{
    QVector<RunningTransfer> list;
    for (TransferSource* pSource : m_sources)
        pSource->AppendRunning(list);
    return list;
}

void DownloadLogic::StopAll()
{
    for (TransferSource* pSource : m_sources)
        pSource->StopAll();
}

} // namespace KXHost
