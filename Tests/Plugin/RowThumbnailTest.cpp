// The picture of a row: what is shown of which file, and which files are not opened.

#include "RowRig.h"

#include <QtCore/QBuffer>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>

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
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, pszFormat);
    return bytes;
}

QImage Black(int iHeight)
{
    QImage image(8192, iHeight, QImage::Format_Grayscale8);
    image.fill(0);
    return image;
}

} // namespace

class RowThumbnailTest : public QObject
{
    Q_OBJECT

private slots:
    void AThumbnailShowsItsTopLeftUnscaledWithRoundCorners();
    void ASmallThumbnailIsNotScaledUp();
    void AMissingThumbnailGivesTheDefaultPicture();
    void AThumbnailThatIsNoPictureGivesTheDefaultPicture();
    void AThumbnailThatAppearsOrChangesIsShownAtTheNextPaint();
    void WhatIsNoFileGivesTheDefaultPicture_data();
    void WhatIsNoFileGivesTheDefaultPicture();
    void AFileOfTheSameSizeAndAnotherTimeIsShownAnew();
    void ALargePictureIsNotRead_data();
    void ALargePictureIsNotRead();
};

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
    const auto write = [&](const char* pszPixel, int iMinute) {
        const QString strPath =
            rig.World().WriteFile("t.ppm", QByteArray("P6\n20 20\n255\n") + QByteArray(pszPixel).repeated(400));
        QFile file(strPath);
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime(QDate(2020, 1, 2), QTime(3, iMinute)), QFileDevice::FileModificationTime);
    };
    rig.Record().strPicturePath = rig.World().Path("t.ppm");
    QVERIFY(write("\xFF\x01\x01", 4));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFFFF0101));
    QVERIFY(write("\x01\x01\xFF", 5));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFF0101FF));
}

void RowThumbnailTest::ALargePictureIsNotRead_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("height"); // the highest that is read
    QTest::newRow("of which a part can be read") << QStringLiteral("t.jpg") << 8192;
    QTest::newRow("that can only be read as a whole") << QStringLiteral("t.pbm") << 2048;
}

// Black, 8,192 pixels wide: up to 64 megapixels, or 16.
void RowThumbnailTest::ALargePictureIsNotRead()
{
    QFETCH(QString, file);
    QFETCH(int, height);
    RowRig rig;
    const QImage missing = rig.Painted();
    QVERIFY(missing.pixel(40, 20) != QRgb(0xFF000000));
    rig.Record().strPicturePath = rig.World().Folder() + QLatin1Char('/') + file;
    QVERIFY(Black(height + 1).save(rig.Record().strPicturePath));
    QCOMPARE(rig.Painted(), missing);
    QVERIFY(Black(height).save(rig.Record().strPicturePath));
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFF000000));
}

QTEST_MAIN(RowThumbnailTest)

#include "RowThumbnailTest.moc"
