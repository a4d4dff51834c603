#include "virtual-bmc/lan/dns.h"

#include "ipmi/oem_commands.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <arpa/inet.h>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace oem = ipmi::oem;

constexpr std::size_t mostSuffixes = 6;
constexpr std::uint8_t serversBit = 1, hostNameBit = 2, domainNameBit = 4; // what is taken of the lease

bool isLabel(std::string_view label) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
    return !label.empty() && label.size() < oem::dnsHostNameSize && label.front() != '-' &&
           label.back() != '-' && label.find_first_not_of(allowed) == std::string_view::npos;
}

bool isDomainName(std::string_view name) {
    constexpr std::size_t longest = 253;
    if (name.size() > longest)
        return false;
    for (std::size_t dot = name.find('.'); dot != std::string_view::npos; dot = name.find('.')) {
        if (!isLabel(name.substr(0, dot)))
            return false;
        name.remove_prefix(dot + 1);
    }
    return isLabel(name);
}

// Writes a resolver's search list, which has a blank between its names.
std::string join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

std::vector<std::string> split(std::string_view text) {
    std::vector<std::string> names;
    while (!text.empty()) {
        const std::size_t blank = text.find(' ');
        names.emplace_back(text.substr(0, blank));
        text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
    }
    return names;
}

bool areSuffixes(const std::vector<std::string>& names) {
    return names.size() <= mostSuffixes && join(names).size() < oem::dnsDomainNameSize &&
           std::ranges::all_of(names, isDomainName);
}

auto isFor(std::uint8_t channel, std::uint8_t ipVersion) {
    return [=](const DnsClient& each) { return each.channel == channel && each.ipVersion == ipVersion; };
}

// ---- The settings as bytes

void writeText(ipmi::Writer& writer, const std::string& text, std::size_t size) {
    writer.bytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})
        .fill(size - text.size(), 0);
}

std::string readText(ipmi::Reader& reader, std::size_t size) {
    const auto bytes = reader.bytes(size);
    return {bytes.begin(), std::ranges::find(bytes, 0)};
}

void writeClient(ipmi::Writer& writer, const DnsClient& client, const DnsNames& names) {
    writer.u8(static_cast<std::uint8_t>(client.registersAddress | client.registersWithDomain << 1))
        .u8(static_cast<std::uint8_t>((client.takesServers ? serversBit : 0) |
                                      (client.takesHostName ? hostNameBit : 0) |
                                      (client.takesDomainName ? domainNameBit : 0)))
        .u8(static_cast<std::uint8_t>(names.servers.size()));
    for (const DnsServer& server : names.servers)
        writer.bytes(server.bytes);
    writer.fill(oem::dnsClientHeadSize - writer.size(), 0);
    writeText(writer, names.hostName, oem::dnsHostNameSize);
    writeText(writer, names.domainName, oem::dnsDomainNameSize);
}

bool readClient(ipmi::Reader reader, DnsClient& client) {
    const std::uint8_t flags = reader.u8();
    const std::uint8_t taken = reader.u8();
    const std::size_t count = reader.u8();
    if (flags > 3 || taken > (serversBit | hostNameBit | domainNameBit) || count > oem::dnsServers)
        return false;
    client.registersAddress = (flags & 1) != 0;
    client.registersWithDomain = (flags & 2) != 0;
    client.takesServers = (taken & serversBit) != 0;
    client.takesHostName = (taken & hostNameBit) != 0;
    client.takesDomainName = (taken & domainNameBit) != 0;
    std::vector<DnsServer>& servers = client.configured.servers;
    servers.assign(count, DnsServer{.ipVersion = client.ipVersion});
    for (DnsServer& server : servers)
        std::ranges::copy(reader.bytes(server.bytes.size()), server.bytes.begin());
    reader.skip(oem::dnsClientHeadSize - 3 - count * sizeof(DnsServer::bytes));
    client.configured.hostName = readText(reader, oem::dnsHostNameSize);
    client.configured.domainName = readText(reader, oem::dnsDomainNameSize);
    return client.configured.isValid(client.ipVersion);
}

