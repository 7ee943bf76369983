#include "Plugin/ScriptedStyle.h"

#include "KXGui/KXColor.h"
#include "KXGui/KXPublic.h"

ScriptedStyle::Script& ScriptedStyle::Current()
{
    static Script script;
    return script;
}

QMap<QString, QString> KXColor::colorMap()
{
    return ScriptedStyle::Current().colors;
}

void KXPublic::translateQssKey(QString& strStyleSheet)
{
    ScriptedStyle::Script& script = ScriptedStyle::Current();
    script.texts.append(strStyleSheet);
    strStyleSheet = script.strRewritten;
}
