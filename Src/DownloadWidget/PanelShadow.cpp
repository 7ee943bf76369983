#include "DownloadWidget/PanelShadow.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsBlurEffect>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

constexpr int MostSide = 16;                // of a corner, in the panel's pixels
constexpr double BlurEffectPerShadow = 2.5; // QGraphicsBlurEffect blurs that many times as far as its radius says

// What a blur radius reaches, until nothing of it can be seen.
int Reach(qreal dBlurRadius)
{
    return 2 * qCeil(dBlurRadius) + 2;
}

// How many device pixels there are in one of the panel's; 0 when they do not lie pixel on pixel.
int RatioOf(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    const int iRatio = qRound(painter.device()->devicePixelRatioF());
    const bool bWhole = transform.m11() == iRatio && transform.m22() == iRatio && transform.m12() == 0 &&
                        transform.m21() == 0 && transform.isAffine() &&
                        painter.device()->devicePixelRatioF() == iRatio && transform.dx() == qRound(transform.dx()) &&
                        transform.dy() == qRound(transform.dy());
    return bWhole ? iRatio : 0;
}

// Else the shadow around it is seen, too.
bool FillsItsWindow(const QWidget& widget)
{
    const QWidget* const pWindow = widget.window();
    return QRect(widget.mapTo(pWindow, QPoint()), widget.size()).contains(pWindow->rect());
}

QImage ClearImage(const QSize& size, int iRatio)
{
    QImage image(size * iRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(iRatio);
    image.fill(Qt::transparent);
    return image;
}

bool IsOpaque(const QRgb* pFrom, const QRgb* pTo)
{
    QRgb uAll = 0xFF000000;
    for (; pFrom != pTo; ++pFrom)
        uAll &= *pFrom;
    return uAll == 0xFF000000;
}

const QRgb* Line(const QImage& image, int iY)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(iY));
}

// Whether everything is covered, corners of that side apart.
bool IsCovered(const QImage& image, int iSide)
{
    for (int y = 0; y < image.height(); ++y) {
        const int iInset = y < iSide || y >= image.height() - iSide ? iSide : 0;
        if (!IsOpaque(Line(image, y) + iInset, Line(image, y) + image.width() - iInset))
            return false;
    }
    return true;
}

// The side of the corners beside which the picture is covered, in its logical pixels, with one more of what lies
// within; 0 when there is none.
int CornerSide(const QImage& image)
{
    const int iRatio = qRound(image.devicePixelRatioF());
    const QRgb* const pFirst = Line(image, 0);
    const QRgb* const pEnd = pFirst + image.width();
    const auto* const pOpaque = std::find_if(pFirst, pEnd, [](QRgb uPixel) { return qAlpha(uPixel) == 0xFF; });
    const int iSide = static_cast<int>(pOpaque - pFirst + iRatio - 1) / iRatio + 1;
    return iSide <= MostSide && IsCovered(image, iSide * iRatio) ? iSide : 0;
}

// Paints a picture, and nothing that a style sheet of the client's might give it.
class PictureWidget : public QWidget
{
public:
    // The margin is to the left and above.
    PictureWidget(const QImage& image, int iMargin, QWidget* pParent)
        : QWidget(pParent)
        , m_image(image)
        , m_iMargin(iMargin)
    {
        setAttribute(Qt::WA_NoSystemBackground);
        resize(image.size() / qRound(image.devicePixelRatioF()) + QSize(iMargin, iMargin));
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(m_iMargin, m_iMargin, m_image); }

private:
    QImage m_image;
    int m_iMargin;
};

// How many pixels to the left of its source an effect begins.
int RoomBefore(const QGraphicsEffect& effect)
{
    return -effect.boundingRectFor(QRectF(0, 0, 1, 1)).toAlignedRect().left();
}

// The shadow of a black picture, blurred by Qt itself as its shadow does it. Qt blurs by pairs of pixels: where the two
// effects differ by an odd number in where they begin, a margin makes it even. The widget around is needed because one
// that is rendered by itself loses its effect.
QImage BlurredLike(const QGraphicsDropShadowEffect& shadow, const QImage& image)
{
    const int iRatio = qRound(image.devicePixelRatioF());
    QImage blurred = ClearImage(image.size() / iRatio, iRatio);
    PictureWidget around(blurred, 0, nullptr);
    auto* pBlur = new QGraphicsBlurEffect(&around);
    pBlur->setBlurRadius(shadow.blurRadius() / BlurEffectPerShadow);
    pBlur->setBlurHints(QGraphicsBlurEffect::PerformanceHint);
    const int iMargin = iRatio * std::abs(RoomBefore(*pBlur) - RoomBefore(shadow)) % 2;
    auto* pPicture = new PictureWidget(image, iMargin, &around);
    pPicture->move(-iMargin, -iMargin);
    pPicture->setGraphicsEffect(pBlur);
    around.render(&blurred, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter painter(&blurred);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(around.rect(), shadow.color());
    return blurred;
}

std::array<QRect, 4> CornersOf(const QSize& size, int iSide)
{
    const int iRight = size.width() - iSide;
    const int iBottom = size.height() - iSide;
    return {QRect(0, 0, iSide, iSide), QRect(iRight, 0, iSide, iSide), QRect(0, iBottom, iSide, iSide),
            QRect(iRight, iBottom, iSide, iSide)};
}

// The corners of one picture to the corners of another. Size and side in pixels of the painter.
void CopyCorners(QPainter& painter, const QSize& target, const QImage& image, int iSide)
{
    const auto to = CornersOf(target, iSide);
    const auto from = CornersOf(image.size(), iSide * qRound(image.devicePixelRatioF()));
    for (std::size_t i = 0; i < to.size(); ++i)
        painter.drawImage(to[i], image, from[i]);
}

// What the picture covers of its corners, side by side.
QImage PackedCorners(const QImage& image, int iSide)
{
    const QSize size(2 * iSide, 2 * iSide);
    QImage corners = ClearImage(size, qRound(image.devicePixelRatioF()));
    QPainter painter(&corners);
    CopyCorners(painter, size, image, iSide);
    painter.end();
    return corners.convertToFormat(QImage::Format_Alpha8);
}

} // namespace

