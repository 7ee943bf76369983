#pragma once

#include "Engine/EngineRig.h"

#include <QtCore/QObject>
#include <QtGui/QPaintEvent>
#include <QtGui/QRegion>
#include <QtWidgets/QWidget>

// What of a view's viewport is painted, and how often.
class PaintedRegion : public QObject
{
public:
    explicit PaintedRegion(QWidget& viewport)
    {
        EngineRig::Settle();
        viewport.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint) {
            m_region += static_cast<QPaintEvent*>(pEvent)->region();
            ++m_iCount;
        }
        return false;
    }
    bool Contains(const QRect& rect) const { return QRegion(rect).subtracted(m_region).isEmpty(); }
    int Count() const { return m_iCount; }
    void Forget() { m_region = QRegion(); }

private:
    QRegion m_region;
    int m_iCount = 0;
};
