#include "smash-db/sync/host_hardware.h"

#include "ipmi/entity.h"
#include "smash-db/rows.h"
#include "smash-db/sync/entity_devices.h"
#include "smash-db/sync/hardware_codes.h"
#include "smbios/names.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <strings.h>

namespace smash {
namespace {

namespace entity = ipmi::entity;

constexpr std::uint8_t systemMemory = 3;  // use of a memory array
constexpr std::uint8_t inUse = 4;         // usage of a slot
constexpr std::uint16_t mostCores = 1024; // more is no processor, but a wrong table

bool isSame(const std::string& name, const char* other) {
    return strcasecmp(name.c_str(), other) == 0;
}

// What firmware writes where it has nothing to say.
std::string meaningful(const std::string& text) {
    static constexpr const char* fillers[] = {
        "Not Specified", "To Be Filled By O.E.M.", "Default string",     "Unknown", "None", "N/A", "NO DIMM",
        "Not Available", "System Serial Number",   "System Product Name"};
    const bool isFiller =
        std::ranges::any_of(fillers, [&](const char* filler) { return isSame(text, filler); });
    return isFiller ? std::string() : text;
}

template <std::size_t N>
void fillUnknown(char (&field)[N], const std::string& text) {
    if (field[0] == '\0')
        copyText(field, meaningful(text));
}

void fillUnknowns(PackageRow& package, const smbios::Identity& identity) {
    fillUnknown(package.manufacturer, identity.manufacturer);
    fillUnknown(package.model, identity.product);
    fillUnknown(package.serialNumber, identity.serialNumber);
    fillUnknown(package.partNumber, identity.partNumber);
    fillUnknown(package.assetTag, identity.assetTag);
}

class HardwareMapping {
public:
    HardwareMapping(const smbios::Hardware& hardware, const SdrMapping& sensors, Packages& packages,
                    std::vector<EntityDeviceRow>& devices, std::vector<SyncRemark>& remarks)
        : hardware_(hardware),
          sensors_(sensors),
          packages_(packages.packages),
          devices_(devices),
          remarks_(remarks) {}

    HostHardware map() {
        for (const smbios::Problem& problem : hardware_.problems)
            remark(problem.place, problem.reason, problem.isLoss);
        describeChassis();
        describeBoard();
        mapProcessors();
        mapMemory();
        mapSlots();
        mapPorts();
        for (const smbios::OnboardDevice& device : bounded(hardware_.onboardDevices, "onboard devices"))
            addPciDevice(device.name, smbios::deviceTypeName(device.type), classCodeOf(device.type),
                         device.isEnabled ? enabled : disabled, device.address, tagOf(entity::systemBoard));
        return std::move(rows_);
    }

private:
    static constexpr std::uint16_t enabled = 2, disabled = 3, notApplicable = 5; // CIM EnabledState

    void remark(const std::string& place, const std::string& reason, bool isLoss = false) {
        remarks_.push_back({"SMBIOS " + place, reason, isLoss});
    }

    PackageRow* find(std::uint8_t entityId, std::uint8_t instance) {
        const auto found = std::ranges::find_if(packages_, [&](const PackageRow& each) {
            return each.entityId == entityId && each.entityInstance == instance;
        });
        return found != packages_.end() ? &*found : nullptr;
    }
    // The reference is valid until the next one is added.
    PackageRow& findOrAdd(std::uint8_t entityId, std::uint8_t instance, const std::string& name = {}) {
        PackageRow* const known = find(entityId, instance);
        return known != nullptr ? *known
                                : packages_.emplace_back(makePackage(entityId, instance, std::nullopt, name));
    }
    PackageRow* first(std::uint8_t entityId) {
        const auto found = std::ranges::find(packages_, entityId, &PackageRow::entityId);
        return found != packages_.end() ? &*found : nullptr;
    }
    std::string tagOf(std::uint8_t entityId) {
        const PackageRow* const package = first(entityId);
        return package != nullptr ? package->tag : "";
    }

    void describeChassis() {
        if (hardware_.chassis.empty())
            return;
        const smbios::Chassis& described = hardware_.chassis.front();
        PackageRow* const known = first(entity::systemChassis);
        PackageRow& chassis = known != nullptr ? *known : findOrAdd(entity::systemChassis, 1);
        fillUnknowns(chassis, described.identity);
        fillUnknown(chassis.version, described.identity.version);
        if (chassis.chassisType == 0)
            chassis.chassisType = described.type;
        if (hardware_.system) { // the model of the machine is that of its chassis
            fillUnknown(chassis.manufacturer, hardware_.system->identity.manufacturer);
            fillUnknown(chassis.model, hardware_.system->identity.product);
        }
    }

