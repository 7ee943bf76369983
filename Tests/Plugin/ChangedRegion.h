#pragma once

#include "Engine/EngineRig.h"

#include <QtCore/QObject>
#include <QtWidgets/QGraphicsScene>

// What of a scene its items asked to be painted anew, whatever the view paints.
class ChangedRegion : public QObject
{
public:
    explicit ChangedRegion(QGraphicsScene& scene)
    {
        EngineRig::Settle();
        connect(&scene, &QGraphicsScene::changed, this, [this](const QList<QRectF>& region) {
            for (const QRectF& rect : region)
                m_region.append(rect);
        });
    }
    bool Contains(const QRectF& rect) const
    {
        for (const QRectF& changed : m_region) {
            if (changed.contains(rect))
                return true;
        }
        return false;
    }
    bool Touches(const QRectF& rect) const
    {
        for (const QRectF& changed : m_region) {
            if (changed.intersects(rect))
                return true;
        }
        return false;
    }

private:
    QList<QRectF> m_region;
};
