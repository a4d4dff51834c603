// Texts with numbers in them that are written for each record of a log or row of a table, where printf would take most
// of the time.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ph {

// Writes into a field. What does not fit is cut; the text is always terminated.
class TextWriter {
public:
    template <std::size_t N>
    explicit TextWriter(char (&field)[N]) : TextWriter(field, N) {}
    TextWriter(char* field, std::size_t size) : next_(field), last_(field + size - 1) { *next_ = '\0'; }

    TextWriter& text(std::string_view text) {
        next_ = std::copy_n(text.data(), std::min<std::size_t>(text.size(), last_ - next_), next_);
        *next_ = '\0';
        return *this;
    }
    TextWriter& number(std::uint32_t value) {
        char digits[10];
        const char* const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
        return text({digits, static_cast<std::size_t>(end - digits)});
    }
    // Writes the last `width` decimal digits, at most four.
    TextWriter& digits(unsigned value, std::size_t width) {
        const char all[] = {digit(value / 1000), digit(value / 100), digit(value / 10), digit(value)};
        return text(std::string_view(all, sizeof(all)).substr(sizeof(all) - width));
    }

private:
    static char digit(unsigned value) { return static_cast<char>('0' + value % 10); }

    char* next_;
    char* const last_;
};

} // namespace ph
