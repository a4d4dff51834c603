// Numbers of sections are those of DSP0134 3.7.
#include "smbios/hardware.h"

#include <algorithm>
#include <cstdio>

namespace smbios {
namespace {

constexpr std::uint64_t kibibyte = 1024, mebibyte = kibibyte * kibibyte;

// Reads the fields of structures, and remarks the strings that they do not have.
class HardwareReader {
public:
    explicit HardwareReader(const Table& table) : table_(table) { found_.problems = table.problems(); }

    Hardware read() {
        for (const Structure& structure : table_.structures()) {
            structure_ = &structure;
            for (const Kind& kind : kinds)
                if (kind.type == structure.type()) {
                    if (structure.has(0, kind.leastSize))
                        (this->*kind.read)();
                    else
                        complain("it is too short");
                }
        }
        return std::move(found_);
    }

private:
    struct Kind {
        std::uint8_t type;
        std::size_t leastSize; // of the first version of SMBIOS that has it
        void (HardwareReader::*read)();
    };
    static const Kind kinds[9];

    void complain(const std::string& reason, bool isLoss = true) {
        found_.problems.push_back({placeOf(*structure_), reason, isLoss});
    }

    std::string text(std::size_t offset) {
        auto string = structure_->string(offset);
        if (!string)
            complain("it has no string " + std::to_string(structure_->u8(offset)), false);
        return string.value_or(std::string());
    }
    std::uint8_t u8(std::size_t offset, std::uint8_t missing = 0) const {
        return structure_->u8(offset, missing);
    }
    std::uint16_t u16(std::size_t offset, std::uint16_t missing = 0) const {
        return structure_->u16(offset, missing);
    }

    // Bus FFh, device and function FFh are those of a slot without any.
    std::optional<PciAddress> pciAddress(std::size_t offset) const {
        if (!structure_->has(offset, 4))
            return std::nullopt;
        const std::uint8_t bus = u8(offset + 2), deviceAndFunction = u8(offset + 3);
        if (bus == 0xFF && deviceAndFunction == 0xFF)
            return std::nullopt;
        return PciAddress{u16(offset), bus, static_cast<std::uint8_t>(deviceAndFunction >> 3),
                          static_cast<std::uint8_t>(deviceAndFunction & 7)};
    }

