#pragma once

#include "KXSdkGlobal.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtGui/QColor>

// The host's colour table, keyed by names such as "pc001". Thread: the GUI thread.
class KX_HOST_EXPORT KXColor
{
public:
    // The colour of that key with opacity `dAlpha` (0 to 1); an invalid colour for an unknown key.
    static QColor color(const QString& strKey, double dAlpha);
    // Colour values as style sheets write them, by key.
    static QMap<QString, QString> colorMap();
};
