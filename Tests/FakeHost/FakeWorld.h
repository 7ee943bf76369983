#pragma once

#include "FakeHost/FakeBus.h"
#include "FakeHost/FakeCloud.h"
#include "FakeHost/FakeDatabase.h"
#include "FakeHost/FakeDevices.h"
#include "FakeHost/FakeDownloads.h"
#include "FakeHost/FakeLog.h"
#include "FakeHost/FakePictures.h"

#include <QtCore/QTemporaryDir>

#include <optional>
#include <set>

// One fake host, scripted by a test: the second implementation of the contract in Sdk/.
//
// Make one per test case; while it lives, everything that the contract exports (KXLogic::Instance(), GKXObserver,
// PictureDownloader::Instance(), the log, …) leads to it. Nothing happens in it by itself: a transfer sends a state, a
// picture arrives, a password is answered when the test says so, and then on a thread that is foreign to the plug-in.
//
//     FakeWorld world;
//     world.Downloads().SetStartResult("7", -1);                       // script: record 7 cannot be started
//     …drive the plug-in…
//     world.Downloads().RaiseState(Source::Cloud, "8", 2);             // a host thread reports: 8 is finished
//     QCOMPARE(world.Calls().Short("Start"), Texts({"StartCloudRecordDownload 7", "StartCloudRecordDownload 8"}));
//     QCOMPARE(world.Log().Lines("6 "), Texts({}));                    // no failure was logged
//
// Calls of all the rooms stand in one ordered list; each room's header gives the form of its lines. Raise… returns
// when the plug-in's callback has returned, so what it posted is in the event queue then. Texts of a test are UTF-8
// literals. The clock: the time zone is UTC while a world lives, so that times of records are literals too.
//
// Thread: made, scripted and destroyed on the GUI thread. The world must outlive the plug-in's objects; its end joins
// the host threads and removes its folder.
class KX_HOST_EXPORT FakeWorld
{
public:
    FakeWorld();
    ~FakeWorld();
    FakeWorld(const FakeWorld&) = delete;
    FakeWorld& operator=(const FakeWorld&) = delete;

    // The living world, or null.
    static FakeWorld* Current();

    // A temporary folder of this world's own, absolute, without a slash at its end: "~" in all recorded lines.
    QString Folder() const { return m_folder.path(); }
    // A path in it.
    QString Path(const char* pszRelative) const;
    // Writes a file there, folders included, and gives its path.
    QString WriteFile(const char* pszRelative, const QByteArray& content = QByteArrayLiteral("x")) const;
    bool HasFile(const char* pszRelative) const;

    // What the host lacks: to be said before the plug-in asks. Module ids are 5, 3 and 2.
    void TakeModuleAway(int iId) { m_absentModules.insert(iId); }
    void TakePicturesAway() { m_bPictures = false; }
    void TakeDatabaseAway() { m_bDatabase = false; }
    // What AesDecryptDeviceUserInfo gives; by default "canary-" and the text it was given.
    void SetClearDevicePassword(const char* pszPassword) { m_strClearPassword = pszPassword; }
    // Runs `hook` each time one of the host's mutexes was unlocked, on the thread that did it. To be said before there
    // are such threads.
    void WhenUnlocked(CallList::Hook hook) { m_whenUnlocked = std::move(hook); }

    // Runs `job` on that many threads at once, with their numbers from 0, and waits for all of them.
    static void OnThreads(int iThreads, const std::function<void(int)>& job);

    CallList& Calls() { return m_calls; }
    FakeLog& Log() { return m_log; }
    FakeBus& Bus() { return m_bus; }
    FakePictures& Pictures() { return m_pictures; }
    FakeDatabase& Database() { return m_database; }
    FakeDownloads& Downloads() { return m_downloads; } // module 5
    FakeCloud& Cloud() { return m_cloud; }             // module 3
    FakeDevices& Devices() { return m_devices; }       // module 2

    // What stands behind the entry points of the contract.
    KXLogic::ILogicModule* Module(int iId);
    PictureDownloader* PicturesOrNull() { return m_bPictures ? &m_pictures : nullptr; }
    LocalResourceDbInterface* DatabaseOrNull() { return m_bDatabase ? &m_database : nullptr; }
    std::string ClearDevicePassword(const std::string& strDeviceId, const std::string& strPassword);
    void Unlocked() const
    {
        if (m_whenUnlocked)
            m_whenUnlocked();
    }

private:
    QTemporaryDir m_folder;
    CallList m_calls;
    FakeLog m_log;
    FakeBus m_bus;
    FakePictures m_pictures;
    FakeDatabase m_database;
    std::set<int> m_absentModules;
    bool m_bPictures = true;
    bool m_bDatabase = true;
    std::optional<std::string> m_strClearPassword;
    CallList::Hook m_whenUnlocked;
    QByteArray m_timeZone;
    HostThread m_transferThread;
    HostThread m_logicThread;
    FakeDownloads m_downloads;
    FakeCloud m_cloud;
    FakeDevices m_devices;
};

// Expected lines, from UTF-8 literals.
inline QStringList Texts(std::initializer_list<const char*> texts)
{
    QStringList list;
    for (const char* pszText : texts)
        list.append(QString::fromUtf8(pszText));
    return list;
}
