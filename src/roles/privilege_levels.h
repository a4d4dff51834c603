// The privilege levels of IPMI, each of which is a role.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace ph {

struct PrivilegeLevel {
    std::uint8_t limit;    // in Get and Set User Access (IPMI 2.0, 22.26 and 22.27)
    const char* name;      // Role.Name
    const char* title;     // ElementName
    const int* activities; // Privilege.Activities
};

inline constexpr std::uint8_t administratorLimit = 4;
inline constexpr std::uint8_t noAccessLimit = 15;

std::span<const PrivilegeLevel> privilegeLevels(); // from the lowest to the highest

// These return nullptr for what is no level, such as "no access".
const PrivilegeLevel* findLevel(std::uint8_t limit);
const PrivilegeLevel* findLevel(std::string_view name);

// All activities that the levels have.
extern const int* const privilegeActivities;

} // namespace ph
