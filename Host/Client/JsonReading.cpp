#include "Host/Client/JsonReading.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace KXClient {

namespace {

constexpr qint64 LargestInput = 256LL * 1024 * 1024;

template <class Number>
bool ReadInteger(const Json& json, Number& target)
{
    if (json.is_number_unsigned()) {
        const auto uValue = json.get<quint64>();
        target = static_cast<Number>(uValue);
        return uValue <= static_cast<quint64>(std::numeric_limits<Number>::max());
    }
    if (!json.is_number_integer())
        return false;
    const auto lValue = json.get<qint64>(); // negative: the others are unsigned
    target = static_cast<Number>(lValue);
    return std::numeric_limits<Number>::is_signed && lValue >= static_cast<qint64>(std::numeric_limits<Number>::min());
}

QString TextOf(const Json& json)
{
    return QString::fromStdString(json.get_ref<const std::string&>());
}

// Watches the parser for a key that one object has twice: the later one would silently win.
struct RepeatedKey
{
    std::vector<std::set<std::string>> openObjects;
    std::optional<QString> key;

    bool operator()(int, Json::parse_event_t event, Json& json)
    {
        if (event == Json::parse_event_t::object_start)
            openObjects.emplace_back();
        else if (event == Json::parse_event_t::object_end)
            openObjects.pop_back();
        else if (event == Json::parse_event_t::key && !openObjects.back().insert(json.get<std::string>()).second)
            key = TextOf(json);
        return true;
    }
};

} // namespace

std::optional<QByteArray> ReadInput(const QString& strFile, QString& strError)
{
    QFile file(strFile);
    if (!QFileInfo(strFile).isFile())
        strError = QStringLiteral("%1: no such file").arg(strFile);
    else if (file.size() > LargestInput)
        strError = QStringLiteral("%1: larger than 256 MiB").arg(strFile);
    else if (!file.open(QIODevice::ReadOnly))
        strError = QStringLiteral("%1: %2").arg(strFile, file.errorString());
    else
        return file.readAll();
    return std::nullopt;
}

std::optional<Json> ParseJson(const QByteArray& text, QString& strError)
{
    RepeatedKey repeated;
    try {
        Json json = Json::parse(text.constBegin(), text.constEnd(), std::ref(repeated));
        if (!repeated.key)
            return json;
        strError = QStringLiteral("the key \"%1\" stands twice in one object").arg(*repeated.key);
    } catch (const Json::parse_error& error) {
        strError = QStringLiteral("not JSON: ") + QString::fromUtf8(error.what());
    }
    return std::nullopt;
}

bool ReadValue(const Json& json, QString& strTarget)
{
    if (!json.is_string())
        return false;
    strTarget = TextOf(json);
    return !strTarget.contains(QChar(0));
}

bool ReadValue(const Json& json, qint32& iTarget)
{
    return ReadInteger(json, iTarget);
}

bool ReadValue(const Json& json, qint64& lTarget)
{
    bool bNumber = json.is_string();
    if (bNumber)
        lTarget = TextOf(json).toLongLong(&bNumber);
    return bNumber || ReadInteger(json, lTarget);
}

bool ReadValue(const Json& json, quint64& uTarget)
{
    bool bNumber = json.is_string();
    if (bNumber)
        uTarget = TextOf(json).toULongLong(&bNumber);
    return bNumber || ReadInteger(json, uTarget);
}

bool ReadValue(const Json& json, bool& bTarget)
{
    if (!json.is_boolean())
        return false;
    bTarget = json.get<bool>();
    return true;
}

ObjectReader::ObjectReader(const Json& json, const QString& strPath)
    : m_json(json)
    , m_strPath(strPath)
{
    if (!m_json.is_object())
        m_strError = (strPath.isEmpty() ? QStringLiteral("it") : strPath) + QLatin1String(" must be an object");
}

const Json* ObjectReader::TakeMember(const char* pszKey)
{
    m_taken.insert(QString::fromUtf8(pszKey));
    if (!m_json.is_object())
        return nullptr;
    const auto member = m_json.find(pszKey);
    return member == m_json.end() ? nullptr : &*member;
}

void ObjectReader::RefuseTheRest()
{
    if (!m_json.is_object())
        return;
    for (const auto& member : m_json.items()) {
        const QString strKey = QString::fromStdString(member.key());
        if (!m_taken.contains(strKey))
            FailFurtherIn(PathOf(strKey) + QLatin1String(": unknown key"));
    }
}

void ObjectReader::Fail(const char* pszKey, const QString& strReason)
{
    FailFurtherIn(PathOf(QString::fromUtf8(pszKey)) + QLatin1String(": ") + strReason);
}

void ObjectReader::FailFurtherIn(const QString& strError)
{
    if (m_strError.isEmpty())
        m_strError = strError;
}

QString ObjectReader::PathOf(const QString& strKey) const
{
    return m_strPath.isEmpty() ? strKey : m_strPath + QLatin1Char('.') + strKey;
}

} // namespace KXClient
