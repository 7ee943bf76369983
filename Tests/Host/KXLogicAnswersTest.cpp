#include "Host/Crypto/PictureCipher.h"
#include "Host/KXBase/ResourceDb.h"
#include "Host/KXLogic/HostSettings.h"
#include "KXLogic/KXLogic.h"
#include "KXLogic/KXLogicFunctions.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <vector>

namespace {

constexpr int WaitMs = 20000;
constexpr std::chrono::milliseconds NeverMs(200);

class Observer final : public KXLogic::IKXLogicObserver
{
public:
    void OnLogicMessage(const KXLogic::LogicMessage& message) override
    {
        if (m_onMessage)
            m_onMessage();
        const QMutexLocker lock(&m_mutex);
        m_messages.push_back(message);
        m_pThread = QThread::currentThread();
    }
    std::vector<KXLogic::LogicMessage> Messages() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_messages;
    }

    std::function<void()> m_onMessage;
    std::atomic<QThread*> m_pThread{nullptr};

private:
    mutable QMutex m_mutex;
    std::vector<KXLogic::LogicMessage> m_messages;
};

struct PasswordListener
{
    static int OnPassword(int ibGet, const char* strPassword, const char* strDeviceSN, std::int64_t lChannelId,
                          const char* strRecordId, const char* strPath, void* pUser)
    {
        auto* const pThis = static_cast<PasswordListener*>(pUser);
        const QMutexLocker lock(&pThis->m_mutex);
        pThis->m_answers.push_back(QStringLiteral("%1|%2|%3|%4|%5|%6")
                                       .arg(ibGet)
                                       .arg(QString::fromUtf8(strPassword), QString::fromUtf8(strDeviceSN))
                                       .arg(lChannelId)
                                       .arg(QString::fromUtf8(strRecordId), QString::fromUtf8(strPath)));
        pThis->m_pThread = QThread::currentThread();
        return 0;
    }
    QStringList Answers() const
    {
        const QMutexLocker lock(&m_mutex);
        QStringList listAnswers; // a copy that shares nothing with the other thread
        for (const QString& strAnswer : m_answers)
            listAnswers.append(strAnswer);
        return listAnswers;
    }

    std::atomic<QThread*> m_pThread{nullptr};
    mutable QMutex m_mutex;
    std::vector<QString> m_answers;
};

} // namespace

// Password queries, pictures and reports: modules 2 and 3.
class KXLogicAnswersTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void GivesTheModulesThatItHas();
    void AnswersTheCloudPasswordQuery();
    void AnswersNobodyAfterUnregistering();
    void AnswersTheDevicePasswordRequest();
    void TellsAnUnknownDevice();
    void OpensADevicePasswordForItsDeviceOnly();
    void TellsEveryObserverButEachOnce();
    void DetachWaitsForARunningMessage();
    void AQueryMayBeMadeFromInsideAnAnswer();
    void DecryptsAPicture();
    void StoresADownloadReport();

private:
    KXLogic::ICloudLogic* m_pCloud = nullptr;
    KXLogic::IDeviceLogic* m_pDevice = nullptr;
};

void KXLogicAnswersTest::init()
{
    m_pCloud = static_cast<KXLogic::ICloudLogic*>(KXLogic::Instance()->GetLogicMdl(3));
    m_pDevice = static_cast<KXLogic::IDeviceLogic*>(KXLogic::Instance()->GetLogicMdl(2));
    KXHost::Settings settings;
    settings.devicePasswords.insert(QStringLiteral("DEV1"), QStringLiteral(u"canary-p\u00E4ss"));
    settings.devicePasswords.insert(QStringLiteral("DEV0"), QString());
    settings.sources[1].strUser = QStringLiteral("viewer");
    KXHost::Configure(settings);
}

void KXLogicAnswersTest::GivesTheModulesThatItHas()
{
    for (int iId : {2, 3, 5})
        QVERIFY(KXLogic::Instance()->GetLogicMdl(iId) != nullptr);
    for (int iId : {-1, 0, 1, 4, 6})
        QVERIFY(KXLogic::Instance()->GetLogicMdl(iId) == nullptr);
}

void KXLogicAnswersTest::AnswersTheCloudPasswordQuery()
{
    PasswordListener listener;
    m_pCloud->SetCloudPasswordCallback(&listener, &PasswordListener::OnPassword);
    const std::int64_t lChannel = 8589934593; // more than 32 bits
    QCOMPARE(m_pCloud->GetCloudRecordPassword("me", "DEV1", 3, lChannel, "canary-key-7", "42", 1600000000, "/a b.mp4"),
             0);
    QCOMPARE(m_pCloud->GetCloudRecordPassword("me", "DEV2", 3, -1, "canary-key-7", "43", 1600000000, ""), 0);
    QCOMPARE(m_pCloud->GetCloudRecordPassword("me", "DEV0", 3, 0, "canary-key-7", "44", 1600000000, "/c"), 0);
    const QStringList expected{QStringLiteral(u"1|canary-p\u00E4ss|DEV1|8589934593|42|/a b.mp4"),
                               QStringLiteral("0||DEV2|-1|43|"), QStringLiteral("1||DEV0|0|44|/c")};
    QTRY_COMPARE_WITH_TIMEOUT(listener.Answers(), expected, WaitMs);
    QVERIFY(listener.m_pThread != QThread::currentThread());
    m_pCloud->UnregisterCloudPasswordCallback(&listener);
}

