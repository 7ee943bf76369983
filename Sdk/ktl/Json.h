#pragma once

#include "KXSdkGlobal.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ktl {
namespace Json {

// A JSON value: null, boolean, integer, real, text (UTF-8), array or object. An object keeps its keys in the order in
// which they were first set; writers keep that order.
//
// Thread: a value belongs to one thread at a time. Errors: a wrong kind gives the empty value of the asked type,
// an unknown key a null value; nothing throws.
class KX_HOST_EXPORT Value
{
public:
    Value();
    Value(bool bValue);
    Value(int iValue);
    Value(std::int64_t lValue);
    Value(double dValue);
    Value(const char* pszText); // null-terminated, must not be null
    Value(const std::string& strText);
    Value(const Value& other);
    Value(Value&& other) noexcept;
    Value& operator=(Value other) noexcept;
    ~Value();

    bool isNull() const;
    bool isObject() const;
    bool isArray() const;
    bool isString() const;
    bool isMember(const std::string& strKey) const;

    // The member of that key. The non-const form turns a null value into an object and adds a missing key with null.
    // The reference is valid until the value is changed or destroyed.
    Value& operator[](const std::string& strKey);
    const Value& operator[](const std::string& strKey) const;
    Value& operator[](const char* pszKey);
    const Value& operator[](const char* pszKey) const;
    // Appends to an array; turns a null value into one.
    void append(const Value& value);
    // Number of members of an object or elements of an array, otherwise 0.
    std::size_t size() const;
    // Element of an array; a null value past its end.
    const Value& at(std::size_t uIndex) const;
    std::vector<std::string> getMemberNames() const;

    std::string asString() const;       // the text; empty for any other kind
    int asInt() const;                  // 0 when no number or out of range
    std::int64_t asInt64() const;       // 0 when no number
    double asDouble() const;            // 0 when no number
    bool asBool() const;                // false when no boolean
    std::string toStyledString() const; // indented, several lines

private:
    struct Data;
    std::unique_ptr<Data> m_pData;
    friend class Reader;
    friend class FastWriter;
};

// Reads JSON text.
class KX_HOST_EXPORT Reader
{
public:
    // True and `root` set when `strText` is one JSON value; otherwise false and `root` unchanged. Comments are never
    // accepted; `bCollectComments` says whether they would be kept, and exists for callers that state it.
    bool parse(const std::string& strText, Value& root, bool bCollectComments = false);
};

// Writes JSON text on one line, without a newline at its end.
class KX_HOST_EXPORT FastWriter
{
public:
    std::string write(const Value& value) const;
};

} // namespace Json
} // namespace ktl
