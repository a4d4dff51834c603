#include "indications/lan_destination.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ph::indications {
namespace {

using Record = ListenerDestinationRecord;

constexpr std::uint8_t typeMask = 0x07;
constexpr const char* invalidName = "Name Format Error / Index threshold error - Check the requested Name \n";
constexpr const char* destinationMissing = "Required Destination property";

std::optional<LanDestinationName> parseName(const char* text) {
    LanDestinationName name{};
    unsigned channel = 0;
    int selectorStart = 0;
    if (std::sscanf(text, "%4s:%2x:%n", name.protocol, &channel, &selectorStart) != 2 || selectorStart == 0)
        return std::nullopt;
    char* end = nullptr;
    const long selector = std::strtol(text + selectorStart, &end, 10);
    if (end == text + selectorStart || selector < 1 || selector > CIM_MAX_LAN_DESTINATIONS)
        return std::nullopt;
    name.channel = static_cast<std::uint8_t>(channel);
    name.selector = static_cast<std::uint8_t>(selector);
    return name;
}

void formatName(char (&text)[sizeof(Record::Name)], const char* protocol, std::uint8_t channel,
                std::uint8_t selector) {
    std::snprintf(text, sizeof(text), "%s:%02x:%d", protocol, channel, selector);
}

int add(const LanDestinationClass& family, RecordArray<Record>& destinations, const char* systemName,
        const char* name, const char* destination, Detail detail) {
    Record* record = append(destinations, family.name, systemName, name);
    if (record == nullptr)
        return -1;
    return detail == Detail::Names ? 0 : fillLanDestination(family, destination, record);
}

int addDestinations(const LanDestinationClass& family, RecordArray<Record>& destinations,
                    IpmiSession& session, std::uint8_t channel, const char* systemName, Detail detail) {
    LanDestinationTables tables;
    if (!tables.read(session, channel))
        return -1;
    for (std::uint8_t i = 0; i < tables.count; ++i) {
        if (tables.types[i].selector == 0 || (tables.types[i].type & typeMask) != family.type)
            continue;
        const auto selector = static_cast<std::uint8_t>(i + 1);
        char name[sizeof(Record::Name)];
        char destination[sizeof(Record::Destination)] = "";
        formatName(name, family.protocol, channel, selector);
        const auto isOne = family.describe(session, channel, selector, tables.addresses[i], destination);
        if (!isOne || (*isOne && add(family, destinations, systemName, name, destination, detail) != 0))
            return -1;
    }
    return 0;
}

// Tells whether the selector is taken; nothing when that cannot be read.
std::optional<bool> isActive(const LanDestinationClass& family, IpmiSession& session,
                             const LanDestinationName& name) {
    LanDestinationTables tables;
    if (!tables.read(session, name.channel))
        return std::nullopt;
    for (std::uint8_t i = 0; i < tables.count; ++i)
        if (tables.types[i].selector == name.selector && (tables.types[i].type & typeMask) == family.type)
            return family.isActive(session, name, tables.addresses[i]);
    return false;
}

// Finds the requested destination; nullptr when there is none.
const char* destinationOf(const Request& request) {
    const char* const destination = propertyText(request.instance, "Destination");
    return destination != nullptr && *destination != '\0' ? destination : nullptr;
}

CMPIStatus answer(const Request& request, const char* message) {
    return message == nullptr ? success : fail(request.broker, message);
}

} // namespace

bool LanDestinationTables::read(IpmiSession& session, std::uint8_t channel) {
    if (CIM_GetLANDestinationType_AddrTable(session.get(), types, addresses, &count, channel, hookTimeout) !=
        0)
        return false;
    count = std::min<std::uint8_t>(count, CIM_MAX_LAN_DESTINATIONS);
    return true;
}

bool setType(IpmiSession& session, const LanDestinationName& name, std::uint8_t type) {
    return CIM_SetLANDestinationType(session.get(), name.channel, name.selector, type, hookTimeout) == 0;
}

