// What the controller says about itself (IPMI 2.0 20: device "global" commands).
#pragma once

#include "ipmi/oem_commands.h"
#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <vector>

namespace vbmc {

struct Guid {
    std::uint8_t bytes[16] = {}; // as IPMI sends it: the last byte of the text first

    void fromJson(const Json& json, const Place& place); // "01020304-0506-0708-090a-0b0c0d0e0f10"
    Json toJson() const;
};

struct Device {
    std::uint8_t deviceId = 0x20;
    std::uint8_t deviceRevision = 1;
    std::uint8_t firmwareMajor = 1;
    std::uint8_t firmwareMinor = 0; // of two decimal digits
    std::uint8_t additionalSupport = 0xBF;
    std::uint32_t manufacturerId = ipmi::oem::manufacturer;
    std::uint16_t productId = ipmi::oem::product;
    std::vector<std::uint8_t> auxiliaryRevision; // 4 bytes, or none
    std::optional<Guid> deviceGuid;              // without them their commands are unknown
    std::optional<Guid> systemGuid;

    static constexpr const char* name = "device";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;
};

} // namespace vbmc
