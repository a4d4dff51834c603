// The LANs whose clients of DHCP and DNS are published: those with an address.
#pragma once

#include "network/lans.h"

namespace ph {

// One IP version of a LAN.
struct AddressedLan {
    Lan lan; // with its name
    int ipVersion;
};

// Lists version 4 for each LAN with an IPv4 address other than 0.0.0.0, and then version 6 for one with an IPv6
// address other than :: and ::1.
std::vector<AddressedLan> addressedLans(IPMI20_SESSION_T* session);

} // namespace ph
