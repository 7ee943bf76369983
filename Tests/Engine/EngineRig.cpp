#include "Engine/EngineRig.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

template <class Record>
Record Filled(const FakeWorld& world, int iRecordType, const char* pszRecordId)
{
    Record record;
    record.iRecordType = iRecordType;
    record.strRecordId = QString::fromUtf8(pszRecordId);
    record.strDeviceId = QStringLiteral("SN-") + record.strRecordId;
    record.strDownloadPath = world.Path(pszRecordId) + QStringLiteral(".mp4");
    record.strStartTime = QStringLiteral("20200102T030405");
    record.strEndTime = QStringLiteral("20200102T030506");
    return record;
}

} // namespace

EngineRig::EngineRig(const Script& script)
{
    ScriptedDisk::Reset();
    if (script)
        script(m_world);
    m_pEngine = std::make_unique<RecordDownloadModule>();
    RecordSignals();
}

EngineRig::~EngineRig()
{
    m_world.Cloud().OpenDecryptGate();
    m_pEngine->Shutdown();
    Settle();
    m_pEngine.reset();
    Settle();
}

KXDownLoadList::DownloadCloudRecordInfo EngineRig::Cloud(const char* pszRecordId) const
{
    return Filled<KXDownLoadList::DownloadCloudRecordInfo>(m_world, 0, pszRecordId);
}

KXDownLoadList::DownloadDeviceRecordInfo EngineRig::Device(const char* pszRecordId) const
{
    return Filled<KXDownLoadList::DownloadDeviceRecordInfo>(m_world, 1, pszRecordId);
}

KXDownLoadList::DownloadLanModuleRecordInfo EngineRig::IOTLan(const char* pszRecordId) const
{
    return Filled<KXDownLoadList::DownloadLanModuleRecordInfo>(m_world, 2, pszRecordId);
}

KXDownLoadList::DownloadLanModuleRecordInfo EngineRig::LanModule(const char* pszRecordId) const
{
    return Filled<KXDownLoadList::DownloadLanModuleRecordInfo>(m_world, 3, pszRecordId);
}

QByteArray EngineRig::StreamTyped(int iType, const QStringList& ids, const Change& change) const
{
    QByteArray bytes;
    const auto add = [&](auto record) {
        if (change)
            change(record);
        bytes += Stream(std::vector{record});
    };
    for (const QString& strId : ids) {
        const QByteArray id = strId.toUtf8();
        if (iType == 0)
            add(Cloud(id.constData()));
        else if (iType == 1)
            add(Device(id.constData()));
        else
            add(iType == 2 ? IOTLan(id.constData()) : LanModule(id.constData()));
    }
    return bytes;
}

void EngineRig::Send(const char* pszEvent, const QVariantList& payload)
{
    m_world.Bus().Send(pszEvent, payload);
    Settle();
}

void EngineRig::RaiseState(Source source, const char* pszRecordId, int iCode)
{
    m_world.Downloads().RaiseState(source, pszRecordId, iCode);
    Settle();
}

void EngineRig::RaiseData(Source source, const char* pszRecordId, int iLength)
{
    m_world.Downloads().RaiseData(source, pszRecordId, iLength);
    Settle();
}

void EngineRig::Settle()
{
    // One turn delivers what was posted and what that posts; deletions asked for in it take another.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

DownloadRecordInfoPtr EngineRig::Task(const char* pszRecordId) const
{
    const QString strRecordId = QString::fromUtf8(pszRecordId);
    const auto it = std::find_if(m_announced.rbegin(), m_announced.rend(),
                                 [&](const DownloadRecordInfoPtr& pTask) { return pTask->strRecordId == strRecordId; });
    return it == m_announced.rend() ? nullptr : *it;
}

void EngineRig::RecordSignals()
{
    CallList& calls = Calls();
    using Engine = RecordDownloadModule;
    const Engine* const pEngine = m_pEngine.get();
    QObject::connect(pEngine, &Engine::SignalAddDownloadInfo, pEngine, [this, &calls](const DownloadRecordInfoPtr& p) {
        m_announced.push_back(p);
        calls.Add(QStringLiteral("SignalAddDownloadInfo ") + p->strRecordId);
    });
    QObject::connect(pEngine, &Engine::SignalUpdateCloudPictureInfo, pEngine,
                     [&calls](const QString& strRecordId, const QString& strPath) {
                         calls.Add(QStringLiteral("SignalUpdateCloudPictureInfo %1 %2").arg(strRecordId, strPath));
                     });
    QObject::connect(pEngine, &Engine::SignalDownloadRecordStates, pEngine,
                     [&calls](const QString& strRecordId, int iCode, bool bReget) {
                         calls.Add(QStringLiteral("SignalDownloadRecordStates %1 %2 %3")
                                       .arg(strRecordId, QString::number(iCode),
                                            bReget ? QStringLiteral("true") : QStringLiteral("false")));
                     });
    QObject::connect(
        pEngine, &Engine::SignalDownloadRecordData, pEngine, [&calls](const QString& strRecordId, int iLength) {
            calls.Add(QStringLiteral("SignalDownloadRecordData %1 %2").arg(strRecordId, QString::number(iLength)));
        });
    QObject::connect(pEngine, &Engine::SignalStartCopyPic, pEngine,
                     [&calls](const QString&, const QString&, const QString& strRecordId) {
                         calls.Add(QStringLiteral("SignalStartCopyPic ") + strRecordId);
                     });
    QObject::connect(pEngine, &Engine::SignalStopAllRecord, pEngine,
                     [&calls] { calls.Add(QStringLiteral("SignalStopAllRecord")); });
}