int enumerate(const LanDestinationClass& family, RecordArray<Record>& destinations, Detail detail) {
    IpmiSession session;
    char systemName[256] = "";
    std::uint8_t count = 0;
    std::uint8_t lanIndices[CIM_MAX_LANS] = {};
    if (!session.open() || PH_GetSPSystemName(systemName) != 0 ||
        CIM_GetLANCount(session.get(), &count, lanIndices, hookTimeout) != 0)
        return -1;
    for (std::uint8_t i = 0; i < std::min<std::uint8_t>(count, CIM_MAX_LANS); ++i) {
        std::uint8_t channel = 0;
        if (CIM_GetChannelNum(session.get(), lanIndices[i], &channel, hookTimeout) != 0 ||
            addDestinations(family, destinations, session, channel, systemName, detail) != 0)
            return -1;
    }
    return 0;
}

CMPIStatus create(const LanDestinationClass& family, const Request& request) {
    KeyValues keys;
    if (!readKeys(request, family.keys, keys))
        return fail(request.broker, destinationKeysMissing);
    if (!hasConstantKeys(request.ref, family.name))
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, destinationKeysInvalid);
    const char* const nameText = propertyText(request.instance, "Name");
    if (nameText == nullptr)
        return fail(request.broker, "Required Name property");
    const char* const destination = destinationOf(request);
    if (destination == nullptr)
        return fail(request.broker, destinationMissing);
    const auto name = parseName(nameText);
    if (!name)
        return fail(request.broker, invalidName);
    if (std::strcmp(name->protocol, family.protocol) != 0)
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, family.invalidProtocol);
    IpmiSession session;
    const auto isTaken = session.open() ? isActive(family, session, *name) : std::nullopt;
    if (!isTaken)
        return fail(request.broker, destinationNotCreated);
    if (*isTaken)
        return fail(request.broker, "Requested Destination Index already active\n");
    const char* const refusal = family.write(session, *name, destination, true, destinationNotCreated);
    return refusal == nullptr ? returnPath(request) : fail(request.broker, refusal);
}

CMPIStatus modify(const LanDestinationClass& family, const Request& request) {
    KeyValues keys;
    if (!readKeys(request, family.keys, keys))
        return fail(request.broker, destinationKeysMissing);
    const auto stored = find(family.get, keys);
    if (stored == nullptr)
        return fail(request.broker, destinationUnknown);
    const char* const destination = destinationOf(request);
    if (destination == nullptr)
        return fail(request.broker, destinationMissing);
    const auto name = parseName(stored->Name);
    if (!name)
        return fail(request.broker, invalidName);
    IpmiSession session;
    if (!session.open())
        return fail(request.broker, destinationNotSet);
    return answer(request, family.write(session, *name, destination, false, destinationNotSet));
}

CMPIStatus remove(const LanDestinationClass& family, const Request& request) {
    KeyValues keys;
    if (!readKeys(request, family.keys, keys))
        return fail(request.broker, destinationKeysMissing);
    const auto stored = find(family.get, keys);
    if (stored == nullptr)
        return fail(request.broker, destinationUnknown);
    const auto name = parseName(stored->Name);
    if (!name)
        return fail(request.broker, invalidName);
    IpmiSession session;
    return answer(request, session.open() && family.clear(session, *name) ? nullptr : destinationNotDeleted);
}

int fillLanDestination(const LanDestinationClass& family, const char* destination, Record* record) {
    constexpr std::uint16_t other = 1; // DMTF Protocol
    copyText(record->ProtocolText, family.protocol);
    fillDestination(*record, family.elementName, destination, other);
    return 0;
}

int appendLanDestination(const LanDestinationClass& family, Record** records, int* count,
                         const char* systemName, const char* name, const char* destination, int namesOnly) {
    return appendTo(records, count, destinationProperties, [&](RecordArray<Record>& destinations) {
        if (systemName == nullptr || name == nullptr || destination == nullptr)
            return -1;
        return add(family, destinations, systemName, name, destination,
                   namesOnly != 0 ? Detail::Names : Detail::All);
    });
}

} // namespace ph::indications
