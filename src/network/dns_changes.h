// How clients modify settings of DNS: the configuration is read, all values that the request changes are checked and put
// into it, and then it is written at once.
#pragma once

#include "network/dns_values.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"

#include <cstring>

namespace ph::dns {

// A property that may be changed. `set` returns nullptr, or what is wrong with the value.
template <class Configuration>
struct Settable {
    const char* name;
    const char* (*set)(Configuration& configuration, const CMPIData& value);
};

// A property without a value is cleared: it becomes an empty text or list.
bool isCleared(const CMPIData& value);
// Returns nullptr for what is no text.
const char* textOrCleared(const CMPIData& value);
// Returns whether it is a boolean.
bool readFlag(const CMPIData& value, std::uint8_t& flag);

// Puts the changes into a configuration: success, or the refusal of the first that is wrong.
template <class Configuration>
CMPIStatus apply(const Request& request, const PHPropertyList& changes,
                 std::span<const Settable<Configuration>> settables, Configuration& configuration) {
    for (int i = 0; i < changes.count; ++i)
        for (const Settable<Configuration>& settable : settables) {
            if (std::strcmp(settable.name, changes.rows[i].name) != 0)
                continue;
            if (const char* wrong = settable.set(configuration, valueOf(changes.rows[i])))
                return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, wrong);
        }
    return success;
}

// Modifies the current instance. `read` and `write` are bool(Configuration&).
template <class Configuration, class Read, class Write>
CMPIStatus modify(const Request& request, const CMPIInstance* current,
                  std::span<const Settable<Configuration>> settables, Read read, Write write) {
    PHPropertyList allowed{}, changes{};
    for (const auto& settable : settables)
        AddTo_DefaultList(allowed.rows, settable.name, allowed.count++);
    if (current == nullptr)
        return fail(request.broker, "SetInstance Failed");
    if (const CMPIStatus status = readChanges(request, current, allowed, changes); status.rc != CMPI_RC_OK)
        return status;
    Configuration configuration{};
    if (!read(configuration))
        return fail(request.broker, "The BMC does not tell its DNS settings");
    Configuration changed = configuration;
    if (const CMPIStatus status = apply(request, changes, settables, changed); status.rc != CMPI_RC_OK)
        return status;
    if (std::memcmp(&changed, &configuration, sizeof(changed)) == 0)
        return success;
    return write(changed) ? success : fail(request.broker, "The BMC refuses the DNS settings");
}

} // namespace ph::dns
