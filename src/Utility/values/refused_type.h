// Whether a broker did not take a value for its type: the standard has two codes for that.
#pragma once

#include <cmpidt.h>

namespace ph {

inline bool isRefusedType(CMPIrc code) {
    return code == CMPI_RC_ERR_TYPE_MISMATCH || code == CMPI_RC_ERR_INVALID_DATA_TYPE;
}

} // namespace ph
