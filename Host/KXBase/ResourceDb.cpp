#include "Host/KXBase/ResourceDb.h"

#include "Host/KXBase/HostLog.h"
#include "Host/KXBase/ResourceStore.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <memory>

namespace {

// Thread: any. The lock is held while the file is written: callers take turns there anyway.
class ResourceDb final : public LocalResourceDbInterface
{
public:
    QString Open(const QString& strFile)
    {
        const QMutexLocker lock(&m_mutex);
        if (m_pStore)
            return QStringLiteral("a resource database is open already");
        auto pStore = std::make_unique<ResourceStore>();
        QString strFault = pStore->Open(strFile);
        if (strFault.isEmpty())
            m_pStore = std::move(pStore);
        return strFault;
    }
    void Close()
    {
        const QMutexLocker lock(&m_mutex);
        m_pStore.reset();
    }
    bool IsOpen()
    {
        const QMutexLocker lock(&m_mutex);
        return m_pStore != nullptr;
    }
    bool Insert(const LocalResourceInfo* pInfo) override
    {
        return Do("ResourceDb::Insert", [pInfo](ResourceStore& store) {
            const bool bNamed = pInfo != nullptr && !pInfo->strFilePath.isEmpty();
            return bNamed ? store.InsertResource(*pInfo) : QStringLiteral("a resource without a file");
        });
    }
    // `work` returns the reason when it failed; that is logged.
    template <class Work>
    bool Do(const char* pszFunction, const Work& work)
    {
        QMutexLocker lock(&m_mutex);
        const QString strFault = m_pStore ? work(*m_pStore) : QStringLiteral("no resource database is open");
        lock.unlock();
        if (!strFault.isEmpty())
            LogFailure("Host/KXBase/ResourceDb", __LINE__, pszFunction, strFault);
        return strFault.isEmpty();
    }

private:
    QMutex m_mutex; // guards the pointer and the calls of the store
    std::unique_ptr<ResourceStore> m_pStore;
};

// Never destroyed; its file is closed by CloseResourceDb or with the application object.
ResourceDb& TheDb()
{
    static ResourceDb* const s_pDb = new ResourceDb;
    return *s_pDb;
}

} // namespace

LocalResourceDbInterface* LocalResourceDbInterface::GetInstance()
{
    return TheDb().IsOpen() ? &TheDb() : nullptr;
}

bool KXHost::OpenResourceDb(const QString& strFile, QString* pError)
{
    QString strFault = TheDb().Open(strFile);
    const bool bOpened = strFault.isEmpty();
    if (bOpened)
        qAddPostRoutine(CloseResourceDb);
    else
        strFault = QStringLiteral("resource database[%1] not opened: %2").arg(strFile, strFault);
    if (!bOpened)
        LogFailure("Host/KXBase/ResourceDb", __LINE__, "KXHost::OpenResourceDb", strFault);
    if (pError != nullptr)
        *pError = strFault;
    return bOpened;
}

void KXHost::CloseResourceDb()
{
    TheDb().Close();
}

bool KXHost::InsertDownloadReport(const DownloadReport& report)
{
    return TheDb().Do("KXHost::InsertDownloadReport",
                      [&report](ResourceStore& store) { return store.InsertReport(report); });
}

QVector<LocalResourceInfo> KXHost::Resources()
{
    QVector<LocalResourceInfo> listResources;
    TheDb().Do("KXHost::Resources",
               [&listResources](ResourceStore& store) { return store.ReadResources(listResources); });
    return listResources;
}

QVector<KXHost::DownloadReport> KXHost::DownloadReports()
{
    QVector<DownloadReport> listReports;
    TheDb().Do("KXHost::DownloadReports",
               [&listReports](ResourceStore& store) { return store.ReadReports(listReports); });
    return listReports;
}
