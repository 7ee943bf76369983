#include "TransferListener.h"

namespace {

QString Text(qint64 lId)
{
    return QString::number(lId);
}

QString Text(const char* pszId)
{
    return QString::fromUtf8(pszId);
}

} // namespace

template <int iSource, typename Id>
int TransferListener::OnState(Id id, int iCode, void* pUser)
{
    auto* const pThis = static_cast<TransferListener*>(pUser);
    const QString strState = QStringLiteral("%1 %2 %3").arg(iSource).arg(Text(id)).arg(iCode);
    if (pThis->m_onState)
        pThis->m_onState(strState);
    const QMutexLocker lock(&pThis->m_mutex);
    pThis->m_states.push_back(strState);
    return 0;
}

template <int iSource, typename Id>
int TransferListener::OnData(Id id, int iLength, void* pUser)
{
    auto* const pThis = static_cast<TransferListener*>(pUser);
    const QString strSourceAndId = QStringLiteral("%1 %2").arg(iSource).arg(Text(id));
    if (pThis->m_onData)
        pThis->m_onData(strSourceAndId);
    const QMutexLocker lock(&pThis->m_mutex);
    pThis->m_received[strSourceAndId] += iLength;
    ++pThis->m_iDataCalls;
    return 0;
}

TransferListener::TransferListener(KXLogic::IDownloadLogic& logic)
    : m_logic(logic)
{
    logic.SetCloudDataCallback(this, &OnData<0, qint64>);
    logic.SetCloudStateCallback(this, &OnState<0, qint64>);
    logic.SetDeviceDataCallback(this, &OnData<1, const char*>);
    logic.SetDeviceStateCallback(this, &OnState<1, const char*>);
    logic.SetIOTLanDataCallback(this, &OnData<2, const char*>);
    logic.SetIOTLanStateCallback(this, &OnState<2, const char*>);
    logic.SetLanModuleDataCallback(this, &OnData<3, const char*>);
    logic.SetLanModuleStateCallback(this, &OnState<3, const char*>);
}

TransferListener::~TransferListener()
{
    m_logic.UnregisterCallbacks(this);
}

QStringList TransferListener::States() const
{
    const QMutexLocker lock(&m_mutex);
    QStringList states;
    for (const QString& strState : m_states)
        states.append(strState);
    return states;
}

qint64 TransferListener::Received(const QString& strSourceAndId) const
{
    const QMutexLocker lock(&m_mutex);
    const auto found = m_received.find(strSourceAndId);
    return found == m_received.end() ? 0 : found->second;
}

int TransferListener::DataCalls() const
{
    const QMutexLocker lock(&m_mutex);
    return m_iDataCalls;
}