    void describeBoard() {
        if (hardware_.baseboards.empty())
            return;
        const auto hosting = std::ranges::find(hardware_.baseboards, true, &smbios::Baseboard::isHosting);
        const smbios::Baseboard& described =
            hosting != hardware_.baseboards.end() ? *hosting : hardware_.baseboards.front();
        PackageRow* const known = first(entity::systemBoard);
        PackageRow& board = known != nullptr ? *known : findOrAdd(entity::systemBoard, 1);
        fillUnknowns(board, described.identity);
        fillUnknown(board.version, described.identity.version);
    }

    // A table may have thousands of structures of a kind; no machine has.
    template <class T>
    std::span<const T> bounded(const std::vector<T>& all, const char* what) {
        constexpr std::size_t most = std::numeric_limits<std::uint8_t>::max(); // entity instances
        if (all.size() > most)
            remark(what,
                   std::to_string(all.size() - most) + " are left out: there are more than " +
                       std::to_string(most),
                   true);
        return std::span(all).first(std::min(all.size(), most));
    }

    // Returns the entity instances of sockets, in their order: that of the package which the BMC names as the firmware does,
    // else the number of the socket.
    std::vector<std::uint8_t> instancesOf(std::uint8_t entityId, const std::vector<std::string>& names) {
        std::vector<std::optional<std::uint8_t>> known(names.size());
        std::set<std::uint8_t> taken;
        for (std::size_t i = 0; i < names.size(); ++i)
            for (const PackageRow& package : packages_)
                if (!known[i] && package.entityId == entityId && !names[i].empty() &&
                    isSame(names[i], package.name) && taken.insert(package.entityInstance).second)
                    known[i] = package.entityInstance;
        std::vector<std::uint8_t> instances;
        for (std::size_t i = 0; i < names.size(); ++i) {
            for (std::size_t number = i + 1; !known[i]; number = number % 0xFF + 1)
                if (taken.insert(static_cast<std::uint8_t>(number)).second)
                    known[i] = static_cast<std::uint8_t>(number);
            instances.push_back(*known[i]);
        }
        return instances;
    }

    // What is in a socket or a slot: the tag of a package, or nothing.
    ConnectorRow& addConnector(std::string_view kind, std::size_t number, const std::string& name) {
        ConnectorRow& connector = rows_.connectors.emplace_back();
        copyText(connector.tag, tagFrom(std::string(kind) + ' ' + std::to_string(number), name));
        copyText(connector.name, name.empty() ? std::string(kind) + ' ' + std::to_string(number) : name);
        return connector;
    }
    void addSocket(const char* kind, const char* words, std::size_t number, const std::string& name,
                   const std::string& content) {
        constexpr std::uint16_t otherLayout = 1;
        ConnectorRow& socket = addConnector(kind, number, name);
        socket.isSlot = 1;
        socket.layout = otherLayout;
        copyText(socket.connector, kind);
        copyText(socket.description,
                 content.empty() ? std::string(words) + ", empty" : std::string(words) + " with " + content);
    }

    void mapProcessors() {
        const auto processors = bounded(hardware_.processors, "processors");
        std::vector<std::string> names;
        for (const smbios::Processor& processor : processors)
            names.push_back(processor.socket);
        const auto instances = instancesOf(entity::processor, names);
        for (std::size_t i = 0; i < processors.size(); ++i) {
            const smbios::Processor& processor = processors[i];
            std::string content;
            if (processor.isInstalled) {
                PackageRow& package = findOrAdd(entity::processor, instances[i], processor.socket);
                fillUnknown(package.name, processor.socket);
                fillUnknowns(package, processor.identity);
                content = package.tag;
                addProcessor(processor, instances[i]);
            }
            addSocket("Processor Socket", "processor socket", i + 1, processor.socket, content);
        }
    }

