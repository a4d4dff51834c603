// A number of rounds or events on the command line of a benchmark.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace bench {

// Returns nothing for a text that is no number of 1 to `most`.
inline std::optional<int> readCount(std::string_view text, int most) {
    int count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && count >= 1 && count <= most ? std::optional(count) : std::nullopt;
}

} // namespace bench
