// The thread that decrypts cover pictures: what it gives to the host, what it saves, its order and its end.

#include "Engine/CoverPictures.h"
#include "HostilePictures.h"
#include "TestMain.h"

#include <QtCore/QEventLoop>
#include <QtGui/QImageReader>

#include <atomic>
#include <thread>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace CoverPictures;

// Owns the thread, as the engine does; what it is told stands in the list.
class Owner : public QObject
{
    Q_OBJECT

public:
    QStringList m_told;

public slots:
    void OnPictureUnreadable(QString strUrl, QString strDownloadPath)
    {
        m_told.append(QStringLiteral("unreadable %1 %2").arg(strUrl, strDownloadPath));
    }
    void OnPictureDecrptFinished(int iResult, QString strUrl, QString)
    {
        m_told.append(QStringLiteral("finished %1 %2").arg(QString::number(iResult), strUrl));
    }
};

class DecryptTest : public QObject
{
    Q_OBJECT

private slots:
    void TheHostGetsTheFileAndTheJobsTexts_data();
    void TheHostGetsTheFileAndTheJobsTexts();
    void TheClearPictureIsSavedBesideTheRecording_data();
    void TheClearPictureIsSavedBesideTheRecording();
    void ThePictureIsSavedWithTheDefaultQuality();
    void APathWithoutSuffixIsUsedUnchanged();
    void AReceivedRecordingIsNotOverwritten();
    void AFailureIsPassedOnAndSavesNothing_data();
    void AFailureIsPassedOnAndSavesNothing();
    void AnUnreadableFileIsSkipped_data();
    void AnUnreadableFileIsSkipped();
    void TheOwnerHearsOfUnreadableFilesInTheOrderOfTheJobs();
    void AClearPictureThatIsNoneIsNotSaved_data();
    void AClearPictureThatIsNoneIsNotSaved();
    void JobsQueuedTogetherRunBackToBackInOrder();
    void AllJobsRunOnOneThreadOneAfterTheOther();
    void TheThreadTakesOverThePriorityOfItsStarter();
    void AnIdleThreadWakesForAJob();
    void AJobThatComesBeforeTheThreadSleepsIsNotMissed();
    void StopLetsTheRunningJobEndAndDropsTheOthers();
    void StopGivesUpThePicture();
    void StopAndStartMayBeRepeated();
    void WhatWaitedAtItsStopIsNotDoneLater();
    void DestroyingItEndsTheThread();
    void WithoutAHostNothingIsDecrypted();
};

namespace {

// A whole and valid picture of 81 megapixels.
QByteArray Huge(const char* pszFormat)
{
    QImage image(9000, 9000, QImage::Format_Mono);
    image.fill(0);
    return Encoded(image, pszFormat);
}

// The thread in a world of its own; results stand in the world's list as "Finished result url path".
class Rig
{
public:
    Rig()
        : m_decrypt(&m_world.Cloud(), nullptr)
    {
        QObject::connect(
            &m_decrypt, &PictrueDecrypt::SignalDecrptPictrueFinished, &m_decrypt,
            [this](int iResult, const QString& strUrl, const QString& strPath) {
                m_world.Calls().Add(QStringLiteral("Finished %1 %2 %3").arg(QString::number(iResult), strUrl, strPath));
            },
            Qt::DirectConnection);
    }
    ~Rig() { m_world.Cloud().OpenDecryptGate(); }

    FakeWorld& World() { return m_world; }
    PictrueDecrypt& Decrypt() { return m_decrypt; }

    void Enqueue(const char* pszUrl, const char* pszTarget = "1.mp4", const QByteArray& content = "encrypted")
    {
        // A file of its own: an earlier job may be reading its file right now.
        const QByteArray name = "served" + QByteArray::number(++m_iServed) + ".enc";
        const QString strLocal = m_world.WriteFile(name.constData(), content);
        m_decrypt.Enqueue({QString::fromUtf8(pszUrl), strLocal, QStringLiteral("key"), QStringLiteral("device"),
                           QStringLiteral("canary-secret"), m_world.Path(pszTarget)});
    }
    QStringList Finished() { return m_world.Calls().Lines("Finished"); }

private:
    FakeWorld m_world;
    PictrueDecrypt m_decrypt;
    int m_iServed = 0;
};

} // namespace

