// FRU inventory devices (IPMI 2.0 34; Platform Management FRU Information Storage Definition 1.0).
#pragma once

#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <vector>

namespace vbmc {

struct ChassisArea {
    std::uint8_t type = 2; // SMBIOS system enclosure type; 2: unknown
    std::string partNumber, serialNumber;

    void fields(Fields& fields);
};

struct BoardArea {
    std::string manufactured; // "2024-03-01"; empty: unspecified
    std::string manufacturer, product, serialNumber, partNumber, fileId;

    void fields(Fields& fields);
};

struct ProductArea {
    std::string manufacturer, product, partNumber, version, serialNumber, assetTag, fileId;

    void fields(Fields& fields);
};

// Multirecord "power supply information".
struct PowerSupplyRecord {
    std::uint16_t capacity = 0;             // W
    std::uint16_t peakVoltAmperes = 0xFFFF; // VA; not specified
    std::uint8_t inrushCurrent = 0xFF;      // A; not specified
    std::uint8_t inrushInterval = 0;        // ms
    // The input has one range or two.
    std::uint16_t lowVoltage1 = 0, highVoltage1 = 0, lowVoltage2 = 0, highVoltage2 = 0; // 10 mV
    std::uint8_t lowFrequency = 0, highFrequency = 0;                                   // Hz
    std::uint8_t dropoutTolerance = 0;                                                  // ms
    bool predictsFailure = false, correctsPowerFactor = false, switchesRanges = false, isHotSwap = false;
    std::uint16_t peakCapacity = 0xFFF; // W, 12 bits
    std::uint8_t holdUpTime = 0xF;      // s, 4 bits; both with all bits set: not specified

    void fields(Fields& fields);
};

struct Fru {
    std::uint8_t id = 0;
    std::string name;
    std::uint8_t entity = 7; // system board
    std::uint8_t entityInstance = 1;
    bool isWordAddressed = false;
    std::optional<ChassisArea> chassis;
    std::optional<BoardArea> board;
    std::optional<ProductArea> product;
    std::optional<PowerSupplyRecord> powerSupply;
    std::optional<std::vector<std::uint8_t>> data; // all bytes as they are, in place of areas
    std::vector<std::uint8_t> image;               // what the device holds

    void fields(Fields& fields);
    void check(const Place& place);
    bool hasAreas() const { return chassis || board || product || powerSupply; }
};

// Every FRU device has a locator in the SDR repository.
struct Frus {
    std::vector<Fru> list;

    static constexpr const char* name = "frus";
    static std::span<const Command> commands();
    void check(const Place& place) const;
    Json describe(const State& state) const;

    const Fru* find(std::uint8_t id) const;
};

} // namespace vbmc
