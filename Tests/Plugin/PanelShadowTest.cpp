// The panel's shadow against Qt's own: the same picture from both.

#include "DownloadWidget/PanelShadow.h"
#include "TestMain.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace {

constexpr int Tolerance = 2; // of 255

// Translucent and painting what its style sheet says, as the panel, in a larger widget: one that is rendered by itself
// loses Qt's effect.
class Frame : public QWidget
{
    Q_OBJECT

public:
    explicit Frame(QGraphicsDropShadowEffect* pShadow)
    {
        setParent(&m_stage);
        setAttribute(Qt::WA_TranslucentBackground);
        m_stage.resize(400, 300);
        setObjectName(QStringLiteral("Frame"));
        setStyleSheet(QStringLiteral("#Frame { background: #FFFFFF; border-radius: 4px; border: 1px solid #C9D0DA; }"));
        resize(300, 200);
        pShadow->setBlurRadius(10);
        pShadow->setColor(QColor(0xC9, 0xD0, 0xDA));
        pShadow->setOffset(0, 0);
        setGraphicsEffect(pShadow);
        show();
    }
    ~Frame() override { setParent(nullptr); }

    QGraphicsDropShadowEffect& Shadow() { return *qobject_cast<QGraphicsDropShadowEffect*>(graphicsEffect()); }
    QImage Rendered(double dRatio, const QRegion& part = QRegion())
    {
        iPaints = 0;
        QImage image(m_stage.size() * dRatio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(dRatio);
        image.fill(Qt::transparent);
        m_stage.render(&image, part.boundingRect().topLeft(), part, QWidget::DrawChildren);
        return image;
    }

    int iPaints = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        ++iPaints;
        QStyleOption option;
        option.initFrom(this);
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    }

private:
    QWidget m_stage;
};

// The greatest difference of any channel of any pixel; 255 when they are of different sizes.
int Difference(const QImage& left, const QImage& right)
{
    if (left.size() != right.size())
        return 255;
    int iMost = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int i = 0; i < left.width() * 4; ++i)
            iMost = std::max(iMost, std::abs(left.constScanLine(y)[i] - right.constScanLine(y)[i]));
    }
    return iMost;
}

using Change = std::function<void(Frame&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class PanelShadowTest : public QObject
{
    Q_OBJECT

private slots:
    void ItLooksAsQtDrawsIt_data();
    void ItLooksAsQtDrawsIt();
    void TheShadowIsSeenAroundThePanel();
    void ItIsBlurredOnce();
    void APartOfItLooksTheSame();
};

void PanelShadowTest::ItLooksAsQtDrawsIt_data()
{
    QTest::addColumn<Change>("change");
    const auto add = [](const char* pszName, const Change& change) { QTest::newRow(pszName) << change; };
    add("another colour", [](Frame& frame) { frame.Shadow().setColor(QColor(0x0A, 0x0D, 0x11)); });
    add("a translucent colour", [](Frame& frame) { frame.Shadow().setColor(QColor(200, 0, 0, 90)); });
    add("another size", [](Frame& frame) { frame.resize(320, 180); });
    add("an odd size", [](Frame& frame) { frame.resize(301, 201); });
    add("another place", [](Frame& frame) { frame.move(30, 40); });
}

// Before and after the change, and on screens of different sharpness.
void PanelShadowTest::ItLooksAsQtDrawsIt()
{
    QFETCH(Change, change);
    Frame ours(new PanelShadow);
    Frame qts(new QGraphicsDropShadowEffect);
    for (const double dRatio : {1.0, 1.5, 2.0, 1.0}) {
        const int iDifference = Difference(ours.Rendered(dRatio), qts.Rendered(dRatio));
        QVERIFY2(iDifference <= Tolerance, qPrintable(QStringLiteral("%1 at %2").arg(iDifference).arg(dRatio)));
    }
    change(ours);
    change(qts);
    for (const double dRatio : {1.0, 1.5, 2.0, 1.0}) {
        const int iDifference = Difference(ours.Rendered(dRatio), qts.Rendered(dRatio));
        QVERIFY2(iDifference <= Tolerance, qPrintable(QStringLiteral("%1 at %2").arg(iDifference).arg(dRatio)));
    }
}

void PanelShadowTest::TheShadowIsSeenAroundThePanel()
{
    Frame frame(new PanelShadow);
    frame.Shadow().setColor(Qt::red);
    const QImage image = frame.Rendered(1);
    const QColor beside = image.pixelColor(302, 100);
    QVERIFY2(beside.alpha() > 20 && beside.alpha() < 100, qPrintable(beside.name(QColor::HexArgb)));
    QVERIFY(beside.red() > 240 && beside.green() < 10);
    QCOMPARE(image.pixelColor(150, 100), QColor(Qt::white));
    QCOMPARE(image.pixelColor(312, 100).alpha(), 0);
}

// For the blur, the panel is painted once more.
void PanelShadowTest::ItIsBlurredOnce()
{
    Frame frame(new PanelShadow);
    const auto paints = [&frame](double dRatio) {
        frame.Rendered(dRatio);
        return frame.iPaints;
    };
    QCOMPARE(paints(1), 2);
    QCOMPARE(paints(1), 1);
    QCOMPARE(paints(2), 2);
    QCOMPARE(paints(2), 1);
    frame.Shadow().setColor(Qt::red);
    QCOMPARE(paints(2), 2);
    frame.resize(320, 180);
    QCOMPARE(paints(2), 2);
}

void PanelShadowTest::APartOfItLooksTheSame()
{
    Frame ours(new PanelShadow);
    Frame qts(new QGraphicsDropShadowEffect);
    const QRegion parts[] = {QRect(0, 0, 3, 3), QRect(290, 150, 20, 70), QRect(100, 100, 20, 20),
                             QRegion(QRect(2, 1, 60, 50)) + QRect(280, 190, 30, 5)};
    for (const QRegion& part : parts) {
        QVERIFY(Difference(ours.Rendered(1, part), qts.Rendered(1, part)) <= Tolerance);
        QVERIFY(Difference(ours.Rendered(2, part), qts.Rendered(2, part)) <= Tolerance);
    }
}

KX_TEST(PanelShadowTest, QApplication)

#include "PanelShadowTest.moc"
