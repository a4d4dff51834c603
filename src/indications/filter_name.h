// Names of filters: "IndicationFilter:IPMIPEF-<policy>-<filter number>", "<anything>:CIMXML-<number>".
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ph::indications {

inline constexpr std::size_t filterNameSize = 256;

enum class FilterKind { Pef, Cimxml, Other };

// What is between the first ':' and the next '-'; none when there is nothing.
std::optional<FilterKind> kindOfFilter(const char* name);

struct PefFilterName {
    int policy;
    int filterNumber;
};
// The two numbers behind the first '-', with a '-' between them.
std::optional<PefFilterName> parsePefFilter(const char* name);
void formatPefFilter(char (&name)[filterNameSize], const PefFilterName& filter);

// There is a number behind the first '-'.
bool isCimxmlFilter(const char* name);

// The number behind the last '-'; 0 for none.
std::uint8_t filterNumberOf(const char* name);

} // namespace ph::indications
