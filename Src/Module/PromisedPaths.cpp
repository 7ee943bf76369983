#include "Module/PromisedPaths.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace {

// Where there are drives, a path that begins with a slash lacks one.
bool IsAbsolute(const QString& strPath)
{
    static const bool bDrives = QDir::rootPath() != QLatin1String("/");
    return bDrives ? strPath.midRef(1, 2) == QLatin1String(":/") : strPath.startsWith(QLatin1Char('/'));
}

// True when the text may say the same as another one: "a/b", "/a//b", "/a/./b", "a\\b".
bool NeedsCleaning(const QString& strPath)
{
    if (!IsAbsolute(strPath))
        return true;
    ushort uBefore = 0;
    for (const QChar c : strPath) {
        const ushort uNow = c.unicode();
        if (uNow == '\\' || (uBefore == '/' && (uNow == '/' || uNow == '.')))
            return true;
        uBefore = uNow;
    }
    return uBefore == '/';
}

} // namespace

PathKey::PathKey(const QString& strWritten)
    : strPath(NeedsCleaning(strWritten) ? QDir::cleanPath(QFileInfo(strWritten).absoluteFilePath()) : strWritten)
{}

uint qHash(const PathKey& key, uint uSeed)
{
    uint uHash = uSeed;
    for (const QChar c : key.strPath) {
        const ushort uNow = c.unicode();
        if (c.isSurrogate())
            continue; // case folds pairs of them, not each
        const bool bPlain = uNow < 'A' || (uNow > 'Z' && uNow < 0x80);
        uHash = uHash * 31 + (bPlain ? uNow : c.toCaseFolded().unicode());
    }
    return uHash;
}

bool PromisedPaths::IsTaken(const QString& strPath) const
{
    const auto promise = m_tasks.constFind(PathKey(strPath));
    return promise != m_tasks.constEnd() && !promise->expired();
}

bool PromisedPaths::IsHeldBy(const DownloadRecordInfoPtr& pTask) const
{
    const auto promise = m_tasks.constFind(PathKey(pTask->strDownloadPath));
    return promise != m_tasks.constEnd() && promise->lock() == pTask;
}

void PromisedPaths::Hold(const DownloadRecordInfoPtr& pTask)
{
    if (pTask->strDownloadPath.isEmpty())
        return;
    if (m_tasks.size() >= m_iSweepAt)
        ForgetDeadTasks();
    m_tasks.insert(PathKey(pTask->strDownloadPath), pTask);
}

void PromisedPaths::Release(const QString& strPath, const QString& strRecordId)
{
    const auto promise = m_tasks.find(PathKey(strPath));
    if (promise == m_tasks.end())
        return;
    const DownloadRecordInfoPtr pTask = promise->lock();
    if (!pTask || pTask->strRecordId == strRecordId)
        m_tasks.erase(promise);
}

void PromisedPaths::ForgetDeadTasks()
{
    for (auto promise = m_tasks.begin(); promise != m_tasks.end();) {
        if (promise->expired())
            promise = m_tasks.erase(promise);
        else
            ++promise;
    }
    m_iSweepAt = qMax(1024, 2 * m_tasks.size());
}
