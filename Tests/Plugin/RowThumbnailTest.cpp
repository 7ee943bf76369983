// The picture of a row: what is shown of which file, and which files are not opened.

#include "HostilePictures.h"
#include "PaintedRegion.h"
#include "RowRig.h"
#include "TestMain.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QUrl>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

// A picture that is red at its top left, up to (60, 34), and blue elsewhere.
QByteArray Picture(const QSize& size, const char* pszFormat)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter painter(&image);
    painter.fillRect(0, 0, 60, 34, Qt::red);
    painter.end();
    return HostilePictures::Encoded(image, pszFormat);
}

void AddPictures(const QList<HostilePictures::Picture>& pictures)
{
    QTest::addColumn<QByteArray>("content");
    for (const HostilePictures::Picture& picture : pictures)
        QTest::newRow(picture.pszName) << picture.bytes;
}

} // namespace

class RowThumbnailTest : public QObject
{
    Q_OBJECT

private slots:
    void AThumbnailShowsItsTopLeftUnscaledWithRoundCorners();
    void ASmallThumbnailIsNotScaledUp();
    void AMissingThumbnailGivesTheDefaultPicture();
    void TheDefaultPictureIsSharpOnEachScreen();
    void AThumbnailThatIsNoPictureGivesTheDefaultPicture();
    void AThumbnailThatAppearsOrChangesIsShownAtTheNextPaint();
    void WhatIsNoFileGivesTheDefaultPicture_data();
    void WhatIsNoFileGivesTheDefaultPicture();
    void AFileOfTheSameSizeAndAnotherTimeIsShownAnew();
    void ABombGivesTheDefaultPictureAndOneLine_data();
    void ABombGivesTheDefaultPictureAndOneLine();
    void ATruncatedPictureGivesTheDefaultPictureAndOneLine_data();
    void ATruncatedPictureGivesTheDefaultPictureAndOneLine();
    void AnSvgOpensNoFile_data();
    void AnSvgOpensNoFile();
    void TextsOfAPngAreNotUnfolded();
    void ACheapPictureIsShownAtOnce_data();
    void ACheapPictureIsShownAtOnce();
    void ACostlyPictureIsShownWhenItIsReady_data();
    void ACostlyPictureIsShownWhenItIsReady();
    void ACostlyPictureThatChangesIsReadAnew();
    void APictureOfTooManyPixelsIsNotShown();
    void ARowMayGoWhileItsPictureIsRead();

private:
    static void ShowsTheDefaultAndLogsOnce(const QByteArray& content);
    static int LinesOfNoPicture(RowRig& rig);
};

int RowThumbnailTest::LinesOfNoPicture(RowRig& rig)
{
    return rig.World().Log().Lines("6 DownloadItem::paint no picture[").size();
}

void RowThumbnailTest::ShowsTheDefaultAndLogsOnce(const QByteArray& content)
{
    RowRig rig;
    const QImage missing = rig.Painted();
    rig.Record().strPicturePath = rig.World().WriteFile("t.jpg", content);
    QCOMPARE(rig.Painted(), missing);
    QTRY_COMPARE(LinesOfNoPicture(rig), 1);
    QCOMPARE(rig.Painted(), missing);
    EngineRig::Settle();
    QCOMPARE(rig.Painted(), missing);
    QCOMPARE(LinesOfNoPicture(rig), 1);
}

void RowThumbnailTest::AThumbnailShowsItsTopLeftUnscaledWithRoundCorners()
{
    RowRig rig;
    rig.Record().strPicturePath = rig.World().WriteFile("t.png", Picture(QSize(400, 300), "PNG"));
    const QImage image = rig.Painted();
    QCOMPARE(image.pixel(40, 20), QRgb(0xFFFF0000));
    QCOMPARE(image.pixel(89, 43), QRgb(0xFFFF0000));
    QCOMPARE(image.pixel(91, 43), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(149, 40), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(30, 10), QRgb(0xFFFFFFFF));  // a corner
    QCOMPARE(image.pixel(32, 12), QRgb(0xFFFF0000));  // within its radius of 4
    const int iBlended = qGreen(image.pixel(30, 12)); // on its arc, which is smooth
    QVERIFY(iBlended > 0 && iBlended < 255);
    // A fifth of this pixel lies within a radius of 4: of 3 half of it would, of 5 nothing.
    QVERIFY(qGreen(image.pixel(30, 11)) > 150 && qGreen(image.pixel(30, 11)) < 250);
    QCOMPARE(image.pixel(149, 77), QRgb(0xFFFFFFFF)); // the opposite one
    QCOMPARE(image.pixel(150, 40), QRgb(0xFFFFFFFF));
    QCOMPARE(image.pixel(90, 78), QRgb(0xFFFFFFFF));
}

