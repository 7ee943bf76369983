#pragma once

#include "Host/Http/HttpTypes.h"
#include "Host/KXLogic/RecordSink.h"

#include <functional>
#include <memory>

namespace KXHost {

struct TransferOrder
{
    HttpRequest request;
    std::shared_ptr<RecordSink> pSink;
    // Both are called on the transfer's thread. After an outcome other than Running comes nothing more.
    std::function<void(int iLength)> onData;
    std::function<void(const TransferOutcome& outcome)> onOutcome;
};

// One recording on its way into its sink: says what is taken for a recording and reports what comes. Thread: that of
// the HTTP client.
class Transfer final : public HttpReceiver
{
public:
    explicit Transfer(TransferOrder order);

    bool OnHead(const HttpHead& head) override;
    bool OnData(const char* pData, std::size_t uSize) override;
    void OnEnd(const HttpEnd& end) override;
    HttpClock::time_point Due() const override;
    void OnDue() override { ReportData(); }

private:
    TransferOutcome OutcomeOf(const HttpEnd& end);
    void ReportRunning();
    void ReportData();

    TransferOrder m_order;
    QString m_strHost;
    TransferOutcome m_outcome; // when it is not the client that ends it
    qint64 m_lReceived = 0;    // bytes off the wire
    qint64 m_lUnreported = 0;  // bytes of the recording since the last data callback
    bool m_bRunningReported = false;
    HttpClock::time_point m_lastReport;
};

} // namespace KXHost
