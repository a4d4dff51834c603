// What the rows of both kinds of sensors have in common.
#pragma once

#include "platform/smash_db.h"

#include <cstddef>
#include <cstdio>

namespace ph {

inline const CompactSdr& commonOf(const CompactSdr& sdr) {
    return sdr;
}
inline const CompactSdr& commonOf(const FullSdr& sdr) {
    return sdr.common;
}

// Makes "<name>(<number>.<owner>.<LUN>)", which with the sensor's own name is its ElementName.
template <std::size_t N>
void formatIdentity(char (&text)[N], const char* name, const CompactSdr& sdr) {
    std::snprintf(text, N, "%s(%d.%d.%d)", name, sdr.sensorNumber, sdr.ownerId, sdr.ownerLun);
}

} // namespace ph
