// What the host's firmware tells of its hardware: the SMBIOS table (DSP0134) that it hands over to the BMC.
#pragma once

#include "virtual-bmc/device/device.h"
#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <vector>

namespace vbmc {

// Structure types 1 to 3.
struct SmbiosIdentity {
    std::string manufacturer, product, version, serialNumber, assetTag;
    std::optional<Guid> uuid; // of the system
    std::uint8_t type = 0x02; // of the chassis; 2 unknown

    void fields(Fields& fields);
};

struct SmbiosProcessor {
    std::string socket, manufacturer, version, serialNumber, assetTag, partNumber;
    bool isInstalled = true;
    std::uint16_t family = 2;                                        // unknown
    std::uint8_t upgrade = 2;                                        // unknown
    std::uint8_t status = 1;                                         // enabled
    std::uint16_t externalClock = 0, maxSpeed = 0, currentSpeed = 0; // MHz
    std::uint16_t cores = 0, enabledCores = 0, threads = 0;
    std::uint16_t characteristics = 0;

    void fields(Fields& fields);
};

struct SmbiosMemoryModule {
    std::string socket, bank, manufacturer, serialNumber, assetTag, partNumber;
    std::uint32_t size = 0; // MiB; 0: the socket is empty
    std::uint16_t totalWidth = 72, dataWidth = 64;
    std::uint8_t formFactor = 9, type = 0x1A;
    std::uint32_t speed = 0, configuredSpeed = 0; // MT/s

    void fields(Fields& fields);
};

struct SmbiosMemory {
    std::uint8_t errorCorrection = 6;
    std::uint32_t capacity = 0; // MiB
    std::vector<SmbiosMemoryModule> modules;

    void fields(Fields& fields);
};

struct SmbiosSlot {
    std::string name;
    std::uint8_t type = 2, width = 2, usage = 3;
    std::uint16_t number = 0;
    bool isHotPluggable = false;
    std::uint16_t segment = 0;
    std::uint8_t bus = 0xFF, device = 0, function = 0; // FFh: it has no address

    void fields(Fields& fields);
};

struct SmbiosPort {
    std::string internalName, externalName;
    std::uint8_t internalConnector = 0, externalConnector = 0, type = 0xFF;

    void fields(Fields& fields);
};

struct SmbiosOnboardDevice {
    std::string name;
    std::uint8_t type = 2, instance = 1;
    bool isEnabled = true;
    std::uint16_t segment = 0;
    std::uint8_t bus = 0, device = 0, function = 0;

    void fields(Fields& fields);
};

struct Smbios {
    std::optional<SmbiosIdentity> system, board, chassis;
    std::vector<SmbiosProcessor> processors;
    std::optional<SmbiosMemory> memory;
    std::vector<SmbiosSlot> slots;
    std::vector<SmbiosPort> ports;
    std::vector<SmbiosOnboardDevice> onboardDevices;
    std::optional<std::vector<std::uint8_t>> data; // the table as it is, in place of the others
    std::vector<std::uint8_t> image;               // what the firmware hands over; empty: nothing

    static constexpr const char* name = "smbios";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place);
    Json describe(const State& state) const;

    bool hasStructures() const;
};

} // namespace vbmc