void DecryptTest::TheHostGetsTheFileAndTheJobsTexts_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("call");
    QTest::newRow("a file") << QByteArray("encrypted")
                            << Texts({"DecryptPicture ZW5jcnlwdGVk key=key device=device password=canary-secret"});
    QTest::newRow("bytes that are no text")
        << QByteArray::fromHex("00ff10800a0d")
        << Texts({"DecryptPicture AP8QgAoN key=key device=device password=canary-secret"});
    QTest::newRow("an empty file") << QByteArray()
                                   << Texts({"DecryptPicture  key=key device=device password=canary-secret"});
}

void DecryptTest::TheHostGetsTheFileAndTheJobsTexts()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, call);
    Rig rig;
    rig.Decrypt().Start();
    rig.Enqueue("url", "1.mp4", content);
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 1 url "}));
    QCOMPARE(rig.World().Calls().Lines("DecryptPicture"), call);
    QCOMPARE(rig.World().Calls().OffThread().size(), 2); // the call and the signal
}

void DecryptTest::TheClearPictureIsSavedBesideTheRecording_data()
{
    QTest::addColumn<QByteArray>("format"); // of the clear bytes
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QStringList>("finished");
    QTest::newRow("a PNG is saved as a JPEG")
        << QByteArray("PNG") << QByteArray("1.mp4") << Texts({"Finished 0 url ~/1.jpg"});
    QTest::newRow("a JPEG") << QByteArray("JPG") << QByteArray("1.mp4") << Texts({"Finished 0 url ~/1.jpg"});
    QTest::newRow("a BMP") << QByteArray("BMP") << QByteArray("1.mp4") << Texts({"Finished 0 url ~/1.jpg"});
    QTest::newRow("every suffix in the path is replaced")
        << QByteArray("PNG") << QByteArray("a.mp4/b.mp4.mp4") << Texts({"Finished 0 url ~/a.jpg/b.jpg.jpg"});
    QTest::newRow("a path in another script")
        << QByteArray("PNG") << QByteArray("录像 (1).mp4") << Texts({"Finished 0 url ~/录像 (1).jpg"});
}

void DecryptTest::TheClearPictureIsSavedBesideTheRecording()
{
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, target);
    QFETCH(QStringList, finished);
    Rig rig;
    rig.World().WriteFile("a.jpg/other");
    rig.World().Cloud().QueueDecryption(0, Small(format.constData()));
    rig.Decrypt().Start();
    rig.Enqueue("url", target.constData());
    QTRY_COMPARE(rig.Finished(), finished);
    QString strSaved = finished.first().section(QLatin1Char(' '), 3);
    QImageReader reader(strSaved.replace(QLatin1Char('~'), rig.World().Folder()));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), QByteArray("jpeg"));
    const QImage saved = reader.read();
    QCOMPARE(saved.size(), QSize(6, 4));
    QVERIFY(qAbs(saved.pixelColor(2, 2).red() - 200) < 16 && qAbs(saved.pixelColor(2, 2).green() - 40) < 16);
}

// The first values of a JPEG's quantisation table at quality 75, which is libjpeg's default.
void DecryptTest::ThePictureIsSavedWithTheDefaultQuality()
{
    Rig rig;
    rig.World().Cloud().QueueDecryption(0, Small("PNG"));
    rig.Decrypt().Start();
    rig.Enqueue("url");
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 0 url ~/1.jpg"}));
    QFile file(rig.World().Path("1.jpg"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.mid(bytes.indexOf(QByteArray::fromHex("ffdb")), 13).toHex(), QByteArray("ffdb0043"
                                                                                           "00"
                                                                                           "0806060706050807"));
}

void DecryptTest::APathWithoutSuffixIsUsedUnchanged()
{
    Rig rig;
    rig.World().WriteFile("1.jpg", "somebody else's");
    rig.World().WriteFile("1.png.jpg", "somebody else's");
    rig.World().Cloud().QueueDecryption(0, Small("JPG"));
    rig.World().Cloud().QueueDecryption(0, Small("PNG"));
    rig.Decrypt().Start();
    rig.Enqueue("one", "1.png");
    rig.Enqueue("two", "1.MP4"); // another suffix, and no picture format
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 0 one ~/1.png", "Finished 0 two ~/1.MP4"}));
    QCOMPARE(QImageReader::imageFormat(rig.World().Path("1.png")), QByteArray("png"));
    for (const char* pszName : {"1.jpg", "1.png.jpg"}) {
        QFile file(rig.World().Path(pszName));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("somebody else's"));
    }
}

