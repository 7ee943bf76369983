#include "FakeHost/FakeLog.h"

#include <QtCore/QByteArray>
#include <QtCore/QMutexLocker>

#include <cstdarg>
#include <cstdio>

namespace {

Q_ATTRIBUTE_FORMAT_PRINTF(1, 0)
QByteArray Printed(const char* pszFormat, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int iLength = std::vsnprintf(nullptr, 0, pszFormat, arguments);
    QByteArray text(iLength + 1, '\0');
    std::vsnprintf(text.data(), static_cast<std::size_t>(text.size()), pszFormat, again);
    va_end(again);
    text.chop(1);
    return text;
}

} // namespace

FakeLog::FakeLog(const QString& strFolder)
    : m_lines(strFolder)
{}

void FakeLog::Log(const char* pszFile, int iLine, const char* pszFunction, const char* pszModule, int iLevel,
                  const char* pszFormat, ...)
{
    va_list arguments;
    va_start(arguments, pszFormat);
    const QString strText = QString::fromUtf8(Printed(pszFormat, arguments));
    va_end(arguments);

    const QString strFunction = QString::fromUtf8(pszFunction);
    m_lines.Add(QStringLiteral("%1 %2 %3").arg(QString::number(iLevel), strFunction, strText));
    QMutexLocker locker(&m_mutex);
    m_entries.push_back(
        {QString::fromUtf8(pszFile), iLine, strFunction, QString::fromUtf8(pszModule), iLevel, strText});
}

std::vector<LogEntry> FakeLog::Entries() const
{
    QMutexLocker locker(&m_mutex);
    return m_entries;
}

void FakeLog::Clear()
{
    m_lines.Clear();
    QMutexLocker locker(&m_mutex);
    std::vector<LogEntry>().swap(m_entries); // a million lines take memory
}
