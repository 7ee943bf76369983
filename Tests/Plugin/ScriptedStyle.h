#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

// A host whose colour table and key rewriting a test writes: stands before the reference host's own two where it is
// linked first. Thread: the GUI thread.
namespace ScriptedStyle {

struct Script
{
    QMap<QString, QString> colors; // what KXColor::colorMap gives
    QString strRewritten;          // what KXPublic::translateQssKey makes of any text
    QStringList texts;             // what it was given, in order
};

#if defined(KX_BUILDING_HOST)
Q_DECL_EXPORT Script& Current();
#else
Q_DECL_IMPORT Script& Current();
#endif

} // namespace ScriptedStyle
