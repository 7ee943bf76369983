#pragma once

#include "Host/KXLogic/CallbackList.h"
#include "Host/KXLogic/HostThreads.h"
#include "Host/KXLogic/RecordSink.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "KXLogic/KXDownloadRequests.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace KXHost {

struct HttpCall;
struct TransferOrder;

// One source of recordings: its callbacks and its running transfers. The four sources differ in the values they are
// made with and in the request that the module hands on. Thread: any.
class TransferSource
{
public:
    using Callbacks = CallbackList<const std::string&, int>;

    // `iRecordType` picks the settings; the name is for the log; the threads outlive the source's transfers.
    TransferSource(int iRecordType, const char* pszName, HostThreads& threads);

    // `strKey` names the transfer in callbacks and stops; an empty key text means that the recording is not encrypted.
    // Not 0 when refused; the reason is logged.
    int Start(const std::string& strKey, const KXLogic::DownloadRequest& request, const std::string& strKeyText);
    // Not 0 when there is no such transfer.
    int Stop(const std::string& strKey);
    void StopAll();
    // The barrier for one user.
    void Unregister(const void* pUser);
    void AppendRunning(QVector<RunningTransfer>& list);

    Callbacks m_dataCallbacks;
    Callbacks m_stateCallbacks;

private:
    struct Active
    {
        std::shared_ptr<RecordSink> pSink;
        std::string strRecordId;
        std::shared_ptr<HttpCall> pCall; // set as soon as it runs
        const void* pUser = nullptr;     // whose transfer it is
        QString strFilePath;
        std::atomic<qint64> lReceived{0};
        std::atomic<bool> bStopped{false};
    };
    using ActivePtr = std::shared_ptr<Active>;

    bool Run(const ActivePtr& pActive, TransferOrder order);
    bool Prepare(const KXLogic::DownloadRequest& request, const std::string& strKeyText, TransferOrder& order,
                 QString& strReason) const;
    bool Insert(const std::string& strKey, const ActivePtr& pActive);
    void Remove(const std::string& strKey, const ActivePtr& pActive);
    std::shared_ptr<HttpCall> CallOf(const Active& active);
    template <typename Condition>
    void StopWhere(Condition condition);
    void OnOutcome(const std::string& strKey, const ActivePtr& pActive, const TransferOutcome& outcome);
    int Refuse(const std::string& strRecordId, const QString& strReason) const;
    void LogFailure(const std::string& strRecordId, const char* pszWhat, const QString& strReason) const;

    const int m_iRecordType;
    const char* const m_pszName;
    HostThreads& m_threads;
    std::mutex m_mutex; // guards all below
    std::map<std::string, ActivePtr> m_active;
};

} // namespace KXHost