void RowThumbnailTest::ASmallThumbnailIsNotScaledUp()
{
    RowRig rig;
    rig.Record().strPicturePath = rig.World().WriteFile("t.png", Picture(QSize(80, 50), "PNG"));
    const QImage image = rig.Painted();
    QCOMPARE(image.pixel(100, 50), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(112, 50), QRgb(0xFFFFFFFF));
    QCOMPARE(image.pixel(100, 62), QRgb(0xFFFFFFFF));
}

void RowThumbnailTest::AMissingThumbnailGivesTheDefaultPicture()
{
    RowRig rig;
    const QImage picture(QStringLiteral(":/KXRecordManage/images/pic_default.svg"));
    QCOMPARE(picture.size(), QSize(120, 68));
    QImage expected(120, 68, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(0, 0, picture);
    for (const QString& strPath : {QString(), rig.World().Path("none.jpg")}) {
        rig.Record().strPicturePath = strPath;
        const QImage image = rig.Painted();
        for (const QPoint& pos : {QPoint(60, 10), QPoint(60, 34), QPoint(10, 60)})
            QCOMPARE(image.pixelColor(pos + QPoint(30, 10)), expected.pixelColor(pos));
    }
}

// Not the small picture with larger pixels, also after a screen of another ratio.
void RowThumbnailTest::TheDefaultPictureIsSharpOnEachScreen()
{
    RowRig rig;
    const QImage plain = rig.Painted().copy(30, 10, 120, 68);
    const struct
    {
        qreal dRatio;
        QRect thumbnail;
    } screens[] = {{1.5, {45, 15, 180, 102}}, {2, {60, 20, 240, 136}}, {1, {30, 10, 120, 68}}};
    for (const auto& screen : screens) {
        QImage shown = rig.Painted(screen.dRatio).copy(screen.thumbnail);
        shown.setDevicePixelRatio(1);
        for (const auto mode : {Qt::FastTransformation, Qt::SmoothTransformation}) {
            const bool bEnlarged = shown == plain.scaled(shown.size(), Qt::IgnoreAspectRatio, mode);
            QCOMPARE(bEnlarged, screen.dRatio == 1);
        }
        // Between the triangle and the edge of the disc around it.
        QCOMPARE(shown.pixelColor(shown.width() * 46 / 120, shown.height() / 2), plain.pixelColor(46, 34));
    }
}

void RowThumbnailTest::AThumbnailThatIsNoPictureGivesTheDefaultPicture()
{
    RowRig rig;
    const QImage missing = rig.Painted();
    rig.Record().strPicturePath = rig.World().WriteFile("t.jpg", "no picture at all");
    QCOMPARE(rig.Painted(), missing);
}

void RowThumbnailTest::AThumbnailThatAppearsOrChangesIsShownAtTheNextPaint()
{
    RowRig rig;
    rig.Record().strPicturePath = rig.World().Path("t.png");
    QVERIFY(rig.Painted().pixel(40, 20) != 0xFFFF0000);
    rig.World().WriteFile("t.png", Picture(QSize(200, 100), "PNG"));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFFFF0000));

    QImage green(200, 120, QImage::Format_RGB32);
    green.fill(Qt::green);
    QVERIFY(green.save(rig.World().Path("t.png")));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFF00FF00));

    QVERIFY(QFile::remove(rig.World().Path("t.png")));
    QVERIFY(rig.Painted().pixel(40, 20) != 0xFF00FF00);
}

void RowThumbnailTest::WhatIsNoFileGivesTheDefaultPicture_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a folder") << QStringLiteral("folder");
#ifdef Q_OS_UNIX
    QTest::newRow("a pipe that nobody writes to") << QStringLiteral("pipe");
#endif
}

