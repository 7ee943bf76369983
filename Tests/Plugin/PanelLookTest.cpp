// What is seen of the panel: its frame, the pictures of its rows' buttons, and what is painted anew when.

#include "ChangedRegion.h"
#include "PaintedRegion.h"
#include "PanelRig.h"
#include "PluginRig.h"
#include "TestMain.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QScrollBar>

namespace {

constexpr QRect ThumbnailOfFirstRow(30, 10, 120, 68);

// Well inside the row at that position.
QRectF InsideRow(int iIndex)
{
    return QRectF(1, iIndex * 88 + 1, 580, 86);
}

// The picture of that button, in its normal form.
QImage Picture(const QString& strName)
{
    KXSvgPixmap pixmap(QStringLiteral(":/KXRecordManage/images/%1.svg").arg(strName), nullptr);
    return pixmap
        .normalPixmap(
            QSize(30, 30),
            QStringLiteral("<xml><p p-id='1' style='fill:#edf1f6;'/><p p-id='2' style='fill:#1d2430;'/></xml>"))
        .toImage();
}

// What a row's button at that position shows.
QImage Shown(const DownloadItem& row, const QPointF& pos)
{
    for (QGraphicsItem* pChild : row.childItems()) {
        if (pChild->pos() == pos)
            return static_cast<QGraphicsPixmapItem*>(pChild)->pixmap().toImage();
    }
    return QImage();
}

// A panel on screens of any sharpness.
class MovedPanel : public DownloadWidget
{
public:
    qreal dRatio = 1;

protected:
    int metric(PaintDeviceMetric what) const override
    {
        return what == PdmDevicePixelRatioScaled ? qRound(dRatio * devicePixelRatioFScale())
                                                 : DownloadWidget::metric(what);
    }
};

} // namespace

class PanelLookTest : public QObject
{
    Q_OBJECT

private slots:
    void TheFrameIsPaintedByThePanelItself();
    void TheEmptyPictureIsSharpOnEachScreen();
    void ItComesUpInTheMiddleOfTheScreen();
    void RestoredItIsPaintedWhole();
    void TheButtonPicturesFollowTheState_data();
    void TheButtonPicturesFollowTheState();
    void ARowStandsInItsPlaceAtOnce();
    void ScrollingTheBarRepaintsRowsWithPictures();
    void AFinishRepaintsTheRowsWithPictures();
    void APictureThatArrivesIsPainted_data();
    void APictureThatArrivesIsPainted();
    void RowsFollowALanguage();
};

