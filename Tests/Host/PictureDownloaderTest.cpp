#include "KXBase/PictureDownloader.h"
#include "Host/KXBase/PictureSettings.h"
#include "Host/ktl/LogSettings.h"
#include "KXBase/IPictureDownloaderListener.h"
#include "PictureServer.h"
#include "TestMain.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

struct Result
{
    int iResult = -1;
    QString strUrl;
    QString strPath;
    QThread* pThread = nullptr;
};

// Attached from the start to the end of its life, both on the same thread.
class Listener final : public IPictureDownloaderListener
{
public:
    Listener() { PictureDownloader::Instance()->Attach(this); }
    ~Listener() { PictureDownloader::Instance()->Detach(this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void OnPictureDownloaded(int iResult, const QString& strUrl, const QString& strLocalPath) override
    {
        m_listResults.append({iResult, strUrl, strLocalPath, QThread::currentThread()});
        if (m_react)
            m_react();
    }

    QVector<Result> m_listResults;
    std::function<void()> m_react;
};

QByteArray Content(const QString& strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QByteArray Picture(int iSize)
{
    QByteArray strPicture(iSize, '\0');
    for (int i = 0; i < iSize; ++i)
        strPicture[i] = static_cast<char>(i % 251);
    return strPicture;
}

// All that is still to be told is told: an answer that needs no network comes after it.
void SettleLoop()
{
    Listener listener;
    PictureDownloader::Instance()->get(QStringLiteral("last"));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
}

// Fetches one picture and says where it is.
int RunChild(const QString& strUrl)
{
    Listener listener;
    listener.m_react = [] { QCoreApplication::quit(); };
    PictureDownloader::Instance()->get(strUrl);
    QCoreApplication::exec();
    std::printf("%s", qPrintable(listener.m_listResults.value(0).strPath));
    return Content(listener.m_listResults.value(0).strPath) == "picture" ? 0 : 1;
}

} // namespace

class PictureDownloaderTest : public QObject
{
    Q_OBJECT

public:
    bool m_bHadInstanceWithoutApplication = true;

private slots:
    void init() { KXHost::SetPictureLimits(KXHost::PictureLimits()); }
    void ThereIsOneDownloaderAndNoneWithoutAnApplication();
    void APictureArrivesAsServedInALocalFile();
    void APictureWithoutALengthArrivesWhole();
    void ARedirectIsFollowed();
    void APictureThatIsNotWholeIsAFailedDownload_data();
    void APictureThatIsNotWholeIsAFailedDownload();
    void AnUnusableUrlIsAFailedDownload_data();
    void AnUnusableUrlIsAFailedDownload();
    void AServerThatDoesNotListenIsAFailedDownload();
    void AServerThatNeverAnswersIsAFailedDownloadAfterTheTimeLimit();
    void APictureOfTheLargestSizeArrivesAndALargerOneFails();
    void NoAnswerComesInsideGet();
    void EachGetIsAnsweredOnceAlsoForOneUrl();
    void ManyPicturesAtOnceAllArrive();
    void NoMoreThanSixTransfersRunAtOnce();
    void AHundredThousandEmptyUrlsAreAllAnswered();
    void EveryListenerHearsEveryResult();
    void AttachingTwiceIsHeardOnce();
    void TheListenerIsToldOnTheThreadThatAttachedIt();
    void ADetachedListenerHearsNothing();
    void DetachingFromAnotherThreadWaitsForTheRunningCall();
    void AListenerMayDetachInsideItsCall();
    void AListenerMayAskAgainInsideItsCall();
    void TheFilesAreGoneWhenTheHostEnds();
};

void PictureDownloaderTest::ThereIsOneDownloaderAndNoneWithoutAnApplication()
{
    QVERIFY(!m_bHadInstanceWithoutApplication);
    QVERIFY(PictureDownloader::Instance() != nullptr);
    QCOMPARE(PictureDownloader::Instance(), PictureDownloader::Instance());
}

void PictureDownloaderTest::APictureArrivesAsServedInALocalFile()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a%20b?token=1"), Picture(3000000));
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a%20b?token=1")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QCOMPARE(listener.m_listResults.first().iResult, 0);
    QCOMPARE(listener.m_listResults.first().strUrl, server.Url(QStringLiteral("/a%20b?token=1")));
    QVERIFY(Content(listener.m_listResults.first().strPath) == Picture(3000000));
}

void PictureDownloaderTest::APictureWithoutALengthArrivesWhole()
{
    PictureServer server;
    server.Serve(QStringLiteral("/a"), "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + Picture(1000));
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QCOMPARE(listener.m_listResults.first().iResult, 0);
    QVERIFY(Content(listener.m_listResults.first().strPath) == Picture(1000));
}

void PictureDownloaderTest::ARedirectIsFollowed()
{
    PictureServer server;
    server.Serve(QStringLiteral("/old"), "HTTP/1.1 302 Found\r\nLocation: /new\r\nContent-Length: 0\r\n\r\n");
    server.ServePicture(QStringLiteral("/new"), "picture");
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/old")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QCOMPARE(listener.m_listResults.first().strUrl, server.Url(QStringLiteral("/old")));
    QCOMPARE(Content(listener.m_listResults.first().strPath), QByteArray("picture"));
}

void PictureDownloaderTest::APictureThatIsNotWholeIsAFailedDownload_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("not found") << QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 1\r\n\r\nx");
    QTest::newRow("refused") << QByteArray("HTTP/1.1 401 Unauthorized\r\nContent-Length: 1\r\n\r\nx");
    QTest::newRow("an error of the server") << QByteArray("HTTP/1.1 500 Oops\r\nContent-Length: 1\r\n\r\nx");
    QTest::newRow("no content") << QByteArray("HTTP/1.1 204 No Content\r\n\r\n");
    QTest::newRow("a part only") << QByteArray("HTTP/1.1 206 Partial\r\nContent-Length: 1\r\n\r\nx");
    QTest::newRow("cut in its body") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nxxxxx");
    QTest::newRow("cut in its head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Le");
    QTest::newRow("cut in a chunk") << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n20\r\nxxxxx");
    QTest::newRow("no answer at all") << QByteArray("");
    QTest::newRow("no HTTP") << QByteArray("220 mail ready\r\n");
    QTest::newRow("a redirect to a local file")
        << QByteArray("HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n");
    QTest::newRow("a redirect to itself")
        << QByteArray("HTTP/1.1 302 Found\r\nLocation: /a\r\nContent-Length: 0\r\n\r\n");
}

void PictureDownloaderTest::APictureThatIsNotWholeIsAFailedDownload()
{
    QFETCH(QByteArray, answer);
    PictureServer server;
    server.Serve(QStringLiteral("/a"), answer);
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QVERIFY(listener.m_listResults.first().iResult != 0);
    QCOMPARE(listener.m_listResults.first().strUrl, server.Url(QStringLiteral("/a")));
    QCOMPARE(listener.m_listResults.first().strPath, QString());
    SettleLoop();
    QCOMPARE(listener.m_listResults.size(), 2); // the one above, and the one of SettleLoop
}

void PictureDownloaderTest::AnUnusableUrlIsAFailedDownload_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("empty") << QString();
    QTest::newRow("a word") << QStringLiteral("picture");
    QTest::newRow("without a host") << QStringLiteral("http:///a.jpg");
    QTest::newRow("with a blank") << QStringLiteral("http://127.0.0.1/a b.jpg");
    QTest::newRow("a bad port") << QStringLiteral("http://127.0.0.1:99999/a.jpg");
    QTest::newRow("another protocol") << QStringLiteral("ftp://127.0.0.1/a.jpg");
    QTest::newRow("a local file") << QStringLiteral("file:///etc/hostname");
    QTest::newRow("data") << QStringLiteral("data:text/plain,abc");
}

