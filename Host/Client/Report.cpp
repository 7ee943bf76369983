#include "Host/Client/Report.h"

#include "Host/Client/ConfigReader.h"
#include "Host/Client/Console.h"

#include <QtCore/QDir>

#include <algorithm>
#include <array>

namespace KXClient {

namespace {

constexpr int ColumnCount = 6;
using Row = std::array<QString, ColumnCount>;

QString SecondsText(qint64 lMilliseconds)
{
    return QString::number(static_cast<double>(lMilliseconds) / 1000, 'f', 1) + QLatin1String(" s");
}

// The path as it is read best: below the folder that the run names at its start.
QString FileText(const Task& task, const QString& strFolder)
{
    const QString strPath = task.strPath.isEmpty() ? task.request.pRecord->strDownloadPath : task.strPath;
    const QString strPrefix = strFolder + QLatin1Char('/');
    return strPath.startsWith(strPrefix) ? strPath.mid(strPrefix.size()) : strPath;
}

Row RowOf(const Outcome& outcome, const QString& strFolder)
{
    const bool bSettled = outcome.task.state != TaskState::Outstanding;
    return {outcome.SourceText(),
            Printable(outcome.task.request.pRecord->strRecordId),
            outcome.lSize >= 0 ? ByteText(outcome.lSize) : QStringLiteral("-"),
            bSettled ? SecondsText(outcome.task.lMilliseconds) : QStringLiteral("-"),
            Printable(FileText(outcome.task, strFolder)),
            Printable(outcome.FullStateText())};
}

void PrintTable(const QVector<Row>& rows)
{
    std::array<int, ColumnCount> widths = {};
    for (const Row& row : rows) {
        for (size_t uColumn = 0; uColumn < ColumnCount; ++uColumn)
            widths[uColumn] = std::max(widths[uColumn], DisplayWidth(row[uColumn]));
    }
    for (const Row& row : rows) {
        QString strLine;
        for (size_t uColumn = 0; uColumn < ColumnCount; ++uColumn) {
            const bool bNumber = uColumn == 2 || uColumn == 3;
            strLine += (bNumber ? PadLeft(row[uColumn], widths[uColumn]) : PadRight(row[uColumn], widths[uColumn])) +
                       QLatin1String("  ");
        }
        PrintLine(strLine.trimmed());
    }
}

void PrintExpectedFailures(const QVector<Outcome>& outcomes)
{
    for (const Outcome& outcome : outcomes) {
        if (!outcome.IsWhole() && outcome.IsAsExpected())
            PrintLine(QStringLiteral("as expected: %1 %2 %3")
                          .arg(outcome.SourceText(), Printable(outcome.task.request.pRecord->strRecordId),
                               Printable(outcome.FullStateText())));
    }
}

} // namespace

bool Outcome::IsAsExpected() const
{
    switch (task.request.expectation) {
    case Expectation::Finished:
        return IsWhole();
    case Expectation::Failed:
        return task.state == TaskState::Failed;
    case Expectation::Refused:
        return task.state == TaskState::Refused;
    case Expectation::Dropped:
        return task.state == TaskState::Outstanding || task.state == TaskState::Dropped;
    }
    return false;
}

QString Outcome::StateText() const
{
    switch (task.state) {
    case TaskState::NotAsked:
    case TaskState::Outstanding:
        return QStringLiteral("not finished");
    case TaskState::Failed:
        return QStringLiteral("failed");
    case TaskState::Refused:
        return QStringLiteral("refused");
    case TaskState::Dropped:
        return QStringLiteral("dropped");
    case TaskState::Finished:
        return strProblem.isEmpty() ? QStringLiteral("whole") : QLatin1String("damaged: ") + strProblem;
    }
    return QString();
}

QString Outcome::FullStateText() const
{
    return task.strReason.isEmpty() ? StateText() : StateText() + QLatin1String(": ") + task.strReason;
}

QString Outcome::SourceText() const
{
    return QLatin1String(SourceKeys[task.request.pRecord->iRecordType]);
}

int WholeCount(const QVector<Outcome>& outcomes)
{
    return static_cast<int>(
        std::count_if(outcomes.begin(), outcomes.end(), [](const Outcome& o) { return o.IsWhole(); }));
}

void PrintExpectations(const QVector<RequestedRecord>& records)
{
    for (const RequestedRecord& request : records) {
        if (request.expectation != Expectation::Finished)
            PrintLine(QStringLiteral("expected to fail: %1 %2, %3")
                          .arg(QLatin1String(SourceKeys[request.pRecord->iRecordType]),
                               Printable(request.pRecord->strRecordId), ExpectationName(request.expectation)));
    }
}

void PrintReport(const QVector<Outcome>& outcomes, const QString& strFolder)
{
    QVector<Row> rows{{QStringLiteral("source"), QStringLiteral("record"), QStringLiteral("size"),
                       QStringLiteral("time"), QStringLiteral("file"), QStringLiteral("state")}};
    for (const Outcome& outcome : outcomes)
        rows.append(RowOf(outcome, strFolder));
    PrintLine(QString());
    PrintTable(rows);
    PrintLine(QString());
    PrintExpectedFailures(outcomes);
    const int iWhole = WholeCount(outcomes);
    PrintLine(QStringLiteral("%1 recordings, %2 whole, %3 failed")
                  .arg(outcomes.size())
                  .arg(iWhole)
                  .arg(outcomes.size() - iWhole));
}

Json ReportJson(const QVector<Outcome>& outcomes)
{
    Json list = Json::array();
    for (const Outcome& outcome : outcomes) {
        const auto& record = *outcome.task.request.pRecord;
        list.push_back(Json{{"source", outcome.SourceText().toStdString()},
                            {"iRecordType", record.iRecordType},
                            {"strRecordId", record.strRecordId.toStdString()},
                            {"size", outcome.lSize},
                            {"milliseconds", outcome.task.lMilliseconds},
                            {"file", outcome.task.strPath.toStdString()},
                            {"state", outcome.StateText().toStdString()},
                            {"reason", outcome.task.strReason.toStdString()},
                            {"whole", outcome.IsWhole()},
                            {"asExpected", outcome.IsAsExpected()}});
    }
    const int iWhole = WholeCount(outcomes);
    return Json{
        {"recordings", outcomes.size()}, {"whole", iWhole}, {"failed", outcomes.size() - iWhole}, {"list", list}};
}

} // namespace KXClient
