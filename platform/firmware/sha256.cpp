#include "firmware/sha256.h"

#include <algorithm>
#include <bit>

namespace firmware {
namespace {

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr std::uint32_t constants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t bigEndian(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

} // namespace

void Sha256::takeBlock(const std::uint8_t* block) {
    std::uint32_t words[64];
    for (std::size_t i = 0; i < 16; ++i)
        words[i] = bigEndian(block + 4 * i);
    for (std::size_t i = 16; i < 64; ++i) {
        const std::uint32_t old = words[i - 15], recent = words[i - 2];
        words[i] = words[i - 16] + words[i - 7] + (std::rotr(old, 7) ^ std::rotr(old, 18) ^ old >> 3) +
                   (std::rotr(recent, 17) ^ std::rotr(recent, 19) ^ recent >> 10);
    }
    auto [a, b, c, d, e, f, g, h] = state_;
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                                    ((e & f) ^ (~e & g)) + constants[i] + words[i];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::uint32_t added[] = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state_.size(); ++i)
        state_[i] += added[i];
}

Sha256& Sha256::add(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto filled = static_cast<std::size_t>(size_ % block_.size());
        const auto part = bytes.first(std::min(bytes.size(), block_.size() - filled));
        std::copy(part.begin(), part.end(), block_.begin() + static_cast<std::ptrdiff_t>(filled));
        size_ += part.size();
        bytes = bytes.subspan(part.size());
        if (size_ % block_.size() == 0)
            takeBlock(block_.data());
    }
    return *this;
}

Digest Sha256::finish() {
    const std::uint64_t bits = size_ * 8;
    constexpr std::uint8_t end[] = {0x80}, zero[] = {0};
    add(end);
    while (size_ % block_.size() != block_.size() - sizeof bits)
        add(zero);
    std::uint8_t length[sizeof bits];
    for (std::size_t i = 0; i < sizeof bits; ++i)
        length[i] = static_cast<std::uint8_t>(bits >> (8 * (sizeof bits - 1 - i)));
    add(length);
    Digest digest;
    for (std::size_t i = 0; i < digest.size(); ++i)
        digest[i] = static_cast<std::uint8_t>(state_[i / 4] >> (24 - 8 * (i % 4)));
    return digest;
}

} // namespace firmware
