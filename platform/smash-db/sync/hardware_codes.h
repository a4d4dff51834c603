// Codes of SMBIOS (DSP0134) as CIM has them.
#pragma once

#include <cstdint>
#include <string>

namespace smash {

std::uint16_t formFactorOf(std::uint8_t code); // CIM_PhysicalMemory.FormFactor
std::uint16_t memoryTypeOf(std::uint8_t code); // CIM_PhysicalMemory.MemoryType
std::uint16_t portLayoutOf(std::uint8_t code); // CIM_PhysicalConnector.ConnectorLayout of a port's connector
std::uint16_t genderOf(std::uint8_t code);     // CIM_PhysicalConnector.ConnectorGender, likewise
std::uint8_t classCodeOf(std::uint8_t deviceType); // CIM_PCIController.ClassCode of an onboard device

// What the type and the width of an expansion slot make together.
struct SlotShape {
    std::uint16_t layout;    // CIM_PhysicalConnector.ConnectorLayout
    std::uint16_t linkWidth; // CIM_Slot.MaxLinkWidth; 0: no link
    std::uint16_t dataWidth; // bits; 0: a link, or unknown
    std::string text;        // "PCI Express Gen 4 x8 in x16", the link's width and the cards'; empty: unknown
};
SlotShape slotShapeOf(std::uint8_t type, std::uint8_t width);

} // namespace smash
