// The worker that turns a device's thumbnail into a picture beside the recording.

#include "HostilePictures.h"
#include "PanelRig.h"

#include "DownloadWidget/SaveDeviceRecordThumbWorker.h"
#include "TestMain.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QThread>
#include <QtGui/QImageReader>
#include <QtTest/QSignalSpy>

#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class ThumbWorkerTest : public QObject
{
    Q_OBJECT

private slots:
    void APictureIsWrittenInTheFormOfItsSuffix_data();
    void APictureIsWrittenInTheFormOfItsSuffix();
    void AJpegHasTheDefaultQuality();
    void APictureIsDecodedUpTo36Megapixels_data();
    void APictureIsDecodedUpTo36Megapixels();
    void ABombIsNotWrittenAndGivesOneLine_data();
    void ABombIsNotWrittenAndGivesOneLine();
    void ColoursThatABmpLacksAreBlack_data();
    void ColoursThatABmpLacksAreBlack();
    void ACostlyPictureIsWritten_data();
    void ACostlyPictureIsWritten();
    void AThreadThatShallEndReadsNoPicture();
    void ThePanelsEndDoesNotWaitForAPicture();
    void WhatIsNoPictureIsAnsweredAsWritten_data();
    void WhatIsNoPictureIsAnsweredAsWritten();
    void AFileTooLargeForAPictureIsNotRead();
    void AMissingSourceIsAnsweredWithNoPath();
    void WhatIsNoRegularFileIsAnsweredWithNoPath_data();
    void WhatIsNoRegularFileIsAnsweredWithNoPath();
    void ALinkToAPictureIsRead();
    void AnOldTargetIsOverwritten();
    void ATargetThatCannotBeWrittenIsAnsweredAsWritten();
    void ARecordingThatIsItsPicturesTargetStays();
    void TheMessageNamesTheThread();
    void RequestsAreServedInOrderOffTheGuiThread();

private:
    static QString WritePng(const FakeWorld& world, const char* pszName, Qt::GlobalColor color);
    // What the worker answers.
    static QVariantList Answer(const QString& strSource, const QString& strTarget);
};

QString ThumbWorkerTest::WritePng(const FakeWorld& world, const char* pszName, Qt::GlobalColor color)
{
    QImage image(8, 6, QImage::Format_RGB32);
    image.fill(color);
    image.save(world.Path(pszName), "PNG");
    return world.Path(pszName);
}

QVariantList ThumbWorkerTest::Answer(const QString& strSource, const QString& strTarget)
{
    SaveDeviceRecordThumbWorker worker;
    const QSignalSpy finished(&worker, &SaveDeviceRecordThumbWorker::SignalFinished);
    worker.OnStartTask(strSource, strTarget, QStringLiteral("id"));
    return finished.value(0);
}

void ThumbWorkerTest::APictureIsWrittenInTheFormOfItsSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("jpg") << QStringLiteral("out.jpg") << QByteArray("jpeg");
    QTest::newRow("png") << QStringLiteral("out.png") << QByteArray("png");
}

void ThumbWorkerTest::APictureIsWrittenInTheFormOfItsSuffix()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    FakeWorld world;
    // The source's own name says nothing: the bytes do.
    const QString strSource = WritePng(world, "thumb.dat", Qt::blue);
    const QString strTarget = world.Folder() + QLatin1Char('/') + name;
    QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QImageReader reader(strTarget);
    QCOMPARE(reader.format(), format);
    const QImage written = reader.read();
    QCOMPARE(written.size(), QSize(8, 6));
    QVERIFY(written.pixelColor(4, 3).blue() > 240 && written.pixelColor(4, 3).red() < 15);
    QVERIFY(QFile::exists(strSource));
}

// The table by which brightness is quantised at quality 75.
void ThumbWorkerTest::AJpegHasTheDefaultQuality()
{
    FakeWorld world;
    const QString strTarget = world.Path("out.jpg");
    QCOMPARE(Answer(WritePng(world, "thumb", Qt::red), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QFile file(strTarget);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.mid(bytes.indexOf(QByteArray::fromHex("ffdb")), 5 + 64).toHex(),
             QByteArray("ffdb004300"
                        "08060607060508070707090908"
                        "0a0c140d0c0b0b0c1912130f14"
                        "1d1a1f1e1d1a1c1c20242e2720"
                        "222c231c1c2837292c30313434"
                        "341f27393d38323c2e333432"));
}

void ThumbWorkerTest::APictureIsDecodedUpTo36Megapixels_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("written");
    QTest::newRow("36 megapixels") << 4608 << true;
    QTest::newRow("a line more") << 4609 << false;
}

