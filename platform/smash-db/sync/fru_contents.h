// The contents of FRU devices (Platform Management FRU Information Storage Definition 1.0).
#pragma once

#include "smash-db/sync/sync.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace smash {

// The areas of a FRU device that could be read. A text that is missing is empty; `custom` are the maker's own
// fields, behind those that have a meaning.
struct FruContents {
    struct Chassis {
        std::uint8_t type = 0; // SMBIOS system enclosure type
        std::string partNumber, serialNumber;
        std::vector<std::string> custom;
    };
    struct Board {
        std::uint32_t manufactured = 0; // minutes since 1996-01-01; 0: unspecified
        std::string manufacturer, product, serialNumber, partNumber, fileId;
        std::vector<std::string> custom;
    };
    struct Product {
        std::string manufacturer, product, partNumber, version, serialNumber, assetTag, fileId;
        std::vector<std::string> custom;
    };
    std::optional<Chassis> chassis;
    std::optional<Board> board;
    std::optional<Product> product;
    static constexpr std::size_t powerSupplySize = 24;
    std::vector<std::uint8_t> powerSupply; // multirecord "power supply information"; empty: none
};

// The BMC's FRU devices, each of which is read once.
class FruDevices {
public:
    FruDevices(ipmi::Transport& bmc, std::vector<SyncRemark>& remarks) : bmc_(bmc), remarks_(remarks) {}

    struct Device {
        bool isAbsent = false; // the BMC says that it is not there
        std::optional<FruContents> contents;
    };
    // A device or an area that cannot be read or is malformed is left out and remarked.
    const Device& read(std::uint8_t id);

private:
    Device readDevice(std::uint8_t id);

    ipmi::Transport& bmc_;
    std::vector<SyncRemark>& remarks_;
    std::map<std::uint8_t, Device> devices_;
};

} // namespace smash