    void addProcessor(const smbios::Processor& processor, std::uint8_t instance) {
        ProcessorRow& row = rows_.processors.emplace_back();
        row.entityId = entity::processor;
        row.entityInstance = instance;
        row.family = processor.family;
        row.upgradeMethod = processor.upgrade;
        row.status = processor.status;
        row.maxClock = processor.maxSpeed;
        row.currentClock = processor.currentSpeed;
        row.externalBusClock = processor.externalClock;
        row.characteristics = processor.characteristics;
        if (processor.cores > mostCores) {
            remark("processor " + std::to_string(instance),
                   "its " + std::to_string(processor.cores) + " cores are more than a processor has");
        } else {
            row.cores = processor.cores;
            row.threads = processor.threads;
        }
        row.enabledCores = std::min(processor.enabledCores, row.cores);
        copyText(row.role, smbios::processorTypeName(processor.type));
        copyText(row.version, meaningful(processor.identity.product));
        devices_.push_back(makeEntityDevice(entity::processor, instance, sensors_));
    }

    bool isSystemMemory(const smbios::MemoryDevice& device) {
        const auto array =
            std::ranges::find(hardware_.memoryArrays, device.array, &smbios::MemoryArray::handle);
        if (array != hardware_.memoryArrays.end())
            return array->use == systemMemory;
        ++strayDevices_[device.array];
        return true;
    }
    void remarkMissingArrays() {
        for (const auto& [handle, count] : strayDevices_) {
            char array[24];
            std::snprintf(array, sizeof array, "memory array 0x%04X", static_cast<unsigned>(handle));
            remark(array, "it is not there, and taken for system memory: " + std::to_string(count) +
                              (count == 1 ? " device names it" : " devices name it"));
        }
    }

    void mapMemory() {
        std::vector<const smbios::MemoryDevice*> devices;
        std::vector<std::string> names;
        for (const smbios::MemoryDevice& device : bounded(hardware_.memoryDevices, "memory devices"))
            if (isSystemMemory(device)) {
                devices.push_back(&device);
                names.push_back(device.socket);
            } else if (device.isInstalled) {
                remark("memory device " + device.socket, "it is no system memory");
            }
        remarkMissingArrays();
        const auto instances = instancesOf(entity::memoryDevice, names);
        MemoryRow memory = {};
        for (std::size_t i = 0; i < devices.size(); ++i) {
            const smbios::MemoryDevice& device = *devices[i];
            std::string content;
            if (device.isInstalled) {
                PackageRow& package = findOrAdd(entity::memoryDevice, instances[i], device.socket);
                fillUnknown(package.name, device.socket);
                fillUnknowns(package, device.identity);
                content = package.tag;
                addModule(device, instances[i]);
                ++memory.modules;
                memory.size += rows_.memoryModules.back().capacity;
            }
            addSocket("Memory Socket", "memory socket", i + 1, device.socket, content);
        }
        if (devices.empty())
            return;
        memory.sockets = static_cast<std::uint16_t>(devices.size());
        for (const smbios::MemoryArray& array : hardware_.memoryArrays)
            if (array.use == systemMemory) {
                memory.capacity = sum(memory.capacity, array.capacity);
                fillUnknown(memory.errorMethodology, smbios::correctionName(array.correction));
            }
        rows_.memory.push_back(memory);
    }

    static std::int64_t sum(std::int64_t left, std::uint64_t right) {
        constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
        return static_cast<std::int64_t>(
            std::min(static_cast<std::uint64_t>(left) + std::min(right, most), most));
    }

    void addModule(const smbios::MemoryDevice& device, std::uint8_t instance) {
        MemoryModuleRow& row = rows_.memoryModules.emplace_back();
        row.entityId = entity::memoryDevice;
        row.entityInstance = instance;
        row.formFactor = formFactorOf(device.formFactor);
        row.memoryType = memoryTypeOf(device.type);
        row.totalWidth = device.totalWidth;
        row.dataWidth = device.dataWidth;
        row.maxSpeed = device.speed;
        row.configuredSpeed = device.configuredSpeed;
        row.capacity = static_cast<std::int64_t>(device.size); // 51 bits at most
        copyText(row.bankLabel, meaningful(device.bank));
    }

