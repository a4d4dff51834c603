// How a request reports its failure.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstddef>

namespace ph {

// Why a request is refused.
struct Refusal {
    CMPIrc code = CMPI_RC_OK;
    const char* message = nullptr;
};

// A status with this code and message. When the broker cannot make the message, the status has the code only.
CMPIStatus fail(const CMPIBroker* broker, CMPIrc code, const char* message);
// Makes the same with code 1 (failed).
inline CMPIStatus fail(const CMPIBroker* broker, const char* message) {
    return fail(broker, CMPI_RC_ERR_FAILED, message);
}
// Writes the first status into a request's, which may be NULL.
void fail(const CMPIBroker* broker, CMPIStatus* status, CMPIrc code, const char* message);

// For functions with room for a text instead of a status: writes the reason and returns -1.
int explain(char* message, std::size_t size, const char* reason);

inline constexpr CMPIStatus success{CMPI_RC_OK, nullptr};

} // namespace ph
