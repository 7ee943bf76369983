#pragma once

#include "Host/Client/DownloadSession.h"
#include "Host/Client/ExitStatus.h"
#include "Host/Client/Platform.h"
#include "Host/Client/ProgressView.h"
#include "Host/Client/Report.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <optional>

namespace KXClient {

// One run of the headless client: sends the lists, follows the transfers, and ends when all is settled, when time is
// out or when the process is to end. Thread: the GUI thread.
class DownloadRun : public QObject
{
    Q_OBJECT

public:
    // `iTimeoutSeconds` is the time for all; without it the run gives up when nothing has arrived for 600 seconds.
    DownloadRun(const QVector<RequestedRecord>& records, const QString& strFolder, std::optional<int> iTimeoutSeconds);

    // Gives AllWhole when everything settled, however it ended; otherwise why it did not.
    ExitStatus Execute();
    // In the order of the records.
    QVector<Outcome> Outcomes() const;

private:
    void OnSettled(int iIndex);
    void OnTick();
    void ShowFinished(int iIndex);
    void FollowTransfers();
    void EndWhenSettled();
    void End(ExitStatus status);
    bool OnlyDroppedAreLeft() const;

    QString m_strFolder;
    std::optional<int> m_iTimeoutSeconds;
    DownloadSession m_session;
    ProgressView m_progress;
    StopSignal m_stop;
    QEventLoop m_loop;
    QTimer m_tick;
    QElapsedTimer m_total;
    QElapsedTimer m_sinceActivity;
    qint64 m_lReceived = 0; // of all running transfers, to see that something moves
    std::optional<ExitStatus> m_end;
    QVector<Outcome> m_outcomes;
};

} // namespace KXClient
