#include "network/setting_values.h"
#include "provider_helper/utility.h"
#include "Utility/requests/request_texts.h"

#include <cmpimacs.h>

namespace ph {
namespace {

CMPIData property(const CMPIInstance* instance, const char* name) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetProperty(instance, name, &status);
    return status.rc == CMPI_RC_OK && data.state == CMPI_goodValue ? data : CMPIData{};
}

} // namespace

const char* textProperty(const CMPIInstance* instance, const char* name) {
    const char* text = textOf(property(instance, name));
    return text != nullptr ? text : "";
}

std::optional<std::uint8_t> prefixLengthProperty(const CMPIInstance* instance) {
    std::uint16_t length = 0;
    const CMPIData data = property(instance, "IPv6SubnetPrefixLength");
    if (GetUINT16Value(data, &length) != 0 || length > 128)
        return std::nullopt;
    return static_cast<std::uint8_t>(length);
}

} // namespace ph
