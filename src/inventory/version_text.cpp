#include "inventory/version_text.h"

#include <charconv>
#include <strings.h>

namespace ph {
namespace {

constexpr std::size_t mostNumbers = 4;

// Takes the next word off; it is empty at the end.
std::string_view takeWord(std::string_view& text) {
    constexpr std::string_view separators = " \t,;:()[]_-/";
    const auto begin = text.find_first_not_of(separators);
    text.remove_prefix(begin != std::string_view::npos ? begin : text.size());
    const std::string_view word = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(word.size());
    return word;
}

std::optional<std::uint16_t> number(std::string_view text) {
    std::uint16_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

// Returns the numbers between the dots; none when there is anything else among them.
std::vector<std::uint16_t> numbersOf(std::string_view word) {
    if (word.starts_with('v') || word.starts_with('V'))
        word.remove_prefix(1);
    std::vector<std::uint16_t> numbers;
    for (bool isLast = false; !isLast;) {
        const auto dot = word.find('.');
        isLast = dot == std::string_view::npos;
        const auto next = number(word.substr(0, dot));
        if (!next || numbers.size() == mostNumbers)
            return {};
        numbers.push_back(*next);
        word.remove_prefix(isLast ? word.size() : dot + 1);
    }
    return numbers;
}

bool isBuild(std::string_view word) {
    constexpr std::string_view build = "build";
    return word.size() == build.size() && strncasecmp(word.data(), build.data(), build.size()) == 0;
}

} // namespace

Version readVersion(std::string_view text) {
    Version version;
    while (!text.empty()) {
        const std::string_view word = takeWord(text);
        if (isBuild(word)) {
            version.build = number(takeWord(text));
        } else if (version.numbers.empty()) {
            auto numbers = numbersOf(word);
            if (numbers.size() > 1)
                version.numbers = std::move(numbers);
        }
    }
    if (version.numbers.size() == mostNumbers) {
        version.build = version.build ? version.build : version.numbers.back();
        version.numbers.pop_back();
    }
    return version;
}

} // namespace ph
