// The frame of a frameless dialog: pixel by pixel what the style itself draws, whatever the style sheet says and
// whatever changed since the last time.

#include "KXGui/KXDialog.h"

#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

#include <functional>

namespace {

const QString Plain = QStringLiteral("KXGui--KXDialog { background: #203040; border: 1px solid #ff0000; "
                                     "border-radius: 4px; }");

class Dialog : public KXGui::KXDialog
{
public:
    Dialog()
        : KXDialog(nullptr, 1)
    {
        setAttribute(Qt::WA_TranslucentBackground);
        resize(200, 160);
    }

    QImage Painted(int iRatio = 1)
    {
        return Canvas(iRatio, [this](QPainter& painter) { Render(painter); });
    }
    // The same by the style alone.
    QImage Drawn(int iRatio = 1)
    {
        return Canvas(iRatio, [this](QPainter& painter) {
            QStyleOption option;
            option.initFrom(this);
            style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
        });
    }
    void Render(QPainter& painter, const QRegion& region = QRegion())
    {
        render(&painter, QPoint(), region, QWidget::DrawChildren);
    }

private:
    template <typename Paint>
    QImage Canvas(int iRatio, Paint paint)
    {
        ensurePolished();
        QImage image(size() * iRatio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(iRatio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(painter);
        painter.end();
        return image;
    }
};

// A style sheet looks at names and properties anew only when asked to.
void Repolish(QWidget& widget)
{
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
}

} // namespace

using Change = std::function<void(Dialog&)>;
Q_DECLARE_METATYPE(Change)

class GuiFrameTest : public QObject
{
    Q_OBJECT

private slots:
    void ItIsWhatTheStyleDraws_data();
    void ItIsWhatTheStyleDraws();
    void APartOfItIsThatPartOfTheWhole();
    void OnAPictureItLiesLikeTheStylesOwn();
    void ItFollowsWhatAStyleSheetAsksFor_data();
    void ItFollowsWhatAStyleSheetAsksFor();
};

void GuiFrameTest::ItIsWhatTheStyleDraws_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QSize>("size");
    const QSize usual(200, 160);
    const auto add = [usual](const char* pszName, const char* pszRules) {
        QTest::newRow(pszName) << QString::fromUtf8(pszRules) << usual;
    };
    add("a plain colour", "background: #203040");
    add("round corners", "background: #203040; border: 1px solid #ff0000; border-radius: 4px");
    add("a thick border", "background: #203040; border: 5px solid #ff0000; border-radius: 9px");
    add("sides of their own", "background: red; border-left: 3px solid lime; border-right: 7px solid blue");
    add("a double border", "background: #203040; border: 6px double #ff0000");
    add("a groove", "background: #203040; border: 6px groove #ff0000");
    add("corners that reach far", "background: #203040; border: 1px solid #ff0000; border-radius: 40px");
    add("corners that meet", "background: #203040; border: 1px solid #ff0000; border-radius: 80px");
    add("a margin", "background: #203040; margin: 6px; border: 1px solid #ff0000");
    add("a background that shines through", "background: rgba(32, 48, 64, 50%); border: 1px solid #ff0000");
    add("no background", "border: 1px solid #ff0000");
    add("nothing", "color: red");
    add("dashes", "background: #203040; border: 3px dashed #ff0000");
    add("dots", "background: #203040; border: 3px dotted #ff0000");
    add("a gradient downwards", "background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 red, stop:1 blue)");
    add("a gradient in a few lines only", "background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 red, "
                                          "stop:0.2 red, stop:0.21 blue, stop:0.3 blue, stop:0.31 red, stop:1 red)");
    add("a gradient to the right", "background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 red, stop:1 blue)");
    add("a colour of the palette", "background: palette(highlight); border: 1px solid palette(shadow)");
    add("a picture in the middle", "background: white url(:/btnStop.svg) no-repeat center");
    QTest::newRow("too low for a middle")
        << QStringLiteral("background: red; border: 1px solid blue") << QSize(200, 20);
    QTest::newRow("just high enough") << QStringLiteral("background: red; border: 1px solid blue") << QSize(201, 49);
    QTest::newRow("of no height") << QStringLiteral("background: red; border: 1px solid blue") << QSize(200, 0);
}

void GuiFrameTest::ItIsWhatTheStyleDraws()
{
    QFETCH(QString, rules);
    QFETCH(QSize, size);
    Dialog dialog;
    dialog.resize(size);
    dialog.setStyleSheet(QStringLiteral("KXGui--KXDialog { %1 }").arg(rules));
    for (const int iRatio : {1, 2, 3, 1}) {
        QCOMPARE(dialog.Painted(iRatio), dialog.Drawn(iRatio));
        QCOMPARE(dialog.Painted(iRatio), dialog.Drawn(iRatio)); // and when it is known
    }
}

void GuiFrameTest::APartOfItIsThatPartOfTheWhole()
{
    Dialog dialog;
    dialog.setStyleSheet(Plain);
    QImage image(dialog.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (const QRect& part :
         {QRect(0, 0, 200, 7), QRect(0, 7, 90, 100), QRect(90, 7, 110, 100), QRect(0, 107, 200, 53)}) {
        painter.save();
        painter.translate(part.topLeft()); // a region is rendered from its own top left
        dialog.Render(painter, part);
        painter.restore();
    }
    painter.end();
    QCOMPARE(image, dialog.Drawn());
}

// Where a rounded corner lets it through, each of its layers may round otherwise.
void GuiFrameTest::OnAPictureItLiesLikeTheStylesOwn()
{
    Dialog dialog;
    dialog.setStyleSheet(Plain);
    QImage painted(dialog.size(), QImage::Format_RGB32);
    painted.fill(QColor(0x40, 0xC0, 0x90));
    QImage drawn = painted;
    QPainter painter(&painted);
    dialog.Render(painter);
    painter.end();
    painter.begin(&drawn);
    QStyleOption option;
    option.initFrom(&dialog);
    dialog.style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, &dialog);
    painter.end();
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor a = painted.pixelColor(x, y);
            const QColor b = drawn.pixelColor(x, y);
            const int iFar =
                qMax(qAbs(a.red() - b.red()), qMax(qAbs(a.green() - b.green()), qAbs(a.blue() - b.blue())));
            QVERIFY2(iFar <= 2, qPrintable(QStringLiteral("%1, %2: %3").arg(x).arg(y).arg(iFar)));
        }
    }
}

