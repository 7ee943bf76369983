#include "KXGui/KXDialog.h"
#include "TestMain.h"

#include <QtTest/QtTest>

namespace {

void Send(QWidget& target, QEvent::Type type, const QPoint& globalPos, Qt::MouseButton button)
{
    const bool bMove = type == QEvent::MouseMove;
    const bool bReleased = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, target.mapFromGlobal(globalPos), globalPos, bMove ? Qt::NoButton : button,
                      bReleased ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &event);
}

// Presses at `local`, moves the pointer by (30, 20), and tells how far the dialog went.
QPoint Drag(QWidget& dialog, const QPoint& local, Qt::MouseButton button = Qt::LeftButton)
{
    const QPoint start = dialog.pos();
    const QPoint press = dialog.mapToGlobal(local);
    Send(dialog, QEvent::MouseButtonPress, press, button);
    Send(dialog, QEvent::MouseMove, press + QPoint(30, 20), button);
    const QPoint moved = dialog.pos() - start;
    Send(dialog, QEvent::MouseButtonRelease, press + QPoint(30, 20), button);
    return moved;
}

struct Frameless : KXGui::KXDialog
{
    Frameless()
        : KXDialog(nullptr, 1)
    {
        setGeometry(100, 100, 200, 100);
        show();
    }
};

const QPoint Nowhere(0, 0);
const QPoint Along(30, 20);

} // namespace

class GuiDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void TheStyleDecidesAboutTheFrame_data();
    void TheStyleDecidesAboutTheFrame();
    void AFramelessDialogPaintsItsStyleSheet();
    void AFramelessDialogIsDraggedAnywhere();
    void APlainDialogIsNotDraggedUntilAsked();
    void OnlyTheAreaIsDragged();
    void ADialogThatIsNotMovableStays();
    void OnlyTheLeftButtonDrags();
    void AMoveAfterTheReleaseDoesNotDrag();
    void BecomingFixedEndsTheDrag();
};

void GuiDialogTest::TheStyleDecidesAboutTheFrame_data()
{
    QTest::addColumn<int>("iStyle");
    QTest::addColumn<bool>("bFrameless");
    QTest::newRow("plain") << 0 << false;
    QTest::newRow("frameless") << 1 << true;
    QTest::newRow("unknown") << 7 << false;
}

void GuiDialogTest::TheStyleDecidesAboutTheFrame()
{
    QFETCH(int, iStyle);
    QFETCH(bool, bFrameless);
    QWidget parent;
    const KXGui::KXDialog dialog(&parent, iStyle);
    QCOMPARE(dialog.windowFlags().testFlag(Qt::FramelessWindowHint), bFrameless);
    QCOMPARE(dialog.windowType(), Qt::Dialog);
    QCOMPARE(dialog.parentWidget(), &parent);
}

void GuiDialogTest::AFramelessDialogPaintsItsStyleSheet()
{
    Frameless dialog;
    dialog.setAttribute(Qt::WA_TranslucentBackground);
    dialog.setStyleSheet(
        QStringLiteral("KXGui--KXDialog { background: #203040; border: 2px solid #ff0000; border-radius: 12px; }"));
    QImage image(dialog.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    dialog.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(image.pixelColor(100, 50), QColor(0x20, 0x30, 0x40));
    QCOMPARE(image.pixelColor(100, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
}

void GuiDialogTest::AFramelessDialogIsDraggedAnywhere()
{
    Frameless dialog;
    QCOMPARE(Drag(dialog, QPoint(5, 5)), Along);
    QCOMPARE(Drag(dialog, QPoint(190, 90)), Along);
}

void GuiDialogTest::APlainDialogIsNotDraggedUntilAsked()
{
    KXGui::KXDialog dialog;
    dialog.setGeometry(100, 100, 200, 100);
    dialog.show();
    QCOMPARE(Drag(dialog, QPoint(5, 5)), Nowhere);
    dialog.setDialogMovable(true, QRect());
    QCOMPARE(Drag(dialog, QPoint(5, 5)), Along);
}

void GuiDialogTest::OnlyTheAreaIsDragged()
{
    Frameless dialog;
    dialog.setDialogMovable(true, QRect(0, 0, 200, 30));
    QCOMPARE(Drag(dialog, QPoint(100, 29)), Along);
    QCOMPARE(Drag(dialog, QPoint(100, 30)), Nowhere);
}

void GuiDialogTest::ADialogThatIsNotMovableStays()
{
    Frameless dialog;
    dialog.setDialogMovable(false, QRect());
    QCOMPARE(Drag(dialog, QPoint(5, 5)), Nowhere);
}

void GuiDialogTest::OnlyTheLeftButtonDrags()
{
    Frameless dialog;
    QCOMPARE(Drag(dialog, QPoint(5, 5), Qt::RightButton), Nowhere);
}

void GuiDialogTest::AMoveAfterTheReleaseDoesNotDrag()
{
    Frameless dialog;
    Drag(dialog, QPoint(5, 5));
    const QPoint rest = dialog.pos();
    Send(dialog, QEvent::MouseMove, QPoint(500, 500), Qt::LeftButton);
    QCOMPARE(dialog.pos(), rest);
}

void GuiDialogTest::BecomingFixedEndsTheDrag()
{
    Frameless dialog;
    const QPoint start = dialog.pos();
    Send(dialog, QEvent::MouseButtonPress, QPoint(110, 110), Qt::LeftButton);
    dialog.setDialogMovable(false, QRect());
    Send(dialog, QEvent::MouseMove, QPoint(300, 300), Qt::LeftButton);
    QCOMPARE(dialog.pos(), start);
}

KX_TEST(GuiDialogTest, QApplication)
#include "GuiDialogTest.moc"
