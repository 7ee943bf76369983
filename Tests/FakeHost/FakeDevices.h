#pragma once

#include "FakeHost/CallList.h"
#include "FakeHost/HostThread.h"
#include "KXLogic/KXLogicModules.h"

// A device password query as it arrived, with the handle it was given: 1001 for the first, then one more each.
struct DevicePasswordQuery
{
    std::int64_t lHandle = 0;
    std::string strDeviceId;
    std::int64_t lChannelId = 0;
    std::string strUserInfo;
};

// Module 2.
//
// Lines: "AttachObserver", "DetachObserver known" (or "unknown"),
// "RequestDevicePassword device account=… channel=… channelId=… kind=…"; the user data are in Queries().
class KX_HOST_EXPORT FakeDevices final : public KXLogic::IDeviceLogic
{
public:
    FakeDevices(CallList& calls, HostThread& thread);

    // Sends message 1144 for the n-th query (from 0) on a host thread and waits until the observer returned.
    void AnswerPassword(std::size_t uQuery, int iResult, const char* pszPassword);
    // The answer is on its way before RequestDevicePassword returns: the host thread races the caller for every query.
    void AnswerInsideQuery(int iResult, const char* pszPassword);
    // Any message, asked for or not.
    void RaiseMessage(const KXLogic::LogicMessage& message);
    std::vector<DevicePasswordQuery> Queries() const;
    void KeepCallingAfterDetach() { m_bForgets = false; }

    int AttachObserver(KXLogic::IKXLogicObserver* pObserver) override;
    int DetachObserver(KXLogic::IKXLogicObserver* pObserver) override;
    std::int64_t RequestDevicePassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                       int iChannelNo, std::int64_t lChannelId, const std::string& strUserInfo,
                                       int iKind) override;

private:
    static KXLogic::LogicMessage AnswerTo(const DevicePasswordQuery& query, int iResult,
                                          const std::string& strPassword);
    void Deliver(const KXLogic::LogicMessage& message);

    CallList& m_calls;
    HostThread& m_thread;
    CallbackBarrier m_barrier;
    mutable QMutex m_mutex; // guards all below
    std::vector<DevicePasswordQuery> m_queries;
    KXLogic::IKXLogicObserver* m_pObserver = nullptr;
    bool m_bAnswersInside = false;
    int m_iInsideResult = 0;
    std::string m_strInsidePassword;
    bool m_bForgets = true;
};
