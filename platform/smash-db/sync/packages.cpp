#include "smash-db/sync/packages.h"

#include "ipmi/entity.h"
#include "ipmi/message.h"
#include "smash-db/rows.h"
#include "smash-db/sync/entity_presence.h"
#include "smash-db/sync/fru_inventory.h"

#include <algorithm>
#include <set>
#include <utility>

namespace smash {
namespace {

constexpr std::uint8_t instanceBits = 0x7F; // bit 7 tells a container from a physical entity

using ipmi::Entity;

Entity entityOf(const PackageRow& row) {
    return {row.entityId, row.entityInstance};
}

PackageRow makeRow(Entity entity, std::optional<std::uint8_t> fruDeviceId, const std::string& name) {
    return makePackage(entity.id, entity.instance, fruDeviceId, name);
}

template <std::size_t N>
void fillBlank(char (&field)[N], const std::string& text) {
    if (field[0] == '\0')
        copyText(field, text);
}

void noteFruData(PackageRow& row) {
    for (const char* text :
         {row.manufacturer, row.model, row.serialNumber, row.partNumber, row.version, row.assetTag})
        if (*text != '\0')
            row.hasFruData = 1;
}

// A product area describes the part that its device is on, but the whole system where the device has the chassis
// area too.
void describe(PackageRow& row, const FruContents& contents) {
    if (contents.chassis && row.entityId == ipmi::entity::systemChassis)
        return; // its area describes it, when all packages are known
    if (contents.board) {
        copyText(row.manufacturer, contents.board->manufacturer);
        copyText(row.model, contents.board->product);
        copyText(row.serialNumber, contents.board->serialNumber);
        copyText(row.partNumber, contents.board->partNumber);
        row.manufactured = contents.board->manufactured;
    }
    if (contents.product && !contents.chassis) {
        fillBlank(row.manufacturer, contents.product->manufacturer);
        fillBlank(row.model, contents.product->product);
        fillBlank(row.serialNumber, contents.product->serialNumber);
        fillBlank(row.partNumber, contents.product->partNumber);
        copyText(row.version, contents.product->version);
        copyText(row.assetTag, contents.product->assetTag);
    }
    noteFruData(row);
}

PowerSupplyInfoRow readPowerSupplyInfo(Entity entity, const std::vector<std::uint8_t>& record) {
    constexpr std::uint16_t notSpecified = 0xFFFF;
    ipmi::Reader reader(record);
    PowerSupplyInfoRow row = {};
    row.entityId = entity.id;
    row.entityInstance = entity.instance;
    row.capacity = reader.u16() & 0x0FFF;
    row.peakVoltAmperes = reader.u16();
    row.inrushCurrent = reader.u8();
    row.inrushInterval = reader.u8();
    row.lowVoltage1 = reader.u16();
    row.highVoltage1 = reader.u16();
    row.lowVoltage2 = reader.u16();
    row.highVoltage2 = reader.u16();
    row.lowFrequency = reader.u8();
    row.highFrequency = reader.u8();
    row.dropoutTolerance = reader.u8();
    row.flags = reader.u8() & 0x1F;
    if (const std::uint16_t peak = reader.u16(); peak != notSpecified) {
        row.holdUpTime = static_cast<std::uint8_t>(peak >> 12);
        row.peakCapacity = peak & 0x0FFF;
    }
    row.combinedVoltages = reader.u8();
    row.combinedCapacity = reader.u16();
    row.tachometerThreshold = reader.u8();
    return row;
}

class PackageReader {
public:
    PackageReader(ipmi::Transport& bmc, const SdrMapping& records, FruDevices& devices)
        : bmc_(bmc), records_(records), devices_(devices) {}

    Packages read() {
        for (const EntityLocator& locator : records_.locators)
            if (locator.fruDeviceId)
                addFru(entityOf(locator), *locator.fruDeviceId, locator.name);
        if (!isLocated(ownFruDevice))
            addFru({ipmi::entity::systemBoard, 1}, ownFruDevice, "");
        for (const EntityLocator& locator : records_.locators)
            if (!locator.fruDeviceId)
                addEntity(entityOf(locator), locator.name);
        for (const FullSdr& sensor : records_.numericSensors)
            addWatched(sensor.common);
        for (const CompactSdr& sensor : records_.sensors)
            addWatched(sensor);
        describeChassis();
        return std::move(found_);
    }

private:
    static Entity entityOf(const EntityLocator& locator) {
        return {locator.entityId, static_cast<std::uint8_t>(locator.entityInstance & instanceBits)};
    }

    bool isLocated(std::uint8_t fruDeviceId) const {
        return std::ranges::any_of(
            records_.locators, [&](const EntityLocator& each) { return each.fruDeviceId == fruDeviceId; });
    }

    Presence presenceOf(Entity entity) {
        if (entity.id == ipmi::entity::systemBoard || entity.id == ipmi::entity::systemChassis)
            return Presence::Present;
        return readPresence(bmc_, records_.sensors, entity.id, entity.instance);
    }

