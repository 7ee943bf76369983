#include "FakeHost/FakeWorld.h"

#include "KXLogic/KXLogic.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <atomic>

namespace {

std::atomic<FakeWorld*> g_pWorld{nullptr};

} // namespace

FakeWorld::FakeWorld()
    : m_calls(m_folder.path())
    , m_log(m_folder.path())
    , m_bus(m_calls)
    , m_pictures(m_calls, m_folder.path())
    , m_database(m_calls)
    , m_timeZone(qgetenv("TZ"))
    , m_downloads(m_calls, m_transferThread)
    , m_cloud(m_calls, m_logicThread)
    , m_devices(m_calls, m_logicThread)
{
    if (!m_folder.isValid() || g_pWorld.exchange(this))
        qFatal("a fake world needs a temporary folder, and no other world beside it");
    m_folder.setAutoRemove(!qEnvironmentVariableIsSet("KX_KEEP_SCRATCH")); // a run of the suite looks through it later
    qputenv("TZ", "UTC");
}

FakeWorld::~FakeWorld()
{
    // Posted jobs call the modules: they end before any of them goes.
    m_transferThread.Run([] {});
    m_logicThread.Run([] {});
    WriteFile("events.txt", m_bus.Dump());
    if (m_timeZone.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", m_timeZone);
    g_pWorld = nullptr;
}

FakeWorld* FakeWorld::Current()
{
    return g_pWorld;
}

QString FakeWorld::Path(const char* pszRelative) const
{
    return Folder() + QLatin1Char('/') + QString::fromUtf8(pszRelative);
}

QString FakeWorld::WriteFile(const char* pszRelative, const QByteArray& content) const
{
    QString strPath = Path(pszRelative);
    QFile file(strPath);
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size())
        qFatal("cannot write %s", pszRelative);
    return strPath;
}

bool FakeWorld::HasFile(const char* pszRelative) const
{
    return QFileInfo::exists(Path(pszRelative));
}

void FakeWorld::OnThreads(int iThreads, const std::function<void(int)>& job)
{
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(iThreads));
    for (int i = 0; i < iThreads; ++i)
        threads.emplace_back(job, i);
    for (std::thread& thread : threads)
        thread.join();
}

KXLogic::ILogicModule* FakeWorld::Module(int iId)
{
    m_calls.Add(QStringLiteral("GetLogicMdl %1").arg(iId));
    if (m_absentModules.count(iId) != 0)
        return nullptr;
    switch (iId) {
    case KXLogic::DownloadModule:
        return &m_downloads;
    case KXLogic::CloudModule:
        return &m_cloud;
    case KXLogic::DeviceModule:
        return &m_devices;
    default:
        return nullptr;
    }
}

std::string FakeWorld::ClearDevicePassword(const std::string& strDeviceId, const std::string& strPassword)
{
    m_calls.Add(QStringLiteral("AesDecryptDeviceUserInfo %1 password=%2")
                    .arg(QString::fromStdString(strDeviceId), QString::fromStdString(strPassword)));
    return m_strClearPassword.value_or("canary-" + strPassword);
}
