#include "Host/KXLogic/HostSettings.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "KXLogic/KXLogic.h"
#include "ScratchDir.h"
#include "ScriptedServer.h"
#include "TestMain.h"
#include "TransferListener.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>

namespace {

constexpr int WaitMs = 20000;
// What must not happen is waited for this long.
constexpr std::chrono::milliseconds NeverMs(200);

const QString Running = QStringLiteral("1 r 1");
const QString Finished = QStringLiteral("1 r 2");

#ifdef Q_OS_LINUX
constexpr bool CanTellOpenFiles = true;
#else
constexpr bool CanTellOpenFiles = false;
#endif

// Open files of this process by their path; nothing where the system cannot tell.
bool IsOpen(const QString& strPath)
{
    const QDir folder(QStringLiteral("/proc/self/fd"));
    const QFileInfoList listFiles = folder.entryInfoList(QDir::System | QDir::Files);
    return std::any_of(listFiles.begin(), listFiles.end(),
                       [&strPath](const QFileInfo& info) { return info.symLinkTarget() == strPath; });
}

} // namespace

// Stops, starts and barriers while transfers run. A listener stands after what its functions use: its end is a barrier.
class KXLogicStopTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void StopClosesTheFileAndEndsTheTransfer();
    void StopFromInsideItsOwnCallback_data();
    void StopFromInsideItsOwnCallback();
    void TwoCallbacksStopEachOther();
    void ASecondStartIsRefusedWhileTheFirstRuns();
    void StartsAgainAfterAStop();
    void StartsAgainFromInsideTheLastCallback();
    void UnregisterStopsThatUsersTransfersOnly();
    void UnregisterWaitsForARunningCallback();
    void UnregisterDoesNotWaitForAnotherUser();
    void ALaterRegistrationReplacesAnEarlierOne();
    void AStoppedTransferWritesNoMore();
    void RefusesMoreTransfersThanItMayRun();
    void AStopIsNoticedWhileNothingArrives();

private:
    int Start(const std::string& strId, const QString& strFile = QStringLiteral("a.mp4"));
    QString Path(const QString& strFile) const { return m_pFolder->filePath(strFile); }

    std::unique_ptr<ScratchDir> m_pFolder;
    std::unique_ptr<ScriptedServer> m_pServer;
    KXLogic::IDownloadLogic* m_pLogic = nullptr;
};

void KXLogicStopTest::init()
{
    m_pFolder = std::make_unique<ScratchDir>();
    m_pServer = std::make_unique<ScriptedServer>();
    m_pServer->Serve("/r", Answer::Endless(65536));
    m_pServer->Serve("/s", Answer::Endless(65536));
    m_pServer->Serve("/short", Answer::Whole("short"));
    m_pLogic = static_cast<KXLogic::IDownloadLogic*>(KXLogic::Instance()->GetLogicMdl(5));
    KXHost::Settings settings;
    settings.sources[1].strUrl = m_pServer->Url(QStringLiteral("/{recordId}"));
    settings.sources[3].strUrl = m_pServer->Url(QStringLiteral("/{recordId}"));
    KXHost::Configure(settings);
}

void KXLogicStopTest::cleanup()
{
    m_pServer.reset();
    QVERIFY(m_pFolder->remove());
}

int KXLogicStopTest::Start(const std::string& strId, const QString& strFile)
{
    KXLogic::DeviceDownloadRequest request;
    request.strRecordId = strId;
    request.strFilePath = Path(strFile).toStdString();
    return m_pLogic->StartDeviceRecordDownload(request);
}

