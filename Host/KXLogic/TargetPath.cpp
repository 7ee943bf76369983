#include "Host/KXLogic/TargetPath.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

namespace KXHost {

namespace {

// A drive or the beginning of a network or device path; the rest is names.
QString WithoutRoot(const QString& strPath)
{
    static const QRegularExpression root(QStringLiteral("^(?:[A-Za-z]:|[/\\\\]{2}\\?[/\\\\](?:[A-Za-z]:)?)"));
    const QRegularExpressionMatch match = root.match(strPath);
    return strPath.mid(match.capturedLength());
}

QString NameProblem(const QString& strName)
{
    static const QRegularExpression device(
        QStringLiteral(
            "^(?:con|prn|aux|nul|com[1-9\u00b9\u00b2\u00b3]|lpt[1-9\u00b9\u00b2\u00b3]|conin\\$|conout\\$) *(?:\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression forbidden(QStringLiteral("[<>:\"|?*\\x01-\\x1f]"));
    if (strName.isEmpty() || strName == QLatin1String(".") || strName == QLatin1String(".."))
        return QString();
    if (device.match(strName).hasMatch())
        return QStringLiteral("Windows has a device of the name \"%1\"").arg(strName);
    if (forbidden.match(strName).hasMatch())
        return QStringLiteral("Windows forbids a character of the name \"%1\"").arg(strName);
    if (strName.endsWith(QLatin1Char('.')) || strName.endsWith(QLatin1Char(' ')))
        return QStringLiteral("Windows drops the end of the name \"%1\"").arg(strName);
    return QString();
}

} // namespace

QString TargetProblem(const QString& strPath, FileNames names)
{
    if (names == FileNames::Any)
        return QString();
    static const QRegularExpression separator(QStringLiteral("[/\\\\]"));
    const QStringList listNames = WithoutRoot(strPath).split(separator);
    for (const QString& strName : listNames) {
        const QString strProblem = NameProblem(strName);
        if (!strProblem.isEmpty())
            return strProblem;
    }
    return QString();
}

} // namespace KXHost
