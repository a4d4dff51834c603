// Words of DSP0134 for the codes of its structures.
#pragma once

#include <cstdint>

namespace smbios {

const char* typeName(std::uint8_t structureType);
const char* processorTypeName(std::uint8_t type);
const char* correctionName(std::uint8_t errorCorrection); // of memory
const char* portTypeName(std::uint8_t type);
const char* connectorTypeName(std::uint8_t type);
const char* slotTypeName(std::uint8_t type); // empty where it is none that is known
// The width (7.10.2) of the cards that a PCI Express slot of the type takes, whatever the width of its link is. 0: the type
// does not tell.
std::uint8_t slotSize(std::uint8_t type);
const char* deviceTypeName(std::uint8_t type); // of an onboard device

} // namespace smbios
