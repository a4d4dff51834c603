// What parts of a machine are, as sensors and FRU devices name them (IPMI 2.0, table 43-13).
#pragma once

#include <compare>
#include <cstdint>

namespace ipmi {

struct Entity {
    std::uint8_t id;
    std::uint8_t instance;

    auto operator<=>(const Entity&) const = default; // NOLINT(modernize-use-nullptr)
};

namespace entity {

inline constexpr std::uint8_t processor = 3;
inline constexpr std::uint8_t systemBoard = 7;
inline constexpr std::uint8_t powerSupply = 10;
inline constexpr std::uint8_t addInCard = 11;
inline constexpr std::uint8_t systemChassis = 23;
inline constexpr std::uint8_t fan = 29;
inline constexpr std::uint8_t memoryDevice = 32;

} // namespace entity
} // namespace ipmi
