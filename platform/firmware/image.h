// Firmware images of the virtual BMC (docs/virtual-bmc.md): a head of 64 bytes, and what it is the head of.
#pragma once

#include "firmware/sha256.h"

#include <optional>
#include <string>

namespace firmware {

struct ImageHead {
    std::uint8_t major = 0; // 0 to 127
    std::uint8_t minor = 0; // 0 to 99
    std::array<std::uint8_t, 4> auxiliary{};
    std::uint32_t manufacturerId = 0;
    std::uint16_t productId = 0;
    std::uint32_t size = 0; // bytes behind the head
    Digest digest{};        // of the head up to here, and of those bytes

    std::string version() const; // "2.15.00000007", as CIM_SoftwareIdentity has it
};

inline constexpr std::size_t headSize = 64;
inline constexpr std::size_t digestPlace = 32;
using HeadBytes = std::array<std::uint8_t, headSize>;

// Returns nothing for bytes that are no head of an image.
std::optional<ImageHead> readHead(std::span<const std::uint8_t, headSize> bytes);

// Writes a head whose size and digest are those of what follows it.
HeadBytes writeHead(ImageHead head, std::span<const std::uint8_t> payload);

// Why a file is not taken.
enum class Fault { None, NoImage, WrongSize, WrongDigest };
const char* textOf(Fault fault);

// Reads the whole file, and tells whether it is an image and not damaged.
Fault check(int file, ImageHead& head);

} // namespace firmware
