#include "FakeHost/CallList.h"

#include <QtCore/QMutexLocker>

#include <algorithm>
#include <utility>

namespace {

bool BeginsWithOne(const QString& strText, CallList::Prefixes prefixes)
{
    return prefixes.size() == 0 || std::any_of(prefixes.begin(), prefixes.end(), [&strText](const char* pszPrefix) {
               return strText.startsWith(QString::fromUtf8(pszPrefix));
           });
}

QString FirstTwoWords(const QString& strLine)
{
    return strLine.section(QLatin1Char(' '), 0, 1);
}

} // namespace

CallList::CallList(QString strFolder)
    : m_strFolder(std::move(strFolder))
{}

void CallList::Add(const QString& strLine)
{
    QString strText = strLine;
    strText.replace(m_strFolder, QStringLiteral("~"));
    std::vector<LineHook> due;
    {
        QMutexLocker locker(&m_mutex);
        m_lines.push_back({strText, std::this_thread::get_id() != m_home});
        for (const HookEntry& entry : m_hooks) {
            if (strText.startsWith(entry.strPrefix))
                due.push_back(entry.hook);
        }
    }
    for (const LineHook& hook : due)
        hook(strText);
}

QStringList CallList::Lines(Prefixes prefixes) const
{
    QMutexLocker locker(&m_mutex);
    QStringList found;
    for (const Line& line : m_lines) {
        if (BeginsWithOne(line.strText, prefixes))
            found.append(line.strText);
    }
    return found;
}

QStringList CallList::Short(Prefixes prefixes) const
{
    QStringList found = Lines(prefixes);
    std::transform(found.begin(), found.end(), found.begin(), FirstTwoWords);
    return found;
}

QStringList CallList::OffThread() const
{
    QMutexLocker locker(&m_mutex);
    QStringList found;
    for (const Line& line : m_lines) {
        if (line.bOffThread)
            found.append(line.strText);
    }
    return found;
}

void CallList::Clear()
{
    QMutexLocker locker(&m_mutex);
    m_lines = decltype(m_lines)();
}

void CallList::WhenAdded(const char* pszPrefix, Hook hook)
{
    QMutexLocker locker(&m_mutex);
    m_hooks.push_back({QString::fromUtf8(pszPrefix), [hook = std::move(hook)](const QString&) { hook(); }});
}

void CallList::WhenAnyAdded(LineHook hook)
{
    QMutexLocker locker(&m_mutex);
    m_hooks.push_back({QString(), std::move(hook)});
}
