// The SDR repository (IPMI 2.0 33): a record for each sensor, FRU device and other controller, entity
// associations, and any others.
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

// Names an entity that is part of another.
struct ContainedEntity {
    std::uint8_t entity = 0;
    std::uint8_t entityInstance = 1;

    void fields(Fields& fields);
};

// Describes an entity association (IPMI 2.0 table 43-4), or its device-relative form (table 43-5).
struct EntityAssociation {
    std::uint8_t entity = 0; // that contains the others
    std::uint8_t entityInstance = 1;
    std::vector<ContainedEntity> contains; // four at most
    bool areRanges = false;                // each two of them are the first and the last of a range
    bool isDeviceRelative = false;         // all are the BMC's own

    void fields(Fields& fields);
    void check(const Place& place) const;
};

// Describes a generic device locator (IPMI 2.0 table 43-7): something on a bus that is neither a FRU device nor a
// controller.
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
    std::vector<EntityAssociation> associations;
    std::vector<GenericDevice> genericDevices;
    std::vector<OemRecord> oemRecords;
    // Records as they are, sensible or not, from the SDR version on; their IDs are put before them.
    std::vector<std::vector<std::uint8_t>> rawRecords;
    std::uint8_t largestPart = 0xFF; // that Get SDR returns
    std::uint16_t reservation = 0;   // the last one given
    std::uint32_t lastAddition = 0;  // seconds since 1970; 0: when the machine was made

    static constexpr const char* name = "sdrRepository";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;
};

} // namespace vbmc
