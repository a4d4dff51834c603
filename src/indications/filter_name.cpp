#include "indications/filter_name.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace ph::indications {
namespace {

constexpr const char* pefKind = "IPMIPEF";
constexpr const char* cimxmlKind = "CIMXML";

// Takes a decimal number off the text.
std::optional<int> takeNumber(const char*& text) {
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, 10);
    if (end == text)
        return std::nullopt;
    text = end;
    return static_cast<int>(
        std::clamp<long long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// Finds what follows the first '-', which must not be the first character; nullptr when there is none.
const char* afterDash(const char* name) {
    const char* const dash = std::strchr(name, '-');
    return dash != nullptr && dash != name ? dash + 1 : nullptr;
}

} // namespace

std::optional<FilterKind> kindOfFilter(const char* name) {
    char kind[64] = "";
    if (std::sscanf(name, "%*[^:]:%63[^-]-%*[^.]", kind) != 1)
        return std::nullopt;
    return std::strcmp(kind, pefKind) == 0      ? FilterKind::Pef
           : std::strcmp(kind, cimxmlKind) == 0 ? FilterKind::Cimxml
                                                : FilterKind::Other;
}

std::optional<PefFilterName> parsePefFilter(const char* name) {
    const char* text = afterDash(name);
    const auto policy = text != nullptr ? takeNumber(text) : std::nullopt;
    if (!policy || *text++ != '-')
        return std::nullopt;
    const auto filterNumber = takeNumber(text);
    if (!filterNumber)
        return std::nullopt;
    return PefFilterName{*policy, *filterNumber};
}

void formatPefFilter(char (&name)[filterNameSize], const PefFilterName& filter) {
    std::snprintf(name, sizeof(name), "IndicationFilter:%s-%d-%d", pefKind, filter.policy,
                  filter.filterNumber);
}

bool isCimxmlFilter(const char* name) {
    const char* text = afterDash(name);
    return text != nullptr && takeNumber(text);
}

std::uint8_t filterNumberOf(const char* name) {
    const char* const dash = std::strrchr(name, '-');
    const char* text = dash != nullptr ? dash + 1 : name;
    return static_cast<std::uint8_t>(takeNumber(text).value_or(0));
}

} // namespace ph::indications