// A translucent window gets no background from Qt.
void PanelLookTest::TheFrameIsPaintedByThePanelItself()
{
    PluginRig rig;
    QWidget& panel = *rig.Panel();
    QVERIFY(panel.windowFlags().testFlag(Qt::FramelessWindowHint));
    QImage image(panel.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    panel.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(image.size(), QSize(630, 564));
    for (const QPoint& border : {QPoint(315, 0), QPoint(0, 282), QPoint(629, 282), QPoint(315, 563)})
        QCOMPARE(image.pixel(border), QRgb(0xFFC9D0DA));
    for (const QPoint& inside : {QPoint(315, 1), QPoint(5, 282), QPoint(624, 282), QPoint(315, 558)})
        QCOMPARE(image.pixel(inside), QRgb(0xFFFFFFFF));
    QVERIFY(qAlpha(image.pixel(0, 0)) < 128); // a round corner
}

void PanelLookTest::TheEmptyPictureIsSharpOnEachScreen()
{
    const FakeWorld world;
    MovedPanel panel;
    const auto paintedAt = [&panel](qreal dRatio) {
        panel.dRatio = dRatio;
        QImage canvas(630, 564, QImage::Format_ARGB32_Premultiplied);
        panel.render(&canvas);
        return panel.findChild<QLabel*>(QStringLiteral("labelPic"))->property("pixmap").value<QPixmap>().toImage();
    };
    const QImage plain = paintedAt(1);
    QCOMPARE(plain.size(), QSize(112, 143));
    const struct
    {
        qreal dRatio;
        QSize size;
    } screens[] = {{1.5, {168, 215}}, {2, {224, 286}}, {1, {112, 143}}};
    for (const auto& screen : screens) {
        const QImage picture = paintedAt(screen.dRatio);
        QCOMPARE(picture.size(), screen.size);
        QCOMPARE(picture.devicePixelRatio(), screen.dRatio);
        const bool bEnlarged = picture == plain.scaled(screen.size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QCOMPARE(bEnlarged, screen.dRatio == 1);
    }
}

// As dialogs do, which leave room for a frame that this one has not.
void PanelLookTest::ItComesUpInTheMiddleOfTheScreen()
{
    PanelRig rig;
    rig.Show();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint distance = rig.Panel().geometry().center() - screen.center();
    QVERIFY2(qAbs(distance.x()) <= 20 && qAbs(distance.y()) <= 50,
             qPrintable(QStringLiteral("%1, %2").arg(distance.x()).arg(distance.y())));
}

// The system shows again what was visible before.
void PanelLookTest::RestoredItIsPaintedWhole()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    PaintedRegion panel(rig.Panel());
    PaintedRegion rows(*rig.View().viewport());
    QVERIFY(!panel.Contains(QRect(0, 0, 630, 10)));
    QShowEvent shown;
    QCoreApplication::sendEvent(&rig.Panel(), &shown);
    QTRY_VERIFY(panel.Contains(QRect(0, 0, 630, 10)));
    QTRY_VERIFY(rows.Contains(QRect(0, 0, 600, 300)));
}

void PanelLookTest::TheButtonPicturesFollowTheState_data()
{
    QTest::addColumn<int>("code"); // -1: none, -2: the engine stopped
    QTest::addColumn<QString>("picture");
    QTest::newRow("waiting") << -1 << QStringLiteral("btnStart");
    QTest::newRow("downloading") << 1 << QStringLiteral("btnStart");
    QTest::newRow("failed") << 0 << QStringLiteral("btnReload");
    QTest::newRow("paused") << -2 << QStringLiteral("btnStop");
}

void PanelLookTest::TheButtonPicturesFollowTheState()
{
    QFETCH(int, code);
    QFETCH(QString, picture);
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a"));
    if (code == -2)
        rig.Panel().OnStopAllDownload();
    else if (code >= 0)
        rig.Panel().OnDownloadRecordStates(QStringLiteral("a"), code, false);
    const QImage shown = Shown(*rig.Row("a"), QPointF(500, 26));
    QVERIFY(!shown.isNull());
    for (const char* pszName : {"btnStop", "btnStart", "btnDelete", "btnReload"}) {
        const QString strName = QString::fromUtf8(pszName);
        QCOMPARE(shown == Picture(strName), strName == picture);
    }
    QCOMPARE(Shown(*rig.Row("a"), QPointF(550, 26)), Picture(QStringLiteral("btnDelete")));
}

void PanelLookTest::ARowStandsInItsPlaceAtOnce()
{
    PanelRig rig;
    rig.Send({"a"});
    rig.Show();
    rig.Panel().AddDownloadInfo(rig.Made("b")); // nothing is delivered meanwhile
    QCOMPARE(rig.Row("b")->pos(), QPointF(0, 88));
    QCOMPARE(rig.Row("b")->scene(), rig.View().scene());
}

void PanelLookTest::ScrollingTheBarRepaintsRowsWithPictures()
{
    PanelRig rig;
    rig.Send({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
    rig.Show();
    rig.Record("d").strPicturePath = QStringLiteral("/none.jpg");
    const ChangedRegion changed(*rig.View().scene());
    rig.View().verticalScrollBar()->setValue(10);
    QTRY_VERIFY(changed.Contains(InsideRow(3)));
    QVERIFY(!changed.Touches(InsideRow(2)));
    QVERIFY(!changed.Touches(InsideRow(4)));
}

void PanelLookTest::AFinishRepaintsTheRowsWithPictures()
{
    PanelRig rig;
    rig.Send({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"});
    rig.Show();
    rig.Record("a").strPicturePath = QStringLiteral("/none.jpg");
    const ChangedRegion changed(*rig.View().scene());
    rig.Panel().OnDownloadRecordStates(QStringLiteral("l"), 2, false); // out of view
    QTRY_VERIFY(changed.Contains(InsideRow(0)));
    QVERIFY(!changed.Touches(InsideRow(1)));
}

void PanelLookTest::APictureThatArrivesIsPainted_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("cover of a cloud recording") << 0;
    QTest::newRow("thumbnail of a device recording") << 1;
}

void PanelLookTest::APictureThatArrivesIsPainted()
{
    QFETCH(int, type);
    PanelRig rig;
    rig.Panel().AddDownloadInfo(rig.Made("a", type));
    rig.Panel().AddDownloadInfo(rig.Made("b", type));
    rig.Show();
    PaintedRegion painted(*rig.View().viewport());
    const ChangedRegion changed(*rig.View().scene());
    QVERIFY(!painted.Contains(ThumbnailOfFirstRow));
    if (type == 0)
        rig.Panel().UpdateCloudPictureInfo(QStringLiteral("a"), QStringLiteral("/cover.jpg"));
    else
        rig.Panel().OnCopyPictureFinished(QStringLiteral("a"), QStringLiteral("/thumbnail.jpg"));
    QTRY_VERIFY(painted.Contains(ThumbnailOfFirstRow));
    QVERIFY(!changed.Touches(InsideRow(1)));
}

void PanelLookTest::RowsFollowALanguage()
{
    PanelRig rig;
    rig.Send({"a", "b"});
    rig.Show();
    PaintedRegion painted(*rig.View().viewport());
    rig.Panel().RefreshTexts();
    QTRY_VERIFY(painted.Contains(QRect(170, 54, 300, 22))); // the state texts
    QTRY_VERIFY(painted.Contains(QRect(170, 142, 300, 22)));
}

KX_TEST(PanelLookTest, QApplication)

#include "PanelLookTest.moc"
