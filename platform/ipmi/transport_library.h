// Transports that a BMC does not need are libraries of their own, loaded for the first session that asks for
// one: such a library exports the object declared here.
#pragma once

#include "ipmi/transport.h"

namespace ipmi {

struct TransportLibrary {
    // Grows with every change of Transport, SessionSettings or this structure. It comes first, for libraries
    // of any version to be told apart.
    static constexpr int currentVersion = 1;
    int version = currentVersion;

    // Does what ipmi::openTransport does.
    std::unique_ptr<Transport> (*open)(const SessionSettings& settings);
};

// Loads the library that lies beside this one, for good: sessions have objects of its classes. Throws
// TransportError.
const TransportLibrary& loadTransportLibrary(const char* fileName);

} // namespace ipmi

extern "C" PH_IPMI_EXPORT const ipmi::TransportLibrary PH_IpmiTransports;
