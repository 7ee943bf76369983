#include "Host/KXGui/FramePicture.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cstring>
#include <tuple>

namespace KXHost {

namespace {

constexpr int Band = 16; // height of the top and of the bottom, in the widget's pixels: corners fit in
constexpr int MiddleLine = Band + 1;
constexpr int MostRuns = 7; // a double border on both sides, and what it encloses

// How many device pixels there are in one of the widget's; 0 when they do not lie pixel on pixel.
int RatioOf(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    const qreal dRatio = painter.paintEngine()->paintDevice()->devicePixelRatioF(); // not the widget's, if redirected
    const int iRatio = qRound(dRatio);
    const bool bWhole = dRatio == iRatio && transform.isAffine() && transform.m11() == iRatio &&
                        transform.m22() == iRatio && transform.m12() == 0 && transform.m21() == 0 &&
                        transform.dx() == qRound(transform.dx()) && transform.dy() == qRound(transform.dy());
    return bWhole && painter.opacity() == 1.0 ? iRatio : 0;
}

// Whether nothing is said by which two lines between the corners could differ, or which is not in the key: pictures,
// gradients, colours of the palette, broken lines, properties, words that are written with escapes.
bool IsPlain(const QStringList& sheets)
{
    static const QRegularExpression s_notPlain(QStringLiteral("image|url|gradient|palette|dash|dot|\\[|\\\\"),
                                               QRegularExpression::CaseInsensitiveOption);
    return std::none_of(sheets.begin(), sheets.end(),
                        [](const QString& strSheet) { return strSheet.contains(s_notPlain); });
}

void DrawByStyle(QPainter& painter, const QStyleOption& option, const QWidget& widget)
{
    widget.style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, &widget);
}

const QRgb* Line(const QImage& image, int iY)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(iY));
}

} // namespace

bool FramePicture::Key::operator==(const Key& other) const
{
    return std::tie(rect, iRatio, state, texts) == std::tie(other.rect, other.iRatio, other.state, other.texts);
}

FramePicture::Key FramePicture::KeyOf(const QStyleOption& option, int iRatio, const QWidget& widget)
{
    Key key{option.rect, iRatio, option.state, {widget.objectName()}};
    for (const QWidget* pWidget = &widget; pWidget; pWidget = pWidget->parentWidget())
        key.texts.append(pWidget->styleSheet());
    key.texts.append(qApp->styleSheet());
    return key;
}

void FramePicture::Paint(QPainter& painter, const QWidget& widget)
{
    QStyleOption option;
    option.initFrom(&widget);
    const int iRatio = RatioOf(painter);
    const bool bWorthIt = option.rect.height() > 3 * Band;
    if (bWorthIt && iRatio > 0 && widget.style()->inherits("QStyleSheetStyle")) {
        const Key key = KeyOf(option, iRatio, widget);
        if (!(m_key == key)) {
            m_key = key;
            Make(option, widget);
        }
        if (!m_runs.isEmpty())
            return Draw(painter);
    }
    DrawByStyle(painter, option, widget);
}

void FramePicture::Make(const QStyleOption& option, const QWidget& widget)
{
    m_runs.clear();
    if (!IsPlain(m_key.texts.mid(1)))
        return;
    m_bands = PaintedBands(option, widget);
    const int iWidth = m_bands.width();
    const auto isLikeTheMiddle = [this, iWidth](int iLine) {
        return std::memcmp(Line(m_bands, iLine * m_key.iRatio), Line(m_bands, MiddleLine * m_key.iRatio),
                           static_cast<std::size_t>(iWidth) * sizeof(QRgb)) == 0;
    };
    // An outline that has not straightened there has corners that are too large.
    if (isLikeTheMiddle(MiddleLine - 1) && isLikeTheMiddle(MiddleLine + 1))
        FindRuns(Line(m_bands, MiddleLine * m_key.iRatio), iWidth);
}

// The top and a line more, a line of the middle, a line more and the bottom.
QImage FramePicture::PaintedBands(const QStyleOption& option, const QWidget& widget) const
{
    const int iHeight = option.rect.height();
    const QSize size(option.rect.width(), 2 * Band + 3);
    QImage bands(size * m_key.iRatio, QImage::Format_ARGB32_Premultiplied);
    bands.setDevicePixelRatio(m_key.iRatio);
    bands.fill(Qt::transparent);
    const struct
    {
        int iFrom;
        int iTo;
        int iLines;
    } parts[] = {{0, 0, MiddleLine}, {iHeight / 2, MiddleLine, 1}, {iHeight - MiddleLine, MiddleLine + 1, MiddleLine}};
    for (const auto& part : parts) {
        QPainter painter(&bands);
        painter.setClipRect(0, part.iTo, size.width(), part.iLines);
        painter.translate(0, part.iTo - part.iFrom);
        DrawByStyle(painter, option, widget);
    }
    return bands;
}

// None where there are too many, or some that let what lies below shine through.
void FramePicture::FindRuns(const QRgb* pLine, int iWidth)
{
    for (int iFirst = 0; iFirst < iWidth;) {
        const QRgb uColor = pLine[iFirst];
        const QRgb* const pEnd =
            std::find_if(pLine + iFirst, pLine + iWidth, [uColor](QRgb uOther) { return uOther != uColor; });
        const int iCount = static_cast<int>(pEnd - pLine) - iFirst;
        if (qAlpha(uColor) != 0xFF || m_runs.size() == MostRuns)
            return m_runs.clear();
        m_runs.append({iFirst, iCount, uColor});
        iFirst += iCount;
    }
}

void FramePicture::Draw(QPainter& painter) const
{
    const int iRatio = m_key.iRatio;
    const int iHeight = m_key.rect.height();
    const QRect band(0, 0, m_bands.width(), Band * iRatio);
    painter.drawImage(QPoint(0, 0), m_bands, band);
    painter.drawImage(QPoint(0, iHeight - Band), m_bands, band.translated(0, (Band + 3) * iRatio));
    for (const Run& run : m_runs) {
        const QRectF column(qreal(run.iFirst) / iRatio, Band, qreal(run.iCount) / iRatio, iHeight - 2 * Band);
        painter.fillRect(column, QColor(run.uColor));
    }
}

} // namespace KXHost
