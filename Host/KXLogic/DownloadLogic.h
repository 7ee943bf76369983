#pragma once

#include "Host/KXLogic/TransferSource.h"
#include "KXLogic/KXLogicModules.h"

#include <array>

namespace KXHost {

// Module 5 over HTTP.
class DownloadLogic final : public KXLogic::IDownloadLogic
{
public:
    explicit DownloadLogic(HostThreads& threads);

    int StartCloudRecordDownload(const KXLogic::CloudDownloadRequest& request) override;
    int StartDeviceRecordDownload(const KXLogic::DeviceDownloadRequest& request) override;
    int StartDeviceRecordDownloadAlt(const KXLogic::DeviceDownloadRequest& request) override;
    int StartIOTLanRecordDownload(const KXLogic::IOTLanDownloadRequest& request) override;
    int StartLanModuleRecordDownload(const KXLogic::LanModuleDownloadRequest& request) override;

    int StopCloudRecordDownload(qint64 lRecordId) override;
    int StopDeviceRecordDownload(const std::string& strRecordId) override;
    int StopIOTLanRecordDownload(const std::string& strRecordId) override;
    int StopLanModuleRecordDownload(const std::string& strRecordId) override;

    int SetCloudDataCallback(void* pUser, KXLogic::CloudDataCallback pCallback) override;
    int SetCloudStateCallback(void* pUser, KXLogic::CloudStateCallback pCallback) override;
    int SetLanModuleDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback) override;
    int SetLanModuleStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback) override;
    int SetIOTLanDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback) override;
    int SetIOTLanStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback) override;
    int SetDeviceDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback) override;
    int SetDeviceStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback) override;

    int UnregisterCallbacks(void* pUser) override;

    void StopAll();
    QVector<RunningTransfer> Running() const;

private:
    TransferSource m_cloud;
    TransferSource m_device;
    TransferSource m_iotLan;
    TransferSource m_lanModule;
    const std::array<TransferSource*, 4> m_sources;
};

} // namespace KXHost
