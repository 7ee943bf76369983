#include "Host/KXGui/Theme.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXSvgPixmap.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

namespace {

const QSize ButtonSize(30, 30);
const QColor Ground(0x11, 0x22, 0x33);
const QColor Glyph(0xdd, 0xee, 0xff);
const QString Template =
    QStringLiteral("<xml><p p-id='1' style='fill:#112233;'/><p p-id='2' style='fill:#ddeeff;'/></xml>");

int Count(const QImage& image, const QColor& color)
{
    int iCount = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            iCount += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return iCount;
}

// How far the colours of a picture lie apart on a background: 0 to 255.
int Spread(const QString& strPicture, const QColor& background)
{
    QImage image = QImage(strPicture);
    QImage canvas(image.size(), QImage::Format_RGB32);
    canvas.fill(background);
    QPainter(&canvas).drawImage(0, 0, image);
    int iLow = 255;
    int iHigh = 0;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            iLow = qMin(iLow, qGray(canvas.pixel(x, y)));
            iHigh = qMax(iHigh, qGray(canvas.pixel(x, y)));
        }
    }
    return iHigh - iLow;
}

} // namespace

// The panel's pictures, on a screen with two pixels to each unit.
class GuiSharpTest : public QObject
{
    Q_OBJECT

private slots:
    void APictureHasThePixelsOfTheScreen();
    void ButtonsAreFilledByTheTemplate_data();
    void ButtonsAreFilledByTheTemplate();
    void ButtonsDiffer();
    void PicturesHaveTheirSize_data();
    void PicturesHaveTheirSize();
    void PicturesShowOnBothTables_data();
    void PicturesShowOnBothTables();
};

void GuiSharpTest::APictureHasThePixelsOfTheScreen()
{
    ScratchDir folder;
    QFile file(folder.filePath(QStringLiteral("half.svg")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<svg xmlns='http://www.w3.org/2000/svg' width='30' height='30'>"
               "<rect width='15.5' height='30' fill='#000000'/>"
               "<rect x='15.5' width='14.5' height='30' fill='#ffffff'/></svg>");
    file.close();
    const QPixmap pixmap = KXSvgPixmap(file.fileName()).normalPixmap(ButtonSize, QString());
    QCOMPARE(pixmap.devicePixelRatio(), 2.0);
    QCOMPARE(pixmap.size(), QSize(60, 60));
    QCOMPARE(pixmap.toImage().pixelColor(30, 30), QColor(Qt::black));
    QCOMPARE(pixmap.toImage().pixelColor(31, 30), QColor(Qt::white));
}

void GuiSharpTest::ButtonsAreFilledByTheTemplate_data()
{
    QTest::addColumn<QString>("path");
    for (const char* pszName : {"btnStop", "btnStart", "btnDelete", "btnReload"})
        QTest::newRow(pszName) << QStringLiteral(":/%1.svg").arg(QLatin1String(pszName));
}

void GuiSharpTest::ButtonsAreFilledByTheTemplate()
{
    QFETCH(QString, path);
    const QImage image = KXSvgPixmap(path).normalPixmap(ButtonSize, Template).toImage();
    const int iGround = Count(image, Ground);
    const int iGlyph = Count(image, Glyph);
    // Of 3,600 pixels the disc covers 2,827; the rest of it are the softened edges.
    QVERIFY2(iGlyph > 150, qPrintable(QString::number(iGlyph)));
    QVERIFY2(iGround > 1500, qPrintable(QString::number(iGround)));
    QVERIFY2(iGround + iGlyph > 2400, qPrintable(QString::number(iGround + iGlyph)));
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(30, 2), Ground);
}

void GuiSharpTest::ButtonsDiffer()
{
    QList<QImage> images;
    for (const char* pszName : {"btnStop", "btnStart", "btnDelete", "btnReload"}) {
        KXSvgPixmap svg(QStringLiteral(":/%1.svg").arg(QLatin1String(pszName)));
        const QImage image = svg.normalPixmap(ButtonSize, Template).toImage();
        QVERIFY2(!images.contains(image), pszName);
        images << image;
    }
    // A paused row offers to go on: a triangle, filled in its middle. A running one offers two bars with a gap.
    QCOMPARE(images.at(0).pixelColor(30, 30), Glyph);
    QCOMPARE(images.at(1).pixelColor(30, 30), Ground);
    QCOMPARE(images.at(1).pixelColor(24, 30), Glyph);
    QCOMPARE(images.at(1).pixelColor(36, 30), Glyph);
}

void GuiSharpTest::PicturesHaveTheirSize_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    QTest::newRow("no task") << ":/pic_notask.svg" << QSize(112, 143);
    QTest::newRow("default thumbnail") << ":/pic_default.svg" << QSize(120, 68);
}

void GuiSharpTest::PicturesHaveTheirSize()
{
    QFETCH(QString, path);
    QTEST(QImage(path).size(), "size");
}

void GuiSharpTest::PicturesShowOnBothTables_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("bDark");
    for (const bool bDark : {false, true}) {
        QTest::addRow("no task, %s", bDark ? "dark" : "light") << ":/pic_notask.svg" << bDark;
        QTest::addRow("default thumbnail, %s", bDark ? "dark" : "light") << ":/pic_default.svg" << bDark;
    }
}

void GuiSharpTest::PicturesShowOnBothTables()
{
    QFETCH(QString, path);
    QFETCH(bool, bDark);
    KXHost::SetDarkTheme(bDark);
    const int iSpread = Spread(path, KXColor::color(QStringLiteral("pc011"), 1.0));
    KXHost::SetDarkTheme(false);
    QVERIFY2(iSpread > 60, qPrintable(QString::number(iSpread)));
}

KX_TEST_MAIN(GuiSharpTest)
{
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    GuiSharpTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "GuiSharpTest.moc"
