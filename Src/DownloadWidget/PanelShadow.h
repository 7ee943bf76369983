#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtWidgets/QGraphicsDropShadowEffect>

// Qt's own drop shadow, blurred once and kept: again only for another size, colour or device pixel ratio.
//
// Thread: the GUI thread.
class PanelShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT

public:
    using QGraphicsDropShadowEffect::QGraphicsDropShadowEffect;

protected:
    void draw(QPainter* pPainter) override;

private:
    QPixmap BlackPanel(qreal dRatio);
    QImage Opacity(const QPixmap& panel) const;

    QImage m_shadow; // as large as what the effect covers
    QRectF m_panel;
    QColor m_color;
};