void PictureDownloaderTest::AnUnusableUrlIsAFailedDownload()
{
    QFETCH(QString, url);
    Listener listener;
    PictureDownloader::Instance()->get(url);
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QVERIFY(listener.m_listResults.first().iResult != 0);
    QCOMPARE(listener.m_listResults.first().strUrl, url);
    QCOMPARE(listener.m_listResults.first().strPath, QString());
}

void PictureDownloaderTest::AServerThatDoesNotListenIsAFailedDownload()
{
    PictureServer server;
    const QString strUrl = server.Url(QStringLiteral("/a"));
    server.close();
    Listener listener;
    PictureDownloader::Instance()->get(strUrl);
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QVERIFY(listener.m_listResults.first().iResult != 0);
}

void PictureDownloaderTest::AServerThatNeverAnswersIsAFailedDownloadAfterTheTimeLimit()
{
    KXHost::PictureLimits limits;
    limits.iTimeoutMs = 100;
    KXHost::SetPictureLimits(limits);
    PictureServer server;
    server.NeverAnswer(QStringLiteral("/a"));
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    QVERIFY(listener.m_listResults.first().iResult != 0);
    QCOMPARE(server.m_iRequests, 1);
    QTRY_COMPARE(server.HeldCount(), 0); // the connection is given up too
}

