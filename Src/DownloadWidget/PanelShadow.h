#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QGraphicsDropShadowEffect>
#include <QtWidgets/QWidget>

class QPainter;

// A drop shadow that looks like Qt's and does not blur the whole panel with every repaint. A panel that fills its
// window but for the corners lets nothing of a centred shadow be seen except there: the shadow of those corners is
// blurred once, in a small picture, and made again when they, the colour, the blur radius or the device's pixel ratio
// change. Whatever has another shape, is too small, or is painted scaled otherwise than twice gets Qt's own shadow.
//
// Thread: the GUI thread.
class PanelShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT

public:
    // For that panel only, which owns it.
    explicit PanelShadow(QWidget& panel);

protected:
    void draw(QPainter* pPainter) override;

private:
    bool IsReadyFor(const QPainter& painter);
    bool IsStillRight(int iRatio) const;
    bool Make(int iRatio);
    bool HasChildInCorner() const;
    QImage PaintedShort(int iRatio) const;
    QImage PaintedCorners() const;
    QImage SmallOutline() const;

    QWidget& m_panel;
    int m_iSide = 0;  // of the corners, in the panel's pixels; 0: nothing is ready
    int m_iRatio = 0; // device pixels in one of the panel's
    QSize m_panelSize;
    QColor m_color;
    qreal m_dBlurRadius = 0;
    QImage m_corners; // what the panel covers of its four corners, side by side
    QImage m_shadow;  // of a small panel with these corners
};
