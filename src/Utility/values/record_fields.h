// Writing the fields of data records.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace ph {

// Copies a text, cut at the field's width and always terminated.
template <std::size_t N>
void copyText(char (&field)[N], const char* text) {
    const std::size_t length = strnlen(text, N - 1);
    std::memmove(field, text, length);
    field[length] = '\0';
}

// Tells whether the field can hold the whole text.
template <std::size_t N>
bool fits(const char (&)[N], const char* text) {
    return std::strlen(text) < N;
}

// Writes a list ended by a negative number, cut at the field's width.
template <std::size_t N>
void setList(int (&field)[N], std::initializer_list<int> values) {
    std::fill_n(field, N, -1);
    std::copy_n(values.begin(), std::min(values.size(), N - 1), field);
}

inline constexpr std::uint16_t noSlot = 0xFFFF; // ends a list

// Does the same for a list ended by FFFFh.
template <std::size_t N>
void setSlots(std::uint16_t (&field)[N], std::initializer_list<std::uint16_t> values) {
    std::fill_n(field, N, noSlot);
    std::copy_n(values.begin(), std::min(values.size(), N - 1), field);
}

// Writes a list of decimal numbers separated by commas ("17,2"), ended by a negative number, cut at the
// field's width.
template <std::size_t N>
void parseList(int (&field)[N], const char* text) {
    std::fill_n(field, N, -1);
    for (std::size_t i = 0; i < N - 1 && text != nullptr && *text != '\0'; ++i) {
        field[i] = static_cast<int>(std::strtol(text, nullptr, 10));
        text = std::strchr(text, ',');
        text += text != nullptr;
    }
}

} // namespace ph
