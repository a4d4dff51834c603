#include "virtual-bmc/lan/lan_addresses.h"

#include "virtual-bmc/state/json_fields.h"

#include <arpa/inet.h>
#include <cstdio>

namespace vbmc {
namespace {

void parse(int family, const Json& json, const Place& place, void* bytes) {
    std::string text;
    readText(json, place, text);
    if (inet_pton(family, text.c_str(), bytes) != 1)
        fail(place, "'" + text + "' is no IPv" + (family == AF_INET ? "4" : "6") + " address");
}

std::string textOf(int family, const void* bytes) {
    char text[INET6_ADDRSTRLEN];
    return inet_ntop(family, bytes, text, sizeof text);
}

} // namespace

void Ipv4Address::fromJson(const Json& json, const Place& place) {
    parse(AF_INET, json, place, bytes.data());
}

Json Ipv4Address::toJson() const {
    return textOf(AF_INET, bytes.data());
}

void Ipv6Address::fromJson(const Json& json, const Place& place) {
    parse(AF_INET6, json, place, bytes.data());
}

Json Ipv6Address::toJson() const {
    return textOf(AF_INET6, bytes.data());
}

void MacAddress::fromJson(const Json& json, const Place& place) {
    std::string text;
    readText(json, place, text);
    int end = 0;
    const int fields = std::sscanf(text.c_str(), "%2hhx:%2hhx:%2hhx:%2hhx:%2hhx:%2hhx%n", &bytes[0],
                                   &bytes[1], &bytes[2], &bytes[3], &bytes[4], &bytes[5], &end);
    if (fields != 6 || static_cast<std::size_t>(end) != text.size())
        fail(place, "'" + text + "' is no MAC address of the form 52:54:00:12:34:56");
}

Json MacAddress::toJson() const {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2], bytes[3],
                  bytes[4], bytes[5]);
    return text;
}

bool isNetmask(const Ipv4Address& mask) {
    std::uint32_t bits = 0;
    for (const std::uint8_t byte : mask.bytes)
        bits = bits << 8 | byte;
    const std::uint32_t host = ~bits;
    return (host & (host + 1)) == 0;
}

} // namespace vbmc
