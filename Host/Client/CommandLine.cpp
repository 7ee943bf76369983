#include "Host/Client/CommandLine.h"

#include "Host/Client/Console.h"
#include "Host/Client/ExitStatus.h"

namespace KXClient {

CommandLine::CommandLine(const QString& strCommand, const QString& strPurpose)
    : m_strCommand(strCommand)
{
    m_parser.setApplicationDescription(strPurpose);
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")});
}

void CommandLine::Add(const QString& strName, const QString& strValueName, const QString& strPurpose, bool bMany)
{
    m_parser.addOption({strName, strPurpose, strValueName});
    (bMany ? m_many : m_single).append(strName);
}

void CommandLine::AddFlag(const QString& strName, const QString& strPurpose)
{
    m_parser.addOption({strName, strPurpose});
}

std::optional<int> CommandLine::Parse(const QStringList& arguments)
{
    const QString strProgram = QStringLiteral("kxclient ") + m_strCommand;
    const bool bParsed = m_parser.parse(QStringList{strProgram} + arguments);
    if (m_parser.isSet(QStringLiteral("help"))) {
        // The parser writes the program's own name; the sub-command belongs to it.
        QString strHelp = m_parser.helpText();
        PrintRaw(strHelp.replace(strHelp.indexOf(QLatin1String("[options]")), 0, m_strCommand + QLatin1Char(' ')));
        return AllWhole;
    }
    const QString strMistake = Mistake(bParsed);
    if (strMistake.isEmpty())
        return std::nullopt;
    PrintError(m_strCommand + QLatin1String(": ") + strMistake + QLatin1String(" (see kxclient ") + m_strCommand +
               QLatin1String(" --help)"));
    return InputError;
}

QString CommandLine::Mistake(bool bParsed) const
{
    if (!bParsed)
        return m_parser.errorText();
    if (!m_parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument '%1'").arg(m_parser.positionalArguments().constFirst());
    for (const QString& strName : m_single + m_many) {
        const QStringList values = m_parser.values(strName);
        if (values.size() > 1 && m_single.contains(strName))
            return QStringLiteral("option '--%1' is given %2 times").arg(strName).arg(values.size());
        if (values.contains(QString()))
            return QStringLiteral("option '--%1' has an empty value").arg(strName);
    }
    return QString();
}

std::optional<int> CommandLine::Number(const QString& strName, int iLeast, int iMost) const
{
    bool bNumber = false;
    const int iValue = Value(strName).toInt(&bNumber);
    if (bNumber && iValue >= iLeast && iValue <= iMost)
        return iValue;
    PrintError(QStringLiteral("%1: option '--%2' must be a number from %3 to %4, not '%5'")
                   .arg(m_strCommand, strName)
                   .arg(iLeast)
                   .arg(iMost)
                   .arg(Value(strName)));
    return std::nullopt;
}

} // namespace KXClient
