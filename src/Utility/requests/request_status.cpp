#include "Utility/requests/request_status.h"

#include <cmpimacs.h>
#include <cstdio>

namespace ph {

CMPIStatus fail(const CMPIBroker* broker, CMPIrc code, const char* message) {
    return {code, CMNewString(broker, message, nullptr)};
}

void fail(const CMPIBroker* broker, CMPIStatus* status, CMPIrc code, const char* message) {
    if (status != nullptr)
        *status = fail(broker, code, message);
}

int explain(char* message, std::size_t size, const char* reason) {
    std::snprintf(message, size, "%s", reason);
    return -1;
}

} // namespace ph
