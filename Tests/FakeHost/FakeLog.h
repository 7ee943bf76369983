#pragma once

#include "FakeHost/CallList.h"
#include "ktl/TPrintLog.h"

// One line as it was given to the log.
struct LogEntry
{
    QString strFile;
    int iLine = 0;
    QString strFunction;
    QString strModule;
    int iLevel = 0;
    QString strText;
};

// ktl::TPrintLog that keeps its lines. Thread: any.
class KX_HOST_EXPORT FakeLog final : public ktl::TPrintLog
{
public:
    explicit FakeLog(const QString& strFolder);

    Q_ATTRIBUTE_FORMAT_PRINTF(7, 8)
    void Log(const char* pszFile, int iLine, const char* pszFunction, const char* pszModule, int iLevel,
             const char* pszFormat, ...) override;

    // "level function text", for example "6 RecordDownloadModule::JudgeDiskIsFull The free …".
    QStringList Lines(CallList::Prefixes prefixes = {}) const { return m_lines.Lines(prefixes); }
    QStringList Lines(const char* pszPrefix) const { return m_lines.Lines(pszPrefix); }
    std::vector<LogEntry> Entries() const;
    void Clear();
    // Runs `hook` each time such a line was logged: on the thread of the caller, inside the call.
    void WhenLogged(const char* pszPrefix, CallList::Hook hook) { m_lines.WhenAdded(pszPrefix, std::move(hook)); }
    void WhenAnyLogged(CallList::LineHook hook) { m_lines.WhenAnyAdded(std::move(hook)); }

private:
    CallList m_lines;
    mutable QMutex m_mutex;
    std::vector<LogEntry> m_entries;
};