    // 7.2.1: the first three fields are little-endian. All zeros or ones: none.
    std::string uuid() const {
        const auto bytes = structure_->bytes(0x08, 16);
        const auto all = [&](std::uint8_t value) {
            return std::ranges::all_of(bytes, [&](std::uint8_t each) { return each == value; });
        };
        if (bytes.empty() || all(0) || all(0xFF))
            return {};
        constexpr int order[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
        std::string text;
        for (const int place : order) {
            char digits[3] = "-";
            if (place >= 0)
                std::snprintf(digits, sizeof digits, "%02x", bytes[static_cast<std::size_t>(place)]);
            text += digits;
        }
        return text;
    }

    // 7.2
    void readSystem() {
        if (found_.system)
            return complain("there is another one", false);
        found_.system =
            System{{.manufacturer = text(4), .product = text(5), .version = text(6), .serialNumber = text(7)},
                   uuid()};
    }

    // 7.3
    void readBaseboard() {
        constexpr std::uint8_t hosting = 0x01;
        found_.baseboards.push_back({{.manufacturer = text(4),
                                      .product = text(5),
                                      .version = text(6),
                                      .serialNumber = text(7),
                                      .assetTag = text(8)},
                                     (u8(9) & hosting) != 0});
    }

    // 7.4
    void readChassis() {
        found_.chassis.push_back(
            {{.manufacturer = text(4), .version = text(6), .serialNumber = text(7), .assetTag = text(8)},
             static_cast<std::uint8_t>(u8(5) & 0x7F)});
    }

    // A byte that is FFh leaves the number to a word that later versions have.
    std::uint16_t count(std::size_t offset, std::size_t extended) const {
        return u8(offset) == 0xFF ? u16(extended, 0xFF) : u8(offset);
    }

    // 7.5
    void readProcessor() {
        constexpr std::uint8_t populated = 0x40, inSecondField = 0xFE;
        const std::uint8_t family = u8(6);
        found_.processors.push_back({.socket = text(4),
                                     .identity = {.manufacturer = text(7),
                                                  .product = text(0x10),
                                                  .serialNumber = text(0x20),
                                                  .assetTag = text(0x21),
                                                  .partNumber = text(0x22)},
                                     .type = u8(5),
                                     .family = family == inSecondField ? u16(0x28, 2) : std::uint16_t{family},
                                     .isInstalled = (u8(0x18) & populated) != 0,
                                     .status = static_cast<std::uint8_t>(u8(0x18) & 7),
                                     .upgrade = u8(0x19),
                                     .externalClock = u16(0x12),
                                     .maxSpeed = u16(0x14),
                                     .currentSpeed = u16(0x16),
                                     .cores = count(0x23, 0x2A),
                                     .enabledCores = count(0x24, 0x2C),
                                     .threads = count(0x25, 0x2E),
                                     .characteristics = u16(0x26)});
    }

    // 7.9
    void readPort() {
        found_.ports.push_back({.internalName = text(4),
                                .externalName = text(6),
                                .internalConnector = u8(5),
                                .externalConnector = u8(7),
                                .type = u8(8)});
    }

    // 7.10
    void readSlot() {
        constexpr std::uint8_t hotPlug = 0x02;
        found_.slots.push_back({.name = text(4),
                                .type = u8(5),
                                .width = u8(6),
                                .usage = u8(7),
                                .number = u16(9),
                                .isHotPluggable = (u8(0x0C) & hotPlug) != 0,
                                .address = pciAddress(0x0D)});
    }

    // 7.17
    void readMemoryArray() {
        constexpr std::uint32_t inExtendedField = 0x80000000;
        const std::uint32_t capacity = structure_->u32(7);
        found_.memoryArrays.push_back(
            {.handle = structure_->handle(),
             .use = u8(5),
             .correction = u8(6),
             .capacity = capacity == inExtendedField ? structure_->u64(0x0F) : capacity * kibibyte,
             .sockets = u16(0x0D)});
    }

    std::uint64_t memorySize() const {
        constexpr std::uint16_t unknown = 0xFFFF, inExtendedField = 0x7FFF, inKibibytes = 0x8000;
        const std::uint16_t size = u16(0x0C);
        if (size == unknown)
            return 0;
        if (size == inExtendedField)
            return (structure_->u32(0x1C) & 0x7FFFFFFF) * mebibyte;
        return (size & inKibibytes) != 0 ? (size & ~inKibibytes) * kibibyte : size * mebibyte;
    }

    // FFFFh leaves the speed to a double word that SMBIOS 3.3 has.
    std::uint32_t speed(std::size_t offset, std::size_t extended) const {
        return u16(offset) == 0xFFFF ? structure_->u32(extended) & 0x7FFFFFFF : u16(offset);
    }

    std::uint16_t width(std::size_t offset) const {
        return u16(offset) == 0xFFFF ? std::uint16_t{0} : u16(offset);
    }

    // 7.18
    void readMemoryDevice() {
        found_.memoryDevices.push_back({.array = u16(4),
                                        .socket = text(0x10),
                                        .bank = text(0x11),
                                        .identity = {.manufacturer = text(0x17),
                                                     .serialNumber = text(0x18),
                                                     .assetTag = text(0x19),
                                                     .partNumber = text(0x1A)},
                                        .isInstalled = u16(0x0C) != 0,
                                        .size = memorySize(),
                                        .totalWidth = width(8),
                                        .dataWidth = width(0x0A),
                                        .formFactor = u8(0x0E),
                                        .type = u8(0x12),
                                        .speed = speed(0x15, 0x54),
                                        .configuredSpeed = speed(0x20, 0x58)});
    }

    // 7.42
    void readOnboardDevice() {
        constexpr std::uint8_t enabled = 0x80;
        found_.onboardDevices.push_back({.name = text(4),
                                         .type = static_cast<std::uint8_t>(u8(5) & 0x7F),
                                         .isEnabled = (u8(5) & enabled) != 0,
                                         .address = pciAddress(7)});
    }

    const Table& table_;
    const Structure* structure_ = nullptr;
    Hardware found_;
};

const HardwareReader::Kind HardwareReader::kinds[] = {
    {systemType, 0x08, &HardwareReader::readSystem},
    {baseboardType, 0x08, &HardwareReader::readBaseboard},
    {chassisType, 0x09, &HardwareReader::readChassis},
    {processorType, 0x1A, &HardwareReader::readProcessor},
    {portType, 0x09, &HardwareReader::readPort},
    {slotType, 0x0C, &HardwareReader::readSlot},
    {memoryArrayType, 0x0F, &HardwareReader::readMemoryArray},
    {memoryDeviceType, 0x15, &HardwareReader::readMemoryDevice},
    {onboardDeviceType, 0x0B, &HardwareReader::readOnboardDevice},
};

} // namespace

Hardware readHardware(const Table& table) {
    return HardwareReader(table).read();
}

} // namespace smbios