void KXLogicAnswersTest::AnswersNobodyAfterUnregistering()
{
    PasswordListener first;
    PasswordListener second;
    m_pCloud->SetCloudPasswordCallback(&first, &PasswordListener::OnPassword);
    for (int i = 0; i < 100; ++i)
        QCOMPARE(m_pCloud->GetCloudRecordPassword("me", "DEV1", 3, i, "canary-key-7", "42", 1600000000, "/a"), 0);
    QCOMPARE(m_pCloud->UnregisterCloudPasswordCallback(&first), 0);
    const int iAnswers = first.Answers().size();
    m_pCloud->SetCloudPasswordCallback(&second, &PasswordListener::OnPassword);
    QCOMPARE(m_pCloud->GetCloudRecordPassword("me", "DEV2", 3, 0, "canary-key-7", "last", 1600000000, "/a"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(second.Answers().contains(QStringLiteral("0||DEV2|0|last|/a")), WaitMs);
    QCOMPARE(first.Answers().size(), iAnswers);
    m_pCloud->UnregisterCloudPasswordCallback(&second);
}

void KXLogicAnswersTest::AnswersTheDevicePasswordRequest()
{
    Observer observer;
    QCOMPARE(m_pDevice->AttachObserver(&observer), 0);
    const std::int64_t lRequest = m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "{\"deviceId\":\"DEV1\"}", 1);
    QVERIFY(lRequest != 0);
    QTRY_COMPARE_WITH_TIMEOUT(observer.Messages().size(), std::size_t(1), WaitMs);
    const KXLogic::LogicMessage message = observer.Messages().front();
    QCOMPARE(message.iMessage, 1144);
    QCOMPARE(message.lRequest, lRequest);
    QCOMPARE(message.iResult, 0);
    QCOMPARE(message.lChannelId, std::int64_t(77));
    QCOMPARE(message.strUserName, std::string("viewer"));
    QCOMPARE(message.strUserInfo, std::string("{\"deviceId\":\"DEV1\"}"));
    QVERIFY(message.strPassword.find("canary") == std::string::npos);
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV1", message.strPassword),
             std::string("canary-p\xC3\xA4ss"));
    QVERIFY(observer.m_pThread != QThread::currentThread());
    QCOMPARE(m_pDevice->DetachObserver(&observer), 0);
}

void KXLogicAnswersTest::TellsAnUnknownDevice()
{
    Observer observer;
    QCOMPARE(m_pDevice->AttachObserver(&observer), 0);
    const std::int64_t lFirst = m_pDevice->RequestDevicePassword("me", "DEV2", 3, 77, "info", 1);
    const std::int64_t lSecond = m_pDevice->RequestDevicePassword("me", "DEV0", 3, 77, "info", 1);
    QVERIFY(lFirst != lSecond);
    QTRY_COMPARE_WITH_TIMEOUT(observer.Messages().size(), std::size_t(2), WaitMs);
    const std::vector<KXLogic::LogicMessage> messages = observer.Messages();
    QVERIFY(messages[0].iResult != 0);
    QCOMPARE(messages[0].lRequest, lFirst);
    QCOMPARE(messages[0].strPassword, std::string());
    QCOMPARE(messages[0].strUserInfo, std::string("info"));
    QCOMPARE(messages[1].iResult, 0); // an empty password is a password
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV0", messages[1].strPassword), std::string());
    QCOMPARE(m_pDevice->DetachObserver(&observer), 0);
}

void KXLogicAnswersTest::OpensADevicePasswordForItsDeviceOnly()
{
    // Sealed for "DEV1" by another implementation of the format.
    const std::string strStored = "S1hQV0QwMDEAAQIDBAUGBwgJCgsMDQ4PZGVmZ2hpamtsbW5vFv7kB2n5nmzL6uybf6JyztvwcKHvqYS6"
                                  "UeizvqmbDOdD9PnS3clE8p76LSEBfLdASA==";
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV1", strStored), std::string("p\xC3\xA4ss"));
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV2", strStored), std::string());
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV1", "in clear"), std::string());
    QCOMPARE(KXLogicFunctions::AesDecryptDeviceUserInfo("DEV1", ""), std::string());
}

