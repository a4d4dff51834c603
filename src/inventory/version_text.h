// Numbers in the texts that makers of firmware write their versions as.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ph {

struct Version {
    std::vector<std::uint16_t> numbers; // major, minor, revision; two at least, or none
    std::optional<std::uint16_t> build;
};

// Reads the first word of two to four numbers with dots between them, such as "2.1.14", with or without a "v"
// before it. The build is its fourth number, or that behind the word "build". A number of more than 16 bits
// is not read.
Version readVersion(std::string_view text);

} // namespace ph
