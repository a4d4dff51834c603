#include "cimxml/value_text.h"

#include "interop/xml_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace cimxml {
namespace {

constexpr CMPIType types[] = {CMPI_boolean, CMPI_char16, CMPI_uint8,  CMPI_uint16, CMPI_uint32,
                              CMPI_uint64,  CMPI_sint8,  CMPI_sint16, CMPI_sint32, CMPI_sint64,
                              CMPI_real32,  CMPI_real64, CMPI_string, CMPI_ref,    CMPI_dateTime};

CMPIType elementType(CMPIType type) {
    return static_cast<CMPIType>(type & ~CMPI_ARRAY);
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <class Number>
std::optional<Number> number(std::string_view text, int base) {
    Number value{};
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value, base);
    return error == std::errc{} && end == last ? std::optional(value) : std::nullopt;
}

struct Magnitude {
    bool isNegative = false;
    std::uint64_t size = 0;
};

// Reads an integer: [+-]decimal, 0xhexadecimal or binaryB.
std::optional<Magnitude> integer(std::string_view text) {
    Magnitude result;
    text = trimmed(text);
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        result.isNegative = text.front() == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    } else if (text.size() > 1 && (text.back() == 'b' || text.back() == 'B')) {
        base = 2;
        text.remove_suffix(1);
    }
    const auto size = number<std::uint64_t>(text, base);
    if (!size)
        return std::nullopt;
    result.size = *size;
    return result;
}

unsigned bitsOf(CMPIType type) {
    switch (type) {
    case CMPI_uint8:
    case CMPI_sint8:
        return 8;
    case CMPI_uint16:
    case CMPI_sint16:
        return 16;
    case CMPI_uint32:
    case CMPI_sint32:
        return 32;
    default:
        return 64;
    }
}

std::optional<broker::Value> parseInteger(CMPIType type, std::string_view text) {
    const auto value = integer(text);
    if (!value)
        return std::nullopt;
    const unsigned spare = 64 - bitsOf(type);
    if ((type & CMPI_SINT) != CMPI_SINT) {
        const std::uint64_t largest = std::numeric_limits<std::uint64_t>::max() >> spare;
        if (value->size > largest || (value->isNegative && value->size != 0))
            return std::nullopt;
        return broker::Value{type, value->size};
    }
    const std::uint64_t largest = std::numeric_limits<std::uint64_t>::max() >> (spare + 1);
    if (value->size > largest + (value->isNegative ? 1 : 0))
        return std::nullopt;
    return broker::Value{type, static_cast<std::int64_t>(value->isNegative ? 0 - value->size : value->size)};
}

std::optional<broker::Value> parseReal(CMPIType type, std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc{} || end != last)
        return std::nullopt;
    return broker::Value{type, value};
}

std::optional<broker::Value> parseBoolean(std::string_view text) {
    text = trimmed(text);
    if (broker::sameName(text, "true"))
        return broker::Value{CMPI_boolean, true};
    if (broker::sameName(text, "false"))
        return broker::Value{CMPI_boolean, false};
    return std::nullopt;
}

// Reads one character of the basic plane.
std::optional<broker::Value> parseCharacter(const std::string& text) {
    for (const std::uint32_t size : {1, 2, 3}) {
        if (text.size() != size)
            continue;
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
        std::uint32_t unit = size == 1 ? byte(0) : byte(0) & (0x7FU >> size);
        for (std::size_t i = 1; i < size; ++i)
            unit = unit << 6 | (byte(i) & 0x3FU);
        // A text of several characters does not read back.
        if (interop::xmlText(static_cast<char16_t>(unit)) == text)
            return broker::Value{CMPI_char16, std::uint64_t{unit}};
    }
    return std::nullopt;
}

// DSP0201 wants a point in a real.
std::string withPoint(std::string text) {
    if (text.find("inf") != std::string::npos)
        return text.front() == '-' ? "-INF" : "INF";
    if (text.find("nan") != std::string::npos)
        return "NaN";
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}

} // namespace

std::optional<CMPIType> typeNamed(std::string_view name) {
    const auto* type = std::find_if(std::begin(types), std::end(types), [&](CMPIType each) {
        return broker::sameName(broker::typeName(each), name);
    });
    return type != std::end(types) ? std::optional(*type) : std::nullopt;
}

std::string typeAttribute(CMPIType type) {
    return isEmbedded(type) ? "string" : broker::typeName(elementType(type));
}

bool isReference(CMPIType type) {
    return elementType(type) == CMPI_ref;
}

bool isEmbedded(CMPIType type) {
    return elementType(type) == CMPI_instance;
}

bool isNumber(CMPIType type) {
    return (elementType(type) & (CMPI_INTEGER | CMPI_REAL)) != 0 && (type & CMPI_ENC) == 0;
}

std::optional<broker::Value> parseValue(CMPIType type, const std::string& text) {
    switch (type) {
    case CMPI_string:
        return broker::Value{type, text};
    case CMPI_boolean:
        return parseBoolean(text);
    case CMPI_char16:
        return parseCharacter(text);
    case CMPI_real32:
    case CMPI_real64:
        return parseReal(type, text);
    case CMPI_dateTime:
        if (const auto time = broker::DateTime::parse(trimmed(text)))
            return broker::Value{type, *time};
        return std::nullopt;
    default:
        return isNumber(type) ? parseInteger(type, text) : std::nullopt;
    }
}

std::optional<broker::Value> parseNumber(const std::string& text) {
    constexpr CMPIType widest[] = {CMPI_uint64, CMPI_sint64, CMPI_real64};
    for (const CMPIType type : widest)
        if (auto value = parseValue(type, text))
            return value;
    return std::nullopt;
}

std::string valueText(const broker::Value& value) {
    switch (value.type) {
    case CMPI_char16:
        return interop::xmlText(static_cast<char16_t>(*value.as<std::uint64_t>()));
    case CMPI_real32:
    case CMPI_real64:
        return withPoint(broker::toText(value));
    default:
        return broker::toText(value);
    }
}

} // namespace cimxml
