#include "virtual-bmc/fru/fru_image.h"

#include "ipmi/message.h"
#include "virtual-bmc/state/json_fields.h"

#include <chrono>
#include <cstdio>
#include <initializer_list>
#include <numeric>
#include <string_view>
#include <utility>

namespace vbmc {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t formatVersion = 1;
constexpr std::uint8_t english = 25;
constexpr std::size_t areaUnit = 8;

std::uint8_t low(std::size_t value) {
    return static_cast<std::uint8_t>(value);
}

// The sum of the bytes becomes 0.
void appendChecksum(Bytes& bytes) {
    bytes.push_back(low(0x100 - std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x100));
}

using Texts = std::initializer_list<std::pair<const char*, std::string_view>>;

void appendTexts(Bytes& area, Texts texts, const Place& place) {
    constexpr std::uint8_t eightBit = 0xC0;
    constexpr std::size_t longest = 0x3F;
    constexpr std::uint8_t endMark = 0xC1;
    for (const auto& [name, text] : texts) {
        if (text.size() > longest)
            fail(Place{&place, name}, "it has more than " + std::to_string(longest) + " characters");
        // A text with one character would read as the end mark.
        const std::size_t length = text.size() == 1 ? 2 : text.size();
        area.push_back(low(eightBit | length));
        area.insert(area.end(), text.begin(), text.end());
        area.insert(area.end(), length - text.size(), ' ');
    }
    area.push_back(endMark);
}

void closeArea(Bytes& area) {
    constexpr std::size_t lengthByte = 1;
    const std::size_t units = area.size() / areaUnit + 1; // with the checksum
    area.resize(units * areaUnit - 1);
    area[lengthByte] = low(units);
    appendChecksum(area);
}

// Minutes from 1996-01-01 00:00 on; 0: unspecified.
std::uint32_t manufacturingTime(const std::string& text, const Place& place) {
    if (text.empty())
        return 0;
    using namespace std::chrono;
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    int length = 0;
    const bool isRead = std::sscanf(text.c_str(), "%4d-%2u-%2u%n", &year, &month, &day, &length) ==
                            3 && // NOLINT(cert-err34-c)
                        static_cast<std::size_t>(length) == text.size();
    const year_month_day date{std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
    const auto passed = sys_days(date) - sys_days(std::chrono::year(1996) / 1 / 1);
    constexpr minutes longest(0xFFFFFF);
    if (!isRead || !date.ok() || passed < days(0) || passed > longest)
        fail(place, "'" + text + "' is no date of the years 1996 to 2027 like 2024-03-01");
    return static_cast<std::uint32_t>(minutes(passed).count());
}

Bytes chassisArea(const ChassisArea& chassis, const Place& place) {
    Bytes area{formatVersion, 0, chassis.type};
    appendTexts(area, {{"partNumber", chassis.partNumber}, {"serialNumber", chassis.serialNumber}}, place);
    closeArea(area);
    return area;
}

Bytes boardArea(const BoardArea& board, const Place& place) {
    const auto time = manufacturingTime(board.manufactured, Place{&place, "manufactured"});
    Bytes area{formatVersion, 0, english, low(time), low(time >> 8), low(time >> 16)};
    appendTexts(area,
                {{"manufacturer", board.manufacturer},
                 {"product", board.product},
                 {"serialNumber", board.serialNumber},
                 {"partNumber", board.partNumber},
                 {"fileId", board.fileId}},
                place);
    closeArea(area);
    return area;
}

Bytes productArea(const ProductArea& product, const Place& place) {
    Bytes area{formatVersion, 0, english};
    appendTexts(area,
                {{"manufacturer", product.manufacturer},
                 {"product", product.product},
                 {"partNumber", product.partNumber},
                 {"version", product.version},
                 {"serialNumber", product.serialNumber},
                 {"assetTag", product.assetTag},
                 {"fileId", product.fileId}},
                place);
    closeArea(area);
    return area;
}

// Makes a multirecord area with this record only.
Bytes powerSupplyRecord(const PowerSupplyRecord& supply) {
    constexpr std::uint8_t powerSupplyInformation = 0x00, lastOfFormat2 = 0x82;
    std::uint8_t storage[24];
    ipmi::Writer record(storage);
    record.u16(supply.capacity)
        .u16(supply.peakVoltAmperes)
        .u8(supply.inrushCurrent)
        .u8(supply.inrushInterval)
        .u16(supply.lowVoltage1)
        .u16(supply.highVoltage1)
        .u16(supply.lowVoltage2)
        .u16(supply.highVoltage2)
        .u8(supply.lowFrequency)
        .u8(supply.highFrequency)
        .u8(supply.dropoutTolerance)
        .u8(low(supply.predictsFailure | supply.correctsPowerFactor << 1 | supply.switchesRanges << 2 |
                supply.isHotSwap << 3))
        .u16(static_cast<std::uint16_t>(supply.holdUpTime << 12 | supply.peakCapacity))
        .fill(3, 0) // no outputs share a wattage
        .u8(0);     // no tachometer that predicts a failure
    Bytes checked(record.written().begin(), record.written().end());
    appendChecksum(checked);
    Bytes area{powerSupplyInformation, lastOfFormat2, low(sizeof storage), checked.back()};
    appendChecksum(area);
    area.insert(area.end(), storage, storage + sizeof storage);
    return area;
}

} // namespace

std::vector<std::uint8_t> fruImage(const Fru& fru, const Place& place) {
    Bytes areas;
    const auto append = [&](const Bytes& area) {
        const std::size_t offset = 1 + areas.size() / areaUnit; // behind the header
        areas.insert(areas.end(), area.begin(), area.end());
        return low(offset);
    };
    // Version; offsets of internal use, chassis, board, product and multirecord area; pad.
    Bytes image{formatVersion, 0, 0, 0, 0, 0, 0};
    if (fru.chassis)
        image[2] = append(chassisArea(*fru.chassis, Place{&place, "chassis"}));
    if (fru.board)
        image[3] = append(boardArea(*fru.board, Place{&place, "board"}));
    if (fru.product)
        image[4] = append(productArea(*fru.product, Place{&place, "product"}));
    if (fru.powerSupply)
        image[5] = append(
            powerSupplyRecord(*fru.powerSupply)); // the last area, because its length is no multiple of 8
    appendChecksum(image);
    image.insert(image.end(), areas.begin(), areas.end());
    return image;
}

} // namespace vbmc
