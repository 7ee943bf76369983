// A row as it is painted: probed by a few pixels.

#include "RowRig.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtWidgets/QApplication>

namespace {

constexpr QRgb Accent = 0xFF1F6FEB; // pc001 of the light table
constexpr QRgb Track = 0xFFE1E6ED;  // pc010
constexpr QRect NameArea(170, 8, 300, 22);
constexpr QRect StateArea(170, 54, 300, 22);

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

// The colours that occur in a part of a picture, but for white and blends of text.
bool Contains(const QImage& image, const QRect& part, QRgb color)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.pixel(x, y) == color)
                return true;
        }
    }
    return false;
}

} // namespace

class RowPaintTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void ARowIs610By88AndKeyedByItsRecordId();
    void TheTrackLiesBehindTheFill();
    void TheFillGrowsWithWhatWasReceived();
    void StateTextsHaveTheirColour_data();
    void StateTextsHaveTheirColour();
    void AStateWithoutATextPaintsNone();
    void TheNameStandsInTheMainColour();
    void AThumbnailShowsItsTopLeftUnscaledWithRoundCorners();
    void ASmallThumbnailIsNotScaledUp();
    void AMissingThumbnailGivesTheDefaultPicture();
    void AThumbnailThatIsNoPictureGivesTheDefaultPicture();
    void AThumbnailThatAppearsOrChangesIsShownAtTheNextPaint();
    void APictureOfMoreThan64MegapixelsIsNotRead();
    void PausedAndFailedRowsStartOver_data();
    void PausedAndFailedRowsStartOver();
    void TheSecondLayoutMovesTheButtonsBelow();
};

// The thin letters of some fonts would have no pixel of their full colour.
void RowPaintTest::initTestCase()
{
    QFont font = QApplication::font();
    font.setStyleStrategy(QFont::NoAntialias);
    QApplication::setFont(font);
}

void RowPaintTest::ARowIs610By88AndKeyedByItsRecordId()
{
    RowRig rig;
    QCOMPARE(rig.Row().boundingRect(), QRectF(0, 0, 610, 88));
    QCOMPARE(rig.Row().data(99).toString(), QStringLiteral("r"));

    const auto pOther = std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>();
    pOther->strRecordId = QStringLiteral("other");
    rig.Row().UpdateRecord(pOther);
    QCOMPARE(rig.Row().data(99).toString(), QStringLiteral("r"));
    rig.Row().SetRecord(pOther);
    QCOMPARE(rig.Row().data(99).toString(), QStringLiteral("other"));
}

void RowPaintTest::TheTrackLiesBehindTheFill()
{
    RowRig rig;
    rig.Record().lReceivedSize = 500;
    const QImage waiting = rig.Painted();
    for (const QPoint& pos : {QPoint(175, 41), QPoint(320, 38), QPoint(320, 43), QPoint(466, 41)})
        QCOMPARE(waiting.pixel(pos), Track);
    for (const QPoint& pos : {QPoint(169, 41), QPoint(471, 41), QPoint(320, 37), QPoint(320, 45)})
        QCOMPARE(waiting.pixel(pos), QRgb(0xFFFFFFFF));
}

void RowPaintTest::TheFillGrowsWithWhatWasReceived()
{
    RowRig rig;
    rig.Row().SetState(1);
    rig.Record().lReceivedSize = 500;
    const QImage half = rig.Painted();
    QCOMPARE(half.pixel(175, 41), Accent);
    QCOMPARE(half.pixel(315, 41), Accent);
    QCOMPARE(half.pixel(325, 41), Track);

    rig.Record().lReceivedSize = 1500;
    QCOMPARE(rig.Painted().pixel(466, 41), Accent);
}

void RowPaintTest::StateTextsHaveTheirColour_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QRgb>("color");
    QTest::newRow("waiting: secondary text") << 0 << QRgb(0xFF66707F);
    QTest::newRow("downloading: accent") << 1 << QRgb(0xFF1F6FEB);
    QTest::newRow("failed: error") << 3 << QRgb(0xFFD93036);
    QTest::newRow("paused: secondary text") << 5 << QRgb(0xFF66707F);
}

void RowPaintTest::StateTextsHaveTheirColour()
{
    QFETCH(int, state);
    QFETCH(QRgb, color);
    RowRig rig;
    rig.Row().SetState(state);
    QVERIFY(Contains(rig.Painted(), StateArea, color));
}

