#pragma once

#include "Engine/ScriptedDisk.h"
#include "FakeHost/FakeWorld.h"
#include "Model/DownloadRecordInfo.h"
#include "Module/RecordDownloadModule.h"

#include <QtCore/QDataStream>

#include <functional>
#include <memory>
#include <vector>

// The engine in a fake world, driven from outside only: by events, by what host threads report, by the operations that
// the panel calls. One rig per test case.
//
//     EngineRig rig;                                        // or EngineRig rig([](FakeWorld& w) { …script… });
//     rig.SendList(1, {rig.Device("a"), rig.Device("b")});  // "EventNotifyDownloadRecordList"
//     rig.RaiseState(Source::Device, "a", 2);               // a host thread reports, the engine's slot has run
//     QCOMPARE(rig.Calls().Short({"Start", "Stop", "Signal"}), Texts({"SignalAddDownloadInfo a", …}));
//
// The engine's signals stand in the same list as the host calls, in order:
// "SignalAddDownloadInfo id", "SignalUpdateCloudPictureInfo id path", "SignalDownloadRecordStates id code reget",
// "SignalDownloadRecordData id length", "SignalStartCopyPic id", "SignalStopAllRecord".
//
// A record made here has the times 2020-01-02 03:04:05 (1577934245) to 03:05:06 (1577934306), the path "~/<id>.mp4",
// device "SN-<id>", everything else as its class has it: no cover URL, no key text, so that a cloud task is held until
// the picture with the empty URL is answered (EngineRig rig(EngineCases::NoPictures) answers all, as failed).
class EngineRig
{
public:
    using Script = std::function<void(FakeWorld&)>;
    using Change = std::function<void(KXDownLoadList::DownloadRecordInfo&)>;

    explicit EngineRig(const Script& script = {});
    // Shuts the engine down, unless the test did, and drains what was posted.
    ~EngineRig();

    FakeWorld& World() { return m_world; }
    CallList& Calls() { return m_world.Calls(); }
    RecordDownloadModule& Engine() { return *m_pEngine; }

    KXDownLoadList::DownloadCloudRecordInfo Cloud(const char* pszRecordId) const;
    KXDownLoadList::DownloadDeviceRecordInfo Device(const char* pszRecordId) const;
    KXDownLoadList::DownloadLanModuleRecordInfo IOTLan(const char* pszRecordId) const;
    KXDownLoadList::DownloadLanModuleRecordInfo LanModule(const char* pszRecordId) const;

    // The records as a host writes them.
    template <class Record>
    static QByteArray Stream(const std::vector<Record>& records);
    // Sends them under that type, whatever their own says, and lets the engine work.
    template <class Record>
    void SendList(int iType, const std::vector<Record>& records)
    {
        Send("EventNotifyDownloadRecordList", {Stream(records), iType});
    }
    // One record under its own type.
    template <class Record>
    void SendOne(const Record& record)
    {
        SendList(record.iRecordType, std::vector<Record>{record});
    }
    // Records of that type with those ids, each changed by `change`, as a host writes them; and one of them, sent.
    QByteArray StreamTyped(int iType, const QStringList& ids, const Change& change = {}) const;
    void SendTyped(int iType, const char* pszRecordId, const Change& change = {})
    {
        Send("EventNotifyDownloadRecordList", {StreamTyped(iType, Texts({pszRecordId}), change), iType});
    }
    // An event of another part of the client.
    void Send(const char* pszEvent, const QVariantList& payload);

    // A host thread reports, and the engine's slot has run when this returns.
    void RaiseState(Source source, const char* pszRecordId, int iCode);
    void RaiseData(Source source, const char* pszRecordId, int iLength);
    // Delivers everything that was posted.
    static void Settle();

    // The last task that the engine announced under that id: what the panel holds. Null when there was none.
    DownloadRecordInfoPtr Task(const char* pszRecordId) const;

private:
    void RecordSignals();

    FakeWorld m_world;
    std::unique_ptr<RecordDownloadModule> m_pEngine;
    std::vector<DownloadRecordInfoPtr> m_announced;
};

template <class Record>
QByteArray EngineRig::Stream(const std::vector<Record>& records)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const Record& record : records)
        record.Serialize(stream);
    return bytes;
}