void RowThumbnailTest::WhatIsNoFileGivesTheDefaultPicture()
{
    QFETCH(QString, name);
    RowRig rig;
    const QImage missing = rig.Painted();
    QVERIFY(QDir(rig.World().Folder()).mkdir(QStringLiteral("folder")));
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(rig.World().Path("pipe")).constData(), 0600), 0);
#endif
    rig.Record().strPicturePath = rig.World().Folder() + QLatin1Char('/') + name;
    QCOMPARE(rig.Painted(), missing);
}

void RowThumbnailTest::AFileOfTheSameSizeAndAnotherTimeIsShownAnew()
{
    RowRig rig;
    const auto write = [&](Qt::GlobalColor color, int iMinute) {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(color);
        QFile file(rig.World().WriteFile("t.bmp", HostilePictures::Encoded(image, "BMP")));
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime(QDate(2020, 1, 2), QTime(3, iMinute)), QFileDevice::FileModificationTime);
    };
    rig.Record().strPicturePath = rig.World().Path("t.bmp");
    QVERIFY(write(Qt::red, 4));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFFFF0000));
    QVERIFY(write(Qt::blue, 5));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFF0000FF));
}

void RowThumbnailTest::ABombGivesTheDefaultPictureAndOneLine_data()
{
    AddPictures(HostilePictures::Bombs("none.png"));
}

void RowThumbnailTest::ABombGivesTheDefaultPictureAndOneLine()
{
    QFETCH(QByteArray, content);
    ShowsTheDefaultAndLogsOnce(content);
}

void RowThumbnailTest::ATruncatedPictureGivesTheDefaultPictureAndOneLine_data()
{
    AddPictures(HostilePictures::Truncated());
}

void RowThumbnailTest::ATruncatedPictureGivesTheDefaultPictureAndOneLine()
{
    QFETCH(QByteArray, content);
    ShowsTheDefaultAndLogsOnce(content);
}

void RowThumbnailTest::AnSvgOpensNoFile_data()
{
    QTest::addColumn<bool>("pipe");
    QTest::newRow("a picture on this machine") << false;
#ifdef Q_OS_UNIX
    QTest::newRow("a pipe that nobody writes to") << true;
#endif
}

void RowThumbnailTest::AnSvgOpensNoFile()
{
    QFETCH(bool, pipe);
    RowRig rig;
    const QImage missing = rig.Painted();
    const QString strNamed = rig.World().Path("named.png");
    if (!pipe)
        rig.World().WriteFile("named.png", Picture(QSize(120, 68), "PNG"));
#ifdef Q_OS_UNIX
    else
        QCOMPARE(mkfifo(QFile::encodeName(strNamed).constData(), 0600), 0);
#endif
    const QByteArray image = "<image width='120' height='68' xlink:href='";
    for (const QByteArray& name : {strNamed.toUtf8(), QUrl::fromLocalFile(strNamed).toEncoded()}) {
        rig.Record().strPicturePath = rig.World().WriteFile("t.svg", HostilePictures::Svg(image + name + "'/>"));
        QCOMPARE(rig.Painted(), missing);
    }
}

// A thousand texts of 4 MB each, packed.
void RowThumbnailTest::TextsOfAPngAreNotUnfolded()
{
    using namespace HostilePictures;
    RowRig rig;
    const QByteArray text = Chunk("zTXt", QByteArray("Comment\0\0", 9) + Packed(QByteArray(4000000, '\0')));
    rig.Record().strPicturePath =
        rig.World().WriteFile("t.png", Png(40, 30, Packed(RedLines(40, 30)), text.repeated(1000)));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFFFF0000));
}

void RowThumbnailTest::ACheapPictureIsShownAtOnce_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("a JPEG of 4 megapixels") << QSize(2048, 2048) << QByteArray("JPG");
    QTest::newRow("a PNG of 4 megapixels") << QSize(2048, 2048) << QByteArray("PNG");
    QTest::newRow("a BMP of 8 megabytes") << QSize(2048, 1360) << QByteArray("BMP");
}

void RowThumbnailTest::ACheapPictureIsShownAtOnce()
{
    QFETCH(QSize, size);
    QFETCH(QByteArray, format);
    RowRig rig;
    rig.Record().strPicturePath = rig.World().WriteFile("t", Picture(size, format.constData()));
    const QColor color = rig.Painted().pixelColor(40, 20);
    QVERIFY(color.red() > 250 && color.blue() < 5);
}

