// Reads the bytes of a FRU device that the BMC answers for (IPMI 2.0 34).
#pragma once

#include "ipmi/transport.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace smash {

// Thrown for contents that contradict the Platform Management FRU Information Storage Definition.
struct MalformedFru : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class FruDevice {
public:
    FruDevice(ipmi::Transport& bmc, std::uint8_t id);

    // These throw MalformedFru, and what ipmi::run throws. Offsets are in bytes.
    std::vector<std::uint8_t> read(std::size_t offset, std::size_t count);
    // Reads bytes whose sum must be 0.
    std::vector<std::uint8_t> readChecked(std::size_t offset, std::size_t count);
    // Reads an area that has its length, in multiples of eight bytes, in its second byte.
    std::vector<std::uint8_t> readArea(std::size_t offset);

private:
    void append(std::vector<std::uint8_t>& bytes, std::size_t address, std::size_t count);

    ipmi::Transport& bmc_;
    std::uint8_t id_;
    std::size_t size_ = 0;
    std::size_t addressUnit_ = 1; // 2: addressed by words
};

} // namespace smash
