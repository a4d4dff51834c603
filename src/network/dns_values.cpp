#include "network/dns_values.h"

#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <iterator>

namespace ph::dns {
namespace {

constexpr std::size_t longestLabel = 63;
constexpr std::size_t longestDomain = 253; // RFC 1035, as a text without the root's dot

constexpr Option table[] = {{DhcpOption::DomainNameServer, CIM_DNS_SERVERS_FROM_DHCP},
                            {DhcpOption::HostName, CIM_DNS_HOST_NAME_FROM_DHCP},
                            {DhcpOption::DomainName, CIM_DNS_DOMAIN_FROM_DHCP}};

// Letters, digits and hyphens of ASCII, whatever the locale is (RFC 1123).
bool isLabel(std::string_view label) {
    const auto isAllowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    };
    return !label.empty() && label.size() <= longestLabel && label.front() != '-' && label.back() != '-' &&
           std::ranges::all_of(label, isAllowed);
}

} // namespace

std::span<const Option> options() {
    return table;
}

void appendOptions(std::span<std::uint16_t> list, std::uint8_t fromDhcp) {
    auto end = std::ranges::find(list, noSlot);
    for (const Option& option : table)
        if ((fromDhcp & option.bit) != 0 && list.end() - end > 1)
            *end++ = option.dmtf;
    if (end != list.end())
        *end = noSlot;
}

bool isHostName(std::string_view name) {
    return isLabel(name);
}

bool isDomainName(std::string_view name) {
    if (name.size() > longestDomain)
        return false;
    for (;;) {
        const std::size_t dot = name.find('.');
        if (!isLabel(name.substr(0, dot)))
            return false;
        if (dot == std::string_view::npos)
            return true;
        name.remove_prefix(dot + 1);
    }
}

bool splitNames(std::span<char*> texts, const char* list) {
    std::size_t count = 0;
    while (count + 1 < texts.size()) {
        list += std::strspn(list, " ");
        const std::size_t length = std::strcspn(list, " ");
        if (length == 0)
            break;
        texts[count] = strndup(list, length);
        if (texts[count++] == nullptr)
            return false;
        list += length;
    }
    return true;
}

bool writeServers(std::span<char*> texts, const CIM_DNSConfig& configuration, int ipVersion) {
    const std::size_t count = std::min<std::size_t>(configuration.serverCount, CIM_MAX_DNS_SERVERS);
    for (std::size_t i = 0; i < count && i + 1 < texts.size(); ++i) {
        char text[INET6_ADDRSTRLEN] = "";
        inet_ntop(ipVersion == 4 ? AF_INET : AF_INET6, configuration.servers[i], text, sizeof(text));
        texts[i] = strdup(text);
        if (texts[i] == nullptr)
            return false;
    }
    return true;
}

} // namespace ph::dns
