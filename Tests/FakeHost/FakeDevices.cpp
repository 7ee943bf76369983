#include "FakeHost/FakeDevices.h"

#include <QtCore/QMutexLocker>

FakeDevices::FakeDevices(CallList& calls, HostThread& thread)
    : m_calls(calls)
    , m_thread(thread)
{}

void FakeDevices::AnswerPassword(std::size_t uQuery, int iResult, const char* pszPassword)
{
    RaiseMessage(AnswerTo(Queries().at(uQuery), iResult, pszPassword));
}

void FakeDevices::AnswerInsideQuery(int iResult, const char* pszPassword)
{
    QMutexLocker locker(&m_mutex);
    m_bAnswersInside = true;
    m_iInsideResult = iResult;
    m_strInsidePassword = pszPassword;
}

void FakeDevices::RaiseMessage(const KXLogic::LogicMessage& message)
{
    m_thread.Run([&] { Deliver(message); });
}

std::vector<DevicePasswordQuery> FakeDevices::Queries() const
{
    QMutexLocker locker(&m_mutex);
    return m_queries;
}

int FakeDevices::AttachObserver(KXLogic::IKXLogicObserver* pObserver)
{
    {
        QMutexLocker locker(&m_mutex);
        m_pObserver = pObserver;
    }
    m_barrier.Open();
    m_calls.Add(QStringLiteral("AttachObserver"));
    return 0;
}

int FakeDevices::DetachObserver(KXLogic::IKXLogicObserver* pObserver)
{
    m_mutex.lock();
    const bool bKnown = pObserver == m_pObserver;
    m_mutex.unlock();
    if (bKnown && m_bForgets)
        m_barrier.Close();
    m_calls.Add(bKnown ? QStringLiteral("DetachObserver known") : QStringLiteral("DetachObserver unknown"));
    return bKnown ? 0 : -1;
}

std::int64_t FakeDevices::RequestDevicePassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                                int iChannelNo, std::int64_t lChannelId, const std::string& strUserInfo,
                                                int iKind)
{
    m_mutex.lock();
    const DevicePasswordQuery query{1001 + static_cast<std::int64_t>(m_queries.size()), strDeviceId, lChannelId,
                                    strUserInfo};
    m_queries.push_back(query);
    const bool bAnswersInside = m_bAnswersInside;
    const KXLogic::LogicMessage answer = AnswerTo(query, m_iInsideResult, m_strInsidePassword);
    m_mutex.unlock();
    m_calls.Add(QStringLiteral("RequestDevicePassword %1 account=%2 channel=%3 channelId=%4 kind=%5")
                    .arg(QString::fromStdString(strDeviceId), QString::fromStdString(strDeviceAccount),
                         QString::number(iChannelNo), QString::number(lChannelId), QString::number(iKind)));
    if (bAnswersInside)
        m_thread.Post([this, answer] { Deliver(answer); });
    return query.lHandle;
}

KXLogic::LogicMessage FakeDevices::AnswerTo(const DevicePasswordQuery& query, int iResult,
                                            const std::string& strPassword)
{
    KXLogic::LogicMessage message;
    message.iMessage = KXLogic::DevicePasswordMessage;
    message.lRequest = query.lHandle;
    message.iResult = iResult;
    message.lChannelId = query.lChannelId;
    message.strUserName = "admin";
    message.strPassword = strPassword;
    message.strUserInfo = query.strUserInfo;
    return message;
}

void FakeDevices::Deliver(const KXLogic::LogicMessage& message)
{
    if (!m_barrier.Enter())
        return;
    m_mutex.lock();
    KXLogic::IKXLogicObserver* const pObserver = m_pObserver;
    m_mutex.unlock();
    pObserver->OnLogicMessage(message);
    m_barrier.Leave();
}
