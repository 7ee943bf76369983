#pragma once

#include "FakeHost/CallList.h"
#include "FakeHost/HostThread.h"
#include "KXLogic/KXLogicModules.h"

#include <condition_variable>
#include <deque>

// A cloud password query as it arrived.
struct CloudPasswordQuery
{
    std::string strDeviceId;
    std::int64_t lChannelId = 0;
    std::string strRecordId;
    std::string strPath;
};

// Module 3.
//
// Lines: "SetCloudPasswordCallback", "UnregisterCloudPasswordCallback known" (or "unknown" user),
// "GetCloudRecordPassword id account=… device=… channel=… channelId=… key=… begin=… path=…",
// "DecryptPicture base64 key=… device=… password=…",
// "ReportRecordDownloaded id device=… channel=… begin=… end=… kind=…".
class KX_HOST_EXPORT FakeCloud final : public KXLogic::ICloudLogic
{
public:
    FakeCloud(CallList& calls, HostThread& thread);
    // Opens the gate, so that no thread of the plug-in is left waiting.
    ~FakeCloud();

    // Answers the n-th query (from 0) on a host thread and waits until the callback returned.
    void AnswerPassword(std::size_t uQuery, int ibGet, const char* pszPassword);
    // Any answer, asked for or not.
    void RaisePassword(int ibGet, const char* pszPassword, const CloudPasswordQuery& query);
    // What the engine registered, for calls with odd arguments.
    KXLogic::CloudPasswordCallback PasswordCallbackOf(void*& pUser) const;
    std::vector<CloudPasswordQuery> Queries() const;
    void SetQueryResult(int iResult) { m_iQueryResult = iResult; }
    void KeepCallingAfterUnregister() { m_bForgets = false; }

    // Decryptions give the results queued here, in order, and 1 with an empty text when there is none left.
    void QueueDecryption(int iResult, const QByteArray& clearPicture);
    // While the gate is closed a decryption waits in the host.
    void CloseDecryptGate();
    void OpenDecryptGate();

    int SetCloudPasswordCallback(void* pUser, KXLogic::CloudPasswordCallback pCallback) override;
    int UnregisterCloudPasswordCallback(void* pUser) override;
    int GetCloudRecordPassword(const std::string& strDeviceAccount, const std::string& strDeviceId, int iChannelNo,
                               std::int64_t lChannelId, const std::string& strKeyText, const std::string& strRecordId,
                               qint64 lBeginTime, const std::string& strPath) override;
    int DecryptPicture(const std::string& strPictureBase64, const std::string& strKeyText,
                       const std::string& strDeviceId, const std::string& strPassword,
                       std::string& strClearBase64) override;
    int ReportRecordDownloaded(const std::string& strDeviceId, int iChannelNo, qint64 lBeginTime, qint64 lEndTime,
                               int iSourceKind, const std::string& strRecordId) override;

private:
    struct Decryption
    {
        int iResult = 1;
        std::string strClearBase64;
    };

    CallList& m_calls;
    HostThread& m_thread;
    CallbackBarrier m_barrier;
    mutable std::mutex m_mutex; // guards all below
    std::condition_variable m_gateOpened;
    bool m_bGateOpen = true;
    std::deque<Decryption> m_decryptions;
    std::vector<CloudPasswordQuery> m_queries;
    void* m_pUser = nullptr;
    KXLogic::CloudPasswordCallback m_pCallback = nullptr;
    int m_iQueryResult = 0;
    bool m_bForgets = true;
};
