// How a request reports its failure.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

namespace ph {

// A status with this code and message. A broker that cannot make the message leaves the code alone to speak.
CMPIStatus fail(const CMPIBroker* broker, CMPIrc code, const char* message);
// The same into a request's status, which may be NULL.
void fail(const CMPIBroker* broker, CMPIStatus* status, CMPIrc code, const char* message);

inline constexpr CMPIStatus success{CMPI_RC_OK, nullptr};

} // namespace ph
