// The services there are.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace ph {

// Which of the two ports of its service record a service listens at.
enum class Ports : std::uint8_t { None, Clear, Encrypted, Both };

struct Service {
    const char* name;
    const char* elementName;
    const char* word;
    std::uint16_t protocol; // DMTF Protocol
    std::uint32_t bit;      // CIM_SERVICE_…; 0: the CLP daemon
    Ports ports;

    bool isClp() const { return bit == 0; }
};

std::span<const Service> allServices();

// Returns nullptr for a name that no service has.
const Service* findService(std::string_view name);

} // namespace ph
