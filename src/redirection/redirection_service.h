// The properties of every service of redirection.
#pragma once

#include "provider_helper/redirection.h"
#include "redirection/redirection_state.h"
#include "Utility/engine/class_family.h"

namespace ph::redirection {

inline bool hasAccessPoints(const RedirectionServiceRecord& service) {
    return service.MaxCurrentEnabledSAPs != 0;
}

inline constexpr Property serviceProperties[] = {
    PH_KEY(RedirectionServiceRecord, SystemCreationClassName),
    PH_KEY(RedirectionServiceRecord, CreationClassName),
    PH_KEY(RedirectionServiceRecord, SystemName),
    PH_KEY(RedirectionServiceRecord, Name),
    PH_PROPERTY(RedirectionServiceRecord, ElementName),
    PH_PROPERTY_IF(RedirectionServiceRecord, Description, isDescribed<RedirectionServiceRecord>),
    PH_PROPERTY(RedirectionServiceRecord, OperationalStatus),
    PH_PROPERTY(RedirectionServiceRecord, HealthState),
    PH_PROPERTY_IF(RedirectionServiceRecord, EnabledState, hasState<RedirectionServiceRecord>),
    PH_PROPERTY(RedirectionServiceRecord, RequestedState),
    PH_PROPERTY(RedirectionServiceRecord, RedirectionServiceType),
    PH_PROPERTY_IF(RedirectionServiceRecord, MaxCurrentEnabledSAPs, hasAccessPoints),
    PH_PROPERTY(RedirectionServiceRecord, SharingMode),
};

} // namespace ph::redirection
