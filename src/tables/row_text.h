// A text of a row, whose field is filled when the library is loaded.
//
// The released rows have fields of 256 or 512 bytes: as constants they were a quarter of the library's file, blanks for the
// most part. Their rows are therefore made by functions, which the compiler calls at the start, from texts of their own length.
#pragma once

#include <cstddef>
#include <cstring>

namespace ph {

template <std::size_t size>
struct RowText {
    // Literals that fit, with their NUL.
    template <std::size_t length>
    consteval RowText(const char (&literal)[length]) : text(literal) {
        static_assert(length <= size);
    }
    void copyTo(char (&field)[size]) const noexcept {
        std::strcpy(field, text); // NOLINT: its length is checked above, and the rest of the field is zero
    }
    const char* text;
};

template <class Row>
inline constexpr std::size_t textSize = sizeof(Row{}.name);

} // namespace ph
