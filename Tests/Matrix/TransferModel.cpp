#include "Matrix/TransferModel.h"

#include <QtCore/QFile>

#include <algorithm>

namespace {

bool EndsTransfer(Source source, int iCode)
{
    return iCode == 0 || iCode == 2 || iCode == 3 || (iCode == 100 && source == Source::Cloud);
}

} // namespace

TransferModel::TransferModel(FakeWorld& world)
    : m_world(world)
{}

void TransferModel::Take(const QString& strLine, const Inside& inside)
{
    const QString strOperation = strLine.section(QLatin1Char(' '), 0, 0);
    const QString strId = strLine.section(QLatin1Char(' '), 1, 1);
    CheckStopped(strOperation);
    if (strOperation.startsWith(QLatin1String("Start"))) {
        const QString strPath = strLine.section(QStringLiteral(" path="), 1).section(QStringLiteral(" begin="), 0, 0);
        TakeStart(strId, strPath, inside);
    } else if (strOperation.startsWith(QLatin1String("Stop"))) {
        TakeStop(strId, inside);
    } else {
        if (strOperation == QLatin1String("Insert"))
            m_complete.insert(strId);
        inside();
        if (strOperation == QLatin1String("UnregisterCallbacks")) // a barrier: all transfers of that user have ended
            m_transfers.erase(std::remove_if(m_transfers.begin(), m_transfers.end(),
                                             [](const Transfer& transfer) { return transfer.phase == Phase::Running; }),
                              m_transfers.end());
    }
}

void TransferModel::CheckStopped(const QString& strOperation)
{
    if (!m_bStopped)
        return;
    for (const char* pszOperation :
         {"Start", "get", "GetCloudRecordPassword", "RequestDevicePassword", "Insert", "ReportRecordDownloaded"}) {
        if (strOperation.startsWith(QLatin1String(pszOperation)))
            Wrong(QStringLiteral("after the stop of the plug-in: ") + strOperation);
    }
}

void TransferModel::TakeStart(const QString& strId, const QString& strPath, const Inside& inside)
{
    const int iNumber = ++m_iStarts;
    const bool bRefuses = m_bRefuses;
    m_bRefuses = false;
    CheckStart(strId, strPath);
    m_transfers.push_back({iNumber, strId, strPath, Phase::Starting});
    if (CountOf(SourceOf(strId)) > LimitOf(SourceOf(strId)))
        Wrong(QStringLiteral("the start of %1 is beyond the limit").arg(strId));
    if (bRefuses) {
        m_world.Downloads().SetStartResultOfCall(iNumber, -1);
        inside();
        m_transfers.erase(Find(iNumber));
        m_refused.insert(strId);
        return;
    }
    m_refused.remove(strId);
    ++m_transfersOf[strId];
    if (!m_pathsOf[strId].contains(strPath))
        m_pathsOf[strId].append(strPath);
    m_world.WriteFile(strPath.mid(2).toUtf8().constData());
    inside();
    const auto transfer = Find(iNumber);
    if (transfer->phase == Phase::Ended)
        m_transfers.erase(transfer);
    else
        transfer->phase = Phase::Running;
}

void TransferModel::CheckStart(const QString& strId, const QString& strPath)
{
    if (m_stopping.contains(strId))
        Wrong(QStringLiteral("%1 starts inside its own stop").arg(strId));
    if (CountOf(strId) > 0 && !m_twins.contains(strId))
        Wrong(QStringLiteral("%1 starts while it is transferred").arg(strId));
    if (IsStarting(strId))
        Wrong(QStringLiteral("%1 starts inside its own start").arg(strId));
    if (m_complete.remove(strPath) && m_world.HasFile(strPath.mid(2).toUtf8().constData()))
        Wrong(QStringLiteral("the start of %1 replaces the registered file %2").arg(strId, strPath));
    for (const Transfer& transfer : m_transfers) {
        if (transfer.strPath == strPath)
            Wrong(QStringLiteral("%1 and %2 have one path").arg(strId, transfer.strId));
    }
}

void TransferModel::TakeStop(const QString& strId, const Inside& inside)
{
    ++m_stopsOf[strId];
    std::vector<int> stopped;
    for (const Transfer& transfer : m_transfers) {
        if (transfer.strId == strId && transfer.phase == Phase::Running)
            stopped.push_back(transfer.iNumber);
    }
    m_stopping.append(strId);
    inside();
    m_stopping.removeOne(strId);
    for (const int iNumber : stopped) {
        const auto transfer = Find(iNumber);
        if (transfer != m_transfers.end())
            m_transfers.erase(transfer);
    }
}

void TransferModel::Raise(const QString& strId, int iCode)
{
    const QByteArray id = strId.toUtf8();
    if (m_world.Downloads().RaiseState(SourceOf(strId), id.constData(), iCode) == FakeDownloads::NobodyRegistered)
        return;
    if (!EndsTransfer(SourceOf(strId), iCode))
        return;
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&strId](const Transfer& candidate) {
        return candidate.strId == strId && candidate.phase != Phase::Ended;
    });
    if (transfer == m_transfers.end())
        return;
    if (transfer->phase == Phase::Starting)
        transfer->phase = Phase::Ended;
    else
        m_transfers.erase(transfer);
}

QStringList TransferModel::Running() const
{
    QStringList running;
    for (const Transfer& transfer : m_transfers) {
        if (transfer.phase == Phase::Running)
            running.append(transfer.strId);
    }
    return running;
}

int TransferModel::CountOf(Source source) const
{
    return static_cast<int>(std::count_if(m_transfers.begin(), m_transfers.end(), [source](const Transfer& transfer) {
        return SourceOf(transfer.strId) == source && transfer.phase != Phase::Ended;
    }));
}

int TransferModel::CountOf(const QString& strId) const
{
    return Running().count(strId);
}

bool TransferModel::IsStarting(const QString& strId) const
{
    return std::any_of(m_transfers.begin(), m_transfers.end(), [&strId](const Transfer& transfer) {
        return transfer.strId == strId && transfer.phase != Phase::Running;
    });
}

QStringList TransferModel::PartialFiles(const QString& strId) const
{
    QStringList files;
    for (const QString& strPath : m_pathsOf.value(strId)) {
        if (!m_complete.contains(strPath) && m_world.HasFile(strPath.mid(2).toUtf8().constData()))
            files.append(strPath);
    }
    return files;
}

QStringList TransferModel::CompleteFiles(const QString& strId) const
{
    QStringList files;
    for (const QString& strPath : m_pathsOf.value(strId)) {
        if (m_complete.contains(strPath) && m_world.HasFile(strPath.mid(2).toUtf8().constData()))
            files.append(strPath);
    }
    return files;
}

QStringList TransferModel::AllWrong() const
{
    QStringList wrong = m_wrong;
    for (auto stops = m_stopsOf.begin(); stops != m_stopsOf.end(); ++stops) {
        if (stops.value() > m_transfersOf.value(stops.key()) + m_allowedStops.value(stops.key()))
            wrong.append(QStringLiteral("%1 was stopped %2 times, with %3 transfers")
                             .arg(stops.key(), QString::number(stops.value()),
                                  QString::number(m_transfersOf.value(stops.key()))));
    }
    return wrong;
}

std::vector<TransferModel::Transfer>::iterator TransferModel::Find(int iNumber)
{
    return std::find_if(m_transfers.begin(), m_transfers.end(),
                        [iNumber](const Transfer& transfer) { return transfer.iNumber == iNumber; });
}
