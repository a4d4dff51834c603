// What the capabilities of all services of redirection share.
#pragma once

#include "provider_helper/redirection.h"
#include "redirection/media_services.h"
#include "Utility/engine/class_family.h"

namespace ph::redirection {

inline constexpr Property capabilitiesProperties[] = {
    PH_KEY(RedirectionCapabilitiesRecord, InstanceID),
    PH_PROPERTY(RedirectionCapabilitiesRecord, ElementName),
    PH_PROPERTY(RedirectionCapabilitiesRecord, ElementNameEditSupported),
    PH_PROPERTY(RedirectionCapabilitiesRecord, RequestedStatesSupported),
    PH_PROPERTY(RedirectionCapabilitiesRecord, SharingModeSupported),
};

// Appends the capabilities of a service, "Text" for one, whose sessions may be so many at a time (0: not told). Returns
// nullptr when memory is short.
RedirectionCapabilitiesRecord* append(RecordArray<RedirectionCapabilitiesRecord>& all, const char* service,
                                      unsigned mostSessions);

} // namespace ph::redirection