void RowThumbnailTest::ACostlyPictureIsShownWhenItIsReady_data()
{
    using namespace HostilePictures;
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a progressive JPEG") << Encoded(Red(40, 30), "JPG", true);
    QTest::newRow("a JPEG above 4 megapixels") << Encoded(Red(2049, 2048), "JPG");
    QTest::newRow("a PNG above 4 megapixels") << Encoded(Red(2049, 2048), "PNG");
    QTest::newRow("a PNG of more than 256 kilobytes") << Png(512, 512, Packed(RedLines(512, 512) + Noise(300000)));
    QTest::newRow("an interlaced PNG") << Png(40, 30, Packed(InterlacedRed(40, 30)), QByteArray(), true);
    QTest::newRow("a file above 8 megabytes") << Encoded(Red(2048, 1366), "BMP");
    QTest::newRow("a JPEG of 8K") << Encoded(Red(7680, 4320), "JPG");
}

// Only then is the row painted again.
void RowThumbnailTest::ACostlyPictureIsShownWhenItIsReady()
{
    QFETCH(QByteArray, content);
    RowRig rig;
    const QImage missing = rig.Painted();
    QVERIFY(QTest::qWaitForWindowExposed(rig.Viewport()));
    PaintedRegion painted(*rig.Viewport());
    rig.Viewport()->repaint(); // whatever is still to be painted
    painted.Forget();
    rig.Record().strPicturePath = rig.World().WriteFile("t.png", content);
    QCOMPARE(rig.Painted(), missing);
    QCOMPARE(rig.Painted(), missing);
    QTRY_VERIFY(painted.Contains(QRect(30, 10, 120, 68)));
    const QColor color = rig.Painted().pixelColor(40, 20);
    QVERIFY(color.red() > 250 && color.blue() < 5);
    QCOMPARE(LinesOfNoPicture(rig), 0);
}

void RowThumbnailTest::ACostlyPictureThatChangesIsReadAnew()
{
    RowRig rig;
    rig.Record().strPicturePath =
        rig.World().WriteFile("t", HostilePictures::Encoded(HostilePictures::Red(40, 30), "JPG", true));
    rig.Painted();
    QImage green(120, 68, QImage::Format_RGB32);
    green.fill(Qt::green);
    rig.World().WriteFile("t", HostilePictures::Encoded(green, "JPG", true));
    QTRY_VERIFY(rig.Painted().pixelColor(40, 20).green() > 250 && rig.Painted().pixelColor(40, 20).red() < 5);
}

// Up to 36 megapixels.
void RowThumbnailTest::APictureOfTooManyPixelsIsNotShown()
{
    using namespace HostilePictures;
    RowRig rig;
    const QImage missing = rig.Painted();
    rig.Record().strPicturePath = rig.World().WriteFile("t", Encoded(Red(8192, 4609, QImage::Format_Mono), "PNG"));
    QCOMPARE(rig.Painted(), missing);
    QTRY_COMPARE(LinesOfNoPicture(rig), 1);
    QCOMPARE(rig.Painted(), missing);
    QImage black(8192, 4608, QImage::Format_Mono);
    black.fill(0);
    rig.World().WriteFile("t", Encoded(black, "PNG"));
    QTRY_COMPARE(rig.Painted().pixel(40, 20), QRgb(0xFF000000));
}

void RowThumbnailTest::ARowMayGoWhileItsPictureIsRead()
{
    RowRig rig;
    const auto pRecord = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>();
    pRecord->strPicturePath =
        rig.World().WriteFile("t", HostilePictures::Encoded(HostilePictures::Red(40, 30), "JPG", true));
    {
        DownloadItem other(&rig.Panel(), rig.Pixmaps());
        other.SetRecord(pRecord);
        QImage image(610, 88, QImage::Format_RGB32);
        QPainter painter(&image);
        other.paint(&painter, nullptr, nullptr);
    }
    rig.Record().strPicturePath = pRecord->strPicturePath;
    rig.Painted();
    QTRY_VERIFY(rig.Painted().pixelColor(40, 20).red() > 250);
}

KX_TEST(RowThumbnailTest, QApplication)

#include "RowThumbnailTest.moc"
