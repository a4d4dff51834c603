#include "virtual-bmc/sensors/sdr_repository.h"

#include "virtual-bmc/sensors/sensor_records.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <array>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::uint8_t sdrVersion = 0x51; // IPMI 1.5 and 2.0
constexpr std::uint8_t associationType = 0x08;
constexpr std::uint8_t deviceRelativeAssociationType = 0x09;
constexpr std::uint8_t genericLocatorType = 0x10;
constexpr std::uint8_t fruLocatorType = 0x11;
constexpr std::uint8_t controllerLocatorType = 0x12;
constexpr std::uint8_t oemType = 0xC0;

constexpr std::size_t largestRecord = recordHeaderSize + 0xFF;
using RecordBytes = std::array<std::uint8_t, largestRecord>;

void writeController(ipmi::Writer& record, const ControllerLocator& controller) {
    record.u8(controller.address)
        .u8(controller.channel)
        .u8(0) // power state notification: none
        .u8(controller.capabilities)
        .u24(0) // reserved
        .u8(controller.entity)
        .u8(controller.entityInstance)
        .u8(0); // OEM
    writeIdString(record, controller.name);
}

void writeFru(ipmi::Writer& record, const Fru& fru) {
    constexpr std::uint8_t logicalDevice = 0x80;
    constexpr std::uint8_t fruInventory = 0x10; // device type code of a FRU behind the controller's commands
    record.u8(controllerAddress)
        .u8(fru.id)
        .u8(logicalDevice)
        .u16(0) // channel, reserved
        .u8(fruInventory)
        .u8(0)
        .u8(fru.entity)
        .u8(fru.entityInstance)
        .u8(0); // OEM
    writeIdString(record, fru.name);
}

constexpr std::size_t containedEntities = 4;

void writeAssociation(ipmi::Writer& record, const EntityAssociation& association) {
    constexpr std::uint8_t ranges = 0x80;
    constexpr std::uint8_t presenceIsReadable = 0x20; // the container's presence sensor always can be
    // A place that is not used has zeros throughout.
    const auto entity = [&](std::uint8_t id, std::uint8_t instance) {
        const std::uint8_t address = id != 0 ? controllerAddress : 0;
        if (association.isDeviceRelative)
            record.u8(address).u8(0); // channel
        record.u8(id).u8(instance);
    };
    record.u8(association.entity).u8(association.entityInstance);
    if (association.isDeviceRelative)
        record.u8(controllerAddress).u8(0);
    record.u8(association.areRanges ? ranges | presenceIsReadable : presenceIsReadable);
    for (const ContainedEntity& each : association.contains)
        entity(each.entity, each.entityInstance);
    for (std::size_t i = association.contains.size(); i < containedEntities; ++i)
        entity(0, 0);
    if (association.isDeviceRelative)
        record.u24(0).u24(0); // reserved
}

void writeGenericDevice(ipmi::Writer& record, const GenericDevice& device) {
    record.u8(device.address)
        .u8(device.slaveAddress)
        .u8(0) // channel, LUN, bus
        .u8(0) // address span: one
        .u8(0) // reserved
        .u8(device.type)
        .u8(0)
        .u8(device.entity)
        .u8(device.entityInstance)
        .u8(0); // OEM
    writeIdString(record, device.name);
}

// The records in their order; their IDs are 1, 2, 3, …
class Records {
public:
    explicit Records(const State& state)
        : sensors_(state.get<Sensors>().list),
          frus_(state.get<Frus>().list),
          repository_(state.get<SdrRepository>()) {}

    std::size_t count() const {
        return repository_.controllers.size() + sensors_.size() + frus_.size() +
               repository_.associations.size() + repository_.genericDevices.size() +
               repository_.oemRecords.size() + repository_.rawRecords.size();
    }

    // The bytes of a record, kept in `storage`.
    std::span<const std::uint8_t> read(std::uint16_t id, RecordBytes& storage) const {
        ipmi::Writer record(storage);
        record.u16(id).u8(sdrVersion);
        std::size_t index = id - 1U;
        if (const auto* const controller = take(repository_.controllers, index)) {
            record.u8(controllerLocatorType).u8(0);
            writeController(record, *controller);
        } else if (const auto* const sensor = take(sensors_, index)) {
            record.u8(recordType(*sensor)).u8(0);
            writeSensor(record, *sensor);
        } else if (const auto* const fru = take(frus_, index)) {
            record.u8(fruLocatorType).u8(0);
            writeFru(record, *fru);
        } else if (const auto* const association = take(repository_.associations, index)) {
            record.u8(association->isDeviceRelative ? deviceRelativeAssociationType : associationType).u8(0);
            writeAssociation(record, *association);
        } else if (const auto* const device = take(repository_.genericDevices, index)) {
            record.u8(genericLocatorType).u8(0);
            writeGenericDevice(record, *device);
        } else if (const auto* const oem = take(repository_.oemRecords, index)) {
            record.u8(oemType).u8(0).u24(oem->manufacturerId).bytes(oem->data);
        } else {
            ipmi::Writer raw(storage);
            raw.u16(id).bytes(repository_.rawRecords[index]);
            return raw.written();
        }
        storage[recordHeaderSize - 1] = static_cast<std::uint8_t>(record.size() - recordHeaderSize);
        return record.written();
    }

private:
    template <class Record>
    static const Record* take(const std::vector<Record>& records, std::size_t& index) {
        if (index < records.size())
            return &records[index];
        index -= records.size();
        return nullptr;
    }

