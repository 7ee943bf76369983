#pragma once

#include "Host/Client/DownloadSession.h"
#include "Host/Client/JsonReading.h"

#include <QtCore/QString>
#include <QtCore/QVector>

namespace KXClient {

// How one recording ended.
struct Outcome
{
    Task task;
    qint64 lSize = -1;  // bytes of its file; -1 without one
    QString strProblem; // why a finished recording is not whole; empty when it is

    bool IsWhole() const { return task.state == TaskState::Finished && strProblem.isEmpty(); }
    // Whether it ended the way its record said it must.
    bool IsAsExpected() const;
    // "whole", "damaged: ...", "failed", "refused", "dropped" or "not finished".
    QString StateText() const;
    // The same with the reason of a failure behind it.
    QString FullStateText() const;
    QString SourceText() const;
};

int WholeCount(const QVector<Outcome>& outcomes);
// Before the downloads: which of them are expected to fail, and how.
void PrintExpectations(const QVector<RequestedRecord>& records);
// The table, what was expected to fail, and the line "N recordings, N whole, N failed".
void PrintReport(const QVector<Outcome>& outcomes, const QString& strFolder);
// The same for programs.
Json ReportJson(const QVector<Outcome>& outcomes);

} // namespace KXClient
