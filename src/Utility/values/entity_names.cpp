#include "provider_helper/utility.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

// Package types of CIM_PhysicalPackage for IPMI entity IDs (IPMI 2.0, table 43-13), in ascending order.
// Clients compare the names, so that trailing blanks and spelling must not change.
struct Entity {
    int id;
    int packageType;
    const char* name; // nullptr: none
};

constexpr Entity entities[] = {
    {4, 15, nullptr},
    {5, 5, nullptr},
    {6, 1, "System Management Module"},
    {7, 1, "System Board"},
    {8, 13, nullptr},
    {9, 12, nullptr},
    {10, 6, nullptr},
    {11, 1, "Add-in card"},
    {12, 1, "Front panel board"},
    {13, 1, "Back panel board"},
    {14, 1, "Power system board"},
    {15, 1, "Drive backplane"},
    {16, 1, "System internal expansion plane"},
    {17, 1, "Other system board"},
    {18, 1, "Processor board"},
    {19, 1, "Power unit / Power domain "},
    {20, 1, "Power module / DC to DC converter "},
    {21, 1, "Power management / Power distribution mode "},
    {22, 1, "Chassis back panel board"},
    {23, 3, "System Chassis"},
    {24, 3, "Sub-chassis"},
    {25, 1, "Other chassis board"},
    {26, 1, "Disk drive bay "},
    {27, 1, "Peripheral bay "},
    {28, 1, "Device bayn "},
    {29, 7, nullptr},
    {30, 7, nullptr},
    {31, 1, "Cable/Interconnec "},
    {32, 13, nullptr},
    {36, 4, nullptr},
    {38, 1, "Remote management card"},
    {40, 1, "Battery "},
    {41, 1, "Processing Blade"},
    {42, 1, "Connectivity Switch "},
    {43, 1, "Processor/Memory Module "},
    {44, 1, "I/O Module "},
    {45, 1, "Processor/IO Module "},
};

} // namespace

int PH_GetPackageTypeAndName(int entityId, int* packageType, char* name) {
    const Entity* entity = std::find_if(std::begin(entities), std::end(entities),
                                        [&](const Entity& candidate) { return candidate.id == entityId; });
    const bool known = entity != std::end(entities);
    *packageType = known ? entity->packageType : 0;
    if (known && entity->name != nullptr)
        std::snprintf(name, 64, "%s", entity->name);
    return 0;
}
