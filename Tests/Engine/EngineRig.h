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
// the picture with the empty URL is answered (EngineRig rig(EngineRig::FailPictures) answers all, as failed).
class EngineRig
{
public:
    using Script = std::function<void(FakeWorld&)>;

    // A script: covers cannot be fetched, so that cloud tasks are held no longer than one turn of the event loop.
    static void FailPictures(FakeWorld& world) { world.Pictures().FailAll(); }

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
    // One record of that type and id, changed by `change(record)` before; gives the source that it belongs to.
    template <class Change>
    Source SendTyped(int iType, const char* pszRecordId, const Change& change);
    Source SendTyped(int iType, const char* pszRecordId)
    {
        return SendTyped(iType, pszRecordId, [](KXDownLoadList::DownloadRecordInfo&) {});
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

template <class Change>
Source EngineRig::SendTyped(int iType, const char* pszRecordId, const Change& change)
{
    const auto send = [&](auto record, Source source) {
        change(record);
        SendOne(record);
        return source;
    };
    switch (iType) {
    case 0:
        return send(Cloud(pszRecordId), Source::Cloud);
    case 1:
        return send(Device(pszRecordId), Source::Device);
    case 2:
        return send(IOTLan(pszRecordId), Source::IOTLan);
    default:
        return send(LanModule(pszRecordId), Source::LanModule);
    }
}
