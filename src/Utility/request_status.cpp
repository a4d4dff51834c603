#include "Utility/request_status.h"

#include <cmpimacs.h>

namespace ph {

CMPIStatus fail(const CMPIBroker* broker, CMPIrc code, const char* message) {
    return {code, CMNewString(broker, message, nullptr)};
}

void fail(const CMPIBroker* broker, CMPIStatus* status, CMPIrc code, const char* message) {
    if (status != nullptr)
        *status = fail(broker, code, message);
}

} // namespace ph