// ---- Commands

// Whom the settings are of: an IP version of a LAN, or all LANs.
struct Owner {
    std::uint8_t channel, ipVersion;

    bool isEverybody() const { return channel == 0; }
    bool exists(const State& state) const {
        return isEverybody()
                   ? ipVersion == 0
                   : (ipVersion == 4 || ipVersion == 6) && state.get<Lans>().find(channel) != nullptr;
    }
    std::size_t size() const { return isEverybody() ? oem::dnsSearchSize : oem::dnsClientSize; }
};

std::uint8_t getDns(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const Owner owner{request.u8(), request.u8()};
    const bool inUse = request.u8() != 0;
    const std::size_t start = request.u8() * oem::dnsBlockSize;
    if (!owner.exists(state) || start >= owner.size())
        return completion::parameterOutOfRange;
    std::array<std::uint8_t, oem::dnsClientSize> bytes{};
    ipmi::Writer writer(bytes);
    const Dns& dns = state.get<Dns>();
    if (owner.isEverybody()) {
        writer.u8(static_cast<std::uint8_t>(dns.appendsPrimarySuffix | dns.appendsParentSuffixes << 1))
            .fill(oem::dnsSearchHeadSize - 1, 0);
        writeText(writer, join(dns.suffixes), oem::dnsDomainNameSize);
    } else {
        const DnsClient client = dns.get(owner.channel, owner.ipVersion);
        writeClient(writer, client, inUse ? client.used(state) : client.configured);
    }
    answer.bytes(std::span(bytes).subspan(start, oem::dnsBlockSize));
    return completion::success;
}

std::uint8_t takeSearch(Dns& dns, std::span<const std::uint8_t> bytes) {
    ipmi::Reader reader(bytes);
    const std::uint8_t flags = reader.u8();
    reader.skip(oem::dnsSearchHeadSize - 1);
    dns.appendsPrimarySuffix = (flags & 1) != 0;
    dns.appendsParentSuffixes = (flags & 2) != 0;
    dns.suffixes = split(readText(reader, oem::dnsDomainNameSize));
    return flags <= 3 && areSuffixes(dns.suffixes) ? completion::success : completion::invalidDataField;
}

// What a handler that fails has edited is undone, the blocks that were pending among it.
std::uint8_t setDns(State& state, ipmi::Reader request, ipmi::Writer&) {
    const Owner owner{request.u8(), request.u8()};
    const std::size_t start = request.u8() * oem::dnsBlockSize;
    if (!owner.exists(state) || start >= owner.size())
        return completion::parameterOutOfRange;
    Dns& dns = state.edit<Dns>();
    const std::uint8_t name[] = {owner.channel, owner.ipVersion};
    if (!dns.pending.add(name, start, request.bytes(oem::dnsBlockSize)))
        return completion::invalidDataField;
    if (dns.pending.bytes.size() < owner.size())
        return completion::success;
    const std::vector<std::uint8_t> bytes = std::exchange(dns.pending, {}).bytes;
    if (owner.isEverybody())
        return takeSearch(dns, bytes);
    return readClient(ipmi::Reader(bytes), dns.edit(owner.channel, owner.ipVersion))
               ? completion::success
               : completion::invalidDataField;
}

Json textsOf(std::vector<DnsServer> servers) {
    return write(servers);
}

} // namespace

void DnsServer::fromJson(const Json& json, const Place& place) {
    std::string text;
    vbmc::readText(json, place, text);
    ipVersion = text.find(':') != std::string::npos ? 6 : 4;
    if (inet_pton(ipVersion == 4 ? AF_INET : AF_INET6, text.c_str(), bytes.data()) != 1)
        fail(place, "'" + text + "' is no IP address");
}

Json DnsServer::toJson() const {
    char text[INET6_ADDRSTRLEN];
    return inet_ntop(ipVersion == 4 ? AF_INET : AF_INET6, bytes.data(), text, sizeof text);
}