void DecryptTest::AReceivedRecordingIsNotOverwritten()
{
    Rig rig;
    rig.World().WriteFile("recording.png", "a recording");
    rig.World().Cloud().QueueDecryption(0, Small("PNG"));
    rig.Decrypt().Start();
    rig.Enqueue("url", "recording.png");
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 0 url ~/recording.png"}));
    QFile file(rig.World().Path("recording.png"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("a recording"));
}

void DecryptTest::AFailureIsPassedOnAndSavesNothing_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("finished");
    QTest::newRow("wrong key") << 2 << Texts({"Finished 2 url "});
    QTest::newRow("another failure") << 1 << Texts({"Finished 1 url "});
    QTest::newRow("a negative result") << -5 << Texts({"Finished -5 url "});
}

void DecryptTest::AFailureIsPassedOnAndSavesNothing()
{
    QFETCH(int, result);
    QFETCH(QStringList, finished);
    Rig rig;
    rig.World().Cloud().QueueDecryption(result, Small("PNG")); // a picture all the same: it is not looked at
    rig.Decrypt().Start();
    rig.Enqueue("url");
    QTRY_COMPARE(rig.Finished(), finished);
    QVERIFY(!rig.World().HasFile("1.jpg"));
}

void DecryptTest::AnUnreadableFileIsSkipped_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("it does not exist") << QByteArray("missing.enc");
    QTest::newRow("it is a folder") << QByteArray(".");
    QTest::newRow("it lies below a file") << QByteArray("served1.enc/x");
#ifdef Q_OS_UNIX
    QTest::newRow("it is a pipe that nobody writes to") << QByteArray("pipe");
#endif
}

void DecryptTest::AnUnreadableFileIsSkipped()
{
    QFETCH(QByteArray, file);
    Rig rig;
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(rig.World().Path("pipe")).constData(), 0600), 0);
#endif
    rig.Decrypt().Start();
    rig.Decrypt().Enqueue({QStringLiteral("skipped"), rig.World().Path(file.constData()), QString(), QString(),
                           QString(), rig.World().Path("1.mp4")});
    rig.Decrypt().Enqueue({QStringLiteral("skipped"), QString(), QString(), QString(), QString(), QString()});
    rig.Enqueue("next");
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 1 next "}));
    QCOMPARE(rig.World().Calls().Count("DecryptPicture"), 1);
}

void DecryptTest::TheOwnerHearsOfUnreadableFilesInTheOrderOfTheJobs()
{
    FakeWorld world;
    Owner owner;
    auto* pDecrypt = new PictrueDecrypt(&world.Cloud(), &owner);
    connect(pDecrypt, &PictrueDecrypt::SignalDecrptPictrueFinished, &owner, &Owner::OnPictureDecrptFinished);
    const QString strServed = world.WriteFile("served.enc", "encrypted");
    for (const char* pszUrl : {"one", "two", "three", "four"}) {
        const bool bThere = QByteArray(pszUrl) == "two" || QByteArray(pszUrl) == "four";
        pDecrypt->Enqueue({QString::fromUtf8(pszUrl), bThere ? strServed : world.Path("missing.enc"), QString(),
                           QString(), QString(), QStringLiteral("/videos/%1.mp4").arg(QString::fromUtf8(pszUrl))});
    }
    pDecrypt->Start();
    QTRY_COMPARE(owner.m_told.size(), 4);
    QCOMPARE(owner.m_told, Texts({"unreadable one /videos/one.mp4", "finished 1 two",
                                  "unreadable three /videos/three.mp4", "finished 1 four"}));
}

