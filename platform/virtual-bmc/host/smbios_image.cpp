// Numbers of sections are those of DSP0134 3.7.
#include "virtual-bmc/host/smbios_image.h"

#include "virtual-bmc/state/json_fields.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string_view>
#include <utility>

namespace vbmc {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t chassisHandle = 0x0300, arrayHandle = 0x1000, none = 0xFFFE;

// Writes the structures one after the other: fields in their order, then the strings.
class TableWriter {
public:
    explicit TableWriter(const Place& place) : place_(place) {}

    TableWriter& begin(std::uint8_t type, std::size_t handle) {
        end();
        begin_ = bytes_.size();
        return u8(type).u8(0).u16(handle);
    }
    TableWriter& u8(std::size_t value) { return number(value, 1); }
    TableWriter& u16(std::size_t value) { return number(value, 2); }
    TableWriter& u32(std::uint64_t value) { return number(value, 4); }
    TableWriter& u64(std::uint64_t value) { return number(value, 8); }
    TableWriter& zeros(std::size_t count) {
        bytes_.insert(bytes_.end(), count, 0);
        return *this;
    }
    TableWriter& bytes(std::span<const std::uint8_t> values) {
        bytes_.insert(bytes_.end(), values.begin(), values.end());
        return *this;
    }
    TableWriter& text(const std::string& value) {
        constexpr std::size_t longest = 64; // what every reader takes
        if (value.empty())
            return u8(0);
        if (value.size() > longest ||
            std::ranges::any_of(value, [](unsigned char each) { return each < ' '; }))
            fail(place_, "'" + value + "' is no text of at most " + std::to_string(longest) + " characters");
        strings_.push_back(value);
        return u8(strings_.size());
    }
    Bytes finish() {
        begin(127, 0xFEFF).end();
        return std::move(bytes_);
    }

private:
    TableWriter& number(std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i)
            bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        return *this;
    }
    void end() {
        if (bytes_.empty())
            return;
        constexpr std::size_t lengthByte = 1;
        bytes_[begin_ + lengthByte] = static_cast<std::uint8_t>(bytes_.size() - begin_);
        for (const std::string& string : strings_) {
            bytes_.insert(bytes_.end(), string.begin(), string.end());
            bytes_.push_back(0);
        }
        zeros(strings_.empty() ? 2 : 1);
        strings_.clear();
    }

    const Place& place_;
    Bytes bytes_;
    std::size_t begin_ = 0;
    std::vector<std::string> strings_;
};

std::size_t address(unsigned device, unsigned function) {
    return device << 3U | function;
}

// 7.2.1: the GUID holds its last byte first; the table swaps the first three fields only.
Bytes uuidOf(const std::optional<Guid>& guid) {
    Bytes uuid(16, 0);
    if (!guid)
        return uuid;
    std::reverse_copy(std::begin(guid->bytes), std::end(guid->bytes), uuid.begin());
    std::reverse(uuid.begin(), uuid.begin() + 4);
    std::reverse(uuid.begin() + 4, uuid.begin() + 6);
    std::reverse(uuid.begin() + 6, uuid.begin() + 8);
    return uuid;
}

// 7.2
void write(TableWriter& table, const SmbiosIdentity& system) {
    constexpr std::uint8_t powerSwitch = 6;
    table.begin(1, 0x0100)
        .text(system.manufacturer)
        .text(system.product)
        .text(system.version)
        .text(system.serialNumber);
    table.bytes(uuidOf(system.uuid)).u8(powerSwitch).zeros(2); // SKU, family
}

// 7.3
void writeBoard(TableWriter& table, const SmbiosIdentity& board) {
    constexpr std::uint8_t hostingAndReplaceable = 0x09, motherboard = 0x0A;
    table.begin(2, 0x0200)
        .text(board.manufacturer)
        .text(board.product)
        .text(board.version)
        .text(board.serialNumber);
    table.text(board.assetTag).u8(hostingAndReplaceable).u8(0).u16(chassisHandle).u8(motherboard).u8(0);
}

// 7.4
void writeChassis(TableWriter& table, const SmbiosIdentity& chassis) {
    constexpr std::uint8_t safe = 3;
    table.begin(3, chassisHandle).text(chassis.manufacturer).u8(chassis.type).text(chassis.version);
    table.text(chassis.serialNumber).text(chassis.assetTag).u8(safe).u8(safe).u8(safe).u8(safe).zeros(9);
}

// A byte that is FFh leaves the number to a word.
std::size_t firstCount(std::uint16_t count) {
    return std::min<std::size_t>(count, 0xFF);
}

// 7.5
void write(TableWriter& table, std::size_t index, const SmbiosProcessor& processor) {
    constexpr std::uint8_t central = 3, populated = 0x40, inSecondField = 0xFE;
    table.begin(4, 0x0400 + index).text(processor.socket).u8(central);
    table.u8(processor.family < inSecondField ? processor.family : inSecondField)
        .text(processor.manufacturer);
    table.zeros(8).text(processor.version).u8(0); // ID, voltage
    table.u16(processor.externalClock).u16(processor.maxSpeed).u16(processor.currentSpeed);
    table.u8(processor.isInstalled ? populated | processor.status : 0).u8(processor.upgrade);
    table.u16(0xFFFF).u16(0xFFFF).u16(0xFFFF); // caches
    table.text(processor.serialNumber).text(processor.assetTag).text(processor.partNumber);
    table.u8(firstCount(processor.cores))
        .u8(firstCount(processor.enabledCores))
        .u8(firstCount(processor.threads));
    table.u16(processor.characteristics).u16(processor.family);
    table.u16(processor.cores).u16(processor.enabledCores).u16(processor.threads);
}

