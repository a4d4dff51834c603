// FRU inventory devices (IPMI 2.0 34; Platform Management FRU Information Storage Definition 1.0).
#pragma once

#include "virtual-bmc/state/part.h"

#include <optional>
#include <string>
#include <vector>

namespace vbmc {

struct BoardArea {
    std::string manufactured; // "2024-03-01"; empty: unspecified
    std::string manufacturer, product, serialNumber, partNumber, fileId;

    void fields(Fields& fields);
};

struct ProductArea {
    std::string manufacturer, product, partNumber, version, serialNumber, assetTag, fileId;

    void fields(Fields& fields);
};

struct Fru {
    std::uint8_t id = 0;
    std::string name;
    std::uint8_t entity = 7; // system board
    std::uint8_t entityInstance = 1;
    bool isWordAddressed = false;
    std::optional<BoardArea> board;
    std::optional<ProductArea> product;
    std::optional<std::vector<std::uint8_t>> data; // all bytes as they are, in place of areas
    std::vector<std::uint8_t> image;               // what the device holds

    void fields(Fields& fields);
    void check(const Place& place);
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