void GuiFrameTest::ItFollowsWhatAStyleSheetAsksFor_data()
{
    QTest::addColumn<QString>("more"); // rules beside the plain ones
    QTest::addColumn<Change>("change");
    const auto add = [](const char* pszName, const char* pszMore, const Change& change) {
        QTest::newRow(pszName) << QString::fromUtf8(pszMore) << change;
    };
    add("its sheet", "",
        [](Dialog& dialog) { dialog.setStyleSheet(QStringLiteral("KXGui--KXDialog { background: blue; }")); });
    add("the application's sheet", "",
        [](Dialog&) { qApp->setStyleSheet(QStringLiteral("KXGui--KXDialog { margin: 9px; }")); });
    add("its size", "", [](Dialog& dialog) { dialog.resize(120, 230); });
    add("its name", "#other { background: blue; }", [](Dialog& dialog) {
        dialog.setObjectName(QStringLiteral("other"));
        Repolish(dialog);
    });
    add("a property", "KXGui--KXDialog[wide=\"true\"] { background: blue; }", [](Dialog& dialog) {
        dialog.setProperty("wide", true);
        Repolish(dialog);
    });
    add("being enabled", "KXGui--KXDialog:disabled { background: blue; }",
        [](Dialog& dialog) { dialog.setEnabled(false); });
}

void GuiFrameTest::ItFollowsWhatAStyleSheetAsksFor()
{
    QFETCH(QString, more);
    QFETCH(Change, change);
    Dialog dialog;
    dialog.setStyleSheet(Plain + more);
    const QImage before = dialog.Painted();
    QCOMPARE(before, dialog.Drawn());
    change(dialog);
    const QImage after = dialog.Painted();
    const QImage drawn = dialog.Drawn();
    qApp->setStyleSheet(QString());
    QCOMPARE(after, drawn);
    QVERIFY(after != before);
}

QTEST_MAIN(GuiFrameTest)
#include "GuiFrameTest.moc"
