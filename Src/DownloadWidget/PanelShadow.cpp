#include "DownloadWidget/PanelShadow.h"

#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QGraphicsScene>

void PanelShadow::draw(QPainter* pPainter)
{
    if (!pPainter->transform().isIdentity()) // not a window by itself: Qt may move its source twice
        return QGraphicsDropShadowEffect::draw(pPainter);
    const qreal dRatio = pPainter->device()->devicePixelRatioF();
    if (m_panel != sourceBoundingRect() || m_color != color() || m_shadow.devicePixelRatioF() != dRatio) {
        m_panel = sourceBoundingRect();
        m_color = color();
        const QImage opacity = Opacity(BlackPanel(dRatio));
        m_shadow = QImage(opacity.size(), QImage::Format_ARGB32_Premultiplied);
        m_shadow.fill(m_color.rgb());
        m_shadow.setAlphaChannel(opacity);
        m_shadow.setDevicePixelRatio(dRatio);
    }
    pPainter->drawImage(boundingRect().topLeft(), m_shadow);
    drawSource(pPainter);
}

QPixmap PanelShadow::BlackPanel(qreal dRatio)
{
    QPixmap panel((m_panel.size() * dRatio).toSize());
    panel.setDevicePixelRatio(dRatio);
    panel.fill(Qt::transparent);
    QPainter painter(&panel);
    drawSource(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(m_panel, Qt::black);
    return panel;
}

// How opaque the shadow is, as shades of grey. Qt draws a shadow only together with what throws it: black adds nothing
// to a white shadow.
QImage PanelShadow::Opacity(const QPixmap& panel) const
{
    QGraphicsScene scene;
    auto* pShadow = new QGraphicsDropShadowEffect;
    pShadow->setBlurRadius(blurRadius());
    pShadow->setOffset(offset());
    pShadow->setColor(QColor(255, 255, 255, m_color.alpha()));
    scene.addPixmap(panel)->setGraphicsEffect(pShadow);

    const QRectF bounds = boundingRect();
    QImage opacity((bounds.size() * panel.devicePixelRatioF()).toSize(), QImage::Format_RGB32);
    opacity.setDevicePixelRatio(panel.devicePixelRatioF());
    opacity.fill(Qt::black);
    QPainter painter(&opacity);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    scene.render(&painter, QRectF(QPointF(), bounds.size()), bounds);
    return opacity;
}
