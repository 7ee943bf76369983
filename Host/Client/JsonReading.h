#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <nlohmann/json.hpp>

#include <optional>

namespace KXClient {

using Json = nlohmann::ordered_json;

// The whole content of a regular file of at most 256 MiB; otherwise nothing, and why.
std::optional<QByteArray> ReadInput(const QString& strFile, QString& strError);
// One JSON value; otherwise nothing, and where the text goes wrong. A key that an object has twice is an error.
std::optional<Json> ParseJson(const QByteArray& text, QString& strError);

// Take over a value of the right type and range. 64-bit numbers may also be decimal texts, because not every writer
// keeps more than 53 bits. A text with a NUL is refused: as a file name it would be cut there.
bool ReadValue(const Json& json, QString& strTarget);
bool ReadValue(const Json& json, qint32& iTarget);
bool ReadValue(const Json& json, qint64& lTarget);
bool ReadValue(const Json& json, quint64& uTarget);
bool ReadValue(const Json& json, bool& bTarget);
constexpr const char* KindOf(const QString&)
{
    return "a text";
}
constexpr const char* KindOf(qint32)
{
    return "a 32-bit number";
}
constexpr const char* KindOf(qint64)
{
    return "a 64-bit number";
}
constexpr const char* KindOf(quint64)
{
    return "a number of 0 or more";
}
constexpr const char* KindOf(bool)
{
    return "true or false";
}

// Takes the members of one object key by key; keys that nobody took are unknown. Keeps the first error, with the
// path of its key.
class ObjectReader
{
public:
    // `strPath` leads to the object ("" for the root); `json` must outlive the reader.
    ObjectReader(const Json& json, const QString& strPath);

    // True when the member exists and has the type of the target; a missing member leaves the target as it is.
    template <class Target>
    bool Take(const char* pszKey, Target& target)
    {
        const Json* pMember = TakeMember(pszKey);
        if (!pMember)
            return false;
        if (ReadValue(*pMember, target))
            return true;
        Fail(pszKey, QLatin1String("must be ") + QLatin1String(KindOf(target)));
        return false;
    }
    // The member, null when it is missing.
    const Json* TakeMember(const char* pszKey);
    // Every key that was not taken is an error now.
    void RefuseTheRest();

    void Fail(const char* pszKey, const QString& strReason);
    void FailFurtherIn(const QString& strError);
    QString PathOf(const QString& strKey) const;
    QString Error() const { return m_strError; }

private:
    const Json& m_json;
    QString m_strPath;
    QSet<QString> m_taken;
    QString m_strError;
};

} // namespace KXClient