// Whole and valid pictures, of a few kilobytes.
void ThumbWorkerTest::APictureIsDecodedUpTo36Megapixels()
{
    QFETCH(int, height);
    QFETCH(bool, written);
    FakeWorld world;
    QImage image(8192, height, QImage::Format_Mono);
    image.fill(0);
    QVERIFY(image.save(world.Path("thumb"), "PNG"));
    const QString strTarget = world.Path("out.png");
    QCOMPARE(Answer(world.Path("thumb"), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QCOMPARE(world.HasFile("out.png"), written);
}

void ThumbWorkerTest::ABombIsNotWrittenAndGivesOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    for (const auto& picture : HostilePictures::Bombs("none.png") + HostilePictures::Truncated())
        QTest::newRow(picture.pszName) << picture.bytes;
}

void ThumbWorkerTest::ABombIsNotWrittenAndGivesOneLine()
{
    QFETCH(QByteArray, content);
    FakeWorld world;
    const QString strTarget = world.Path("out.jpg");
    QCOMPARE(Answer(world.WriteFile("thumb", content), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QVERIFY(!world.HasFile("out.jpg"));
    QCOMPARE(world.Log().Lines(), Texts({"6 SaveDeviceRecordThumbWorker::OnStartTask no picture[~/thumb]"}));
}

void ThumbWorkerTest::ColoursThatABmpLacksAreBlack_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("8 bits") << int(QImage::Format_Indexed8);
    QTest::newRow("1 bit") << int(QImage::Format_Mono);
}

// Its pixels name all colours, its table has the first one. The others would be what stands in memory behind that.
void ThumbWorkerTest::ColoursThatABmpLacksAreBlack()
{
    QFETCH(int, format);
    QImage image(256, 1, QImage::Format(format));
    image.setColorCount(1 << image.depth());
    for (int iColor = 0; iColor < 256; ++iColor)
        image.setPixel(iColor, 0, static_cast<uint>(iColor % (1 << image.depth())));
    QByteArray bmp = HostilePictures::Encoded(image, "BMP");
    bmp.replace(46, 4, HostilePictures::Little32(1));
    bmp.replace(54, 4, QByteArray::fromHex("0000ff00")); // red
    FakeWorld world;
    Answer(world.WriteFile("thumb", bmp), world.Path("out.bmp"));
    const QImage written(world.Path("out.bmp"));
    QCOMPARE(written.width(), 256);
    for (int iPixel = 0; iPixel < 256; ++iPixel) {
        const bool bFirst = iPixel % (1 << image.depth()) == 0;
        QCOMPARE(written.pixelColor(iPixel, 0), QColor(bFirst ? Qt::red : Qt::black));
    }
}

void ThumbWorkerTest::ACostlyPictureIsWritten_data()
{
    using namespace HostilePictures;
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a progressive JPEG") << Encoded(Red(1600, 1200), "JPG", true);
    QTest::newRow("one of 50 more scans") << WithScans(Encoded(Red(400, 300), "JPG", true), 50);
    QTest::newRow("an interlaced PNG") << Png(40, 30, Packed(InterlacedRed(40, 30)), QByteArray(), true);
    QTest::newRow("a PNG with bytes behind its end") << Encoded(Red(40, 30), "PNG").append("more");
    QTest::newRow("a JPEG with bytes behind its end") << Encoded(Red(40, 30), "JPG").append("more");
    QTest::newRow("a BMP with bytes behind its end") << Encoded(Red(40, 30), "BMP").append("more");
    QTest::newRow("a BMP that is stored from top to bottom")
        << Encoded(Red(40, 30), "BMP").replace(22, 4, QByteArray::fromHex("e2ffffff"));
    QTest::newRow("a BMP of one byte for a pixel")
        << Encoded(Red(40, 30, QImage::Format_RGB32).convertToFormat(QImage::Format_Indexed8), "BMP");
}

void ThumbWorkerTest::ACostlyPictureIsWritten()
{
    QFETCH(QByteArray, content);
    FakeWorld world;
    const QString strTarget = world.Path("out.jpg");
    QCOMPARE(Answer(world.WriteFile("thumb", content), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    const QColor color = QImage(strTarget).pixelColor(20, 15);
    QVERIFY(color.red() > 240 && color.blue() < 15);
    QCOMPARE(world.Log().Lines(), Texts({}));
}

void ThumbWorkerTest::AThreadThatShallEndReadsNoPicture()
{
    FakeWorld world;
    const QString strSource = WritePng(world, "thumb", Qt::red);
    QVariantList answer;
    const std::unique_ptr<QThread> pThread(QThread::create([&] {
        QThread::currentThread()->requestInterruption();
        answer = Answer(strSource, world.Path("out.jpg"));
    }));
    pThread->start();
    QVERIFY(pThread->wait());
    QVERIFY(!world.HasFile("out.jpg"));
    QCOMPARE(answer, QVariantList({QStringLiteral("id"), QString()}));
    QCOMPARE(world.Log().Lines(), Texts({}));
}

// The worker is held where it says that it begins, until its thread shall end; then it reads nothing more.
void ThumbWorkerTest::ThePanelsEndDoesNotWaitForAPicture()
{
    PanelRig rig;
    rig.Send({"a"});
    static std::atomic<bool> s_bBegun{false};
    static std::atomic<bool> s_bTold{false};
    const QtMessageHandler pOld = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {
        s_bBegun = true;
        QDeadlineTimer deadline(20000);
        while (!s_bTold && !deadline.hasExpired()) {
            s_bTold = QThread::currentThread()->isInterruptionRequested();
            QThread::yieldCurrentThread();
        }
    });
    rig.World().Bus().Send("EventNotifyDeviceRecordThumbsPath",
                           {QStringLiteral("a"), WritePng(rig.World(), "thumb", Qt::red)});
    QTRY_VERIFY(s_bBegun);
    rig.Destroy();
    qInstallMessageHandler(pOld);
    QVERIFY(s_bTold);
    QVERIFY(!rig.World().HasFile("a.jpg"));
}

void ThumbWorkerTest::WhatIsNoPictureIsAnsweredAsWritten_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << QByteArray("this is no picture");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("the head of a PNG") << QByteArray("\x89PNG\r\n\x1a\n");
}

void ThumbWorkerTest::WhatIsNoPictureIsAnsweredAsWritten()
{
    QFETCH(QByteArray, content);
    FakeWorld world;
    const QString strSource = world.WriteFile("thumb", content);
    const QString strTarget = world.Path("out.jpg");
    QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QVERIFY(!world.HasFile("out.jpg"));
    // Nor is an old one touched.
    world.WriteFile("out.jpg", "an old picture");
    QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QFile old(strTarget);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("an old picture"));
}

// A good picture with a gap behind it, which takes no place on the disk: by its pixels it would be decoded.
void ThumbWorkerTest::AFileTooLargeForAPictureIsNotRead()
{
    FakeWorld world;
    const QString strSource = WritePng(world, "thumb", Qt::green);
    const QString strTarget = world.Path("out.png");
    if (!QFile::resize(strSource, 65LL * 1024 * 1024))
        QSKIP("this volume has no room for the file", "");
    QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QVERIFY(!world.HasFile("out.png"));
    QVERIFY(QFile::resize(strSource, 200));
    QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QCOMPARE(QImage(strTarget).pixelColor(1, 1), QColor(Qt::green));
}

void ThumbWorkerTest::AMissingSourceIsAnsweredWithNoPath()
{
    FakeWorld world;
    const QString strTarget = world.WriteFile("out.jpg", "old");
    QCOMPARE(Answer(world.Path("none"), strTarget), QVariantList({QStringLiteral("id"), QString()}));
    QCOMPARE(Answer(QString(), strTarget), QVariantList({QStringLiteral("id"), QString()}));
    QCOMPARE(Answer(world.Folder(), strTarget), QVariantList({QStringLiteral("id"), QString()}));
    QCOMPARE(QFileInfo(strTarget).size(), qint64(3));
}

void ThumbWorkerTest::WhatIsNoRegularFileIsAnsweredWithNoPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a folder") << QStringLiteral("folder");
#ifdef Q_OS_UNIX
    QTest::newRow("a pipe that nobody writes to") << QStringLiteral("pipe");
    QTest::newRow("a link to such a pipe") << QStringLiteral("link");
    QTest::newRow("a device") << QStringLiteral("null");
#endif
}

