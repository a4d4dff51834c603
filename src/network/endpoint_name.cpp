#include "network/endpoint_name.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace ph {

void writeEndpointName(std::span<char> name, const char* kind, int count, const char* interfaceName,
                       int channel, int ipVersion) {
    std::snprintf(name.data(), name.size(), "%s%d*Channel-%d*%s-%d", kind, count, channel, interfaceName,
                  ipVersion);
}

std::optional<std::uint8_t> channelOf(const char* endpointName) {
    constexpr std::string_view mark = "Channel-";
    const std::string_view name = endpointName;
    const std::size_t start = name.find(mark);
    if (start == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = name.substr(start + mark.size());
    const std::string_view text = rest.substr(0, rest.find('*'));
    std::uint8_t channel = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), channel);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return channel;
}

std::optional<char> ipVersionOf(const char* endpointName) {
    const std::string_view name = endpointName;
    const std::size_t dash = name.rfind('-');
    if (dash == std::string_view::npos || dash + 2 != name.size())
        return std::nullopt;
    return name.back();
}

const char* interfaceAndVersionOf(const char* endpointName) {
    const char* star = std::strrchr(endpointName, '*');
    return star != nullptr ? star + 1 : "";
}

} // namespace ph
