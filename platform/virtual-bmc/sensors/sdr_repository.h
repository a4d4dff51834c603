// The SDR repository (IPMI 2.0 33): a record for each sensor, FRU device and other controller, and any
// others.
#pragma once

#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <vector>

namespace vbmc {

// Management controller device locator (IPMI 2.0 table 43-8).
struct ControllerLocator {
    std::string name;
    std::uint8_t address = 0x20;
    std::uint8_t channel = 0;
    std::uint8_t capabilities = 0x9F; // chassis, bridge, event generator …; 20h: event receiver
    std::uint8_t entity = 7;
    std::uint8_t entityInstance = 1;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

// Generic device locator (IPMI 2.0 table 43-7): something on a bus that is neither a FRU device nor a controller.
struct GenericDevice {
    std::string name;
    std::uint8_t address = 0x20; // of the controller that reaches it
    std::uint8_t slaveAddress = 0xA0;
    std::uint8_t type = 0x09; // IPMI 2.0 table 43-12; a digital temperature sensor
    std::uint8_t entity = 7;
    std::uint8_t entityInstance = 1;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct OemRecord {
    std::uint32_t manufacturerId = 0;
    std::vector<std::uint8_t> data;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct SdrRepository {
    std::vector<ControllerLocator> controllers;
    std::vector<GenericDevice> genericDevices;
    std::vector<OemRecord> oemRecords;
    // Records as they are, sensible or not, from the SDR version on; their IDs are put before them.
    std::vector<std::vector<std::uint8_t>> rawRecords;
    std::uint8_t largestPart = 0xFF; // that Get SDR returns
    std::uint16_t reservation = 0;   // the last one given

    static constexpr const char* name = "sdrRepository";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;
};

} // namespace vbmc
