#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QPixmap>

// A picture of the resources in SVG, rendered at a size and recoloured by a template: an XML text whose <p> elements
// give, by their p-id, the style of the picture's elements with that p-id. Thread: the GUI thread.
//
// The picture is fitted into the size, centred, at the pixel ratio of the sharpest screen (the size is in
// device-independent pixels). Rendered pixmaps are shared by all objects through QPixmapCache.
class KX_HOST_EXPORT KXSvgPixmap : public QObject
{
    Q_OBJECT

public:
    explicit KXSvgPixmap(const QString& strSvgPath, QObject* pParent = nullptr);
    ~KXSvgPixmap() override;

    // The picture in its normal and in its hover form: one drawing, that the template colours for the occasion. A null
    // pixmap when the size is empty, or when the file is no SVG picture, which is logged once; with a template that is
    // no XML, which is logged too, the picture's own colours.
    QPixmap normalPixmap(const QSize& size, const QString& strColorTemplate);
    QPixmap hoverPixmap(const QSize& size, const QString& strColorTemplate);

private:
    QPixmap Pixmap(const QSize& size, const QString& strColorTemplate);
    QPixmap Render(const QSize& size, const QString& strColorTemplate, qreal dRatio) const;
    void Load();

    QString m_strSvgPath;
    bool m_bLoaded = false;
    QByteArray m_svg; // empty: no picture
};
