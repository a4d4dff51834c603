#include "Utility/requests/changes.h"

#include "Utility/requests/request_status.h"

#include <cstdio>
#include <cstring>

namespace ph {

CMPIData valueOf(const PHPropertyRow& row) {
    CMPIData data{row.type, row.state, {}};
    std::memcpy(&data.value, &row.value, sizeof(row.value));
    return data;
}

CMPIStatus readChanges(const Request& request, const CMPIInstance* current, const PHPropertyList& allowed,
                       PHPropertyList& changes, CMPIrc code) {
    char refused[PH_REFUSED_NAMES_SIZE] = "";
    const int result =
        getModifiableProperties(request.instance, current, request.properties, &allowed, &changes, refused);
    return result == 0 && *refused == '\0' ? success : refuseProperties(request.broker, refused, code);
}

CMPIStatus refuseValue(const CMPIBroker* broker, const char* name) {
    char message[sizeof(PHPropertyRow::name) + 32];
    std::snprintf(message, sizeof(message), "%s Parameter is Invalid", name);
    return fail(broker, CMPI_RC_ERR_INVALID_PARAMETER, message);
}

CMPIStatus refuseProperties(const CMPIBroker* broker, const char* names, CMPIrc code) {
    char message[sizeof("Invalid Property(s): ") + PH_REFUSED_NAMES_SIZE];
    std::snprintf(message, sizeof(message), "Invalid Property(s): %s", names);
    return fail(broker, code, message);
}

} // namespace ph
