#include "KXGui/KXSvgPixmap.h"
#include "LogFile.h"
#include "ScratchDir.h"
#include "TestMain.h"

#include <QtTest/QtTest>

namespace {

const QSize Size(30, 30);
const QColor Ground(0x11, 0x22, 0x33);
const QColor Glyph(0x44, 0x55, 0x66);
const QString Template =
    QStringLiteral("<xml><p p-id='1' style='fill:#112233;'/><p p-id='2' style='fill:#445566;'/></xml>");

// Group 1 fills the picture, group 2 its middle; the lower right corner belongs to neither.
QByteArray Picture(const QByteArray& ground, const QByteArray& glyph)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' width='30' height='30'><title>T &amp; T</title>"
           "<rect width='30' height='30' " +
           ground + "/><g " + glyph +
           "><rect x='10' y='10' width='10' height='10'/></g>"
           "<rect x='25' y='25' width='5' height='5' fill='#00ff00'/></svg>";
}

QByteArray TwoGroups()
{
    return Picture("p-id='1' fill='#ff0000'", "p-id='2' fill='#0000ff'");
}

} // namespace

class GuiSvgTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }
    void GroupsTakeTheColorsOfTheTemplate_data();
    void GroupsTakeTheColorsOfTheTemplate();
    void BothFormsAreColoredAlike();
    void OtherDeclarationsOfAnElementStay();
    void PrefixedNamesSurvive();
    void WithoutATemplateThePictureKeepsItsColors();
    void ATemplateThatIsNoXmlIsLogged();
    void AFileThatIsNoPictureIsLoggedOnce_data();
    void AFileThatIsNoPictureIsLoggedOnce();
    void AnEmptySizeIsNoPicture();
    void ThePictureIsFittedAndCentred();
    void PixmapsAreSharedBetweenObjects();
    void WhatDiffersIsKeptApart();

private:
    QString Write(const QByteArray& svg)
    {
        const QString strPath = m_folder.filePath(QStringLiteral("%1.svg").arg(++m_iFiles));
        QFile file(strPath);
        if (!file.open(QIODevice::WriteOnly) || file.write(svg) != svg.size())
            return QString();
        return strPath;
    }
    QImage Render(const QByteArray& svg, const QString& strTemplate = Template)
    {
        return KXSvgPixmap(Write(svg)).normalPixmap(Size, strTemplate).toImage();
    }

    ScratchDir m_folder;
    int m_iFiles = 0;
};

void GuiSvgTest::GroupsTakeTheColorsOfTheTemplate_data()
{
    QTest::addColumn<QByteArray>("svg");
    QTest::newRow("fill attributes") << TwoGroups();
    QTest::newRow("styles") << Picture("p-id='1' style='fill:#ff0000'", "style='fill : #0000ff ;' p-id='2'");
    QTest::newRow("both") << Picture("style='fill:#ff0000' p-id='1' fill='#ff00ff'", "p-id='2' fill='#0000ff'");
    QTest::newRow("neither") << Picture("p-id='1'", "p-id='2'");
}

void GuiSvgTest::GroupsTakeTheColorsOfTheTemplate()
{
    QFETCH(QByteArray, svg);
    const QImage image = Render(svg);
    QCOMPARE(image.size(), Size);
    QCOMPARE(image.pixelColor(2, 2), Ground);
    QCOMPARE(image.pixelColor(15, 15), Glyph);
    QCOMPARE(image.pixelColor(27, 27), QColor(Qt::green));
}

void GuiSvgTest::BothFormsAreColoredAlike()
{
    KXSvgPixmap svg(Write(TwoGroups()));
    const QString strOther = QStringLiteral("<xml><p p-id='2' style='fill:#abcdef;'/></xml>");
    QCOMPARE(svg.normalPixmap(Size, Template).toImage().pixelColor(15, 15), Glyph);
    QCOMPARE(svg.hoverPixmap(Size, Template).toImage().pixelColor(15, 15), Glyph);
    QCOMPARE(svg.hoverPixmap(Size, strOther).toImage().pixelColor(15, 15), QColor(0xab, 0xcd, 0xef));
    QCOMPARE(svg.hoverPixmap(Size, strOther).toImage().pixelColor(2, 2), QColor(Qt::red));
}

void GuiSvgTest::OtherDeclarationsOfAnElementStay()
{
    const QImage image = Render(Picture("p-id='1' style='fill-opacity:0.2;fill:#ff0000'", "p-id='2' opacity='0'"));
    QCOMPARE(image.pixelColor(2, 2).alpha(), 51);
    QCOMPARE(image.pixelColor(15, 15).alpha(), 51);
}

