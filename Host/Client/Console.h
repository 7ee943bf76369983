#pragma once

#include <QtCore/QString>

// What the client says to people. Thread: the GUI thread.
namespace KXClient {

constexpr int FailureLevel = 6; // log lines of this level and above go to standard error, too

// Writes one line to standard output.
void PrintLine(const QString& strLine);
// Writes one line, introduced by the program's name, to standard error.
void PrintError(const QString& strReason);
// Writes text as it is to standard output, for redrawn lines.
void PrintRaw(const QString& strText);

// Names come from servers and files: their control characters are shown as "?", so that they cannot steer a terminal,
// and what would turn the direction of a line is left out.
QString Printable(const QString& strText);

// Columns that a text takes on a terminal: East Asian wide characters take two, combining marks none.
int DisplayWidth(const QString& strText);
// Fills a text with spaces up to a width, on its right, or on its left for numbers.
QString PadRight(const QString& strText, int iWidth);
QString PadLeft(const QString& strText, int iWidth);
// The text cut to a width, with ".." where something was cut away.
QString Shortened(const QString& strText, int iWidth);

QString ByteText(qint64 lBytes);

} // namespace KXClient
