#include "ktl/Json.h"

#include <nlohmann/json.hpp>

#include <deque>
#include <limits>
#include <unordered_map>
#include <utility>
#include <variant>

// The values are a tree of our own, since a reference into it must be a Value; reading and writing are nlohmann's.
// This file includes nothing else of the host, so that another host can compile it as it stands.
namespace ktl {
namespace Json {
namespace {

using Native = nlohmann::ordered_json;

constexpr std::size_t DeepestNesting = 512; // writing and destroying recurse; deeper text is refused

const Value& NullValue()
{
    static const Value s_value;
    return s_value;
}

// What a writer gets who asks a text or a number for a member.
Value& ThrowAwayValue()
{
    thread_local Value s_value;
    s_value = Value();
    return s_value;
}

} // namespace

// A null value has no Data.
struct Value::Data
{
    using Array = std::deque<Value>; // a deque and no vector: growing it leaves the elements where they are
    struct Object
    {
        std::deque<std::pair<std::string, Value>> listMembers; // in the order in which they were set
        std::unordered_map<std::string, std::size_t> mapIndex; // key to place in the list
    };
    class Builder;

    template <class T>
    static const T* As(const Value& value)
    {
        return value.m_pData ? std::get_if<T>(&value.m_pData->content) : nullptr;
    }
    // Null unless the value was a T already, or null and now is an empty T.
    template <class T>
    static T* Make(Value& value)
    {
        if (!value.m_pData)
            value.m_pData.reset(new Data{T()});
        return std::get_if<T>(&value.m_pData->content);
    }
    static Native ToNative(const Value& value);

