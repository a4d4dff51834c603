// Names of filters: "IndicationFilter:IPMIPEF-<policy>-<filter number>", "<anything>:CIMXML-<number>".
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ph::indications {

inline constexpr std::size_t filterNameSize = 256;

enum class FilterKind { Pef, Cimxml, Other };

// Returns what is between the first ':' and the next '-'.
std::optional<FilterKind> kindOfFilter(const char* name);

struct PefFilterName {
    int policy;
    int filterNumber;
};
// Reads the two numbers behind the first '-', which a '-' separates.
std::optional<PefFilterName> parsePefFilter(const char* name);
void formatPefFilter(char (&name)[filterNameSize], const PefFilterName& filter);

// Tells whether there is a number behind the first '-'.
bool isCimxmlFilter(const char* name);

// Reads the number behind the last '-'; 0 when there is none.
std::uint8_t filterNumberOf(const char* name);

} // namespace ph::indications
