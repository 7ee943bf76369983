// The panel's shadow against Qt's own: the same picture from both.

#include "DownloadWidget/PanelShadow.h"

#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace {

constexpr int Tolerance = 2; // of 255

const char* const LightSheet = "#Frame { background: #FFFFFF; border-radius: 4px; border: 1px solid #C9D0DA; }";

// A borderless window that paints what its style sheet says, as the host's dialogs do. A shadow that draws it as a
// whole has it painted once; one that looks at its edges before has it painted more often.
class Frame : public QWidget
{
    Q_OBJECT

public:
    explicit Frame(QWidget* pParent, QGraphicsDropShadowEffect* pShadow = nullptr)
        : QWidget(pParent)
    {
        setObjectName(QStringLiteral("Frame"));
        setAttribute(Qt::WA_TranslucentBackground);
        setWindowFlag(Qt::FramelessWindowHint, !pParent);
        setStyleSheet(QString::fromUtf8(LightSheet));
        resize(300, 200);
        auto* pChild = new QWidget(this);
        pChild->setObjectName(QStringLiteral("Child"));
        pChild->setStyleSheet(QStringLiteral("#Child { background: rgba(40, 90, 200, 120); }"));
        pChild->setAttribute(Qt::WA_StyledBackground);
        pChild->setGeometry(30, 40, 100, 50);
        UseShadow(pShadow ? pShadow : new PanelShadow(*this));
    }

    void UseShadow(QGraphicsDropShadowEffect* pShadow)
    {
        pShadow->setBlurRadius(10);
        pShadow->setColor(QColor(0xC9, 0xD0, 0xDA));
        pShadow->setOffset(0, 0);
        setGraphicsEffect(pShadow);
    }
    QGraphicsDropShadowEffect& Shadow() { return *qobject_cast<QGraphicsDropShadowEffect*>(graphicsEffect()); }
    QWidget& Child() { return *findChild<QWidget*>(QStringLiteral("Child")); }

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
};

// A frame on a stage, for Qt's effects are not drawn in a widget that is rendered by itself.
class Stage : public QWidget
{
public:
    explicit Stage(QGraphicsDropShadowEffect* pShadow = nullptr)
        : frame(this, pShadow)
    {}

    Frame frame;
};

using Change = std::function<void(Frame&)>;
using Render = std::function<void(QWidget&, QImage&)>;

void RenderAll(QWidget& stage, QImage& image)
{
    stage.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
}

QImage Rendered(Stage& stage, int iRatio, const Render& render = RenderAll)
{
    stage.resize(stage.frame.size());
    QImage image(stage.size() * iRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(iRatio);
    image.fill(Qt::transparent);
    render(stage, image);
    return image;
}

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

// Ours and Qt's, changed alike.
class Pair
{
public:
    Stage& Ours() { return m_ours; }
    void Both(const Change& change)
    {
        change(m_ours.frame);
        change(m_qts.frame);
    }
    int Differ(int iRatio = 1, const Render& render = RenderAll)
    {
        m_ours.frame.iPaints = 0;
        return Difference(Rendered(m_ours, iRatio, render), Rendered(m_qts, iRatio, render));
    }
    // Whether the last picture was made by Qt's own draw.
    bool WasQts() const { return m_ours.frame.iPaints == 1; }

private:
    Stage m_ours;
    Stage m_qts{new QGraphicsDropShadowEffect};
};

QImage OnScreen(const QWidget& window)
{
    const QPixmap shown = QGuiApplication::primaryScreen()->grabWindow(window.winId());
    return shown.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

Change Sheet(const char* pszRules)
{
    return [=](Frame& frame) { frame.setStyleSheet(QStringLiteral("#Frame { %1 }").arg(QString::fromUtf8(pszRules))); };
}

void AddLook(const char* pszName, const Change& change)
{
    QTest::newRow(pszName) << change;
}

} // namespace

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(Render)

class PanelShadowTest : public QObject
{
    Q_OBJECT

private slots:
    void ItIsADropShadowOfThePanel();
    void TheShadowIsSeenInTheCorners();
    void ARectangleLooksAsQtDrawsIt_data();
    void ARectangleLooksAsQtDrawsIt();
    void AnOddSizeOfDoublePixelsIsDrawnByQt();
    void InALargerWindowItIsDrawnByQt();
    void AnythingElseIsDrawnByQt_data();
    void AnythingElseIsDrawnByQt();
    void ItFollowsChanges();
    void AnUnusualPainterIsLeftToQt_data();
    void AnUnusualPainterIsLeftToQt();
    void APartOfThePanelLooksTheSame();
    void PartialUpdatesOnTheScreenLookTheSame();
};

void PanelShadowTest::ItIsADropShadowOfThePanel()
{
    Frame frame(nullptr);
    QVERIFY(frame.graphicsEffect()->inherits("QGraphicsDropShadowEffect"));
    QCOMPARE(frame.findChildren<QGraphicsDropShadowEffect*>().size(), 1);
    QCOMPARE(frame.graphicsEffect()->parent(), &frame);
}

void PanelShadowTest::TheShadowIsSeenInTheCorners()
{
    Stage stage;
    stage.frame.Shadow().setColor(Qt::red);
    const QImage image = Rendered(stage, 1);
    for (const QPoint& corner : {QPoint(0, 0), QPoint(299, 0), QPoint(0, 199), QPoint(299, 199)}) {
        const QColor color = image.pixelColor(corner);
        QVERIFY(color.alpha() > 20 && color.alpha() < 255);
        QVERIFY(color.red() > 240 && color.green() < 60);
    }
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::white));
}

