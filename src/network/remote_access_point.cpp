// CIM_RemoteServiceAccessPoint: gateways, DNS servers and DHCP servers that the BMC uses.
#include "network/dns_settings.h"
#include "network/network_clients.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/shared_file.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>

constexpr const char* const g_RemoteServiceAccessPointKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace ph::remote_access_point {
namespace {

using Record = RemoteServiceAccessPointRecord;

constexpr const char* className = "CIM_RemoteServiceAccessPoint";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, AccessInfo),
    PH_PROPERTY(Record, InfoFormat),
    PH_PROPERTY(Record, AccessContext),
};

// Whom a LAN reaches others through: what the BMC does not tell has no access point.
struct Peer {
    int context;
    int place; // of those of this context, from 1
    std::uint8_t address[16];
};

void addPeer(std::vector<Peer>& peers, int context, int place, std::span<const std::uint8_t> address) {
    if (std::ranges::all_of(address, [](std::uint8_t byte) { return byte == 0; }))
        return;
    Peer& peer = peers.emplace_back(Peer{context, place, {}});
    std::ranges::copy(address, peer.address);
}

void addGateways(std::vector<Peer>& peers, IPMI20_SESSION_T* session, const AddressedLan& each) {
    CIM_IPv4NetworkCfg configuration{};
    CIM_IPv6Routers routers{};
    if (each.ipVersion == 4) {
        if (CIM_GetIPv4NetworkCfg(session, &configuration, each.lan.channel, hookTimeout) == 0)
            addPeer(peers, AccessContext::DefaultGateway, 1, configuration.gateway);
    } else if (CIM_GetIPv6Routers(session, &routers, each.lan.channel, hookTimeout) == 0) {
        for (int i = 0; i < std::min<int>(routers.count, CIM_MAX_IPV6_ROUTERS); ++i)
            addPeer(peers, AccessContext::DefaultGateway, i + 1, routers.addresses[i]);
    }
}

void addDnsServers(std::vector<Peer>& peers, IPMI20_SESSION_T* session, const AddressedLan& each) {
    CIM_DNSConfig inUse{};
    if (!dns::readConfig(session, each.lan.channel, each.ipVersion, true, inUse))
        return;
    const std::size_t size = each.ipVersion == 4 ? 4 : 16;
    for (int i = 0; i < std::min<int>(inUse.serverCount, CIM_MAX_DNS_SERVERS); ++i)
        addPeer(peers, AccessContext::DnsServer, i + 1, std::span(inUse.servers[i], size));
}

// The client notes the server's address in the file, or nothing that is one.
void addDhcpServer(std::vector<Peer>& peers, const AddressedLan& each) {
    if (each.ipVersion != 6 || std::strchr(each.lan.interfaceName, '/') != nullptr)
        return;
    char path[64];
    std::snprintf(path, sizeof(path), "/tmp/dhcp6_server_%s", each.lan.interfaceName);
    char text[INET6_ADDRSTRLEN] = "";
    std::uint8_t address[16];
    const FilePtr file = readShared(path);
    if (file != nullptr && std::fscanf(file.get(), "%45s", text) == 1 &&
        inet_pton(AF_INET6, text, address) == 1)
        addPeer(peers, AccessContext::DhcpServer, 1, address);
}

int enumerate(RecordArray<Record>& points, Detail detail) {
    char systemName[256] = "";
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 || !session.open())
        return -1;
    int count = 0;
    for (const AddressedLan& each : addressedLans(session.get())) {
        std::vector<Peer> peers;
        addGateways(peers, session.get(), each);
        addDnsServers(peers, session.get(), each);
        addDhcpServer(peers, each);
        for (const Peer& peer : peers) {
            Record* point = points.append();
            if (point == nullptr)
                return -1;
            setHostedKeys(*point, processorClass, systemName, className);
            writeEndpointName(point->Name, "RemoteServiceAccessPoint", ++count, each.lan.interfaceName,
                              each.lan.channel, each.ipVersion);
            if (detail == Detail::All)
                PH_Fill_RemoteServiceAccessPoint(point, each.lan.interfaceName, peer.context, peer.place,
                                                 peer.address, each.ipVersion);
        }
    }
    return 0;
}

const char* nameOf(int context) {
    switch (context) {
    case AccessContext::DefaultGateway:
        return "Default Gateway";
    case AccessContext::DnsServer:
        return "DNS Server";
    default:
        return "DHCP Server";
    }
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ServiceAccessPoint",
    .source =
        "LAN configuration parameters 12, 64, 65, 69, 73 and 74; DNS settings (OEM); /tmp/dhcp6_server_…",
    .keys = g_RemoteServiceAccessPointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::remote_access_point

PH_EXPORT_CLASS_FAMILY(RemoteServiceAccessPoint, RemoteServiceAccessPointRecord,
                       ph::remote_access_point::definition)

int PH_Fill_RemoteServiceAccessPoint(RemoteServiceAccessPointRecord* record, const char* interfaceName,
                                     int accessContext, int place, const uint8_t* address, int ipVersion) {
    std::snprintf(record->ElementName, sizeof(record->ElementName), "%s %d of %s",
                  ph::remote_access_point::nameOf(accessContext), place, interfaceName);
    inet_ntop(ipVersion == 4 ? AF_INET : AF_INET6, address, record->AccessInfo, sizeof(record->AccessInfo));
    record->InfoFormat = ipVersion == 4 ? ph::InfoFormat::IPv4Address : ph::InfoFormat::IPv6Address;
    record->AccessContext = static_cast<uint16_t>(accessContext);
    return 0;
}
