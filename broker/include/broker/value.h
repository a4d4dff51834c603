// CIM values, instances and object paths as plain C++: what requests are made of and results are read into.
// They own what they hold and outlive the request.
#pragma once

#include <cmpidt.h>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <strings.h>
#include <variant>
#include <vector>

namespace broker {

struct Instance;
struct ObjectPath;

// CIM datetime: a point in time, or an interval (DSP0004, 5.2.4). Values with asterisks are not supported.
struct DateTime {
    std::uint64_t microseconds = 0; // since 1970-01-01 UTC, or of the interval
    bool interval = false;
    std::int16_t utcOffset = 0; // minutes east of UTC that a point in time is written in

    std::string text() const; // "20260131235959.000000+060" or "00000001020304.000000:000"
    static std::optional<DateTime> parse(std::string_view text);
    bool operator==(const DateTime&) const = default;
};

struct Value {
    using Reference = std::shared_ptr<const ObjectPath>;
    using Embedded = std::shared_ptr<const Instance>;
    using Array = std::vector<Value>; // elements carry the type without CMPI_ARRAY

    CMPIType type = CMPI_null; // the declared type, also of a null
    // Null, boolean, uint* and char16, sint*, real*, string, datetime, reference, embedded instance, array.
    std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, std::string, DateTime, Reference,
                 Embedded, Array>
        content;

    bool isNull() const { return content.index() == 0; }
    bool isArray() const { return (type & CMPI_ARRAY) != 0; }
    template <class T>
    const T* as() const {
        return std::get_if<T>(&content);
    }
};

bool operator==(const Value& left, const Value& right);

// Returns "uint16", "string[]", "datetime", "reference" and the like.
std::string typeName(CMPIType type);

// Strings stand as they are, elements of arrays as in MOF: {"a", "b"}; null is NULL.
std::string toText(const Value& value);

struct NamedValue {
    std::string name;
    Value value;
    bool operator==(const NamedValue&) const = default;
};

// Properties, keys, arguments or context entries, in the order of insertion.
using NamedValues = std::vector<NamedValue>;

// CIM names compare without regard to case. Most differ in length, which costs no call.
inline bool sameName(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}
const Value* find(const NamedValues& values, std::string_view name);
void set(NamedValues& values, std::string_view name, Value value);

struct ObjectPath {
    std::string host;
    std::string nameSpace;
    std::string className;
    NamedValues keys;
    bool operator==(const ObjectPath&) const = default;
};

struct Instance {
    ObjectPath path;
    NamedValues properties;
    bool operator==(const Instance&) const = default;
};

// An object path in its usual text form: [//host/][namespace:]CIM_X.Key="text",Key2=3,Key3=TRUE. Quotes and
// backslashes in texts are escaped with a backslash. A reference key is written as the text of its path.
std::string toText(const ObjectPath& path);

class PathSyntaxError : public std::invalid_argument {
public:
    PathSyntaxError(const std::string& message, size_t offset)
        : std::invalid_argument(message + " at position " + std::to_string(offset + 1)), position(offset) {}
    size_t position; // 0-based
};

// Throws PathSyntaxError. Integers become uint64, negative ones sint64.
ObjectPath parseObjectPath(std::string_view text);

} // namespace broker
