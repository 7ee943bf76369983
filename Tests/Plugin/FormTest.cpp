// The panel's form as it is built from its .ui file, and the rules of the style sheet.

#include "TestMain.h"
#include "ui_DownloadWidget.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>

class FormTest : public QObject
{
    Q_OBJECT

private slots:
    void TheTreeIsBuiltAsDesigned();
    void SizesAreFixed();
    void TheLabelOfTheEmptyPageIsCentred();
    void TheButtonsShowAHand();
    void TheTextsOfTheFormAlone();
    void TheRulesOfTheStyleSheet();
    void TheButtonPicturesHaveTwoPartsToColour();

private:
    static void Describe(QStringList& lines, int iDepth, QLayout& layout);
    static void Describe(QStringList& lines, int iDepth, const QWidget& widget);
    static QString Policy(QSizePolicy::Policy policy);
};

QString FormTest::Policy(QSizePolicy::Policy policy)
{
    switch (policy) {
    case QSizePolicy::Minimum:
        return QStringLiteral("Minimum");
    case QSizePolicy::Expanding:
        return QStringLiteral("Expanding");
    default:
        return QStringLiteral("other");
    }
}

// One line per layout, spacer and widget, indented by depth.
void FormTest::Describe(QStringList& lines, int iDepth, QLayout& layout)
{
    const QMargins margins = layout.contentsMargins();
    lines.append(QString(iDepth, QLatin1Char(' ')) +
                 QStringLiteral("%1 %2 spacing %3 margins %4 %5 %6 %7")
                     .arg(layout.objectName(), QString::fromUtf8(layout.metaObject()->className()))
                     .arg(layout.spacing())
                     .arg(margins.left())
                     .arg(margins.top())
                     .arg(margins.right())
                     .arg(margins.bottom()));
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem* pItem = layout.itemAt(i);
        if (pItem->layout())
            Describe(lines, iDepth + 1, *pItem->layout());
        if (pItem->widget())
            Describe(lines, iDepth + 1, *pItem->widget());
        if (const QSpacerItem* pSpacer = pItem->spacerItem()) {
            const QSize size = pSpacer->sizeHint();
            lines.append(QString(iDepth + 1, QLatin1Char(' ')) +
                         QStringLiteral("spacer %1x%2 %3 %4")
                             .arg(QString::number(size.width()), QString::number(size.height()),
                                  Policy(pSpacer->sizePolicy().horizontalPolicy()),
                                  Policy(pSpacer->sizePolicy().verticalPolicy())));
        }
    }
}

void FormTest::Describe(QStringList& lines, int iDepth, const QWidget& widget)
{
    lines.append(QString(iDepth, QLatin1Char(' ')) + widget.objectName() + QLatin1Char(' ') +
                 QString::fromUtf8(widget.metaObject()->className()));
    if (const auto* pStack = qobject_cast<const QStackedWidget*>(&widget)) {
        for (int i = 0; i < pStack->count(); ++i)
            Describe(lines, iDepth + 1, *pStack->widget(i));
    } else if (widget.layout() && !widget.inherits("QAbstractScrollArea")) {
        Describe(lines, iDepth + 1, *widget.layout());
    }
}

void FormTest::TheTreeIsBuiltAsDesigned()
{
    QWidget panel;
    Ui::DownloadWidget form;
    form.setupUi(&panel);
    QStringList lines;
    Describe(lines, 0, panel);
    const char* const Expected[] = {
        "DownloadWidget QWidget",
        " verticalLayout_4 QVBoxLayout spacing 0 margins 10 10 10 10",
        "  stackedWidget QStackedWidget",
        "   pageEmpty QWidget",
        "    verticalLayout_2 QVBoxLayout spacing 6 margins 11 11 11 11",
        "     spacer 20x201 Minimum Expanding",
        "     horizontalLayout_2 QHBoxLayout spacing 6 margins 0 0 0 0",
        "      spacer 40x20 Expanding Minimum",
        "      verticalLayout QVBoxLayout spacing 20 margins 0 0 0 0",
        "       labelPic QLabel",
        "       labelText QLabel",
        "      spacer 40x20 Expanding Minimum",
        "     spacer 20x201 Minimum Expanding",
        "   pageList QWidget",
        "    verticalLayout_5 QVBoxLayout spacing 0 margins 0 0 0 0",
        "     widget QWidget",
        "      horizontalLayout QHBoxLayout spacing 20 margins 30 43 30 10",
        "       labelNumber QLabel",
        "       spacer 563x20 Expanding Minimum",
        "       btnSetting QPushButton",
        "       btnAllStart QPushButton",
        "     widget_2 QWidget",
        "      verticalLayout_3 QVBoxLayout spacing 0 margins 5 0 5 10",
        "       downloadListView GraphicsGridView",
    };
    for (int i = 0; i < int(std::size(Expected)); ++i)
        QCOMPARE(lines.value(i), QString::fromUtf8(Expected[i]));
    QCOMPARE(lines.size(), int(std::size(Expected)));
}

