// What the structures of an SMBIOS table say of the host's hardware, in one form for all versions of SMBIOS. Codes are those of
// DSP0134; a text that is not given is empty.
#pragma once

#include "smbios/table.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace smbios {

// Structure types.
inline constexpr std::uint8_t systemType = 1, baseboardType = 2, chassisType = 3, processorType = 4,
                              portType = 8, slotType = 9, memoryArrayType = 16, memoryDeviceType = 17,
                              onboardDeviceType = 41;

struct Identity {
    std::string manufacturer = {}, product = {}, version = {}, serialNumber = {}, assetTag = {},
                partNumber = {};
};

struct System {
    Identity identity = {};
    std::string uuid = {}; // canonical text; empty where none is set
};

struct Baseboard {
    Identity identity = {};
    bool isHosting = false; // the system board, where others are named too
};

struct Chassis {
    Identity identity = {};
    std::uint8_t type = 2; // 2 unknown; 7.4.1, without the bit of the lock
};

struct Processor {
    std::string socket = {};
    Identity identity = {}; // its product is the processor's version
    std::uint8_t type = 2;  // 3 central
    std::uint16_t family = 2;
    bool isInstalled = false;
    std::uint8_t status =
        0; // 0 unknown, 1 enabled, 2 disabled by user, 3 disabled by firmware, 4 idle, 7 other
    std::uint8_t upgrade = 2;
    std::uint16_t externalClock = 0, maxSpeed = 0, currentSpeed = 0; // MHz; 0 unknown
    std::uint16_t cores = 0, enabledCores = 0, threads = 0;          // 0 unknown
    std::uint16_t characteristics = 0;                               // 7.5.9
};

struct MemoryArray {
    std::uint16_t handle = 0;
    std::uint8_t use = 2; // 3 system memory
    std::uint8_t correction = 2;
    std::uint64_t capacity = 0; // bytes; 0 unknown
    std::uint16_t sockets = 0;
};

struct MemoryDevice {
    std::uint16_t array = 0; // handle
    std::string socket = {}, bank = {};
    Identity identity = {};
    bool isInstalled = false;
    std::uint64_t size = 0;                       // bytes; 0 not known
    std::uint16_t totalWidth = 0, dataWidth = 0;  // bits; 0 unknown
    std::uint8_t formFactor = 2, type = 2;        // 2 unknown
    std::uint32_t speed = 0, configuredSpeed = 0; // MT/s; 0 unknown
};

// Says where a device is on PCI.
struct PciAddress {
    std::uint16_t segment;
    std::uint8_t bus, device, function;
};

struct Slot {
    std::string name = {};
    std::uint8_t type = 2, width = 2, usage = 2; // usage: 3 available, 4 in use, 5 unavailable
    std::uint16_t number = 0;
    bool isHotPluggable = false;
    std::optional<PciAddress> address = {};
};

struct Port {
    std::string internalName = {}, externalName = {};
    std::uint8_t internalConnector = 0, externalConnector = 0, type = 0;
};

struct OnboardDevice {
    std::string name = {};
    std::uint8_t type = 2;
    bool isEnabled = false;
    std::optional<PciAddress> address = {};
};

struct Hardware {
    std::optional<System> system;
    std::vector<Baseboard> baseboards;
    std::vector<Chassis> chassis;
    std::vector<Processor> processors; // with empty sockets, as memory devices and slots
    std::vector<MemoryArray> memoryArrays;
    std::vector<MemoryDevice> memoryDevices;
    std::vector<Slot> slots;
    std::vector<Port> ports;
    std::vector<OnboardDevice> onboardDevices;
    std::vector<Problem> problems; // those of the table, and what in its structures makes no sense
};

Hardware readHardware(const Table& table);

} // namespace smbios
