#include "KXGui/KXPublic.h"

#include <QtCore/QRegularExpression>

void KXPublic::translateQssKey(QString& strStyleSheet)
{
    // A value may be a function of its own, as rgba(0, 0, 0, 30%) is.
    static const QRegularExpression s_key(QStringLiteral("KX_COLOR\\(\\s*((?:[^()]|\\([^()]*\\))*?)\\s*\\)"));
    strStyleSheet.replace(s_key, QStringLiteral("\\1"));
}
