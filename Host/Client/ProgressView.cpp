#include "Host/Client/ProgressView.h"

#include "Host/Client/Console.h"
#include "Host/Client/Platform.h"

namespace KXClient {

namespace {

constexpr int SourceWidth = 10;
constexpr int BarWidth = 20;
constexpr int NumbersWidth = 6 + 23; // " 100% " and the bytes behind it

QString Bar(qint64 lReceived, qint64 lTotal)
{
    const int iFull = static_cast<int>(qBound(qint64(0), lReceived * BarWidth / lTotal, qint64(BarWidth)));
    return QLatin1Char('[') + QString(iFull, QLatin1Char('#')) + QString(BarWidth - iFull, QLatin1Char('.')) +
           QLatin1Char(']');
}

} // namespace

ProgressView::ProgressView()
    : m_bTerminal(IsTerminal())
{}

void ProgressView::Show(const QVector<ProgressLine>& lines)
{
    m_lines = lines;
    if (!m_bTerminal)
        return;
    const QString strErased = Erased();
    m_iDrawn = lines.size();
    PrintRaw(strErased + Block());
}

void ProgressView::AddFinished(const QString& strLine)
{
    const QString strErased = Erased();
    PrintRaw(strErased + strLine + QLatin1Char('\n') + (m_bTerminal ? Block() : QString()));
}

// Back to the first line of the block, and nothing below.
QString ProgressView::Erased() const
{
    return m_iDrawn > 0 ? QStringLiteral("\033[%1A\r\033[J").arg(m_iDrawn) : QString();
}

QString ProgressView::Block() const
{
    QString strBlock;
    for (const ProgressLine& line : m_lines)
        strBlock += LineText(line) + QLatin1Char('\n');
    return strBlock;
}

// Never wider than the terminal: a line that wraps would be two lines on the screen.
QString ProgressView::LineText(const ProgressLine& line) const
{
    const int iNameWidth = qBound(8, TerminalColumns() - SourceWidth - BarWidth - NumbersWidth - 5, 40);
    const QString strHead = PadRight(line.strSource, SourceWidth) + QLatin1Char(' ') +
                            PadRight(Shortened(Printable(line.strName), iNameWidth), iNameWidth) + QLatin1Char(' ');
    if (line.lTotal <= 0)
        return strHead + ByteText(line.lReceived);
    const QString strPercent = QString::number(line.lReceived * 100 / line.lTotal) + QLatin1Char('%');
    return strHead + Bar(line.lReceived, line.lTotal) + PadLeft(strPercent, 5) + QLatin1Char(' ') +
           ByteText(line.lReceived) + QLatin1String(" of ") + ByteText(line.lTotal);
}

} // namespace KXClient
