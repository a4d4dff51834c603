// The packet library of the command-line protocol daemon, which a BMC may not have.
#pragma once

#include "platform/clp_packets.h"
#include "Utility/back-ends/dynamic_library.h"

namespace ph {

class ClpLibrary : public DynamicLibrary {
public:
    ClpLibrary() : DynamicLibrary("libsmclpdpkt.so") {}
};

} // namespace ph
