// The BMC's network interfaces, as every class of this folder lists them.
#pragma once

#include "provider_helper/utility.h"

#include <cstdint>
#include <vector>

namespace ph {

struct Lan {
    std::uint8_t index;   // as CIM_GetLANCount lists it
    std::uint8_t channel; // IPMI channel
    bool isBond;
    char interfaceName[CIM_INTERFACE_NAME_SIZE];
};

// The bonded interface alone when bonding is on, else every LAN in the BMC's order, all still without names.
// What the BMC does not answer stays zero.
std::vector<Lan> listLans(IPMI20_SESSION_T* session);
void readName(IPMI20_SESSION_T* session, Lan& lan);

struct MacText {
    char text[18];
};
// Writes a channel's MAC address "00:1A:…", read by either of the two hooks; empty when the BMC does not
// tell.
MacText readMac(int (*hook)(IPMI20_SESSION_T*, std::uint8_t*, std::uint8_t, int), IPMI20_SESSION_T* session,
                const Lan& lan);

} // namespace ph