void PanelShadowTest::ARectangleLooksAsQtDrawsIt_data()
{
    QTest::addColumn<Change>("change");
    AddLook("light", [](Frame&) {});
    AddLook("dark", [](Frame& frame) {
        Sheet("background: #20252C; border-radius: 4px; border: 1px solid #0A0D11;")(frame);
        frame.Shadow().setColor(QColor(0x0A, 0x0D, 0x11));
    });
    AddLook("translucent shadow", [](Frame& frame) { frame.Shadow().setColor(QColor(200, 0, 0, 90)); });
    AddLook("round corners", Sheet("background: white; border-radius: 12px;"));
    AddLook("corners that differ", Sheet("background: white; border-top-left-radius: 9px; border-radius: 3px;"));
    AddLook("sharp corners", Sheet("background: white;"));
    AddLook("small blur", [](Frame& frame) { frame.Shadow().setBlurRadius(4); });
    AddLook("odd blur", [](Frame& frame) { frame.Shadow().setBlurRadius(7); });
    AddLook("wide blur", [](Frame& frame) { frame.Shadow().setBlurRadius(25); });
    AddLook("the panel's size", [](Frame& frame) { frame.resize(630, 564); });
    AddLook("odd width", [](Frame& frame) { frame.resize(301, 200); });
    AddLook("odd height", [](Frame& frame) { frame.resize(300, 201); });
    AddLook("odd both", [](Frame& frame) { frame.resize(301, 201); });
    AddLook("a child in a corner", [](Frame& frame) { frame.Child().move(-98, 1); });
}

void PanelShadowTest::ARectangleLooksAsQtDrawsIt()
{
    QFETCH(Change, change);
    Pair pair;
    pair.Both(change);
    const bool bOdd = (pair.Ours().frame.width() | pair.Ours().frame.height()) % 2 != 0;
    for (const int iRatio : bOdd ? QVector<int>{1} : QVector<int>{1, 2, 1}) {
        for (int i = 0; i < 2; ++i) { // made, then kept
            const int iDifference = pair.Differ(iRatio);
            QVERIFY2(iDifference <= Tolerance, qPrintable(QStringLiteral("%1 at %2").arg(iDifference).arg(iRatio)));
            QVERIFY(!pair.WasQts());
        }
    }
}

void PanelShadowTest::AnOddSizeOfDoublePixelsIsDrawnByQt()
{
    Pair pair;
    pair.Both([](Frame& frame) { frame.resize(301, 200); });
    QCOMPARE(pair.Differ(2), 0);
    QVERIFY(pair.WasQts());
}

