#pragma once

#include "FakeHost/CallList.h"
#include "FakeHost/HostThread.h"
#include "KXLogic/KXLogicModules.h"

#include <QtCore/QMap>

enum class Source { Cloud, Device, IOTLan, LanModule };

// Module 5. Starts transfers on paper only: the test raises what a host thread would report.
//
// Lines: "Start…Download id device=… account=… address=… password=… channel=… path=… begin=… end=…" followed by the
// source's own fields, "Stop…Download id", "Set…Callback" and "UnregisterCallbacks known" (or "unknown" user).
class KX_HOST_EXPORT FakeDownloads final : public KXLogic::IDownloadLogic
{
public:
    FakeDownloads(CallList& calls, HostThread& thread);

    // Starts give 0 unless scripted: by record id, by the n-th start of all (from 1), or all.
    void SetStartResult(const char* pszRecordId, int iResult);
    void SetStartResultOfCall(int iNth, int iResult);
    void SetStartResult(int iResult) { m_iStartResult = iResult; }
    void SetStopResult(int iResult) { m_iStopResult = iResult; }

    // Calls the registered callback on a host thread and waits until it returned: its result, or NobodyRegistered.
    static constexpr int NobodyRegistered = -100;
    int RaiseState(Source source, const char* pszRecordId, int iCode);
    int RaiseData(Source source, const char* pszRecordId, int iLength);
    // The same on the current thread, for tests that bring threads of their own.
    int CallState(Source source, const char* pszRecordId, int iCode);
    int CallData(Source source, const char* pszRecordId, int iLength);
    // What the cloud's data callback was registered with, for those who measure the callback alone.
    KXLogic::CloudDataCallback CloudDataCallbackOf(void*& pUser);
    // From now on callbacks get this user pointer instead of the registered one.
    void ReplaceUser(void* pUser);
    // Unregistration is recorded, and callbacks still called: what the contract excludes.
    void KeepCallingAfterUnregister() { m_bForgets = false; }

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

private:
    // Both callback kinds of a source have the same type: an id, a number, the user.
    struct Registration
    {
        void* pUser = nullptr;
        KXLogic::CloudStateCallback pCloud = nullptr;
        KXLogic::RecordStateCallback pOther = nullptr;
    };
    using Table = QMap<int, Registration>;

    int Register(Table& table, Source source, const Registration& registration, const char* pszOperation);
    int Call(Table& table, Source source, const char* pszRecordId, int iValue);
    int RecordStart(const char* pszOperation, const KXLogic::DownloadRequest& request, const QString& strOwnFields);
    int RecordStop(const char* pszOperation, const QString& strRecordId);

    CallList& m_calls;
    HostThread& m_thread;
    CallbackBarrier m_barrier;
    QMutex m_mutex; // guards the two tables
    Table m_states;
    Table m_data;
    QMap<QString, int> m_resultOfRecord;
    QMap<int, int> m_resultOfCall;
    int m_iStartResult = 0;
    int m_iStopResult = 0;
    int m_iStarts = 0;
    bool m_bForgets = true;
};
