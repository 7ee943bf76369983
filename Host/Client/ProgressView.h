#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

namespace KXClient {

struct ProgressLine
{
    QString strSource;
    QString strName;
    qint64 lReceived = 0;
    qint64 lTotal = -1; // -1: not known
};

// Shows the running tasks as a block of lines that is redrawn in place, and finished tasks as lines above it. Without a
// terminal only the finished lines are written. Thread: the GUI thread.
class ProgressView
{
public:
    ProgressView();
    ~ProgressView() { Show({}); }
    ProgressView(const ProgressView&) = delete;
    ProgressView& operator=(const ProgressView&) = delete;

    void Show(const QVector<ProgressLine>& lines);
    void AddFinished(const QString& strLine);

private:
    QString Block() const;
    QString LineText(const ProgressLine& line) const;
    QString Erased() const;

    bool m_bTerminal;
    int m_iDrawn = 0; // lines of the block on the screen
    QVector<ProgressLine> m_lines;
};

} // namespace KXClient