void PanelShadowTest::InALargerWindowItIsDrawnByQt()
{
    Stage ours;
    Stage qts(new QGraphicsDropShadowEffect);
    QImage images[2];
    for (Stage* pStage : {&ours, &qts}) {
        pStage->resize(350, 250);
        QImage& image = images[pStage == &qts ? 1 : 0];
        image = QImage(350, 250, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        RenderAll(*pStage, image);
    }
    QCOMPARE(images[0], images[1]);
    QVERIFY(images[0].pixelColor(303, 100).alpha() > 0); // its shadow lies around it there
}

void PanelShadowTest::AnythingElseIsDrawnByQt_data()
{
    QTest::addColumn<Change>("change");
    AddLook("nothing painted", Sheet("background: none;"));
    AddLook("translucent background", Sheet("background: rgba(255, 255, 255, 200); border-radius: 4px;"));
    AddLook("translucent border", Sheet("background: none; border: 2px solid rgba(0, 0, 0, 99);"));
    AddLook("very round corners", Sheet("background: white; border-radius: 60px;"));
    AddLook("margins", Sheet("background: white; margin: 20px;"));
    AddLook("a margin below", Sheet("background: white; margin-bottom: 1px;"));
    AddLook("a margin to the right", Sheet("background: white; margin-right: 1px;"));
    AddLook("a gradient to nothing",
            Sheet("background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 white, stop:1 transparent);"));
    AddLook("too small", [](Frame& frame) { frame.resize(60, 200); });
    AddLook("too wide a blur", [](Frame& frame) { frame.Shadow().setBlurRadius(80); });
    AddLook("hardly a blur", [](Frame& frame) { frame.Shadow().setBlurRadius(2); });
    AddLook("an offset", [](Frame& frame) { frame.Shadow().setOffset(3, 5); });
}

void PanelShadowTest::AnythingElseIsDrawnByQt()
{
    QFETCH(Change, change);
    Pair pair;
    QVERIFY(pair.Differ() <= Tolerance); // what was ready is not used
    pair.Both(change);
    QCOMPARE(pair.Differ(1), 0);
    QCOMPARE(pair.Differ(2), 0);
}

void PanelShadowTest::ItFollowsChanges()
{
    Pair pair;
    const Change changes[] = {
        [](Frame& frame) { frame.resize(333, 222); },
        [](Frame& frame) { frame.Shadow().setColor(Qt::red); },
        [](Frame& frame) { frame.Shadow().setBlurRadius(16); },
        Sheet("background: white; border-radius: 11px;"),
        Sheet("background: rgba(255, 255, 255, 90); border-radius: 11px;"),
        Sheet("background: black; border-radius: 6px;"),
        [](Frame& frame) { frame.Child().move(-50, -20); },
        [](Frame& frame) { frame.Child().hide(); },
        [](Frame& frame) { frame.Shadow().setOffset(4, 4); },
        [](Frame& frame) { frame.Shadow().setOffset(0, 0); },
        [](Frame& frame) { frame.Shadow().setEnabled(false); },
        [](Frame& frame) { frame.Shadow().setEnabled(true); },
    };
    for (const Change& change : changes) {
        const QImage before = Rendered(pair.Ours(), 1);
        pair.Both(change);
        QVERIFY(Rendered(pair.Ours(), 1) != before);
        QVERIFY(pair.Differ() <= Tolerance);
    }
}

void PanelShadowTest::AnUnusualPainterIsLeftToQt_data()
{
    QTest::addColumn<Render>("render");
    const auto with = [](const std::function<void(QPainter&)>& prepare) {
        return Render([=](QWidget& stage, QImage& image) {
            QPainter painter(&image);
            prepare(painter);
            stage.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
        });
    };
    QTest::newRow("scaled") << with([](QPainter& painter) { painter.scale(0.7, 0.7); });
    QTest::newRow("between pixels") << with([](QPainter& painter) { painter.translate(0.3, 3); });
    QTest::newRow("turned") << with([](QPainter& painter) { painter.rotate(10); });
    QTest::newRow("three pixels for one") << with([](QPainter& painter) { painter.scale(3, 3); });
    QTest::newRow("mirrored") << with([](QPainter& painter) { painter.setTransform(QTransform(-1, 0, 0, 1, 299, 0)); });
}

void PanelShadowTest::AnUnusualPainterIsLeftToQt()
{
    QFETCH(Render, render);
    Pair pair;
    QVERIFY(pair.Differ() <= Tolerance);
    QCOMPARE(pair.Differ(1, render), 0);
    QCOMPARE(pair.Differ(2, render), 0);
}

void PanelShadowTest::APartOfThePanelLooksTheSame()
{
    Pair pair;
    const QRegion parts[] = {QRect(0, 0, 3, 3), QRect(290, 150, 10, 50), QRect(40, 50, 20, 20),
                             QRegion(QRect(2, 1, 60, 50)) + QRect(280, 190, 30, 5)};
    for (const QRegion& part : parts) {
        const Render render = [&part](QWidget& stage, QImage& image) {
            stage.render(&image, part.boundingRect().topLeft(), part, QWidget::DrawChildren);
        };
        QVERIFY(pair.Differ(1, render) <= Tolerance);
        QVERIFY(pair.Differ(2, render) <= Tolerance);
    }
}

void PanelShadowTest::PartialUpdatesOnTheScreenLookTheSame()
{
    Stage ours;
    Stage qts(new QGraphicsDropShadowEffect);
    const Change changes[] = {
        [](Frame& frame) { frame.window()->show(); },       [](Frame& frame) { frame.Child().resize(60, 90); },
        [](Frame& frame) { frame.Child().move(-10, -10); }, [](Frame& frame) { frame.Child().update(20, 20, 5, 5); },
        [](Frame& frame) { frame.update(0, 0, 2, 2); },     [](Frame& frame) { frame.resize(330, 230); },
    };
    for (const Change& change : changes) {
        for (Stage* pStage : {&ours, &qts}) {
            pStage->frame.iPaints = 0;
            change(pStage->frame);
            pStage->resize(pStage->frame.size());
            QTRY_VERIFY(pStage->frame.iPaints > 0);
        }
        QVERIFY(ours.frame.iPaints > 1);
        QCOMPARE(OnScreen(ours).size(), ours.frame.size());
        const int iDifference = Difference(OnScreen(ours), OnScreen(qts));
        QVERIFY2(iDifference <= Tolerance, qPrintable(QString::number(iDifference)));
    }
}

QTEST_MAIN(PanelShadowTest)

#include "PanelShadowTest.moc"
