// Listener destinations that are alert destinations of the BMC's LANs: enumeration and requests, of which a
// class states what is its own.
#pragma once

#include "indications/listener_destination.h"

#include <optional>

namespace ph::indications {

struct LanDestinationName {
    char protocol[5]; // "SMTP", "SNMP"
    std::uint8_t channel;
    std::uint8_t selector; // 1 to 15
};

// The two tables of a channel.
struct LanDestinationTables {
    CIM_LANDestinationType types[CIM_MAX_LAN_DESTINATIONS];
    CIM_LANDestinationAddress addresses[CIM_MAX_LAN_DESTINATIONS];
    std::uint8_t count = 0;

    bool read(IpmiSession& session, std::uint8_t channel);
};

// What a class does with the destination it names. Those that return a message return nullptr for a success.
struct LanDestinationClass {
    const char* name; // of the class
    const char* elementName;
    const char* protocol;
    std::uint8_t type; // CIM_DESTINATION_…
    const char* invalidProtocol;
    std::span<const char* const> keys;
    // Writes the destination to `text` (256 characters). Nothing is returned when it cannot be read, false
    // when it is no destination of this class.
    std::optional<bool> (*describe)(IpmiSession& session, std::uint8_t channel, std::uint8_t selector,
                                    const CIM_LANDestinationAddress& address, char* text);
    // Tells whether a destination of this type is in use; nothing when that cannot be read.
    std::optional<bool> (*isActive)(IpmiSession& session, const LanDestinationName& name,
                                    const CIM_LANDestinationAddress& address);
    // Writes a destination, with its type when it is new; `failed` is the message for what the BMC refuses.
    const char* (*write)(IpmiSession& session, const LanDestinationName& name, const char* destination,
                         bool isNew, const char* failed);
    bool (*clear)(IpmiSession& session, const LanDestinationName& name);
    int (*get)(ListenerDestinationRecord** record, CMPIString** keyValues);
};

int enumerate(const LanDestinationClass& family, RecordArray<ListenerDestinationRecord>& destinations,
              Detail detail);
CMPIStatus create(const LanDestinationClass& family, const Request& request);
CMPIStatus modify(const LanDestinationClass& family, const Request& request);
CMPIStatus remove(const LanDestinationClass& family, const Request& request);

template <const LanDestinationClass& family>
constexpr ClassDefinition<ListenerDestinationRecord> lanDestinationDefinition{
    .name = family.name,
    .superclass = "CIM_ListenerDestination",
    .source = "LAN configuration parameters 17, 18 and 19; for mail, alert mail texts (OEM)",
    .keys = family.keys,
    .properties = destinationProperties,
    .enumerate = [](RecordArray<ListenerDestinationRecord>& records,
                    Detail detail) { return enumerate(family, records, detail); },
    .failureFreesAll = true,
    .modify = [](const Request& request) { return modify(family, request); },
    .create = [](const Request& request) { return create(family, request); },
    .remove = [](const Request& request) { return remove(family, request); }};

// The class's PH_Fill_X function.
int fillLanDestination(const LanDestinationClass& family, const char* destination,
                       ListenerDestinationRecord* record);

// The class's PH_Create_XInstance function.
int appendLanDestination(const LanDestinationClass& family, ListenerDestinationRecord** records, int* count,
                         const char* systemName, const char* name, const char* destination, int namesOnly);

bool setType(IpmiSession& session, const LanDestinationName& name, std::uint8_t type);

} // namespace ph::indications