    void addFru(Entity entity, std::uint8_t fruDeviceId, const std::string& name) {
        const FruDevices::Device& device = devices_.read(fruDeviceId);
        const Presence presence = presenceOf(entity);
        if (presence == Presence::Absent || (presence == Presence::Unknown && device.isAbsent)) {
            absent_.insert(entity);
            return;
        }
        // The BMC's own device needs no locator; then only its contents tell that it exists.
        if (!isLocated(fruDeviceId) && !device.contents)
            return;
        PackageRow row = makeRow(entity, fruDeviceId, name);
        if (std::ranges::any_of(found_.packages, [&](const PackageRow& each) {
                return std::string_view(each.tag) == row.tag;
            }))
            return;
        if (device.contents) {
            describe(row, *device.contents);
            addPowerSupply(entity, device.contents->powerSupply);
            if (device.contents->chassis && chassisFru_ == nullptr) {
                chassisFru_ = &*device.contents;
                chassisFruDevice_ = fruDeviceId;
            }
        }
        found_.packages.push_back(row);
    }

    void addPowerSupply(Entity entity, const std::vector<std::uint8_t>& record) {
        const bool isKnown = std::ranges::any_of(found_.powerSupplies, [&](const PowerSupplyInfoRow& each) {
            return Entity{each.entityId, each.entityInstance} == entity;
        });
        if (!record.empty() && !isKnown)
            found_.powerSupplies.push_back(readPowerSupplyInfo(entity, record));
    }

    void addEntity(Entity entity, const std::string& name) {
        const bool isKnown = std::ranges::any_of(
            found_.packages, [&](const PackageRow& each) { return smash::entityOf(each) == entity; });
        if (isKnown || absent_.contains(entity))
            return;
        if (presenceOf(entity) == Presence::Absent)
            absent_.insert(entity);
        else
            found_.packages.push_back(makeRow(entity, std::nullopt, name));
    }

    // Fans, and often supplies and processors, have no locator, but sensors.
    void addWatched(const CompactSdr& sensor) {
        for (const std::uint8_t id : {ipmi::entity::processor, ipmi::entity::powerSupply, ipmi::entity::fan})
            if (sensor.entityId == id && (sensor.entityInstance & ~instanceBits) == 0)
                addEntity({sensor.entityId, sensor.entityInstance}, "");
    }

    // The chassis area describes the system chassis, whichever device has it.
    void describeChassis() {
        if (chassisFru_ == nullptr)
            return;
        auto chassis = std::ranges::find(found_.packages, ipmi::entity::systemChassis, &PackageRow::entityId);
        if (chassis == found_.packages.end())
            chassis = found_.packages.insert(
                chassis, makeRow({ipmi::entity::systemChassis, 1}, chassisFruDevice_, ""));
        chassis->chassisType = chassisFru_->chassis->type;
        if (chassisFru_->product && chassis->hasFruData == 0) {
            copyText(chassis->manufacturer, chassisFru_->product->manufacturer);
            copyText(chassis->model, chassisFru_->product->product);
            copyText(chassis->version, chassisFru_->product->version);
        }
        if (chassisFru_->product)
            fillBlank(chassis->assetTag, chassisFru_->product->assetTag);
        fillBlank(chassis->serialNumber, chassisFru_->chassis->serialNumber);
        fillBlank(chassis->partNumber, chassisFru_->chassis->partNumber);
        noteFruData(*chassis);
    }

    ipmi::Transport& bmc_;
    const SdrMapping& records_;
    FruDevices& devices_;
    Packages found_;
    std::set<Entity> absent_;
    const FruContents* chassisFru_ = nullptr;
    std::uint8_t chassisFruDevice_ = 0;
};

} // namespace

PackageRow makePackage(std::uint8_t entityId, std::uint8_t entityInstance,
                       std::optional<std::uint8_t> fruDeviceId, const std::string& name) {
    PackageRow row = {};
    row.entityId = entityId;
    row.entityInstance = entityInstance;
    row.fruDeviceId = fruDeviceId.value_or(SMASH_NO_FRU_DEVICE);
    copyText(row.name, name);
    std::string beginning = std::to_string(entityId) + "." + std::to_string(entityInstance);
    if (fruDeviceId)
        beginning += "." + std::to_string(*fruDeviceId);
    copyText(row.tag, tagFrom(std::move(beginning), name));
    return row;
}

std::string tagFrom(std::string beginning, const std::string& name) {
    if (!name.empty())
        beginning += ":" + name;
    std::ranges::replace_if(
        beginning, [](char each) { return each == '\'' || each == '"'; }, '_');
    return beginning;
}

Packages readPackages(ipmi::Transport& bmc, const SdrMapping& records, FruDevices& devices) {
    return PackageReader(bmc, records, devices).read();
}

} // namespace smash
