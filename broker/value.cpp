#include "broker/value.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace broker {

namespace {

struct TypeName {
    CMPIType type;
    const char* name;
};

constexpr TypeName typeNames[] = {
    {CMPI_boolean, "boolean"},   {CMPI_char16, "char16"},     {CMPI_real32, "real32"},
    {CMPI_real64, "real64"},     {CMPI_uint8, "uint8"},       {CMPI_uint16, "uint16"},
    {CMPI_uint32, "uint32"},     {CMPI_uint64, "uint64"},     {CMPI_sint8, "sint8"},
    {CMPI_sint16, "sint16"},     {CMPI_sint32, "sint32"},     {CMPI_sint64, "sint64"},
    {CMPI_string, "string"},     {CMPI_dateTime, "datetime"}, {CMPI_ref, "reference"},
    {CMPI_instance, "instance"},
};

template <class T>
bool sameTarget(const std::shared_ptr<const T>& left, const std::shared_ptr<const T>& right) {
    return left == right || (left != nullptr && right != nullptr && *left == *right);
}

template <class Number>
std::string numberText(Number number) {
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.begin(), buffer.end(), number).ptr;
    return {buffer.begin(), end};
}

struct TextOf {
    CMPIType type;

    std::string operator()(std::monostate) const { return "NULL"; }
    std::string operator()(bool flag) const { return flag ? "TRUE" : "FALSE"; }
    std::string operator()(std::uint64_t number) const { return numberText(number); }
    std::string operator()(std::int64_t number) const { return numberText(number); }
    std::string operator()(double number) const {
        return type == CMPI_real32 ? numberText(static_cast<float>(number)) : numberText(number);
    }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const DateTime& time) const { return time.text(); }
    std::string operator()(const Value::Reference& path) const { return toText(*path); }
    std::string operator()(const Value::Embedded& instance) const {
        return "instance of " + instance->path.className;
    }
    std::string operator()(const Value::Array& elements) const {
        std::string text = "{";
        for (const Value& element : elements) {
            if (text.size() > 1)
                text += ", ";
            const auto* string = element.as<std::string>();
            text += string != nullptr ? '"' + *string + '"' : toText(element);
        }
        return text + "}";
    }
};

} // namespace

bool operator==(const Value& left, const Value& right) {
    if (left.type != right.type || left.content.index() != right.content.index())
        return false;
    if (const auto* path = left.as<Value::Reference>())
        return sameTarget(*path, *right.as<Value::Reference>());
    if (const auto* instance = left.as<Value::Embedded>())
        return sameTarget(*instance, *right.as<Value::Embedded>());
    return left.content == right.content;
}

std::string typeName(CMPIType type) {
    const auto* row = std::find_if(std::begin(typeNames), std::end(typeNames),
                                   [&](const TypeName& entry) { return entry.type == (type & ~CMPI_ARRAY); });
    const std::string name = row != std::end(typeNames) ? row->name : "unknown";
    return (type & CMPI_ARRAY) != 0 ? name + "[]" : name;
}

std::string toText(const Value& value) {
    return std::visit(TextOf{value.type}, value.content);
}

const Value* find(const NamedValues& values, std::string_view name) {
    for (const NamedValue& entry : values)
        if (sameName(entry.name, name))
            return &entry.value;
    return nullptr;
}

void set(NamedValues& values, std::string_view name, Value value) {
    for (NamedValue& entry : values)
        if (sameName(entry.name, name)) {
            entry.value = std::move(value);
            return;
        }
    if (values.empty())
        values.reserve(4); // most paths have that many keys
    values.push_back({std::string(name), std::move(value)});
}

} // namespace broker
