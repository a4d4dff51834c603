// What services of redirection and their access points share: keys, and how they stand.
#pragma once

#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstddef>

namespace ph::redirection {

inline constexpr const char* elementKeys[4] = {"SystemCreationClassName", "CreationClassName", "SystemName",
                                               "Name"};
inline constexpr std::size_t nameKey = 3;

// Unknown, which is not published, stands for what the BMC does not tell.
template <class Record>
void setState(Record& element, std::uint16_t enabledState) {
    const bool isOn =
        enabledState == EnabledState::Enabled || enabledState == EnabledState::EnabledButOffline;
    element.EnabledState = enabledState;
    element.RequestedState = RequestedState::NotApplicable;
    element.HealthState = isOn ? HealthState::OK : HealthState::Unknown;
    setList(element.OperationalStatus,
            {isOn                                     ? OperationalStatus::OK
             : enabledState == EnabledState::Disabled ? OperationalStatus::Stopped
                                                      : OperationalStatus::Unknown});
}

template <class Record>
bool hasState(const Record& element) {
    return element.EnabledState != EnabledState::Unknown;
}
template <class Record>
bool isDescribed(const Record& element) {
    return element.Description[0] != '\0';
}

// Several sessions at a time share a service. None: the BMC does not tell.
inline std::uint16_t sharingMode(unsigned mostSessions) {
    return mostSessions > 1    ? SharingMode::Shared
           : mostSessions == 1 ? SharingMode::Exclusive
                               : SharingMode::Unknown;
}

} // namespace ph::redirection
