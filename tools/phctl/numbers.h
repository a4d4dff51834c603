// Numbers of the command line.
#pragma once

#include <charconv>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace phctl {

inline bool isHexadecimal(std::string_view text) {
    return text.starts_with("0x") || text.starts_with("0X");
}

// Reads a text that is nothing but a number, an integer in this base.
template <class Number>
std::optional<Number> readNumber(std::string_view text, int base = 10) {
    Number number{};
    const auto [end, error] = [&] {
        if constexpr (std::is_floating_point_v<Number>)
            return std::from_chars(text.data(), text.data() + text.size(), number);
        else
            return std::from_chars(text.data(), text.data() + text.size(), number, base);
    }();
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// Reads an integer that may be hexadecimal (0x…).
template <class Number>
std::optional<Number> readInteger(std::string_view text) {
    return isHexadecimal(text) ? readNumber<Number>(text.substr(2), 16) : readNumber<Number>(text);
}

// Reads the ID of a record or device as C writes numbers.
inline std::optional<unsigned long> readId(const std::string& text) {
    try {
        std::size_t length = 0;
        const unsigned long id = std::stoul(text, &length, 0);
        return length == text.size() ? std::optional(id) : std::nullopt;
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

} // namespace phctl
