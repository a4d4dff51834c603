// What the classes of listener destinations have in common: where they keep their destinations is their own.
#pragma once

#include "indications/common_requests.h"
#include "provider_helper/indications.h"

namespace ph::indications {

inline constexpr Property destinationProperties[] = {
    PH_KEY(ListenerDestinationRecord, SystemCreationClassName),
    PH_KEY(ListenerDestinationRecord, CreationClassName),
    PH_KEY(ListenerDestinationRecord, SystemName),
    PH_KEY(ListenerDestinationRecord, Name),
    PH_PROPERTY(ListenerDestinationRecord, PersistenceType),
    PH_PROPERTY(ListenerDestinationRecord, Protocol),
    PH_PROPERTY(ListenerDestinationRecord, ElementName),
    PH_PROPERTY(ListenerDestinationRecord, Destination),
};

inline void fillDestination(ListenerDestinationRecord& record, const char* elementName,
                            const char* destination, std::uint16_t protocol) {
    constexpr std::uint16_t transient = 3; // DMTF PersistenceType
    copyText(record.ElementName, elementName);
    copyText(record.Destination, destination);
    record.Protocol = protocol;
    record.PersistenceType = transient;
}

inline constexpr const char* destinationKeysMissing = "Key Properties missing";
inline constexpr const char* destinationKeysInvalid =
    "Invalid Key Properties : Only 'Name' prop is variable, refer other instances of LD";
inline constexpr const char* destinationUnknown = "Given instance does not exist";
inline constexpr const char* destinationNotCreated = "Create Instance Failed";
inline constexpr const char* destinationNotSet = "SetInstance Failed";
inline constexpr const char* destinationNotDeleted = "Delete Instance Failed";

} // namespace ph::indications