void PictureDownloaderTest::APictureOfTheLargestSizeArrivesAndALargerOneFails()
{
    KXHost::PictureLimits limits;
    limits.lMaxBytes = 400000;
    KXHost::SetPictureLimits(limits);
    PictureServer server;
    server.ServePicture(QStringLiteral("/fits"), Picture(400000));
    server.ServePicture(QStringLiteral("/larger"), Picture(400001));
    Listener listener;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/fits")));
    QTRY_COMPARE(listener.m_listResults.size(), 1);
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/larger")));
    QTRY_COMPARE(listener.m_listResults.size(), 2);
    QCOMPARE(listener.m_listResults.at(0).iResult, 0);
    QVERIFY(listener.m_listResults.at(1).iResult != 0);
    QCOMPARE(listener.m_listResults.at(1).strPath, QString());
}

void PictureDownloaderTest::NoAnswerComesInsideGet()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a"), "picture");
    Listener listener;
    PictureDownloader::Instance()->get(QString());
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QCOMPARE(listener.m_listResults.size(), 0);
    QTRY_COMPARE(listener.m_listResults.size(), 2);
}

void PictureDownloaderTest::EachGetIsAnsweredOnceAlsoForOneUrl()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a"), "picture");
    Listener listener;
    for (int i = 0; i < 3; ++i)
        PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QTRY_COMPARE(listener.m_listResults.size(), 3);
    for (const Result& result : qAsConst(listener.m_listResults))
        QCOMPARE(Content(result.strPath), QByteArray("picture"));
    SettleLoop();
    QCOMPARE(listener.m_listResults.size(), 4);
}

void PictureDownloaderTest::ManyPicturesAtOnceAllArrive()
{
    PictureServer server;
    QSet<QString> setContents;
    for (int i = 0; i < 50; ++i)
        server.ServePicture(QStringLiteral("/%1").arg(i), QByteArray::number(i));
    Listener listener;
    for (int i = 0; i < 50; ++i)
        PictureDownloader::Instance()->get(server.Url(QStringLiteral("/%1").arg(i)));
    QTRY_COMPARE(listener.m_listResults.size(), 50);
    for (const Result& result : qAsConst(listener.m_listResults)) {
        QVERIFY(result.strUrl.endsWith(QLatin1Char('/') + QString::fromUtf8(Content(result.strPath))));
        setContents.insert(result.strPath);
    }
    QCOMPARE(setContents.size(), 50);
}

void PictureDownloaderTest::NoMoreThanSixTransfersRunAtOnce()
{
    PictureServer server, other;
    server.NeverAnswer(QStringLiteral("/a"));
    other.NeverAnswer(QStringLiteral("/a"));
    Listener listener;
    for (int i = 0; i < 5; ++i) {
        PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
        PictureDownloader::Instance()->get(other.Url(QStringLiteral("/a")));
    }
    QTRY_COMPARE(server.HeldCount() + other.HeldCount(), 6);
    QVERIFY(!QTest::qWaitFor([&] { return server.m_iRequests + other.m_iRequests > 6; }, 100));
    server.AnswerHeld();
    other.AnswerHeld();
    QTRY_COMPARE(server.m_iRequests + other.m_iRequests, 10);
    server.AnswerHeld();
    other.AnswerHeld();
    QTRY_COMPARE(listener.m_listResults.size(), 10);
}

void PictureDownloaderTest::AHundredThousandEmptyUrlsAreAllAnswered()
{
    Listener listener;
    for (int i = 0; i < 100000; ++i)
        PictureDownloader::Instance()->get(QString());
    QTRY_COMPARE_WITH_TIMEOUT(listener.m_listResults.size(), 100000, 60000);
    SettleLoop();
    QCOMPARE(listener.m_listResults.size(), 100001);
}

void PictureDownloaderTest::EveryListenerHearsEveryResult()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a"), "picture");
    Listener first, second;
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    QTRY_COMPARE(first.m_listResults.size(), 1);
    QTRY_COMPARE(second.m_listResults.size(), 1);
    QCOMPARE(second.m_listResults.first().iResult, 0);
    QCOMPARE(second.m_listResults.first().strPath, first.m_listResults.first().strPath);
}

void PictureDownloaderTest::AttachingTwiceIsHeardOnce()
{
    Listener listener;
    PictureDownloader::Instance()->Attach(&listener);
    PictureDownloader::Instance()->get(QString());
    SettleLoop();
    QCOMPARE(listener.m_listResults.size(), 2);
}

