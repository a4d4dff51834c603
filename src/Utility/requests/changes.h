// What a modify request changes.
#pragma once

#include "Utility/requests/request.h"

#include <provider_helper/utility.h>

namespace ph {

// Returns the value of a row, as CMGetProperty would have.
CMPIData valueOf(const PHPropertyRow& row);

// Sorts out of `allowed` what the request changes of `current`. Returns the refusal of other properties, with
// `code`, where it names any.
CMPIStatus readChanges(const Request& request, const CMPIInstance* current, const PHPropertyList& allowed,
                       PHPropertyList& changes, CMPIrc code = CMPI_RC_ERR_INVALID_PARAMETER);

// Lists the names of a class's settable properties, rows that have a `name`.
template <class Settables>
PHPropertyList namesOf(const Settables& settables) {
    PHPropertyList list{};
    for (const auto& settable : settables)
        AddTo_DefaultList(list.rows, settable.name, list.count++);
    return list;
}

// Refuses a property's value: "<name> Parameter is Invalid".
CMPIStatus refuseValue(const CMPIBroker* broker, const char* name);

// Refuses the properties of these names.
CMPIStatus refuseProperties(const CMPIBroker* broker, const char* names,
                            CMPIrc code = CMPI_RC_ERR_INVALID_PARAMETER);

} // namespace ph
