#pragma once

#include "Host/KXBase/NetworkManager.h"
#include "Host/KXLogic/HostSettings.h"
#include "Host/KXLogic/RecordSink.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QUrl>

#include <functional>
#include <memory>
#include <vector>

class QAuthenticator;
class QNetworkReply;

namespace KXHost {

struct TransferOrder
{
    QUrl url;
    Auth auth = Auth::None;
    QString strUser;
    QString strPassword;
    int iStallTimeoutMs = 0;
    std::shared_ptr<RecordSink> pSink;
    // Both are called on the transfer's thread. After an outcome other than Running comes nothing more.
    std::function<void(int iLength)> onData;
    std::function<void(const TransferOutcome& outcome)> onOutcome;
};

// One HTTP transfer into its sink. It notices within a tick that the sink was stopped, and deletes itself when it is
// over. Each transfer has an access manager of its own: no credentials and no connection of one serve another.
//
// Thread: made, used and destroyed on one thread with an event loop.
class Transfer : public QObject
{
public:
    Transfer(TransferOrder order, QObject* pParent);
    ~Transfer() override;

    void Start();

private:
    void OnReadyRead();
    void OnFinished();
    void OnTick();
    void OnAuthenticationRequired(QAuthenticator* pAuthenticator);

    void Get(const QUrl& url);
    bool FollowRedirect();
    void ReadBody();
    bool BodyIsRecording() const;
    TransferOutcome CheckReply() const;
    void ReportRunning();
    void ReportData();
    void End(const TransferOutcome& outcome);

    TransferOrder m_order;
    NetworkManager m_manager;
    QNetworkReply* m_pReply = nullptr; // the running one; child of the manager
    QTimer m_tick;
    QElapsedTimer m_lastActivity;
    QElapsedTimer m_lastReport;
    std::vector<char> m_buffer;
    qint64 m_lReceived = 0;   // bytes off the wire
    qint64 m_lUnreported = 0; // bytes of the recording since the last data callback
    int m_iRedirects = 0;
    bool m_bRunningReported = false;
    bool m_bCredentialsGiven = false;
    bool m_bEnded = false;
};

} // namespace KXHost
