// A BMC that is not to be trusted: sessions over LAN reach the virtual BMC whose state file the address names, most of
// its answers come as they are, and any may come wrong, late, twice or not at all. It is in a library that takes the
// place of FreeIPMI's in a folder of its own; programs find that folder first and load it like the other one.
#pragma once

#include "ipmi/transport.h"

namespace hostile {

// What happens until the next call follows from the seed and from what the BMC is asked.
PH_IPMI_EXPORT void misbehave(std::uint64_t seed);
PH_IPMI_EXPORT void behave();

struct Counts {
    std::uint64_t exchanges = 0;
    std::uint64_t bent = 0; // of these
};
PH_IPMI_EXPORT Counts counts(); // since the library was loaded

} // namespace hostile
