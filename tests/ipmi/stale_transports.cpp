// A library of transports of another version.
#include "ipmi/transport_library.h"

const ipmi::TransportLibrary PH_IpmiTransports{.version = 0, .open = nullptr};