void DecryptTest::AClearPictureThatIsNoneIsNotSaved_data()
{
    QTest::addColumn<QByteArray>("clear");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("this is no picture");
    QTest::newRow("a signature only") << Small("PNG").left(8);
    for (const auto& picture : HostilePictures::Bombs("none.png") + HostilePictures::Truncated())
        QTest::newRow(picture.pszName) << picture.bytes;
    QTest::newRow("a PNG of 81 megapixels") << Huge("PNG");
    QTest::newRow("a BMP of 81 megapixels, stored from top to bottom")
        << Huge("BMP").replace(22, 4, QByteArray::fromHex("d8dcffff"));
}

// The host said that it went well, so that is what is passed on; the path then names no file.
void DecryptTest::AClearPictureThatIsNoneIsNotSaved()
{
    QFETCH(QByteArray, clear);
    Rig rig;
    rig.World().Cloud().QueueDecryption(0, clear);
    rig.Decrypt().Start();
    rig.Enqueue("url");
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 0 url ~/1.jpg"}));
    QVERIFY(!rig.World().HasFile("1.jpg"));
    QCOMPARE(rig.World().Log().Lines(), Texts({"6 PictrueDecrypt::Decrypt no picture[~/1.jpg]"}));
}

// A thread that idles between two jobs does so for seconds, and never gets through with them.
void DecryptTest::JobsQueuedTogetherRunBackToBackInOrder()
{
    Rig rig;
    rig.Decrypt().Start();
    for (int i = 1; i <= 200; ++i) {
        rig.World().Cloud().CloseDecryptGate();
        rig.Enqueue("one");
        while (rig.World().Calls().Count("DecryptPicture") < 1)
            std::this_thread::yield();
        rig.Enqueue("two"); // both wake-ups come while it is busy
        rig.Enqueue("three");
        rig.World().Cloud().OpenDecryptGate();
        while (rig.Finished().size() < 3)
            std::this_thread::yield();
        QCOMPARE(rig.Finished(), Texts({"Finished 1 one ", "Finished 1 two ", "Finished 1 three "}));
        rig.World().Calls().Clear();
    }
}

void DecryptTest::AllJobsRunOnOneThreadOneAfterTheOther()
{
    Rig rig;
    std::atomic<int> iInside{0};
    std::atomic<int> iMost{0};
    std::atomic<int> iForeign{0};
    rig.World().Calls().WhenAdded("DecryptPicture", [&] {
        iMost = qMax(iMost.load(), ++iInside);
        iForeign += QThread::currentThread() == &rig.Decrypt() ? 0 : 1;
    });
    rig.World().Calls().WhenAdded("Finished", [&] { --iInside; });
    QStringList expected;
    for (int i = 0; i < 200; ++i) { // the first ones before the thread runs
        if (i == 50)
            rig.Decrypt().Start();
        const QByteArray url = QByteArray::number(i);
        rig.Enqueue(url.constData());
        expected.append(QStringLiteral("Finished 1 %1 ").arg(i));
    }
    QTRY_COMPARE_WITH_TIMEOUT(rig.Finished().size(), 200, 60000);
    QCOMPARE(rig.Finished(), expected);
    QCOMPARE(iMost.load(), 1);
    QCOMPARE(iForeign.load(), 0);
}

void DecryptTest::TheThreadTakesOverThePriorityOfItsStarter()
{
    Rig rig;
    rig.Decrypt().Start();
    QCOMPARE(rig.Decrypt().priority(), QThread::InheritPriority);
}

// Each job comes at the moment when the thread is about to sleep. A missed wake-up costs seconds: a thread that misses
// many never gets through.
void DecryptTest::AnIdleThreadWakesForAJob()
{
    Rig rig;
    std::atomic<int> iFinished{0};
    rig.World().Calls().WhenAdded("Finished", [&iFinished] { ++iFinished; });
    rig.Decrypt().Start();
    for (int i = 1; i <= 500; ++i) {
        rig.Enqueue("url");
        while (iFinished < i)
            std::this_thread::yield();
    }
    QCOMPARE(rig.Finished().size(), 500);
}

