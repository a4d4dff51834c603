// Services of the service processor: the properties that they have in common, and those that are always there, one of
// a class.
#pragma once

#include "provider_helper/utility.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"

namespace ph {

// Appends the one element of a class that the service processor hosts, with the keys of its host; nullptr when that has
// no name or memory is short.
template <class Record>
Record* appendOnProcessor(RecordArray<Record>& elements, const char* className) {
    char systemName[256] = "";
    Record* element = PH_GetSPSystemName(systemName) == 0 ? elements.append() : nullptr;
    if (element != nullptr)
        setHostedKeys(*element, processorClass, systemName, className);
    return element;
}

// A record that has Started tells of the service's health, too.
template <class Record>
concept TellsHealth = requires(Record& record) {
    record.Started;
};

template <class Record>
consteval auto describeService() {
    constexpr auto keys =
        std::to_array<Property>({PH_KEY(Record, SystemCreationClassName), PH_KEY(Record, CreationClassName),
                                 PH_KEY(Record, SystemName), PH_KEY(Record, Name)});
    if constexpr (TellsHealth<Record>)
        return joined(keys, {PH_PROPERTY(Record, ElementName), PH_PROPERTY(Record, OperationalStatus),
                             PH_PROPERTY(Record, HealthState), PH_PROPERTY(Record, EnabledState),
                             PH_PROPERTY(Record, RequestedState), PH_PROPERTY(Record, Started)});
    else
        return joined(keys, {PH_PROPERTY(Record, ElementName), PH_PROPERTY(Record, EnabledState),
                             PH_PROPERTY(Record, RequestedState)});
}
template <class Record>
inline constexpr auto serviceProperties = describeService<Record>();

// Fills everything but the keys of a service that runs as long as the BMC does.
template <class Record>
void fillService(Record& service, const char* elementName,
                 std::uint16_t enabledState = EnabledState::Enabled) {
    copyText(service.ElementName, elementName);
    service.EnabledState = enabledState;
    service.RequestedState = RequestedState::NotApplicable;
    if constexpr (TellsHealth<Record>) {
        setList(service.OperationalStatus, {OperationalStatus::OK});
        service.HealthState = HealthState::OK;
        service.Started = true;
    }
}

// Appends the service of a class that has one, called by its name. Returns 0 or -1.
template <class Record>
int appendService(RecordArray<Record>& services, Detail detail, const char* className, const char* name,
                  std::uint16_t enabledState = EnabledState::Enabled) {
    Record* service = appendOnProcessor(services, className);
    if (service == nullptr)
        return -1;
    copyText(service->Name, name);
    if (detail == Detail::All)
        fillService(*service, name, enabledState);
    return 0;
}

} // namespace ph
