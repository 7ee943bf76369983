#pragma once

#include <QtCore/QCommandLineParser>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace KXClient {

// The options of one sub-command.
class CommandLine
{
public:
    CommandLine(const QString& strCommand, const QString& strPurpose);

    // An option with a value; given twice it is an error unless `bMany`.
    void Add(const QString& strName, const QString& strValueName, const QString& strPurpose, bool bMany = false);
    // An option without a value.
    void AddFlag(const QString& strName, const QString& strPurpose);

    // Reads the arguments behind the sub-command. A value says that the process ends with it: help was printed, or the
    // reason why the arguments are wrong.
    std::optional<int> Parse(const QStringList& arguments);

    bool IsSet(const QString& strName) const { return m_parser.isSet(strName); }
    QString Value(const QString& strName) const { return m_parser.value(strName); }
    QStringList Values(const QString& strName) const { return m_parser.values(strName); }
    // The value as a number; nothing, and the reason printed, when it is none or out of range.
    std::optional<int> Number(const QString& strName, int iLeast, int iMost) const;

private:
    QString Mistake(bool bParsed) const;

    QString m_strCommand;
    QCommandLineParser m_parser;
    QStringList m_single;
    QStringList m_many;
};

} // namespace KXClient
