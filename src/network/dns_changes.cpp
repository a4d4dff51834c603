#include "network/dns_changes.h"

#include "Utility/requests/request_texts.h"

namespace ph::dns {

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