// 7.9
void write(TableWriter& table, std::size_t index, const SmbiosPort& port) {
    table.begin(8, 0x0800 + index).text(port.internalName).u8(port.internalConnector);
    table.text(port.externalName).u8(port.externalConnector).u8(port.type);
}

// 7.10
void write(TableWriter& table, std::size_t index, const SmbiosSlot& slot) {
    constexpr std::uint8_t longSlot = 4, provides33V = 0x04, powerManagement = 0x01, hotPlug = 0x02;
    table.begin(9, 0x0900 + index).text(slot.name).u8(slot.type).u8(slot.width).u8(slot.usage).u8(longSlot);
    table.u16(slot.number).u8(provides33V).u8(powerManagement | (slot.isHotPluggable ? hotPlug : 0));
    const bool hasAddress = slot.bus != 0xFF;
    table.u16(hasAddress ? slot.segment : 0xFFFFU).u8(slot.bus);
    table.u8(hasAddress ? address(slot.device, slot.function) : 0xFFU);
}

// 7.17
void write(TableWriter& table, const SmbiosMemory& memory) {
    constexpr std::uint8_t onBoard = 3, systemMemory = 3;
    constexpr std::uint64_t inExtendedField = 0x80000000, kibibyte = 1024;
    table.begin(16, arrayHandle).u8(onBoard).u8(systemMemory).u8(memory.errorCorrection);
    const std::uint64_t capacity = memory.capacity * kibibyte;
    const bool isExtended = capacity >= inExtendedField;
    table.u32(isExtended ? inExtendedField : capacity).u16(none).u16(memory.modules.size());
    table.u64(isExtended ? capacity * kibibyte : 0);
}

// 7.18
void write(TableWriter& table, std::size_t index, const SmbiosMemoryModule& module) {
    constexpr std::uint32_t inExtendedField = 0x7FFF;
    static constexpr std::uint32_t inExtendedSpeed = 0xFFFF;
    const bool isExtended = module.size >= inExtendedField;
    const auto speed = [](std::uint32_t value) { return std::min(value, inExtendedSpeed); };
    const auto extendedSpeed = [](std::uint32_t value) { return value >= inExtendedSpeed ? value : 0; };
    table.begin(17, 0x1100 + index).u16(arrayHandle).u16(none);
    table.u16(module.size != 0 ? module.totalWidth : 0xFFFFU)
        .u16(module.size != 0 ? module.dataWidth : 0xFFFFU);
    table.u16(isExtended ? inExtendedField : module.size).u8(module.formFactor).u8(0);
    table.text(module.socket).text(module.bank).u8(module.size != 0 ? module.type : 2U).u16(0);
    table.u16(speed(module.speed)).text(module.manufacturer).text(module.serialNumber).text(module.assetTag);
    table.text(module.partNumber).u8(0).u32(isExtended ? module.size : 0).u16(speed(module.configuredSpeed));
    table.zeros(6 + 0x54 - 0x28); // voltages; what SMBIOS 3.2 has of modules that are not volatile
    table.u32(extendedSpeed(module.speed)).u32(extendedSpeed(module.configuredSpeed));
}

// 7.42
void write(TableWriter& table, std::size_t index, const SmbiosOnboardDevice& device) {
    constexpr unsigned enabled = 0x80;
    table.begin(41, 0x2900 + index).text(device.name).u8(device.type | (device.isEnabled ? enabled : 0));
    table.u8(device.instance).u16(device.segment).u8(device.bus).u8(address(device.device, device.function));
}

template <class Structure>
void writeAll(TableWriter& table, const std::vector<Structure>& structures) {
    for (std::size_t i = 0; i < structures.size(); ++i)
        write(table, i, structures[i]);
}

// 5.2.2
Bytes entryPoint(std::size_t tableSize, std::size_t tableAddress) {
    constexpr std::size_t size = 24, checksumByte = 5;
    Bytes entry{'_', 'S', 'M', '3', '_', 0, size, 3, 3, 0, 1, 0};
    for (const std::uint64_t value :
         {std::uint64_t{tableSize}, std::uint64_t{tableAddress}, std::uint64_t{0}})
        for (unsigned shift = 0; shift < 32; shift += 8)
            entry.push_back(static_cast<std::uint8_t>(value >> shift));
    entry[checksumByte] =
        static_cast<std::uint8_t>(0x100 - std::accumulate(entry.begin(), entry.end(), 0U) % 0x100);
    return entry;
}

} // namespace

std::vector<std::uint8_t> smbiosImage(const Smbios& smbios, const Place& place) {
    TableWriter table(place);
    if (smbios.system)
        write(table, *smbios.system);
    if (smbios.board)
        writeBoard(table, *smbios.board);
    if (smbios.chassis)
        writeChassis(table, *smbios.chassis);
    writeAll(table, smbios.processors);
    writeAll(table, smbios.ports);
    writeAll(table, smbios.slots);
    if (smbios.memory) {
        write(table, *smbios.memory);
        writeAll(table, smbios.memory->modules);
    }
    writeAll(table, smbios.onboardDevices);
    const Bytes structures = table.finish();
    constexpr std::size_t begin = 32;
    Bytes image = entryPoint(structures.size(), begin);
    image.resize(begin);
    image.insert(image.end(), structures.begin(), structures.end());
    return image;
}

} // namespace vbmc