void PictureDownloaderTest::TheListenerIsToldOnTheThreadThatAttachedIt()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a"), "picture");
    Listener mainListener;
    QVector<Result> listResults;
    QThread* pThread = QThread::create([&server, &listResults] {
        QEventLoop loop;
        Listener listener;
        listener.m_react = [&loop, &listener] {
            if (listener.m_listResults.size() == 2)
                loop.quit();
        };
        PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
        PictureDownloader::Instance()->get(QString());
        loop.exec();
        listResults = listener.m_listResults;
    });
    QSignalSpy spyFinished(pThread, &QThread::finished);
    pThread->start();
    QVERIFY(spyFinished.wait());
    pThread->wait();
    QCOMPARE(listResults.size(), 2);
    QTRY_COMPARE(mainListener.m_listResults.size(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(listResults.at(i).pThread, pThread);
        QCOMPARE(mainListener.m_listResults.at(i).pThread, QThread::currentThread());
    }
    delete pThread;
}

void PictureDownloaderTest::ADetachedListenerHearsNothing()
{
    PictureServer server;
    server.NeverAnswer(QStringLiteral("/a"));
    Listener listener, other;
    PictureDownloader::Instance()->get(QString()); // waits in the loop already when the listener goes
    PictureDownloader::Instance()->get(server.Url(QStringLiteral("/a")));
    PictureDownloader::Instance()->Detach(&listener);
    PictureDownloader::Instance()->Detach(&listener);
    QTRY_COMPARE(server.HeldCount(), 1);
    server.AnswerHeld();
    QTRY_COMPARE(other.m_listResults.size(), 2);
    QCOMPARE(listener.m_listResults.size(), 0);
}

void PictureDownloaderTest::DetachingFromAnotherThreadWaitsForTheRunningCall()
{
    QSemaphore entered, mayLeave;
    std::atomic<bool> bLeft{false}, bDetached{false}, bLeftBefore{false};
    Listener* pListener = nullptr;
    QThread* pThread = QThread::create([&] {
        QEventLoop loop;
        auto pOwned = std::make_unique<Listener>();
        pListener = pOwned.get();
        pOwned->m_react = [&] {
            entered.release();
            mayLeave.acquire();
            bLeft = true;
            loop.quit();
        };
        PictureDownloader::Instance()->get(QString());
        loop.exec();
    });
    pThread->start();
    entered.acquire();
    std::thread detaching([&] {
        PictureDownloader::Instance()->Detach(pListener);
        bLeftBefore = bLeft.load();
        bDetached = true;
    });
    const bool bDetachedEarly = QTest::qWaitFor([&bDetached] { return bDetached.load(); }, 50);
    mayLeave.release();
    detaching.join();
    pThread->wait();
    delete pThread;
    QVERIFY(!bDetachedEarly);
    QVERIFY(bLeftBefore);
}

void PictureDownloaderTest::AListenerMayDetachInsideItsCall()
{
    Listener listener;
    listener.m_react = [&listener] { PictureDownloader::Instance()->Detach(&listener); };
    PictureDownloader::Instance()->get(QString());
    PictureDownloader::Instance()->get(QString());
    SettleLoop();
    QCOMPARE(listener.m_listResults.size(), 1);
}

void PictureDownloaderTest::AListenerMayAskAgainInsideItsCall()
{
    Listener listener;
    listener.m_react = [&listener] {
        if (listener.m_listResults.size() < 3)
            PictureDownloader::Instance()->get(QString());
    };
    PictureDownloader::Instance()->get(QString());
    QTRY_COMPARE(listener.m_listResults.size(), 3);
}

void PictureDownloaderTest::TheFilesAreGoneWhenTheHostEnds()
{
    PictureServer server;
    server.ServePicture(QStringLiteral("/a"), "picture");
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("PictureDownloaderTest"), QStringLiteral("--child"), server.Url(QStringLiteral("/a"))});
    QTRY_COMPARE_WITH_TIMEOUT(child.state(), QProcess::NotRunning, 30000);
    QCOMPARE(child.exitCode(), 0);
    const QString strPath = QString::fromLocal8Bit(child.readAllStandardOutput());
    QVERIFY(!strPath.isEmpty());
    QVERIFY(!QFile::exists(strPath));
    QVERIFY(!QFile::exists(QFileInfo(strPath).path()));
}

KX_TEST_MAIN(PictureDownloaderTest)
{
    PictureDownloaderTest test;
    test.m_bHadInstanceWithoutApplication = PictureDownloader::Instance() != nullptr;
    QCoreApplication application(argc, argv);
    KXHost::LogSettings settings;
    settings.iConsoleLevel = 7;
    KXHost::SetLogSettings(settings);
    const QStringList listArguments = QCoreApplication::arguments();
    if (listArguments.size() == 3 && listArguments.at(1) == QLatin1String("--child"))
        return RunChild(listArguments.at(2));
    return QTest::qExec(&test, argc, argv);
}
#include "PictureDownloaderTest.moc"