void FormTest::SizesAreFixed()
{
    QWidget panel;
    Ui::DownloadWidget form;
    form.setupUi(&panel);
    const auto isFixed = [](const QWidget& widget, const QSize& size) {
        return widget.minimumSize() == size && widget.maximumSize() == size;
    };
    QVERIFY(isFixed(panel, QSize(630, 564)));
    QVERIFY(isFixed(*form.labelPic, QSize(112, 143)));
    QVERIFY(isFixed(*form.labelText, QSize(112, 20)));
    QCOMPARE(form.downloadListView->minimumSize(), QSize(0, 0));
    QCOMPARE(form.downloadListView->maximumSize(), QSize(16777215, 16777215));
    panel.resize(800, 800);
    QCOMPARE(panel.size(), QSize(630, 564));
}

void FormTest::TheLabelOfTheEmptyPageIsCentred()
{
    QWidget panel;
    Ui::DownloadWidget form;
    form.setupUi(&panel);
    QCOMPARE(form.labelText->alignment(), Qt::AlignCenter);
    panel.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(form.labelText->layoutDirection(), Qt::LeftToRight);
    QCOMPARE(form.labelNumber->layoutDirection(), Qt::RightToLeft);
}

void FormTest::TheButtonsShowAHand()
{
    QWidget panel;
    Ui::DownloadWidget form;
    form.setupUi(&panel);
    QCOMPARE(form.btnSetting->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(form.btnAllStart->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(form.labelNumber->cursor().shape(), Qt::ArrowCursor);
}

void FormTest::TheTextsOfTheFormAlone()
{
    QWidget panel;
    Ui::DownloadWidget form;
    form.setupUi(&panel);
    QCOMPARE(panel.windowTitle(), QStringLiteral("DownloadWidget"));
    QCOMPARE(form.labelPic->text(), QString());
    QCOMPARE(form.labelText->text(), QString());
    QCOMPARE(form.labelNumber->text(), QStringLiteral("TextLabel"));
    QCOMPARE(form.btnSetting->text(), QStringLiteral("common_set"));
    QCOMPARE(form.btnAllStart->text(), QString());
}

void FormTest::TheRulesOfTheStyleSheet()
{
    QFile file(QStringLiteral(":/KXRecordManage/css/style.css"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString strText = QString::fromUtf8(file.readAll()).simplified();
    const QString strExpected = QStringLiteral(
        "/*------DownloadWidget start------*/ "
        "DownloadWidget { background: KX_COLOR(pc011); border-top-left-radius: 4px; border-top-right-radius: 4px; "
        "border-bottom-left-radius: 4px; border-bottom-right-radius: 4px; border: 1px solid KX_COLOR(pc008); } "
        "DownloadWidget QLabel#labelNumber { font-weight: 400; color: KX_COLOR(pc005); font-size: 15px; "
        "font-family: Microsoft YaHei; } "
        "DownloadWidget QLabel#labelText { color: KX_COLOR(pc005); font-size: 14px; font-family: Microsoft YaHei; } "
        "DownloadWidget QPushButton#btnSetting { font-size: 15px; font-family: Microsoft YaHei; "
        "color: KX_COLOR(pc004); border: none; background-color: transparent; } "
        "DownloadWidget QPushButton#btnAllStart { font-size: 15px; font-family: Microsoft YaHei; "
        "color: KX_COLOR(pc001); border: none; background-color: transparent; } "
        "DownloadWidget GraphicsGridView#downloadListView { border-bottom-left-radius: 4px; "
        "border-bottom-right-radius: 4px; border: none; background-color: transparent; } "
        "/*------DownloadWidget end------*/");
    QCOMPARE(strText, strExpected);
}

void FormTest::TheButtonPicturesHaveTwoPartsToColour()
{
    for (const char* pszName : {"btnStop", "btnStart", "btnDelete", "btnReload"}) {
        QFile file(QStringLiteral(":/KXRecordManage/images/%1.svg").arg(QLatin1String(pszName)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QStringList ids;
        for (QXmlStreamReader xml(&file); !xml.atEnd(); xml.readNext()) {
            if (xml.attributes().hasAttribute(QLatin1String("p-id")))
                ids.append(xml.attributes().value(QLatin1String("p-id")).toString());
        }
        QCOMPARE(ids.join(QLatin1Char(' ')), QStringLiteral("1 2"));
    }
}

KX_TEST(FormTest, QApplication)

#include "FormTest.moc"
