#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QMutex>
#include <QtCore/QStringList>

#include <functional>
#include <initializer_list>
#include <thread>
#include <vector>

// Everything that happened, in order, as text lines "Name key argument=value …" that a test compares with literals.
// The world's temporary folder stands in the lines as "~". Thread: any.
class KX_HOST_EXPORT CallList
{
public:
    using Hook = std::function<void()>;
    using LineHook = std::function<void(const QString& strLine)>;
    using Prefixes = std::initializer_list<const char*>;

    explicit CallList(QString strFolder);

    void Add(const QString& strLine);
    // Lines that begin with one of the prefixes, which are UTF-8; without a prefix, all.
    QStringList Lines(Prefixes prefixes = {}) const;
    QStringList Lines(const char* pszPrefix) const { return Lines({pszPrefix}); }
    // The same, cut after the second word: "StartCloudRecordDownload 7".
    QStringList Short(Prefixes prefixes = {}) const;
    QStringList Short(const char* pszPrefix) const { return Short({pszPrefix}); }
    int Count(const char* pszPrefix) const { return Lines(pszPrefix).size(); }
    // Lines added on another thread than the one that made the list.
    QStringList OffThread() const;
    void Clear();

    // Runs `hook` each time a line with that prefix was added: on the thread of the caller, inside the call.
    void WhenAdded(const char* pszPrefix, Hook hook);
    // The same for every line.
    void WhenAnyAdded(LineHook hook);

private:
    struct Line
    {
        QString strText;
        bool bOffThread;
    };
    struct HookEntry
    {
        QString strPrefix;
        LineHook hook;
    };

    const QString m_strFolder;
    const std::thread::id m_home = std::this_thread::get_id();
    mutable QMutex m_mutex;
    std::vector<Line> m_lines;
    std::vector<HookEntry> m_hooks;
};
