// A row as it is painted: probed by a few pixels.

#include "PaintedRegion.h"
#include "RowRig.h"
#include "TestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>

#include <functional>

namespace {

constexpr QRgb Accent = 0xFF1F6FEB; // pc001 of the light table
constexpr QRgb Track = 0xFFE1E6ED;  // pc010
constexpr QRect NameArea(170, 8, 300, 22);
constexpr QRect StateArea(170, 54, 300, 22);

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

// A text as it should be painted, on white.
QImage Text(const QPointF& baseline, const QString& strText, QRgb color)
{
    QImage image(610, 88, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QColor(color));
    painter.drawText(baseline, strText);
    return image;
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
    void StateTextsHaveTheirPlaceAndColour_data();
    void StateTextsHaveTheirPlaceAndColour();
    void AStateWithoutATextPaintsNone();
    void TheBarsHaveRoundEnds();
    void TheNameStandsInItsPlaceInTheMainColour();
    void WhatTurnsANameIsLeftOut();
    void ALongNameIsNotShortened();
    void EachChangeRepaintsTheRow_data();
    void EachChangeRepaintsTheRow();
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
    for (const QPoint& pos :
         {QPoint(169, 41), QPoint(470, 41), QPoint(320, 37), QPoint(320, 44), // below it, and its corners
          QPoint(170, 38), QPoint(170, 43)})
        QCOMPARE(waiting.pixel(pos), QRgb(0xFFFFFFFF));
}

void RowPaintTest::TheFillGrowsWithWhatWasReceived()
{
    RowRig rig;
    rig.SetState(1);
    rig.Record().lReceivedSize = 500;
    const QImage half = rig.Painted();
    QCOMPARE(half.pixel(175, 41), Accent);
    QCOMPARE(half.pixel(315, 41), Accent);
    QCOMPARE(half.pixel(325, 41), Track);

    rig.Record().lReceivedSize = 1500;
    QCOMPARE(rig.Painted().pixel(466, 41), Accent);
}

// Magnified, for in single pixels one small radius looks like another.
void RowPaintTest::TheBarsHaveRoundEnds()
{
    RowRig rig;
    rig.SetState(1);
    rig.Record().lReceivedSize = 500;
    const auto magnified = [](const std::function<void(QPainter&)>& paint) {
        QImage image(610 * 8, 88 * 8, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(8, 8);
        paint(painter);
        painter.end();
        return image.copy(165 * 8, 34 * 8, 310 * 8, 14 * 8);
    };
    const QImage expected = magnified([](QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(Track));
        painter.drawRoundedRect(QRectF(170, 38, 300, 6), 2, 2);
        painter.setBrush(QColor(Accent));
        painter.drawRoundedRect(QRectF(170, 38, 150, 6), 2, 2);
    });
    QCOMPARE(magnified([&](QPainter& painter) { rig.Row().paint(&painter, nullptr, nullptr); }), expected);
}

void RowPaintTest::StateTextsHaveTheirPlaceAndColour_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QRgb>("color");
    QTest::newRow("waiting: secondary text") << 0 << QStringLiteral("Waiting") << QRgb(0xFF66707F);
    QTest::newRow("downloading: accent") << 1 << QStringLiteral("42%") << QRgb(0xFF1F6FEB);
    QTest::newRow("failed: error") << 3 << QStringLiteral("Download failed") << QRgb(0xFFD93036);
    QTest::newRow("paused: secondary text") << 5 << QStringLiteral("Paused") << QRgb(0xFF66707F);
}

void RowPaintTest::StateTextsHaveTheirPlaceAndColour()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QFETCH(QRgb, color);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/KXRecordManage/Translates/KXRecordManage_en.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator)); // removed as it dies
    RowRig rig;
    rig.SetState(state);
    rig.Record().lReceivedSize = 420;
    const QImage expected = Text(QPointF(170, 70), text, color);
    QVERIFY(Contains(expected, StateArea, color));
    QCOMPARE(rig.Painted().copy(StateArea), expected.copy(StateArea));
}

void RowPaintTest::AStateWithoutATextPaintsNone()
{
    RowRig rig;
    for (const int iState : {2, 4, 77}) {
        rig.SetState(iState);
        QVERIFY(!rig.HasInk(StateArea));
    }
}

void RowPaintTest::TheNameStandsInItsPlaceInTheMainColour()
{
    RowRig rig;
    const QImage expected = Text(QPointF(170, 25), QStringLiteral("Front door.mp4"), 0xFF1D2430);
    QVERIFY(Contains(expected, NameArea, 0xFF1D2430));
    QCOMPARE(rig.Painted().copy(NameArea), expected.copy(NameArea));
    rig.Record().strFileName.clear();
    QVERIFY(!rig.HasInk(NameArea));
}

void RowPaintTest::WhatTurnsANameIsLeftOut()
{
    RowRig rig;
    rig.Record().strFileName = QStringLiteral("clip exe.jpg");
    const QImage expected = rig.Painted().copy(NameArea);
    for (const ushort uTurn :
         {0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066, 0x2067, 0x2068, 0x2069}) {
        rig.Record().strFileName = QStringLiteral("clip %1exe.jpg").arg(QChar(uTurn));
        QVERIFY2(rig.Painted().copy(NameArea) == expected, qPrintable(QString::number(uTurn, 16)));
    }
    rig.Record().strFileName = QStringLiteral("clip gpj.exe");
    QVERIFY(rig.Painted().copy(NameArea) != expected);
}

void RowPaintTest::ALongNameIsNotShortened()
{
    RowRig rig;
    const QRect rightEdge(585, 8, 25, 18);
    QVERIFY(!rig.HasInk(rightEdge));
    rig.Record().strFileName = QString(200, QLatin1Char('M'));
    QVERIFY(rig.HasInk(rightEdge));
}

void RowPaintTest::EachChangeRepaintsTheRow_data()
{
    QTest::addColumn<int>("change");
    QTest::newRow("its state") << 0;
    QTest::newRow("another record") << 1;
    QTest::newRow("what its record says") << 2;
}

void RowPaintTest::EachChangeRepaintsTheRow()
{
    QFETCH(int, change);
    RowRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(rig.Viewport()));
    PaintedRegion painted(*rig.Viewport());
    QVERIFY(!painted.Contains(QRect(170, 30, 300, 40)));
    if (change == 0)
        rig.SetState(5);
    else if (change == 1)
        rig.Row().SetRecord(std::make_shared<KXDownLoadList::DownloadDeviceRecordInfo>());
    else
        rig.Row().UpdateRecord(rig.Row().Record());
    QTRY_VERIFY(painted.Contains(QRect(170, 30, 300, 40)));
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
    rig.SetState(state);
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

KX_TEST(RowPaintTest, QApplication)

#include "RowPaintTest.moc"