// The job comes when the thread has found none and does not sleep yet. A hundred missed ones would take minutes.
void DecryptTest::AJobThatComesBeforeTheThreadSleepsIsNotMissed()
{
    Rig rig;
    std::atomic<int> iFinished{0};
    int iQueued = 0; // on the decrypter's thread
    rig.World().Calls().WhenAdded("Finished", [&iFinished] { ++iFinished; });
    rig.World().WhenUnlocked([&] {
        if (QThread::currentThread() != &rig.Decrypt() || iQueued != iFinished || iQueued == 100)
            return;
        ++iQueued;
        rig.Enqueue("url");
    });
    rig.Decrypt().Start();
    QTRY_COMPARE_WITH_TIMEOUT(iFinished.load(), 100, 60000);
}

// The host's call ends only when the thread has been told to stop: an event loop of the thread ends by that.
void DecryptTest::StopLetsTheRunningJobEndAndDropsTheOthers()
{
    Rig rig;
    rig.World().Calls().WhenAdded("DecryptPicture", [] { QEventLoop().exec(); });
    rig.Decrypt().Start();
    rig.Enqueue("one");
    rig.Enqueue("two");
    QTRY_COMPARE(rig.World().Calls().Count("DecryptPicture"), 1);
    rig.Decrypt().Stop();
    QVERIFY(rig.Decrypt().isFinished());
    QCOMPARE(rig.World().Calls().Lines({"DecryptPicture", "Finished"}),
             Texts({"DecryptPicture ZW5jcnlwdGVk key=key device=device password=canary-secret", "Finished 1 one "}));
}

// It is opened when the thread has been told to stop: decoding it could take long.
void DecryptTest::StopGivesUpThePicture()
{
    Rig rig;
    rig.World().Calls().WhenAdded("DecryptPicture", [] { QEventLoop().exec(); });
    rig.World().Cloud().QueueDecryption(0, Small("PNG"));
    rig.Decrypt().Start();
    rig.Enqueue("one");
    QTRY_COMPARE(rig.World().Calls().Count("DecryptPicture"), 1);
    rig.Decrypt().Stop();
    QCOMPARE(rig.Finished(), Texts({}));
    QVERIFY(!rig.World().HasFile("1.jpg"));
    QCOMPARE(rig.World().Log().Lines(), Texts({}));
}

void DecryptTest::StopAndStartMayBeRepeated()
{
    Rig rig;
    rig.Decrypt().Stop(); // it never ran
    rig.Decrypt().Start();
    rig.Decrypt().Start();
    QVERIFY(rig.Decrypt().isRunning());
    rig.Decrypt().Stop();
    rig.Decrypt().Stop();
    QVERIFY(rig.Decrypt().isFinished());
    rig.Decrypt().Start();
    rig.Enqueue("url");
    QTRY_COMPARE(rig.Finished(), Texts({"Finished 1 url "}));
}

void DecryptTest::WhatWaitedAtItsStopIsNotDoneLater()
{
    Rig rig;
    rig.Enqueue("waits");
    rig.Decrypt().Stop();
    rig.Decrypt().Start();
    rig.Enqueue("next");
    QTRY_COMPARE(rig.Finished().size(), 1);
    QCOMPARE(rig.Finished(), Texts({"Finished 1 next "}));
}

void DecryptTest::DestroyingItEndsTheThread()
{
    FakeWorld world;
    std::atomic<bool> bEnded{false};
    {
        PictrueDecrypt decrypt(&world.Cloud(), nullptr);
        connect(
            &decrypt, &QThread::finished, &decrypt, [&bEnded] { bEnded = true; }, Qt::DirectConnection);
        decrypt.Start();
    }
    QVERIFY(bEnded);
}

void DecryptTest::WithoutAHostNothingIsDecrypted()
{
    FakeWorld world;
    PictrueDecrypt decrypt(nullptr, nullptr);
    QSignalSpy finished(&decrypt, &PictrueDecrypt::SignalDecrptPictrueFinished);
    decrypt.Start();
    decrypt.Enqueue(
        {QStringLiteral("url"), world.WriteFile("served.enc"), QString(), QString(), QString(), world.Path("1.mp4")});
    decrypt.Stop();
    QCOMPARE(finished.size(), 0);
    QVERIFY(!world.HasFile("1.jpg"));
}

KX_TEST(DecryptTest, QCoreApplication)
#include "DecryptTest.moc"
