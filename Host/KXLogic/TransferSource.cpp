#include "Host/KXLogic/TransferSource.h"

#include "Host/KXLogic/RecordNotes.h"
#include "Host/KXLogic/SettingsStore.h"
#include "Host/KXLogic/Transfer.h"
#include "Host/KXLogic/UrlTemplate.h"
#include "Host/ktl/LogSettings.h"
#include "ktl/TPrintLog.h"

#include <utility>
#include <vector>

namespace KXHost {

TransferSource::TransferSource(int iRecordType, const char* pszName, HostThreads& threads)
    : m_iRecordType(iRecordType)
    , m_pszName(pszName)
    , m_threads(threads)
{}

int TransferSource::Start(const std::string& strKey, const KXLogic::DownloadRequest& request,
                          const std::string& strKeyText)
{
    AddSecret(request.strPassword);
    AddSecret(strKeyText);
    TransferOrder order;
    QString strReason;
    if (!Prepare(request, strKeyText, order, strReason))
        return Refuse(request.strRecordId, strReason);
    const auto pActive = std::make_shared<Active>();
    pActive->pSink = order.pSink;
    pActive->strRecordId = request.strRecordId;
    pActive->strFilePath = QString::fromStdString(request.strFilePath);
    if (!Insert(strKey, pActive))
        return Refuse(request.strRecordId, QStringLiteral("it is being transferred already"));
    order.onData = [this, strKey, pActive](int iLength) {
        pActive->lReceived += iLength;
        if (!pActive->bStopped)
            m_dataCallbacks.Call(strKey, iLength);
    };
    order.onOutcome = [this, strKey, pActive](const TransferOutcome& outcome) { OnOutcome(strKey, pActive, outcome); };
    if (Run(pActive, std::move(order))) {
        NoteBegun(m_iRecordType, request.strRecordId);
        return 0;
    }
    Remove(strKey, pActive);
    return Refuse(request.strRecordId, QStringLiteral("too many transfers run, or the host is ending"));
}

// False when no thread takes it. Somebody may have stopped it before it had its call.
bool TransferSource::Run(const ActivePtr& pActive, TransferOrder order)
{
    const HttpRequest request = order.request;
    const auto pCall = m_threads.RunTransfer(request, std::make_shared<Transfer>(std::move(order)));
    if (!pCall)
        return false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        pActive->pCall = pCall;
    }
    if (pActive->bStopped)
        m_threads.StopTransfer(pCall);
    return true;
}

int TransferSource::Stop(const std::string& strKey)
{
    bool bFound = false;
    StopWhere([&strKey, &bFound](const std::string& strEach, const Active&) {
        bFound = bFound || strEach == strKey;
        return strEach == strKey;
    });
    return bFound ? 0 : 1;
}

void TransferSource::StopAll()
{
    StopWhere([](const std::string&, const Active&) { return true; });
}

// Callbacks first: a start that comes now finds no user, so that none of this user's is left behind.
void TransferSource::Unregister(const void* pUser)
{
    m_dataCallbacks.Remove(pUser);
    m_stateCallbacks.Remove(pUser);
    StopWhere([pUser](const std::string&, const Active& active) { return active.pUser == pUser; });
}

void TransferSource::AppendRunning(QVector<RunningTransfer>& list)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& [strKey, pActive] : m_active)
        list.append({m_iRecordType, QString::fromStdString(strKey), pActive->strFilePath, pActive->lReceived});
}

bool TransferSource::Prepare(const KXLogic::DownloadRequest& request, const std::string& strKeyText,
                             TransferOrder& order, QString& strReason) const
{
    const QString strFilePath = QString::fromStdString(request.strFilePath);
    if (strFilePath.isEmpty() || strFilePath.contains(QChar())) {
        strReason = QStringLiteral("the file path is no path");
        return false;
    }
    const auto pSettings = CurrentSettings();
    const SourceSettings& settings = pSettings->sources[static_cast<std::size_t>(m_iRecordType)];
    order.request.url = ExpandUrl(settings.strUrl, request, strReason);
    order.request.auth = settings.auth;
    order.request.strUser = settings.strUser;
    order.request.strPassword = QString::fromStdString(request.strPassword);
    order.request.strWhose = QStringLiteral("device ") + QString::fromStdString(request.strDeviceId);
    order.request.bInsecure = settings.bInsecure;
    order.request.iRetries = settings.iRetries;
    order.request.lBytesPerSecond = settings.lBytesPerSecond;
    order.request.iStallTimeoutMs = pSettings->iStallTimeoutMs;
    order.pSink = std::make_shared<RecordSink>(
        strFilePath, strKeyText.empty() ? nullptr : std::make_unique<RecordDecryptor>(request.strPassword, strKeyText),
        ExpectedOf(m_iRecordType, request.strRecordId));
    return order.request.url.isValid();
}

bool TransferSource::Insert(const std::string& strKey, const ActivePtr& pActive)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const void* const pStateUser = m_stateCallbacks.User();
    pActive->pUser = pStateUser != nullptr ? pStateUser : m_dataCallbacks.User();
    return m_active.emplace(strKey, pActive).second;
}

// The key may have been given to a new transfer already, after this one was stopped.
void TransferSource::Remove(const std::string& strKey, const ActivePtr& pActive)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_active.find(strKey);
    if (found != m_active.end() && found->second == pActive)
        m_active.erase(found);
}

template <typename Condition>
void TransferSource::StopWhere(Condition condition)
{
    std::vector<ActivePtr> stopped;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_active.begin(); it != m_active.end();) {
            if (condition(it->first, *it->second)) {
                stopped.push_back(it->second);
                it = m_active.erase(it);
            } else {
                ++it;
            }
        }
    }
    for (const ActivePtr& pActive : stopped) {
        pActive->bStopped = true;
        pActive->pSink->Stop();
        if (const auto pCall = CallOf(*pActive))
            m_threads.StopTransfer(pCall);
    }
}

std::shared_ptr<HttpCall> TransferSource::CallOf(const Active& active)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return active.pCall;
}

// Off the list before the callback, so that the same recording may be started from inside it.
void TransferSource::OnOutcome(const std::string& strKey, const ActivePtr& pActive, const TransferOutcome& outcome)
{
    if (outcome.state != TransferState::Running)
        Remove(strKey, pActive);
    if (outcome.state == TransferState::Stopped || pActive->bStopped)
        return;
    NoteReason(m_iRecordType, pActive->strRecordId, outcome.strReason);
    if (!outcome.strReason.isEmpty())
        LogFailure(pActive->strRecordId, "failed", outcome.strReason);
    m_stateCallbacks.Call(strKey, static_cast<int>(outcome.state));
}

int TransferSource::Refuse(const std::string& strRecordId, const QString& strReason) const
{
    NoteReason(m_iRecordType, strRecordId, strReason);
    LogFailure(strRecordId, "not started", strReason);
    return 1;
}

void TransferSource::LogFailure(const std::string& strRecordId, const char* pszWhat, const QString& strReason) const
{
    ktl::TPrintLog::instance()->Log("Host/KXLogic/TransferSource", __LINE__, __func__, "KXLogic", 6,
                                    "Transfer %s.Source:%s,record:%s,reason:%s", pszWhat, m_pszName,
                                    strRecordId.c_str(), strReason.toUtf8().constData());
}

} // namespace KXHost