    const std::vector<Sensor>& sensors_;
    const std::vector<Fru>& frus_;
    const SdrRepository& repository_;
};

constexpr std::uint8_t supportedOperations = 0x22; // non-modal update, reservations

std::uint8_t getSdrRepositoryInfo(State& state, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint16_t unspecified = 0xFFFF;
    answer.u8(sdrVersion)
        .u16(static_cast<std::uint16_t>(Records(state).count()))
        .u16(unspecified) // free space
        .u32(state.get<SdrRepository>().lastAddition)
        .u32(0) // time of the last erase
        .u8(supportedOperations);
    return completion::success;
}

std::uint8_t reserveSdrRepository(State& state, ipmi::Reader, ipmi::Writer& answer) {
    auto& reservation = state.edit<SdrRepository>().reservation;
    if (++reservation == 0) // which stands for none
        ++reservation;
    answer.u16(reservation);
    return completion::success;
}

std::uint8_t getSdr(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& repository = state.get<SdrRepository>();
    const std::uint16_t reservation = request.u16();
    std::uint16_t id = request.u16();
    const std::size_t offset = request.u8();
    const std::size_t asked = request.u8();
    constexpr std::size_t wholeRecord = 0xFF;
    constexpr std::uint16_t first = 0x0000;
    constexpr std::uint16_t last = 0xFFFF;

    // Only reading on within a record needs a reservation; a reservation that is given must be valid.
    constexpr std::uint16_t none = 0;
    if ((offset > 0 && reservation == none) || (reservation != none && reservation != repository.reservation))
        return completion::reservationCanceled;
    const Records records(state);
    const std::size_t count = records.count();
    if (id == first)
        id = 1;
    else if (id == last)
        id = static_cast<std::uint16_t>(count);
    if (id == 0 || id > count)
        return completion::notPresent;
    RecordBytes storage;
    const auto record = records.read(id, storage);
    if (offset > record.size())
        return completion::parameterOutOfRange;
    const std::size_t left = record.size() - offset;
    if ((asked == wholeRecord ? left : asked) > repository.largestPart)
        return completion::cannotReturnBytes;
    answer.u16(id < count ? static_cast<std::uint16_t>(id + 1) : last)
        .bytes(record.subspan(offset, std::min(asked, left)));
    return completion::success;
}

constexpr std::size_t idSize = 2;

} // namespace

void ControllerLocator::fields(Fields& fields) {
    fields.required("name", name);
    fields("address", address);
    fields("channel", channel);
    fields("capabilities", capabilities);
    fields("entity", entity);
    fields("entityInstance", entityInstance);
}

void ControllerLocator::check(const Place& place) const {
    checkIdString(name, Place{&place, "name"});
}

void ContainedEntity::fields(Fields& fields) {
    fields.required("entity", entity);
    fields("entityInstance", entityInstance);
}

void EntityAssociation::fields(Fields& fields) {
    fields.required("entity", entity);
    fields("entityInstance", entityInstance);
    fields("contains", contains);
    fields("ranges", areRanges);
    fields("deviceRelative", isDeviceRelative);
}

void EntityAssociation::check(const Place& place) const {
    if (contains.size() > containedEntities)
        fail(Place{&place, "contains"}, "a record has room for " + std::to_string(containedEntities));
    if (areRanges && contains.size() % 2 != 0)
        fail(Place{&place, "contains"}, "a range has a first and a last entity");
}

void GenericDevice::fields(Fields& fields) {
    fields.required("name", name);
    fields("address", address);
    fields("slaveAddress", slaveAddress);
    fields("type", type);
    fields("entity", entity);
    fields("entityInstance", entityInstance);
}

void GenericDevice::check(const Place& place) const {
    checkIdString(name, Place{&place, "name"});
}

void OemRecord::fields(Fields& fields) {
    fields.number("manufacturerId", manufacturerId, 0, 0xFFFFF);
    fields("data", data);
}

void OemRecord::check(const Place& place) const {
    constexpr std::size_t most = 0xFF - 3;
    if (data.size() > most)
        fail(Place{&place, "data"}, "a record has room for " + std::to_string(most) + " bytes");
}

std::span<const Command> SdrRepository::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getSdrRepositoryInfo, 0, getSdrRepositoryInfo},
        {ipmi::command::reserveSdrRepository, 0, reserveSdrRepository},
        {ipmi::command::getSdr, 6, getSdr},
    };
    return table;
}

void SdrRepository::fields(Fields& fields) {
    fields("controllers", controllers);
    fields("associations", associations);
    fields("genericDevices", genericDevices);
    fields("oemRecords", oemRecords);
    fields("rawRecords", rawRecords);
    fields.number("largestPart", largestPart, 1, 0xFF);
    fields("reservation", reservation);
    fields("lastAddition", lastAddition);
}

void SdrRepository::check(const Place& place) const {
    for (std::size_t i = 0; i < rawRecords.size(); ++i)
        if (const Place list{&place, "rawRecords"}; rawRecords[i].size() > largestRecord - idSize)
            fail(Place{&list, nullptr, i},
                 "a record has at most " + std::to_string(largestRecord - idSize) + " bytes behind its ID");
}

Json SdrRepository::describe(const State& state) const {
    Json json = Json::object();
    json["records"] = Records(state).count();
    json["largestPart"] = largestPart;
    return json;
}

} // namespace vbmc
