#include "Host/Client/DownloadRun.h"

#include "Host/Client/Console.h"
#include "Host/KXLogic/RunningTransfers.h"

#include <QtCore/QFileInfo>

namespace KXClient {

namespace {

constexpr int TickMs = 200;
constexpr qint64 LongestSilenceMs = 600 * 1000;
// A task that the plug-in drops is reported by nobody: when all others are settled and nothing moved for so long, those
// that must be dropped are taken to be.
constexpr qint64 DroppedAfterMs = 3000;

QString NameOf(const Task& task)
{
    const QString strPath = task.strPath.isEmpty() ? task.request.pRecord->strDownloadPath : task.strPath;
    return QFileInfo(strPath).fileName();
}

} // namespace

DownloadRun::DownloadRun(const QVector<RequestedRecord>& records, const QString& strFolder,
                         std::optional<int> iTimeoutSeconds)
    : m_strFolder(strFolder)
    , m_iTimeoutSeconds(iTimeoutSeconds)
    , m_session(records)
    , m_outcomes(records.size())
{
    for (int iIndex = 0; iIndex < m_outcomes.size(); ++iIndex)
        m_outcomes[iIndex].task = m_session.Tasks().at(iIndex);
    connect(&m_session, &DownloadSession::SignalSettled, this, &DownloadRun::OnSettled);
    connect(&m_stop, &StopSignal::SignalStop, this, [this] { End(Interrupted); });
    connect(&m_tick, &QTimer::timeout, this, &DownloadRun::OnTick);
}

ExitStatus DownloadRun::Execute()
{
    m_total.start();
    m_sinceActivity.start();
    m_tick.start(TickMs);
    m_session.Send(m_strFolder);
    if (!m_end) // everything may be settled already
        m_loop.exec();
    m_progress.Show({});
    return *m_end;
}

QVector<Outcome> DownloadRun::Outcomes() const
{
    QVector<Outcome> outcomes = m_outcomes;
    for (int iIndex = 0; iIndex < outcomes.size(); ++iIndex) {
        Task& task = outcomes[iIndex].task;
        task = m_session.Tasks().at(iIndex);
        if (task.state == TaskState::Outstanding) // a start may have been refused
            task.strReason =
                KXHost::TransferReason(task.request.pRecord->iRecordType, task.request.pRecord->strRecordId);
    }
    return outcomes;
}

void DownloadRun::OnSettled(int iIndex)
{
    m_sinceActivity.start();
    const Task& task = m_session.Tasks().at(iIndex);
    m_outcomes[iIndex].task = task;
    if (task.state == TaskState::Finished) {
        // The transfer compared it while it came; here is only seen that it is there.
        const QFileInfo info(task.strPath);
        m_outcomes[iIndex].lSize = info.isFile() ? info.size() : -1;
        m_outcomes[iIndex].strProblem = info.isFile() ? QString() : QStringLiteral("no file");
    }
    ShowFinished(iIndex);
    EndWhenSettled();
}

void DownloadRun::ShowFinished(int iIndex)
{
    FollowTransfers(); // it runs no longer
    const Outcome& outcome = m_outcomes.at(iIndex);
    m_progress.AddFinished(PadRight(outcome.StateText(), 9) + QLatin1Char(' ') + PadRight(outcome.SourceText(), 10) +
                           PadLeft(outcome.lSize >= 0 ? ByteText(outcome.lSize) : QStringLiteral("-"), 11) +
                           QLatin1String("  ") + Printable(NameOf(outcome.task)));
}

void DownloadRun::OnTick()
{
    FollowTransfers();
    const qint64 lSilence = m_sinceActivity.elapsed();
    if (OnlyDroppedAreLeft() && lSilence > DroppedAfterMs)
        End(AllWhole);
    else if (m_iTimeoutSeconds ? m_total.elapsed() > *m_iTimeoutSeconds * 1000LL : lSilence > LongestSilenceMs)
        End(TimedOut);
}

void DownloadRun::FollowTransfers()
{
    QVector<ProgressLine> lines;
    qint64 lReceived = 0;
    for (const KXHost::RunningTransfer& transfer : KXHost::RunningTransfers()) {
        const int iIndex = m_session.IndexOf(transfer.iRecordType, transfer.strRecordId);
        if (iIndex < 0)
            continue;
        const Outcome& outcome = m_outcomes.at(iIndex);
        lines.append({outcome.SourceText(), QFileInfo(transfer.strFilePath).fileName(), transfer.lReceived,
                      outcome.task.request.pRecord->lFileSize});
        lReceived += transfer.lReceived;
    }
    m_progress.Show(lines);
    if (lReceived != m_lReceived)
        m_sinceActivity.start();
    m_lReceived = lReceived;
}

bool DownloadRun::OnlyDroppedAreLeft() const
{
    for (const Task& task : m_session.Tasks()) {
        if (task.state == TaskState::Outstanding && task.request.expectation != Expectation::Dropped)
            return false;
    }
    return true;
}

void DownloadRun::EndWhenSettled()
{
    if (m_session.OutstandingCount() == 0)
        End(AllWhole);
}

void DownloadRun::End(ExitStatus status)
{
    if (!m_end)
        m_end = status;
    m_tick.stop();
    m_loop.quit();
}

} // namespace KXClient
