// Bytes that must not outlive their use: passwords on their way to a BMC.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace ipmi {

template <std::size_t N>
class SecretBytes {
public:
    SecretBytes() = default;
    ~SecretBytes() { explicit_bzero(bytes_.data(), N); }
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;

    std::array<std::uint8_t, N>& bytes() { return bytes_; }

private:
    std::array<std::uint8_t, N> bytes_{};
};

} // namespace ipmi