PanelShadow::PanelShadow(QWidget& panel)
    : QGraphicsDropShadowEffect(&panel)
    , m_panel(panel)
{}

void PanelShadow::draw(QPainter* pPainter)
{
    if (!IsReadyFor(*pPainter)) {
        QGraphicsDropShadowEffect::draw(pPainter);
        return;
    }
    CopyCorners(*pPainter, m_panelSize, m_shadow, m_iSide);
    drawSource(pPainter);
}

bool PanelShadow::IsReadyFor(const QPainter& painter)
{
    const int iRatio = RatioOf(painter);
    // Qt stretches the shadow of an odd number of pixels with a ratio of two, and any with a greater one.
    const bool bEven = m_panel.width() % 2 == 0 && m_panel.height() % 2 == 0;
    const bool bSize = iRatio == 1 || (iRatio == 2 && bEven);
    // A small radius is not blurred by the effect that blurs for us.
    const bool bBlur = blurRadius() / BlurEffectPerShadow > 1 && offset().isNull();
    const bool bOurs =
        bSize && bBlur && FillsItsWindow(m_panel) && painter.opacity() == 1.0 && m_panel.graphicsEffect() == this;
    return bOurs && (IsStillRight(iRatio) || Make(iRatio));
}

bool PanelShadow::IsStillRight(int iRatio) const
{
    return m_iSide > 0 && m_iRatio == iRatio && m_panelSize == m_panel.size() && m_color == color() &&
           m_dBlurRadius == blurRadius() && m_corners == PaintedCorners();
}

bool PanelShadow::Make(int iRatio)
{
    m_iSide = 0;
    const int iLeast = 2 * (MostSide + Reach(blurRadius()));
    if (m_panel.width() < iLeast || m_panel.height() < iLeast)
        return false;
    const QImage shortened = PaintedShort(iRatio);
    m_iSide = CornerSide(shortened);
    if (m_iSide == 0)
        return false;
    m_iRatio = iRatio;
    m_panelSize = m_panel.size();
    m_color = color();
    m_dBlurRadius = blurRadius();
    m_corners = HasChildInCorner() ? PaintedCorners() : PackedCorners(shortened, m_iSide);
    m_shadow = BlurredLike(*this, SmallOutline());
    return true;
}

bool PanelShadow::HasChildInCorner() const
{
    const QRegion children = m_panel.childrenRegion();
    const auto corners = CornersOf(m_panelSize, m_iSide);
    return std::any_of(corners.begin(), corners.end(),
                       [&](const QRect& corner) { return children.intersects(corner); });
}

// The panel without its middle but for one line: an outline is judged by that. Without its children, which can only
// add to what it covers, and which had better be painted once.
QImage PanelShadow::PaintedShort(int iRatio) const
{
    const int iWidth = m_panel.width();
    const int iHeight = m_panel.height();
    QImage image = ClearImage(QSize(iWidth, 2 * MostSide + 1), iRatio);
    const QWidget::RenderFlags alone;
    m_panel.render(&image, QPoint(0, 0), QRect(0, 0, iWidth, MostSide), alone);
    m_panel.render(&image, QPoint(0, MostSide), QRect(0, iHeight / 2, iWidth, 1), alone);
    m_panel.render(&image, QPoint(0, MostSide + 1), QRect(0, iHeight - MostSide, iWidth, MostSide), alone);
    return image;
}

// With the children: they may reach into the corners.
QImage PanelShadow::PaintedCorners() const
{
    const auto corners = CornersOf(m_panelSize, m_iSide);
    QImage image = ClearImage(QSize(m_panelSize.width(), 2 * m_iSide), m_iRatio);
    m_panel.render(&image, QPoint(0, 0), QRegion(corners[0]) + corners[1], QWidget::DrawChildren);
    m_panel.render(&image, QPoint(0, m_iSide), QRegion(corners[2]) + corners[3], QWidget::DrawChildren);
    return PackedCorners(image, m_iSide);
}

// A black panel as small as lets no corner's blur reach another. Qt blurs by pairs of pixels: odd
// stays odd.
QImage PanelShadow::SmallOutline() const
{
    const int iLeast = 2 * (m_iSide + Reach(m_dBlurRadius));
    const QSize size(iLeast + m_panelSize.width() % 2, iLeast + m_panelSize.height() % 2);
    QImage outline = ClearImage(size, m_iRatio);
    outline.fill(Qt::black);
    QPainter painter(&outline);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    CopyCorners(painter, size, m_corners, m_iSide);
    return outline;
}
