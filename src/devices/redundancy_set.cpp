// CIM_RedundancySet: devices of which the BMC says whether there are enough.
#include "devices/entity_device.h"

#include <algorithm>
#include <cstdio>
#include <vector>

constexpr const char* const g_RedundancySetKeyList[1] = {"InstanceID"};

namespace ph::redundancy_set {
namespace {

using Record = RedundancySetRecord;

constexpr int redundancy = 0x0B; // event/reading type (IPMI 2.0 table 42-2)

bool hasMembers(const Record& set) {
    return set.VendorIdentifyingInfo[0] != '\0';
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, RedundancyStatus),
    PH_PROPERTY(Record, TypeOfSet),
    PH_PROPERTY(Record, MinNumberNeeded),
    PH_PROPERTY_IF(Record, VendorIdentifyingInfo, hasMembers),
};

// The index is the state offset. Non-redundant with sufficient resources is what DMTF calls lost: the next failure
// is one of the whole.
constexpr std::uint16_t statusOfState[] = {
    RedundancyStatus::FullyRedundant, RedundancyStatus::Lost,     RedundancyStatus::Degraded,
    RedundancyStatus::Lost,           RedundancyStatus::Lost,     RedundancyStatus::OverallFailure,
    RedundancyStatus::Degraded,       RedundancyStatus::Degraded,
};

// The worst of the asserted states counts, which DMTF numbers highest.
std::uint16_t statusOf(const Reading& reading) {
    std::uint16_t status = RedundancyStatus::Unknown;
    if (reading.availability == ReadingAvailability::Available)
        for (unsigned offset = 0; offset < std::size(statusOfState); ++offset)
            if ((reading.answer.statesLow >> offset & 1U) != 0)
                status = std::max(status, statusOfState[offset]);
    return status;
}

// Names devices that sets consist of, and the types of sensors that tell of them whatever their entity is.
struct MemberKind {
    std::uint8_t entityId;
    std::uint8_t sensorTypes[2];
};
constexpr MemberKind memberKinds[] = {
    {29, {0x04, 0x0A}}, // fans: fan, cooling device
    {10, {0x08, 0x09}}, // supplies: power supply, power unit
};

using Devices = std::vector<const EntityDeviceRow*>;

class Source {
public:
    bool open() {
        Database database;
        return PH_GetHostSystemName(systemName_) == 0 && database.open() &&
               sensors_.read(database.get(), db_get_all_compact_sdrs) &&
               devices_.read(database.get(), db_get_all_entity_devices) &&
               associations_.read(database.get(), db_get_all_entity_associations);
    }
    const char* systemName() const { return systemName_; }
    std::span<const CompactSdr> sensors() const { return sensors_.all(); }

    Devices membersOf(const CompactSdr& sensor) const {
        Devices members = select([&](const EntityDeviceRow& device) { return contains(sensor, device); });
        if (!members.empty())
            return members;
        const MemberKind* kind = kindOf(sensor);
        if (kind == nullptr)
            return members;
        members = select([&](const EntityDeviceRow& device) { return device.entityId == kind->entityId; });
        if (members.empty()) // a BMC that has only cooling units
            members = select(
                [&](const EntityDeviceRow& device) { return isOfOneClass(device.entityId, kind->entityId); });
        return members;
    }

private:
    template <class Test>
    Devices select(Test test) const {
        Devices found;
        for (const EntityDeviceRow& device : devices_.all())
            if (test(device))
                found.push_back(&device);
        return found;
    }
    bool contains(const CompactSdr& sensor, const EntityDeviceRow& device) const {
        constexpr unsigned isContainer =
            0x80; // bit 7 of a sensor's entity instance, which associations have not
        const unsigned instance = sensor.entityInstance & ~isContainer;
        return std::ranges::any_of(associations_.all(), [&](const EntityAssociationRow& each) {
            return each.containerId == sensor.entityId && each.containerInstance == instance &&
                   each.entityId == device.entityId && each.entityInstance == device.entityInstance;
        });
    }
    static bool isOfOneClass(std::uint8_t entityId, std::uint8_t otherId) {
        return std::strcmp(mappingOf(entityId).logicalClass, mappingOf(otherId).logicalClass) == 0;
    }
    static const MemberKind* kindOf(const CompactSdr& sensor) {
        for (const MemberKind& kind : memberKinds)
            if (isOfOneClass(sensor.entityId, kind.entityId))
                return &kind;
        for (const MemberKind& kind : memberKinds)
            if (std::ranges::find(kind.sensorTypes, sensor.ipmiSensorType) != std::end(kind.sensorTypes))
                return &kind;
        return nullptr;
    }

    char systemName_[256] = "";
    Rows<CompactSdr> sensors_;
    Rows<EntityDeviceRow> devices_;
    Rows<EntityAssociationRow> associations_;
};

// Names as many members as there is room for, which is more than a hundred.
void listMembers(Record& set, const Devices& members) {
    std::size_t length = 0;
    for (const EntityDeviceRow* device : members) {
        const EntityDeviceId id = idOf(*device);
        const std::size_t needed = std::strlen(id.text) + (length > 0);
        if (length + needed >= sizeof(set.VendorIdentifyingInfo))
            return;
        std::snprintf(set.VendorIdentifyingInfo + length, needed + 1, "%s%s", length > 0 ? " " : "", id.text);
        length += needed;
    }
}

int enumerate(RecordArray<Record>& sets, Detail detail) {
    Source source;
    if (!source.open())
        return -1;
    SensorReader reader;
    bool isOpen = false;
    for (const CompactSdr& sensor : source.sensors()) {
        if (sensor.eventReadingType != redundancy)
            continue;
        Record* set = sets.append();
        if (set == nullptr)
            return -1;
        std::snprintf(set->InstanceID, sizeof(set->InstanceID), "IPMI:%s %s", source.systemName(),
                      sensor.deviceId);
        if (detail == Detail::Names)
            continue;
        if (!isOpen && !(isOpen = reader.open()))
            return -1;
        const Devices members = source.membersOf(sensor);
        copyText(set->ElementName, sensor.name);
        set->RedundancyStatus = statusOf(reader.read(sensor.sensorNumber));
        // IPMI does not say how many are needed. One that is too many is the least which is redundant.
        setList(set->TypeOfSet, {TypeOfSet::NPlus1});
        set->MinNumberNeeded = members.empty() ? 0 : static_cast<std::uint32_t>(members.size() - 1);
        listMembers(*set, members);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{
    .name = "CIM_RedundancySet",
    .superclass = "CIM_SystemSpecificCollection",
    .source = "tables compact_sdr, entity_device and entity_association (SDR types 08h and 09h); Get Sensor "
              "Reading",
    .keys = g_RedundancySetKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::redundancy_set

PH_EXPORT_CLASS_FAMILY(RedundancySet, RedundancySetRecord, ph::redundancy_set::definition)
