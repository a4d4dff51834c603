// The properties of every access point of redirection.
#pragma once

#include "provider_helper/redirection.h"
#include "redirection/redirection_state.h"
#include "Utility/engine/class_family.h"

namespace ph::redirection {

inline constexpr Property accessPointProperties[] = {
    PH_KEY(RedirectionSAPRecord, SystemCreationClassName),
    PH_KEY(RedirectionSAPRecord, CreationClassName),
    PH_KEY(RedirectionSAPRecord, SystemName),
    PH_KEY(RedirectionSAPRecord, Name),
    PH_PROPERTY(RedirectionSAPRecord, ElementName),
    PH_PROPERTY_IF(RedirectionSAPRecord, Description, isDescribed<RedirectionSAPRecord>),
    PH_PROPERTY(RedirectionSAPRecord, OperationalStatus),
    PH_PROPERTY(RedirectionSAPRecord, HealthState),
    PH_PROPERTY_IF(RedirectionSAPRecord, EnabledState, hasState<RedirectionSAPRecord>),
    PH_PROPERTY(RedirectionSAPRecord, RequestedState),
};

// Of an enabled one: whether somebody uses it, or it waits for that.
constexpr std::uint16_t stateOf(bool isEnabled, bool isInUse) {
    return isInUse     ? EnabledState::Enabled
           : isEnabled ? EnabledState::EnabledButOffline
                       : EnabledState::Disabled;
}

} // namespace ph::redirection