void RowPaintTest::AStateWithoutATextPaintsNone()
{
    RowRig rig;
    for (const int iState : {2, 4, 77}) {
        rig.Row().SetState(iState);
        QVERIFY(!rig.HasInk(StateArea));
    }
}

void RowPaintTest::TheNameStandsInTheMainColour()
{
    RowRig rig;
    QVERIFY(Contains(rig.Painted(), NameArea, 0xFF1D2430));
    rig.Record().strFileName.clear();
    QVERIFY(!rig.HasInk(NameArea));
}

void RowPaintTest::AThumbnailShowsItsTopLeftUnscaledWithRoundCorners()
{
    RowRig rig;
    rig.Record().strPicturePath = rig.World().WriteFile("t.png", Picture(QSize(400, 300), "PNG"));
    const QImage image = rig.Painted();
    QCOMPARE(image.pixel(40, 20), QRgb(0xFFFF0000));
    QCOMPARE(image.pixel(89, 43), QRgb(0xFFFF0000));
    QCOMPARE(image.pixel(91, 43), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(149, 40), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(30, 10), QRgb(0xFFFFFFFF));  // a corner
    QCOMPARE(image.pixel(149, 77), QRgb(0xFFFFFFFF)); // the opposite one
    QCOMPARE(image.pixel(150, 40), QRgb(0xFFFFFFFF));
    QCOMPARE(image.pixel(90, 78), QRgb(0xFFFFFFFF));
}

void RowPaintTest::ASmallThumbnailIsNotScaledUp()
{
    RowRig rig;
    rig.Record().strPicturePath = rig.World().WriteFile("t.png", Picture(QSize(80, 50), "PNG"));
    const QImage image = rig.Painted();
    QCOMPARE(image.pixel(100, 50), QRgb(0xFF0000FF));
    QCOMPARE(image.pixel(112, 50), QRgb(0xFFFFFFFF));
    QCOMPARE(image.pixel(100, 62), QRgb(0xFFFFFFFF));
}

void RowPaintTest::AMissingThumbnailGivesTheDefaultPicture()
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

void RowPaintTest::AThumbnailThatIsNoPictureGivesTheDefaultPicture()
{
    RowRig rig;
    const QImage missing = rig.Painted();
    rig.Record().strPicturePath = rig.World().WriteFile("t.jpg", "no picture at all");
    QCOMPARE(rig.Painted(), missing);
}

void RowPaintTest::AThumbnailThatAppearsOrChangesIsShownAtTheNextPaint()
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

// 30,000 by 30,000 pixels in a few bytes: the header of a portable bitmap alone.
void RowPaintTest::APictureOfMoreThan64MegapixelsIsNotRead()
{
    RowRig rig;
    const QImage missing = rig.Painted();
    rig.Record().strPicturePath = rig.World().WriteFile("t.ppm", "P6\n30000 30000\n255\n\xFF\x01\x01");
    QCOMPARE(rig.Painted(), missing);
    rig.Record().strPicturePath = rig.World().WriteFile("u.ppm", "P6\n1 1\n255\n\xFF\x01\x01");
    QCOMPARE(rig.Painted().pixel(40, 20), QRgb(0xFFFFFFFF)); // a small one of the same kind is read
}

void RowPaintTest::PausedAndFailedRowsStartOver_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<qint64>("received");
    QTest::newRow("waiting keeps") << 0 << qint64(700);
    QTest::newRow("downloading keeps") << 1 << qint64(700);
    QTest::newRow("finished keeps") << 2 << qint64(700);
    QTest::newRow("failed starts over") << 3 << qint64(0);
    QTest::newRow("paused starts over") << 5 << qint64(0);
}

void RowPaintTest::PausedAndFailedRowsStartOver()
{
    QFETCH(int, state);
    RowRig rig;
    rig.Record().lReceivedSize = 700;
    rig.Row().SetState(state);
    QTEST(rig.Record().lReceivedSize, "received");
}

void RowPaintTest::TheSecondLayoutMovesTheButtonsBelow()
{
    RowRig rig;
    const QList<QGraphicsItem*> buttons = rig.Row().childItems();
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons[0]->pos(), QPointF(550, 26));
    QCOMPARE(buttons[1]->pos(), QPointF(500, 26));
    rig.Row().PlaceButtonsBelow();
    QCOMPARE(buttons[0]->pos(), QPointF(180, 90));
    QCOMPARE(buttons[1]->pos(), QPointF(220, 90));
}

QTEST_MAIN(RowPaintTest)

#include "RowPaintTest.moc"