void KXLogicStopTest::StopClosesTheFileAndEndsTheTransfer()
{
    TransferListener listener(*m_pLogic);
    QCOMPARE(Start("r"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.Received(QStringLiteral("1 r")) > 100000, WaitMs);
    if (CanTellOpenFiles)
        QVERIFY(IsOpen(Path(QStringLiteral("a.mp4"))));
    QCOMPARE(m_pLogic->StopDeviceRecordDownload("r"), 0);
    QVERIFY(!IsOpen(Path(QStringLiteral("a.mp4"))));
    const qint64 lSize = QFileInfo(Path(QStringLiteral("a.mp4"))).size();
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
    QCOMPARE(QFileInfo(Path(QStringLiteral("a.mp4"))).size(), lSize);
    QCOMPARE(listener.States(), QStringList(Running));
    QVERIFY(m_pLogic->StopDeviceRecordDownload("r") != 0);
    QVERIFY(m_pLogic->StopDeviceRecordDownload("never started") != 0);
    QVERIFY(m_pLogic->StopCloudRecordDownload(1) != 0);
}

void KXLogicStopTest::StopFromInsideItsOwnCallback_data()
{
    QTest::addColumn<bool>("bInData");
    QTest::newRow("in the state callback") << false;
    QTest::newRow("in the data callback") << true;
}

void KXLogicStopTest::StopFromInsideItsOwnCallback()
{
    QFETCH(bool, bInData);
    std::atomic<int> iResult{-1};
    const auto stop = [&] {
        if (iResult == -1)
            iResult = m_pLogic->StopDeviceRecordDownload("r");
    };
    TransferListener listener(*m_pLogic);
    if (bInData)
        listener.m_onData = [&](const QString&) { stop(); };
    else
        listener.m_onState = [&](const QString&) { stop(); };
    QCOMPARE(Start("r"), 0);
    QTRY_COMPARE_WITH_TIMEOUT(iResult.load(), 0, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
    QCOMPARE(listener.States(), QStringList(Running));
    QVERIFY(!IsOpen(Path(QStringLiteral("a.mp4"))));
}

void KXLogicStopTest::TwoCallbacksStopEachOther()
{
    std::atomic<int> iInside{0};
    std::atomic<int> iDone{0};
    std::promise<void> bothInside;
    std::shared_future<void> both = bothInside.get_future().share();
    TransferListener listener(*m_pLogic);
    listener.m_onState = [&](const QString& strState) {
        if (++iInside == 2)
            bothInside.set_value();
        both.wait_for(std::chrono::milliseconds(WaitMs));
        m_pLogic->StopDeviceRecordDownload(strState.contains(QLatin1Char('r')) ? "s" : "r");
        ++iDone;
    };
    QCOMPARE(Start("r"), 0);
    QCOMPARE(Start("s", QStringLiteral("b.mp4")), 0);
    QTRY_COMPARE_WITH_TIMEOUT(iDone.load(), 2, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
}

void KXLogicStopTest::ASecondStartIsRefusedWhileTheFirstRuns()
{
    TransferListener listener(*m_pLogic);
    QCOMPARE(Start("r"), 0);
    QVERIFY(Start("r", QStringLiteral("b.mp4")) != 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.HasState(Running), WaitMs);
    QVERIFY(Start("r", QStringLiteral("b.mp4")) != 0);
    KXLogic::LanModuleDownloadRequest other; // another source may have a recording of that name
    other.strRecordId = "r";
    other.strFilePath = Path(QStringLiteral("c.mp4")).toStdString();
    QCOMPARE(m_pLogic->StartLanModuleRecordDownload(other), 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.HasState(QStringLiteral("3 r 1")), WaitMs);
    QCOMPARE(static_cast<int>(m_pServer->Heads().size()), 2);
    QVERIFY(!QFile::exists(Path(QStringLiteral("b.mp4"))));
}

void KXLogicStopTest::StartsAgainAfterAStop()
{
    TransferListener listener(*m_pLogic);
    QCOMPARE(Start("r"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.HasState(Running), WaitMs);
    m_pServer->Serve("/r", Answer::Whole("second"));
    QCOMPARE(m_pLogic->StopDeviceRecordDownload("r"), 0);
    QCOMPARE(Start("r"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.HasState(Finished), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(KXHost::RunningTransfers().size(), 0, WaitMs);
    QFile file(Path(QStringLiteral("a.mp4")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("second"));
    QCOMPARE(listener.States(), QStringList({Running, Running, Finished}));
}

void KXLogicStopTest::StartsAgainFromInsideTheLastCallback()
{
    std::atomic<int> iResult{-1};
    TransferListener listener(*m_pLogic);
    listener.m_onState = [&](const QString& strState) {
        if (strState == QLatin1String("1 short 2") && iResult == -1)
            iResult = Start("short", QStringLiteral("b.mp4"));
    };
    QCOMPARE(Start("short"), 0);
    QTRY_COMPARE_WITH_TIMEOUT(listener.States().count(QStringLiteral("1 short 2")), 2, WaitMs);
    QCOMPARE(iResult.load(), 0);
}

void KXLogicStopTest::UnregisterStopsThatUsersTransfersOnly()
{
    TransferListener listener(*m_pLogic);
    std::atomic<qint64> lOther{0};
    const auto count = [](const char*, int iLength, void* pUser) {
        *static_cast<std::atomic<qint64>*>(pUser) += iLength;
        return 0;
    };
    const auto ignore = [](const char*, int, void*) { return 0; };
    m_pLogic->SetLanModuleDataCallback(&lOther, count);
    m_pLogic->SetLanModuleStateCallback(&lOther, ignore);
    KXLogic::LanModuleDownloadRequest other;
    other.strRecordId = "s";
    other.strFilePath = Path(QStringLiteral("c.mp4")).toStdString();
    QCOMPARE(m_pLogic->StartLanModuleRecordDownload(other), 0);
    QCOMPARE(Start("r"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(listener.Received(QStringLiteral("1 r")) > 0 && lOther > 0, WaitMs);
    QCOMPARE(m_pLogic->UnregisterCallbacks(&listener), 0);
    const qint64 lReceived = listener.Received(QStringLiteral("1 r"));
    const qint64 lOtherReceived = lOther;
    QVERIFY(!IsOpen(Path(QStringLiteral("a.mp4"))));
    QTRY_VERIFY_WITH_TIMEOUT(lOther > lOtherReceived, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 1, WaitMs);
    QCOMPARE(listener.Received(QStringLiteral("1 r")), lReceived);
    QCOMPARE(m_pLogic->UnregisterCallbacks(&lOther), 0);
    QVERIFY(m_pLogic->StopLanModuleRecordDownload("s") != 0);
}

void KXLogicStopTest::UnregisterWaitsForARunningCallback()
{
    std::promise<void> inside;
    std::promise<void> returned;
    std::future<void> unregistered = returned.get_future();
    std::atomic<bool> bReturnedTooEarly{false};
    std::atomic<bool> bCallbackEnded{false};
    TransferListener listener(*m_pLogic);
    listener.m_onState = [&](const QString&) {
        inside.set_value();
        bReturnedTooEarly = unregistered.wait_for(NeverMs) == std::future_status::ready;
        bCallbackEnded = true;
    };
    QCOMPARE(Start("r"), 0);
    QCOMPARE(inside.get_future().wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    QCOMPARE(m_pLogic->UnregisterCallbacks(&listener), 0);
    QVERIFY(bCallbackEnded);
    returned.set_value();
    QVERIFY(!bReturnedTooEarly);
    QVERIFY(!IsOpen(Path(QStringLiteral("a.mp4"))));
}

void KXLogicStopTest::UnregisterDoesNotWaitForAnotherUser()
{
    std::promise<void> inside;
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::atomic<bool> bReleased{false};
    TransferListener listener(*m_pLogic);
    listener.m_onState = [&](const QString&) {
        inside.set_value();
        bReleased = released.wait_for(std::chrono::milliseconds(WaitMs)) == std::future_status::ready;
    };
    QCOMPARE(Start("r"), 0);
    QCOMPARE(inside.get_future().wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    int iOtherUser = 0;
    QCOMPARE(m_pLogic->UnregisterCallbacks(&iOtherUser), 0);
    QCOMPARE(m_pLogic->StopDeviceRecordDownload("r"), 0); // no stop waits for a callback either
    release.set_value();                                  // too late for a callback that was waited for
    QCOMPARE(m_pLogic->UnregisterCallbacks(&listener), 0);
    QVERIFY(bReleased);
}

void KXLogicStopTest::ALaterRegistrationReplacesAnEarlierOne()
{
    TransferListener first(*m_pLogic);
    TransferListener second(*m_pLogic);
    QCOMPARE(Start("short"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(second.HasState(QStringLiteral("1 short 2")), WaitMs);
    QCOMPARE(first.States(), QStringList());
    m_pLogic->UnregisterCallbacks(&first); // touches nothing of the second
    QCOMPARE(Start("short"), 0);
    QTRY_COMPARE_WITH_TIMEOUT(second.States().count(QStringLiteral("1 short 2")), 2, WaitMs);
}

void KXLogicStopTest::AStoppedTransferWritesNoMore()
{
    TransferListener listener(*m_pLogic);
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(Start("r"), 0);
        if (i % 2 == 0)
            QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(Path(QStringLiteral("a.mp4"))), WaitMs);
        QCOMPARE(m_pLogic->StopDeviceRecordDownload("r"), 0);
        QVERIFY(!IsOpen(Path(QStringLiteral("a.mp4"))));
        QFile::remove(Path(QStringLiteral("a.mp4")));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
    QVERIFY(!QFileInfo::exists(Path(QStringLiteral("a.mp4"))));
}

// Nothing else would wake the transfer for half a minute.
void KXLogicStopTest::AStopIsNoticedWhileNothingArrives()
{
    m_pServer->Serve("/never", Answer::Never());
    TransferListener listener(*m_pLogic);
    QCOMPARE(Start("never"), 0);
    QTRY_COMPARE_WITH_TIMEOUT(static_cast<int>(m_pServer->Heads().size()), 1, WaitMs);
    QCOMPARE(m_pLogic->StopDeviceRecordDownload("never"), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
    QCOMPARE(listener.States(), QStringList());
}

void KXLogicStopTest::RefusesMoreTransfersThanItMayRun()
{
    TransferListener listener(*m_pLogic);
    int iStarted = 0;
    for (int i = 0; i < 40; ++i) {
        const QString strId = QStringLiteral("m%1").arg(i);
        m_pServer->Serve('/' + strId.toLatin1(), Answer::Endless(100));
        iStarted += Start(strId.toStdString(), strId) == 0 ? 1 : 0;
    }
    QVERIFY2(iStarted >= 7 && iStarted <= 32, qPrintable(QString::number(iStarted)));
    QTRY_COMPARE_WITH_TIMEOUT(listener.States().size(), iStarted, WaitMs);
    QCOMPARE(m_pLogic->UnregisterCallbacks(&listener), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_pServer->OpenConnections(), 0, WaitMs);
}

KX_TEST(KXLogicStopTest, QCoreApplication)
#include "KXLogicStopTest.moc"