void ThumbWorkerTest::WhatIsNoRegularFileIsAnsweredWithNoPath()
{
    QFETCH(QString, name);
    FakeWorld world;
    QVERIFY(QDir(world.Folder()).mkdir(QStringLiteral("folder")));
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(world.Path("pipe")).constData(), 0600), 0);
    QVERIFY(QFile::link(world.Path("pipe"), world.Path("link")));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), world.Path("null")));
#endif
    const QString strTarget = world.Path("out.jpg");
    QCOMPARE(Answer(world.Folder() + QLatin1Char('/') + name, strTarget),
             QVariantList({QStringLiteral("id"), QString()}));
    QVERIFY(!world.HasFile("out.jpg"));
}

void ThumbWorkerTest::ALinkToAPictureIsRead()
{
#ifdef Q_OS_UNIX
    FakeWorld world;
    QVERIFY(QFile::link(WritePng(world, "thumb", Qt::green), world.Path("link")));
    const QString strTarget = world.Path("out.png");
    QCOMPARE(Answer(world.Path("link"), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QCOMPARE(QImage(strTarget).pixelColor(1, 1), QColor(Qt::green));
#else
    QSKIP("here a link is a file of its own kind", "");
#endif
}

void ThumbWorkerTest::AnOldTargetIsOverwritten()
{
    FakeWorld world;
    const QString strTarget = WritePng(world, "out.png", Qt::red);
    QCOMPARE(Answer(WritePng(world, "thumb", Qt::green), strTarget), QVariantList({QStringLiteral("id"), strTarget}));
    QCOMPARE(QImage(strTarget).pixelColor(1, 1), QColor(Qt::green));
}

void ThumbWorkerTest::ATargetThatCannotBeWrittenIsAnsweredAsWritten()
{
    FakeWorld world;
    const QString strSource = WritePng(world, "thumb", Qt::red);
    for (const char* pszTarget : {"no folder/out.jpg", "out.nosuchformat"}) {
        const QString strTarget = world.Path(pszTarget);
        QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
        QVERIFY(!QFile::exists(strTarget));
    }
}

void ThumbWorkerTest::ARecordingThatIsItsPicturesTargetStays()
{
    FakeWorld world;
    const QString strSource = WritePng(world, "thumb", Qt::red);
    for (const char* pszName : {"clip.avi", "clip"}) {
        const QString strTarget = world.WriteFile(pszName, "a recording");
        QCOMPARE(Answer(strSource, strTarget), QVariantList({QStringLiteral("id"), strTarget}));
        QFile recording(strTarget);
        QVERIFY(recording.open(QIODevice::ReadOnly));
        QCOMPARE(recording.readAll(), QByteArray("a recording"));
    }
}

void ThumbWorkerTest::TheMessageNamesTheThread()
{
    PanelRig rig;
    rig.Send({"a"});
    const DebugMessages messages;
    rig.Send("EventNotifyDeviceRecordThumbsPath", {QStringLiteral("a"), rig.World().Path("none")});
    QTRY_COMPARE(DebugMessages::Lines().size(), 1);
    const QString strLine = DebugMessages::Lines()[0];
    const QString strHead = QStringLiteral(
        "Src/DownloadWidget/DownloadWidget:34 void __cdecl SaveDeviceRecordThumbWorker::OnStartTask(const class "
        "QString,const class QString,const class QString)|SaveDeviceRecordThumbWorker::OnStartTask");
    QVERIFY2(strLine.startsWith(strHead), qPrintable(strLine));
    const QStringList words = strLine.mid(strHead.size()).simplified().split(QLatin1Char(' '));
    QCOMPARE(words.mid(0, 2), Texts({"Thread", "ID:"}));
    QVERIFY(strLine.endsWith(QLatin1Char('\n')));
    bool bNumber = false;
    const quint64 uThread = words.value(2).toULongLong(&bNumber, 0);
    QVERIFY2(bNumber, qPrintable(strLine));
    QVERIFY(uThread != quint64(reinterpret_cast<quintptr>(QThread::currentThreadId())));
}

void ThumbWorkerTest::RequestsAreServedInOrderOffTheGuiThread()
{
    FakeWorld world;
    QThread thread;
    auto* pWorker = new SaveDeviceRecordThumbWorker;
    pWorker->moveToThread(&thread);
    connect(&thread, &QThread::finished, pWorker, &QObject::deleteLater);
    QStringList finished; // filled on this thread, by queued calls
    connect(pWorker, &SaveDeviceRecordThumbWorker::SignalFinished, this,
            [&finished](const QString& strRecordId) { finished.append(strRecordId); });
    QThread* pServedBy = nullptr;
    connect(
        pWorker, &SaveDeviceRecordThumbWorker::SignalFinished, pWorker, [&] { pServedBy = QThread::currentThread(); },
        Qt::DirectConnection);
    thread.start();
    for (const char* pszId : {"1", "2", "3"}) {
        QMetaObject::invokeMethod(pWorker, "OnStartTask", Qt::QueuedConnection, Q_ARG(QString, world.Path("none")),
                                  Q_ARG(QString, QString()), Q_ARG(QString, QString::fromUtf8(pszId)));
    }
    QTRY_COMPARE(finished.size(), 3);
    thread.quit();
    QVERIFY(thread.wait());
    QCOMPARE(pServedBy, &thread);
    QCOMPARE(finished, Texts({"1", "2", "3"}));
}

KX_TEST(ThumbWorkerTest, QApplication)

#include "ThumbWorkerTest.moc"