    std::variant<bool, std::int64_t, double, std::string, Array, Object> content;
};

Native Value::Data::ToNative(const Value& value)
{
    if (const auto* pObject = As<Object>(value)) {
        Native::object_t object; // appended to directly: setting by key would search the members each time
        for (const auto& [strKey, member] : pObject->listMembers)
            object.emplace_back(strKey, ToNative(member));
        return Native(std::move(object));
    }
    if (const auto* pArray = As<Array>(value)) {
        Native::array_t array;
        for (const Value& element : *pArray)
            array.push_back(ToNative(element));
        return Native(std::move(array));
    }
    if (const auto* pText = As<std::string>(value))
        return Native(*pText);
    if (const auto* pBool = As<bool>(value))
        return Native(*pBool);
    if (const auto* pInteger = As<std::int64_t>(value))
        return Native(*pInteger);
    const auto* pReal = As<double>(value);
    return pReal ? Native(*pReal) : Native(nullptr);
}

// Takes nlohmann's reading events; a false stops the reading.
class Value::Data::Builder : public nlohmann::json_sax<Native>
{
public:
    bool null() override { return Place(Value()); }
    bool boolean(bool bValue) override { return Place(Value(bValue)); }
    bool number_integer(number_integer_t lValue) override { return Place(Value(std::int64_t{lValue})); }
    bool number_unsigned(number_unsigned_t uValue) override
    {
        constexpr auto Largest = static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max());
        return Place(uValue <= Largest ? Value(static_cast<std::int64_t>(uValue)) : Value(static_cast<double>(uValue)));
    }
    bool number_float(number_float_t dValue, const string_t&) override { return Place(Value(dValue)); }
    bool string(string_t& strValue) override { return Place(Value(strValue)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return Open<Object>(); }
    bool start_array(std::size_t) override { return Open<Array>(); }
    bool key(string_t& strKey) override
    {
        m_strKey = strKey;
        return true;
    }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

    Value m_root;

private:
    Value& NextPlace()
    {
        if (m_listOpen.empty())
            return m_root;
        if (Array* pArray = std::get_if<Array>(&m_listOpen.back()->m_pData->content))
            return pArray->emplace_back();
        return (*m_listOpen.back())[m_strKey];
    }
    bool Place(Value value)
    {
        NextPlace() = std::move(value);
        return true;
    }
    template <class T>
    bool Open()
    {
        if (m_listOpen.size() == DeepestNesting)
            return false;
        Value& place = NextPlace();
        place = Value();
        Make<T>(place);
        m_listOpen.push_back(&place);
        return true;
    }
    bool Close()
    {
        m_listOpen.pop_back();
        return true;
    }

    std::vector<Value*> m_listOpen; // the containers being read, outermost first
    std::string m_strKey;
};

Value::Value() = default;
Value::Value(bool bValue)
    : m_pData(new Data{bValue})
{}
Value::Value(int iValue)
    : m_pData(new Data{std::int64_t{iValue}})
{}
Value::Value(std::int64_t lValue)
    : m_pData(new Data{lValue})
{}
Value::Value(double dValue)
    : m_pData(new Data{dValue})
{}
Value::Value(const char* pszText)
    : m_pData(new Data{std::string(pszText)})
{}
Value::Value(const std::string& strText)
    : m_pData(new Data{strText})
{}
Value::Value(const Value& other)
    : m_pData(other.m_pData ? new Data(*other.m_pData) : nullptr)
{}
Value::Value(Value&& other) noexcept = default;
Value::~Value() = default;

Value& Value::operator=(Value other) noexcept
{
    m_pData.swap(other.m_pData);
    return *this;
}

bool Value::isNull() const
{
    return !m_pData;
}

bool Value::isObject() const
{
    return Data::As<Data::Object>(*this) != nullptr;
}

bool Value::isArray() const
{
    return Data::As<Data::Array>(*this) != nullptr;
}

bool Value::isString() const
{
    return Data::As<std::string>(*this) != nullptr;
}

bool Value::isMember(const std::string& strKey) const
{
    const auto* pObject = Data::As<Data::Object>(*this);
    return pObject && pObject->mapIndex.count(strKey) != 0;
}

Value& Value::operator[](const std::string& strKey)
{
    auto* pObject = Data::Make<Data::Object>(*this);
    if (!pObject)
        return ThrowAwayValue();
    const auto [itIndex, bNew] = pObject->mapIndex.emplace(strKey, pObject->listMembers.size());
    if (bNew)
        pObject->listMembers.emplace_back(strKey, Value());
    return pObject->listMembers[itIndex->second].second;
}

const Value& Value::operator[](const std::string& strKey) const
{
    const auto* pObject = Data::As<Data::Object>(*this);
    if (!pObject)
        return NullValue();
    const auto itIndex = pObject->mapIndex.find(strKey);
    return itIndex == pObject->mapIndex.end() ? NullValue() : pObject->listMembers[itIndex->second].second;
}

Value& Value::operator[](const char* pszKey)
{
    return (*this)[std::string(pszKey)];
}

const Value& Value::operator[](const char* pszKey) const
{
    return (*this)[std::string(pszKey)];
}

void Value::append(const Value& value)
{
    Value copy(value); // first: it may be this value or a part of it
    if (auto* pArray = Data::Make<Data::Array>(*this))
        pArray->push_back(std::move(copy));
}

std::size_t Value::size() const
{
    if (const auto* pObject = Data::As<Data::Object>(*this))
        return pObject->listMembers.size();
    const auto* pArray = Data::As<Data::Array>(*this);
    return pArray ? pArray->size() : 0;
}

const Value& Value::at(std::size_t uIndex) const
{
    const auto* pArray = Data::As<Data::Array>(*this);
    return pArray && uIndex < pArray->size() ? (*pArray)[uIndex] : NullValue();
}

std::vector<std::string> Value::getMemberNames() const
{
    std::vector<std::string> listNames;
    if (const auto* pObject = Data::As<Data::Object>(*this)) {
        for (const auto& member : pObject->listMembers)
            listNames.push_back(member.first);
    }
    return listNames;
}

std::string Value::asString() const
{
    const auto* pText = Data::As<std::string>(*this);
    return pText ? *pText : std::string();
}

int Value::asInt() const
{
    const std::int64_t lValue = asInt64();
    const bool bFits = lValue >= std::numeric_limits<int>::min() && lValue <= std::numeric_limits<int>::max();
    return bFits ? static_cast<int>(lValue) : 0;
}

std::int64_t Value::asInt64() const
{
    if (const auto* pInteger = Data::As<std::int64_t>(*this))
        return *pInteger;
    constexpr double Limit = 9223372036854775808.0; // 2^63: the first real that is too large
    const auto* pReal = Data::As<double>(*this);
    return pReal && *pReal >= -Limit && *pReal < Limit ? static_cast<std::int64_t>(*pReal) : 0;
}

double Value::asDouble() const
{
    if (const auto* pInteger = Data::As<std::int64_t>(*this))
        return static_cast<double>(*pInteger);
    const auto* pReal = Data::As<double>(*this);
    return pReal ? *pReal : 0.0;
}

bool Value::asBool() const
{
    const auto* pBool = Data::As<bool>(*this);
    return pBool && *pBool;
}

std::string Value::toStyledString() const
{
    return Data::ToNative(*this).dump(4, ' ', false, Native::error_handler_t::replace);
}

bool Reader::parse(const std::string& strText, Value& root, bool bCollectComments)
{
    static_cast<void>(bCollectComments);
    Value::Data::Builder builder;
    if (!Native::sax_parse(strText, &builder))
        return false;
    root = std::move(builder.m_root);
    return true;
}

std::string FastWriter::write(const Value& value) const
{
    return Value::Data::ToNative(value).dump(-1, ' ', false, Native::error_handler_t::replace);
}

} // namespace Json
} // namespace ktl
