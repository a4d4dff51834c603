#include "network/dns_changes.h"

#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace ph::dns {
namespace {

// Returns success, or the refusal of the first change that is wrong.
CMPIStatus apply(const Request& request, const PHPropertyList& changes, std::span<const Settable> settables,
                 Changeable& settings) {
    for (int i = 0; i < changes.count; ++i)
        for (const Settable& settable : settables) {
            if (std::strcmp(settable.name, changes.rows[i].name) != 0)
                continue;
            if (const char* wrong = settable.set(settings, valueOf(changes.rows[i])))
                return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, wrong);
        }
    return success;
}

} // namespace

CMPIStatus modify(const Request& request, const PHPropertyList& changes, std::span<const Settable> settables,
                  Changeable& settings) {
    if (!settings.read())
        return fail(request.broker, "The BMC does not tell its DNS settings");
    const auto bytes = settings.bytes();
    const std::vector<std::uint8_t> before(bytes.begin(), bytes.end());
    if (const CMPIStatus status = apply(request, changes, settables, settings); status.rc != CMPI_RC_OK)
        return status;
    return std::ranges::equal(settings.bytes(), before) || settings.write()
               ? success
               : fail(request.broker, "The BMC refuses the DNS settings");
}

bool isCleared(const CMPIData& value) {
    return value.type == CMPI_null || (value.state & CMPI_nullValue) != 0;
}

const char* textOrCleared(const CMPIData& value) {
    return isCleared(value) ? "" : textOf(value);
}

bool readFlag(const CMPIData& value, std::uint8_t& flag) {
    CMPIBoolean is = 0;
    if (isCleared(value) || GetBoolValue(value, &is) != 0)
        return false;
    flag = is != 0;
    return true;
}

} // namespace ph::dns
