#include "FakeHost/FakeDownloads.h"

#include <QtCore/QMutexLocker>

FakeDownloads::FakeDownloads(CallList& calls, HostThread& thread)
    : m_calls(calls)
    , m_thread(thread)
{}

void FakeDownloads::SetStartResult(const char* pszRecordId, int iResult)
{
    m_resultOfRecord[QString::fromUtf8(pszRecordId)] = iResult;
}

void FakeDownloads::SetStartResultOfCall(int iNth, int iResult)
{
    m_resultOfCall[iNth] = iResult;
}

int FakeDownloads::RaiseState(Source source, const char* pszRecordId, int iCode)
{
    int iResult = NobodyRegistered;
    m_thread.Run([&] { iResult = CallState(source, pszRecordId, iCode); });
    return iResult;
}

int FakeDownloads::RaiseData(Source source, const char* pszRecordId, int iLength)
{
    int iResult = NobodyRegistered;
    m_thread.Run([&] { iResult = CallData(source, pszRecordId, iLength); });
    return iResult;
}

int FakeDownloads::CallState(Source source, const char* pszRecordId, int iCode)
{
    return Call(m_states, source, pszRecordId, iCode);
}

int FakeDownloads::CallData(Source source, const char* pszRecordId, int iLength)
{
    return Call(m_data, source, pszRecordId, iLength);
}

KXLogic::CloudDataCallback FakeDownloads::CloudDataCallbackOf(void*& pUser)
{
    const QMutexLocker lock(&m_mutex);
    const Registration& registration = m_data[static_cast<int>(Source::Cloud)];
    pUser = registration.pUser;
    return registration.pCloud;
}

void FakeDownloads::ReplaceUser(void* pUser)
{
    QMutexLocker locker(&m_mutex);
    for (Table* pTable : {&m_states, &m_data}) {
        for (Registration& registration : *pTable)
            registration.pUser = pUser;
    }
}

int FakeDownloads::Call(Table& table, Source source, const char* pszRecordId, int iValue)
{
    if (!m_barrier.Enter())
        return NobodyRegistered;
    m_mutex.lock();
    const Registration registration = table.value(static_cast<int>(source));
    m_mutex.unlock();
    int iResult = NobodyRegistered;
    // The buffer is gone after the call, as a host's would be.
    const QByteArray id(pszRecordId);
    if (registration.pCloud)
        iResult = registration.pCloud(id.toLongLong(), iValue, registration.pUser);
    else if (registration.pOther)
        iResult = registration.pOther(id.constData(), iValue, registration.pUser);
    m_barrier.Leave();
    return iResult;
}

int FakeDownloads::Register(Table& table, Source source, const Registration& registration, const char* pszOperation)
{
    m_mutex.lock();
    table[static_cast<int>(source)] = registration;
    m_mutex.unlock();
    m_barrier.Open();
    m_calls.Add(QString::fromUtf8(pszOperation));
    return 0;
}

int FakeDownloads::SetCloudDataCallback(void* pUser, KXLogic::CloudDataCallback pCallback)
{
    return Register(m_data, Source::Cloud, {pUser, pCallback, nullptr}, "SetCloudDataCallback");
}

int FakeDownloads::SetCloudStateCallback(void* pUser, KXLogic::CloudStateCallback pCallback)
{
    return Register(m_states, Source::Cloud, {pUser, pCallback, nullptr}, "SetCloudStateCallback");
}

int FakeDownloads::SetLanModuleDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return Register(m_data, Source::LanModule, {pUser, nullptr, pCallback}, "SetLanModuleDataCallback");
}

int FakeDownloads::SetLanModuleStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return Register(m_states, Source::LanModule, {pUser, nullptr, pCallback}, "SetLanModuleStateCallback");
}

int FakeDownloads::SetIOTLanDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return Register(m_data, Source::IOTLan, {pUser, nullptr, pCallback}, "SetIOTLanDataCallback");
}

int FakeDownloads::SetIOTLanStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return Register(m_states, Source::IOTLan, {pUser, nullptr, pCallback}, "SetIOTLanStateCallback");
}

int FakeDownloads::SetDeviceDataCallback(void* pUser, KXLogic::RecordDataCallback pCallback)
{
    return Register(m_data, Source::Device, {pUser, nullptr, pCallback}, "SetDeviceDataCallback");
}

int FakeDownloads::SetDeviceStateCallback(void* pUser, KXLogic::RecordStateCallback pCallback)
{
    return Register(m_states, Source::Device, {pUser, nullptr, pCallback}, "SetDeviceStateCallback");
}

int FakeDownloads::UnregisterCallbacks(void* pUser)
{
    bool bKnown = false;
    m_mutex.lock();
    for (const Table* pTable : {&m_states, &m_data}) {
        for (const Registration& registration : *pTable)
            bKnown = bKnown || registration.pUser == pUser;
    }
    m_mutex.unlock();
    if (bKnown && m_bForgets)
        m_barrier.Close();
    m_calls.Add(bKnown ? QStringLiteral("UnregisterCallbacks known") : QStringLiteral("UnregisterCallbacks unknown"));
    return bKnown ? 0 : -1;
}