void KXLogicAnswersTest::TellsEveryObserverButEachOnce()
{
    Observer first;
    Observer second;
    QCOMPARE(m_pDevice->AttachObserver(&first), 0);
    QVERIFY(m_pDevice->AttachObserver(&first) != 0);
    QVERIFY(m_pDevice->AttachObserver(nullptr) != 0);
    QCOMPARE(m_pDevice->AttachObserver(&second), 0);
    m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "", 1);
    QTRY_COMPARE_WITH_TIMEOUT(second.Messages().size(), std::size_t(1), WaitMs);
    QCOMPARE(first.Messages().size(), std::size_t(1));
    QCOMPARE(m_pDevice->DetachObserver(&first), 0);
    QVERIFY(m_pDevice->DetachObserver(&first) != 0);
    m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "", 1);
    QTRY_COMPARE_WITH_TIMEOUT(second.Messages().size(), std::size_t(2), WaitMs);
    QCOMPARE(first.Messages().size(), std::size_t(1));
    QCOMPARE(m_pDevice->DetachObserver(&second), 0);
}

void KXLogicAnswersTest::DetachWaitsForARunningMessage()
{
    Observer observer;
    std::promise<void> inside;
    std::promise<void> returned;
    std::future<void> detached = returned.get_future();
    std::atomic<bool> bReturnedTooEarly{false};
    std::atomic<bool> bMessageEnded{false};
    observer.m_onMessage = [&] {
        inside.set_value();
        bReturnedTooEarly = detached.wait_for(NeverMs) == std::future_status::ready;
        bMessageEnded = true;
    };
    QCOMPARE(m_pDevice->AttachObserver(&observer), 0);
    m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "", 1);
    QCOMPARE(inside.get_future().wait_for(std::chrono::milliseconds(WaitMs)), std::future_status::ready);
    QCOMPARE(m_pDevice->DetachObserver(&observer), 0);
    QVERIFY(bMessageEnded);
    returned.set_value();
    QVERIFY(!bReturnedTooEarly);
}

void KXLogicAnswersTest::AQueryMayBeMadeFromInsideAnAnswer()
{
    Observer observer;
    std::atomic<int> iAsked{0};
    observer.m_onMessage = [&] {
        if (++iAsked <= 3)
            m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "", 1);
    };
    QCOMPARE(m_pDevice->AttachObserver(&observer), 0);
    m_pDevice->RequestDevicePassword("me", "DEV1", 3, 77, "", 1);
    QTRY_COMPARE_WITH_TIMEOUT(observer.Messages().size(), std::size_t(4), WaitMs);
    QCOMPARE(m_pDevice->DetachObserver(&observer), 0);
}

void KXLogicAnswersTest::DecryptsAPicture()
{
    std::string strSealed;
    QCOMPARE(KXHost::EncryptPicture("a picture", "canary-key-7", "DEV1", "canary-secret", strSealed),
             KXHost::CipherResult::Ok);
    const std::string strBase64 = QByteArray::fromStdString(strSealed).toBase64().toStdString();
    std::string strClear = "untouched";
    QCOMPARE(m_pCloud->DecryptPicture(strBase64, "canary-key-8", "DEV1", "canary-secret", strClear), 2);
    QCOMPARE(m_pCloud->DecryptPicture(strBase64, "canary-key-7", "DEV2", "canary-secret", strClear), 2);
    QCOMPARE(m_pCloud->DecryptPicture(strBase64, "canary-key-7", "DEV1", "", strClear), 2);
    for (const std::string& strBad : {std::string(), std::string("not Base64 at all?"), strBase64.substr(0, 60),
                                      strBase64.substr(0, strBase64.size() - 8)}) {
        const int iResult = m_pCloud->DecryptPicture(strBad, "canary-key-7", "DEV1", "canary-secret", strClear);
        QVERIFY2(iResult != 0 && iResult != 2, strBad.c_str());
    }
    QCOMPARE(strClear, std::string("untouched"));
    QCOMPARE(m_pCloud->DecryptPicture(strBase64, "canary-key-7", "DEV1", "canary-secret", strClear), 0);
    QCOMPARE(strClear, std::string("YSBwaWN0dXJl"));
}

void KXLogicAnswersTest::StoresADownloadReport()
{
    QVERIFY(m_pCloud->ReportRecordDownloaded("DEV1", 3, 1600000000, 1600000060, 1, "rec") != 0); // no database yet
    ScratchDir folder;
    QVERIFY(KXHost::OpenResourceDb(folder.filePath(QStringLiteral("a.db")), nullptr));
    QCOMPARE(m_pCloud->ReportRecordDownloaded("DEV1", 3, 1600000000, 4294967295, 2, "rec"), 0);
    const QVector<KXHost::DownloadReport> reports = KXHost::DownloadReports();
    KXHost::CloseResourceDb();
    QCOMPARE(reports.size(), 1);
    QCOMPARE(reports.first().strDeviceId, QStringLiteral("DEV1"));
    QCOMPARE(reports.first().iChannelNo, 3);
    QCOMPARE(reports.first().lBeginTime, qint64(1600000000));
    QCOMPARE(reports.first().lEndTime, qint64(4294967295));
    QCOMPARE(reports.first().iSourceKind, 2);
    QCOMPARE(reports.first().strRecordId, QStringLiteral("rec"));
}

KX_TEST(KXLogicAnswersTest, QCoreApplication)
#include "KXLogicAnswersTest.moc"
