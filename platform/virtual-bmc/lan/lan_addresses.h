// Addresses of LANs, texts in JSON.
#pragma once

#include "virtual-bmc/state/part.h"

#include <array>
#include <string>

namespace vbmc {

struct Ipv4Address {
    std::array<std::uint8_t, 4> bytes = {};

    bool operator==(const Ipv4Address&) const = default;
    void fromJson(const Json& json, const Place& place); // "192.0.2.1"
    Json toJson() const;
};

struct Ipv6Address {
    std::array<std::uint8_t, 16> bytes = {};

    bool operator==(const Ipv6Address&) const = default;
    void fromJson(const Json& json, const Place& place); // "2001:db8::1"
    Json toJson() const;
};

struct MacAddress {
    std::array<std::uint8_t, 6> bytes = {};

    bool operator==(const MacAddress&) const = default;
    void fromJson(const Json& json, const Place& place); // "52:54:00:12:34:56"
    Json toJson() const;
};

// Tells whether all ones come before the zeros.
bool isNetmask(const Ipv4Address& mask);

} // namespace vbmc