void DnsNames::fields(Fields& fields) {
    fields("hostName", hostName);
    fields("domainName", domainName);
    fields("servers", servers);
}

bool DnsNames::isValid(std::uint8_t ipVersion) const {
    const auto isServer = [&](const DnsServer& server) {
        return server.ipVersion == ipVersion && server != DnsServer{.ipVersion = ipVersion};
    };
    return (hostName.empty() || isLabel(hostName)) && (domainName.empty() || isDomainName(domainName)) &&
           servers.size() <= oem::dnsServers && std::ranges::all_of(servers, isServer);
}

void DnsClient::fields(Fields& fields) {
    fields.required("channel", channel);
    fields("ipVersion", ipVersion);
    fields("configured", configured);
    fields("lease", lease);
    fields("takesServers", takesServers);
    fields("takesHostName", takesHostName);
    fields("takesDomainName", takesDomainName);
    fields("registersAddress", registersAddress);
    fields("registersWithDomain", registersWithDomain);
}

void DnsClient::check(const Place& place) const {
    if (ipVersion != 4 && ipVersion != 6)
        fail(Place{&place, "ipVersion"}, "it is 4 or 6");
    for (const auto& [name, names] : {std::pair{"configured", &configured}, {"lease", &lease}})
        if (!names->isValid(ipVersion))
            fail(Place{&place, name},
                 "names are labels of letters, digits and hyphens, and there are at most 3 "
                 "servers, of the IP version");
}

DnsNames DnsClient::used(const State& state) const {
    const Lan* const lan = state.get<Lans>().find(channel);
    const bool isLeased =
        lan != nullptr &&
        (ipVersion == 4 ? lan->ipv4.isDhcp() : lan->ipv6.isDynamic() && lan->ipv6.lease.has_value());
    DnsNames names = configured;
    if (isLeased && takesServers)
        names.servers = lease.servers;
    if (isLeased && takesHostName)
        names.hostName = lease.hostName;
    if (isLeased && takesDomainName)
        names.domainName = lease.domainName;
    return names;
}

std::span<const Command> Dns::commands() {
    static constexpr Command table[] = {
        {oem::getDns, 4, getDns},
        {oem::setDns, 3 + oem::dnsBlockSize, setDns, administratorLevel},
    };
    return table;
}

void Dns::fields(Fields& fields) {
    fields("clients", clients);
    fields("appendsPrimarySuffix", appendsPrimarySuffix);
    fields("appendsParentSuffixes", appendsParentSuffixes);
    fields("suffixes", suffixes);
    fields("pending", pending);
}

void Dns::check(const Place& place) const {
    const Place list{&place, "clients"};
    for (std::size_t i = 0; i < clients.size(); ++i)
        if (std::ranges::count_if(clients, isFor(clients[i].channel, clients[i].ipVersion)) > 1)
            fail(Place{&list, nullptr, i}, "this client stands there twice");
    if (!areSuffixes(suffixes))
        fail(Place{&place, "suffixes"}, "there are at most 6 domain names, of 255 characters in all");
}

DnsClient Dns::get(std::uint8_t channel, std::uint8_t ipVersion) const {
    const auto found = std::ranges::find_if(clients, isFor(channel, ipVersion));
    if (found != clients.end())
        return *found;
    DnsClient none;
    none.channel = channel;
    none.ipVersion = ipVersion;
    return none;
}

DnsClient& Dns::edit(std::uint8_t channel, std::uint8_t ipVersion) {
    const auto found = std::ranges::find_if(clients, isFor(channel, ipVersion));
    return found != clients.end() ? *found : clients.emplace_back(get(channel, ipVersion));
}

Json Dns::describe(const State& state) const {
    Json json = Json::array();
    for (const DnsClient& client : clients) {
        const DnsNames names = client.used(state);
        Json row = Json::object();
        row["channel"] = client.channel;
        row["ipVersion"] = client.ipVersion;
        row["hostName"] = names.hostName;
        row["domainName"] = names.domainName;
        row["servers"] = textsOf(names.servers);
        row["registersAddress"] = client.registersAddress;
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