void GuiSvgTest::PrefixedNamesSurvive()
{
    const QImage image = Render("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                                "width='30' height='30'><defs><rect id='r' width='30' height='30'/></defs>"
                                "<use p-id='1' xlink:href='#r'/></svg>");
    QCOMPARE(image.pixelColor(15, 15), Ground);
}

void GuiSvgTest::WithoutATemplateThePictureKeepsItsColors()
{
    const LogFile log;
    const QImage image = Render(TwoGroups(), QString());
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::red));
    QCOMPARE(image.pixelColor(15, 15), QColor(Qt::blue));
    QCOMPARE(log.Lines(), QStringList());
}

void GuiSvgTest::ATemplateThatIsNoXmlIsLogged()
{
    const LogFile log;
    KXSvgPixmap svg(Write(TwoGroups()));
    const QString strBroken = QStringLiteral("<xml><p p-id='1' style='fill:#112233;'/><p");
    for (int i = 0; i < 3; ++i)
        QCOMPARE(svg.normalPixmap(Size, strBroken).toImage().pixelColor(2, 2), QColor(Qt::red));
    QCOMPARE(log.Lines().size(), 1);
    QVERIFY(log.Lines().first().contains(QStringLiteral("template")));
}

void GuiSvgTest::AFileThatIsNoPictureIsLoggedOnce_data()
{
    QTest::addColumn<QByteArray>("svg");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11);
    QTest::newRow("cut off") << TwoGroups().left(100);
    QTest::newRow("another document") << QByteArray("<html><body/></html>");
    QTest::newRow("another document with a picture inside") << QByteArray("<html>" + TwoGroups() + "</html>");
    QTest::newRow("two documents") << QByteArray(TwoGroups() + TwoGroups());
    QTest::newRow("no file") << QByteArray("no file");
}

void GuiSvgTest::AFileThatIsNoPictureIsLoggedOnce()
{
    QFETCH(QByteArray, svg);
    const LogFile log;
    const QString strPath = svg == "no file" ? m_folder.filePath(QStringLiteral("missing.svg")) : Write(svg);
    KXSvgPixmap pixmap(strPath);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(pixmap.normalPixmap(Size, Template).isNull());
        QVERIFY(pixmap.hoverPixmap(Size, Template).isNull());
    }
    QCOMPARE(log.Lines().size(), 1);
    QVERIFY(log.Lines().first().contains(strPath));
}

void GuiSvgTest::AnEmptySizeIsNoPicture()
{
    KXSvgPixmap svg(Write(TwoGroups()));
    QVERIFY(svg.normalPixmap(QSize(), Template).isNull());
    QVERIFY(svg.normalPixmap(QSize(0, 30), Template).isNull());
    QVERIFY(svg.normalPixmap(QSize(30, -1), Template).isNull());
}

void GuiSvgTest::ThePictureIsFittedAndCentred()
{
    KXSvgPixmap svg(Write(TwoGroups()));
    const QImage image = svg.normalPixmap(QSize(100, 60), Template).toImage();
    QCOMPARE(image.size(), QSize(100, 60));
    QCOMPARE(image.pixelColor(18, 30).alpha(), 0);
    QCOMPARE(image.pixelColor(22, 2), Ground);
    QCOMPARE(image.pixelColor(77, 2), Ground);
    QCOMPARE(image.pixelColor(82, 30).alpha(), 0);
    QCOMPARE(image.pixelColor(50, 30), Glyph);
}

void GuiSvgTest::PixmapsAreSharedBetweenObjects()
{
    const QString strPath = Write(TwoGroups());
    KXSvgPixmap first(strPath);
    KXSvgPixmap second(strPath);
    const qint64 lKey = first.normalPixmap(Size, Template).cacheKey();
    QCOMPARE(first.normalPixmap(Size, Template).cacheKey(), lKey);
    QCOMPARE(second.hoverPixmap(Size, Template).cacheKey(), lKey);
}

void GuiSvgTest::WhatDiffersIsKeptApart()
{
    const QString strPath = Write(TwoGroups());
    KXSvgPixmap svg(strPath);
    KXSvgPixmap other(Write(Picture("p-id='2'", "p-id='1'")));
    const QPixmap pixmap = svg.normalPixmap(Size, Template);
    QCOMPARE(svg.normalPixmap(QSize(20, 20), Template).size(), QSize(20, 20));
    QCOMPARE(svg.normalPixmap(Size, QString()).toImage().pixelColor(2, 2), QColor(Qt::red));
    QCOMPARE(other.normalPixmap(Size, Template).toImage().pixelColor(2, 2), Glyph);
    QCOMPARE(pixmap.toImage().pixelColor(2, 2), Ground);
}

KX_TEST(GuiSvgTest, QApplication)
#include "GuiSvgTest.moc"
