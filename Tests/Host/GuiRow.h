#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <functional>

// A row as the panel's are: an object of somebody else and an item of the view. It is filled with one colour, counts
// its paints and reports its presses.
class GuiRow : public QObject, public QGraphicsItem
{
public:
    static constexpr int Height = 88;
    static constexpr int Width = 610;

    explicit GuiRow(const QString& strKey = QString(), QObject* pParent = nullptr)
        : QObject(pParent)
        , m_size(Width, Height)
    {
        ++s_iAlive;
        if (!strKey.isNull())
            setData(99, strKey);
        setAcceptHoverEvents(true);
    }
    ~GuiRow() override { --s_iAlive; }

    QRectF boundingRect() const override { return QRectF(QPointF(), m_size); }
    void paint(QPainter* pPainter, const QStyleOptionGraphicsItem* /*pOption*/, QWidget* /*pWidget*/) override
    {
        ++m_iPaints;
        pPainter->fillRect(boundingRect(), m_color);
    }

    QSizeF m_size;
    QColor m_color = Qt::blue;
    int m_iPaints = 0;
    int m_iHovers = 0;
    std::function<void()> m_onPress;

    static inline int s_iAlive = 0;

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* /*pEvent*/) override
    {
        if (m_onPress)
            m_onPress();
    }
    void hoverEnterEvent(QGraphicsSceneHoverEvent* /*pEvent*/) override { ++m_iHovers; }
};
