// SHA-256 (FIPS 180-4), for a platform without a library of ciphers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace firmware {

using Digest = std::array<std::uint8_t, 32>;

class Sha256 {
public:
    Sha256& add(std::span<const std::uint8_t> bytes);
    Digest finish(); // ends it

private:
    void takeBlock(const std::uint8_t* block);

    std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                        0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<std::uint8_t, 64> block_{}; // the bytes of the last one that is not full
    std::uint64_t size_ = 0;
};

} // namespace firmware
