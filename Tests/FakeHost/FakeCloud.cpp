#include "FakeHost/FakeCloud.h"

namespace {

QString Text(const std::string& strText)
{
    return QString::fromStdString(strText);
}

} // namespace

FakeCloud::FakeCloud(CallList& calls, HostThread& thread)
    : m_calls(calls)
    , m_thread(thread)
{}

FakeCloud::~FakeCloud()
{
    OpenDecryptGate();
}

void FakeCloud::AnswerPassword(std::size_t uQuery, int ibGet, const char* pszPassword)
{
    RaisePassword(ibGet, pszPassword, Queries().at(uQuery));
}

void FakeCloud::RaisePassword(int ibGet, const char* pszPassword, const CloudPasswordQuery& query)
{
    m_thread.Run([&] {
        if (!m_barrier.Enter())
            return;
        // Copies, gone after the call as a host's buffers would be.
        const CloudPasswordQuery copy = query;
        const std::string strPassword = pszPassword;
        m_pCallback(ibGet, strPassword.c_str(), copy.strDeviceId.c_str(), copy.lChannelId, copy.strRecordId.c_str(),
                    copy.strPath.c_str(), m_pUser);
        m_barrier.Leave();
    });
}

KXLogic::CloudPasswordCallback FakeCloud::PasswordCallbackOf(void*& pUser) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    pUser = m_pUser;
    return m_pCallback;
}

std::vector<CloudPasswordQuery> FakeCloud::Queries() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_queries;
}

void FakeCloud::QueueDecryption(int iResult, const QByteArray& clearPicture)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_decryptions.push_back({iResult, clearPicture.toBase64().toStdString()});
}

void FakeCloud::CloseDecryptGate()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bGateOpen = false;
}

void FakeCloud::OpenDecryptGate()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bGateOpen = true;
    m_gateOpened.notify_all();
}

int FakeCloud::SetCloudPasswordCallback(void* pUser, KXLogic::CloudPasswordCallback pCallback)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pUser = pUser;
        m_pCallback = pCallback;
    }
    m_barrier.Open();
    m_calls.Add(QStringLiteral("SetCloudPasswordCallback"));
    return 0;
}

int FakeCloud::UnregisterCloudPasswordCallback(void* pUser)
{
    const bool bKnown = pUser == m_pUser;
    if (bKnown && m_bForgets)
        m_barrier.Close();
    m_calls.Add(bKnown ? QStringLiteral("UnregisterCloudPasswordCallback known")
                       : QStringLiteral("UnregisterCloudPasswordCallback unknown"));
    return bKnown ? 0 : -1;
}

int FakeCloud::GetCloudRecordPassword(const std::string& strDeviceAccount, const std::string& strDeviceId,
                                      int iChannelNo, std::int64_t lChannelId, const std::string& strKeyText,
                                      const std::string& strRecordId, qint64 lBeginTime, const std::string& strPath)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_queries.push_back({strDeviceId, lChannelId, strRecordId, strPath});
    }
    m_calls.Add(
        QStringLiteral("GetCloudRecordPassword %1 account=%2 device=%3 channel=%4 channelId=%5 key=%6 begin=%7 path=%8")
            .arg(Text(strRecordId), Text(strDeviceAccount), Text(strDeviceId), QString::number(iChannelNo),
                 QString::number(lChannelId), Text(strKeyText), QString::number(lBeginTime), Text(strPath)));
    return m_iQueryResult;
}

int FakeCloud::DecryptPicture(const std::string& strPictureBase64, const std::string& strKeyText,
                              const std::string& strDeviceId, const std::string& strPassword,
                              std::string& strClearBase64)
{
    m_calls.Add(QStringLiteral("DecryptPicture %1 key=%2 device=%3 password=%4")
                    .arg(Text(strPictureBase64), Text(strKeyText), Text(strDeviceId), Text(strPassword)));
    std::unique_lock<std::mutex> lock(m_mutex);
    m_gateOpened.wait(lock, [this] { return m_bGateOpen; });
    Decryption decryption;
    if (!m_decryptions.empty()) {
        decryption = m_decryptions.front();
        m_decryptions.pop_front();
    }
    strClearBase64 = decryption.strClearBase64;
    return decryption.iResult;
}

int FakeCloud::ReportRecordDownloaded(const std::string& strDeviceId, int iChannelNo, qint64 lBeginTime,
                                      qint64 lEndTime, int iSourceKind, const std::string& strRecordId)
{
    m_calls.Add(QStringLiteral("ReportRecordDownloaded %1 device=%2 channel=%3 begin=%4 end=%5 kind=%6")
                    .arg(Text(strRecordId), Text(strDeviceId), QString::number(iChannelNo), QString::number(lBeginTime),
                         QString::number(lEndTime), QString::number(iSourceKind)));
    return 0;
}