    void mapSlots() {
        const auto slots = bounded(hardware_.slots, "slots");
        for (std::size_t i = 0; i < slots.size(); ++i) {
            const smbios::Slot& slot = slots[i];
            const SlotShape shape = slotShapeOf(slot.type, slot.width);
            ConnectorRow& row = addConnector("Slot", i + 1, slot.name);
            row.isSlot = 1;
            row.isHotPluggable = slot.isHotPluggable ? 1 : 0;
            row.layout = shape.layout;
            row.linkWidth = shape.linkWidth;
            row.dataWidth = shape.dataWidth;
            row.number = slot.number;
            copyText(row.connector, shape.text);
            copyText(row.description,
                     (shape.text.empty() ? "Slot" : shape.text + " slot") + contentOf(slot, row));
        }
    }

    std::string contentOf(const smbios::Slot& slot, const ConnectorRow& row) {
        constexpr std::uint8_t available = 3, unavailable = 5;
        if (slot.usage == inUse) {
            const std::string card = cardIn(row);
            if (slot.address)
                addPciDevice(row.name, "Device", classCodeOf(0), notApplicable, slot.address, card);
            return " with " + card;
        }
        return slot.usage == available ? ", empty" : slot.usage == unavailable ? ", unavailable" : "";
    }

    // The card that the BMC names as the slot, or one of which nothing else is known.
    std::string cardIn(const ConnectorRow& slot) {
        PackageRow card = makePackage(entity::addInCard, 0, std::nullopt, slot.tag);
        copyText(card.name, slot.name);
        const auto known = std::ranges::find_if(packages_, [&](const PackageRow& each) {
            return (each.entityId != entity::processor && each.entityId != entity::memoryDevice &&
                    isSame(slot.name, each.name)) ||
                   std::string_view(card.tag) == each.tag;
        });
        if (known != packages_.end())
            return known->tag;
        packages_.push_back(card);
        return card.tag;
    }

    void addPciDevice(const std::string& name, const std::string& kind, std::uint8_t classCode,
                      std::uint16_t state, const std::optional<smbios::PciAddress>& address,
                      const std::string& package) {
        if (!address)
            return remark("device " + name, "it has no PCI address");
        PciDeviceRow row = {};
        std::snprintf(row.deviceId, sizeof row.deviceId, "PCI %04x:%02x:%02x.%x", address->segment,
                      address->bus, address->device, address->function);
        if (std::ranges::any_of(rows_.pciDevices, [&](const PciDeviceRow& each) {
                return std::string_view(each.deviceId) == row.deviceId;
            }))
            return remark("device " + name, "there is another one at its PCI address");
        row.classCode = classCode;
        row.bus = address->bus;
        row.device = address->device;
        row.function = address->function;
        row.enabledState = state;
        copyText(row.name, name.empty() ? kind : name);
        copyText(row.description, package.empty() ? kind : kind + " on " + package);
        rows_.pciDevices.push_back(row);
    }

    void mapPorts() {
        const auto ports = bounded(hardware_.ports, "ports");
        for (std::size_t i = 0; i < ports.size(); ++i) {
            const smbios::Port& port = ports[i];
            // A port at the outside is known by its outer connector.
            const bool isExternal = port.externalConnector != 0 || port.internalConnector == 0;
            const std::uint8_t connector = isExternal ? port.externalConnector : port.internalConnector;
            const std::string& own = isExternal ? port.externalName : port.internalName;
            const std::string& other = isExternal ? port.internalName : port.externalName;
            ConnectorRow& row =
                addConnector("Port", i + 1, !meaningful(own).empty() ? own : meaningful(other));
            row.layout = portLayoutOf(connector);
            row.gender = genderOf(connector);
            copyText(row.connector, smbios::connectorTypeName(connector));
            const std::string kind = smbios::portTypeName(port.type);
            copyText(row.description, (kind.empty() ? "Port" : kind) + (isExternal ? "" : ", internal"));
        }
    }

    const smbios::Hardware& hardware_;
    const SdrMapping& sensors_;
    std::vector<PackageRow>& packages_;
    std::vector<EntityDeviceRow>& devices_;
    std::vector<SyncRemark>& remarks_;
    HostHardware rows_;
    std::map<std::uint16_t, unsigned> strayDevices_; // by the handle of the memory array that they name
};

} // namespace

HostHardware mapHardware(const smbios::Hardware& hardware, const SdrMapping& sensors, Packages& packages,
                         std::vector<EntityDeviceRow>& devices, std::vector<SyncRemark>& remarks) {
    return HardwareMapping(hardware, sensors, packages, devices, remarks).map();
}

} // namespace smash
