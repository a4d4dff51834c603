// The DNS clients of the BMC: OEM commands (docs/oem-commands.md, "DNS").
#include "hooks/oem.h"
#include "ipmi/oem_commands.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

// Layouts shared with the library.
static_assert(offsetof(CIM_DNSConfig, serverCount) == 4 && offsetof(CIM_DNSConfig, hostName) == 53 &&
              sizeof(CIM_DNSConfig) == 373);
static_assert(offsetof(CIM_DNSSearch, suffixes) == 3 && sizeof(CIM_DNSSearch) == 259);

namespace {

using hooks::Session;
namespace oem = ipmi::oem;

constexpr std::size_t addressSize = 16;

// What the settings belong to: an IP version of a LAN, or all LANs.
struct Owner {
    std::uint8_t channel = 0, ipVersion = 0;
};

// The settings as the commands transfer them, read as far as they are asked for.
class BlockReader {
public:
    BlockReader(Session& bmc, Owner owner, std::uint8_t inUse) : bmc_(bmc), owner_(owner), inUse_(inUse) {}

    // Returns false where the BMC has no such command.
    bool read(std::size_t start, std::span<std::uint8_t> bytes) {
        for (std::size_t done = 0; done < bytes.size(); done += oem::dnsBlockSize)
            if (!readBlock(start + done, bytes.subspan(done, oem::dnsBlockSize)))
                return false;
        return true;
    }

    // Reads a text up to its end. A name of other characters than printable ones is none.
    void readText(std::size_t start, std::span<char> text) {
        std::ranges::fill(text, '\0');
        std::uint8_t block[oem::dnsBlockSize];
        for (std::size_t done = 0; done < text.size(); done += oem::dnsBlockSize) {
            if (!readBlock(start + done, block))
                throw std::runtime_error("the BMC's DNS settings end within a text");
            const auto length = static_cast<std::size_t>(std::ranges::find(block, 0) - std::begin(block));
            std::memcpy(text.data() + done, block, length);
            if (length < sizeof(block))
                break;
        }
        if (text.back() != '\0' ||
            std::ranges::any_of(text, [](char c) { return c != '\0' && (c < ' ' || c > '~'); }))
            throw std::runtime_error("a text of the BMC's DNS settings is no name");
    }

private:
    bool readBlock(std::size_t start, std::span<std::uint8_t> bytes) {
        const auto answer = hooks::askOem(
            bmc_, oem::getDns,
            {owner_.channel, owner_.ipVersion, inUse_, static_cast<std::uint8_t>(start / oem::dnsBlockSize)});
        if (!answer)
            return false;
        auto reader = answer->reader();
        const auto block = reader.bytes(oem::dnsBlockSize);
        answer->verify(reader);
        std::ranges::copy(block, bytes.begin());
        return true;
    }

    Session& bmc_;
    Owner owner_;
    std::uint8_t inUse_;
};

// The BMC takes the settings once their last block has arrived.
void writeBlocks(Session& bmc, Owner owner, std::span<const std::uint8_t> bytes) {
    for (std::size_t start = 0; start < bytes.size(); start += oem::dnsBlockSize) {
        std::array<std::uint8_t, 3 + oem::dnsBlockSize> storage;
        ipmi::Writer request(storage);
        request.u8(owner.channel)
            .u8(owner.ipVersion)
            .u8(static_cast<std::uint8_t>(start / oem::dnsBlockSize))
            .bytes(bytes.subspan(start, oem::dnsBlockSize));
        hooks::runOem(bmc, oem::setDns, request.written());
    }
}

template <std::size_t N>
void writeText(ipmi::Writer& writer, const char (&text)[N]) {
    const std::size_t length = strnlen(text, N - 1);
    writer.bytes({reinterpret_cast<const std::uint8_t*>(text), length}).fill(N - length, 0);
}

Owner ownerOf(std::uint8_t channel, std::uint8_t ipVersion) {
    if (channel == 0 || (ipVersion != 4 && ipVersion != 6))
        throw std::invalid_argument("no channel, or no IP version, given");
    return {channel, ipVersion};
}

} // namespace

int CIM_GetDNSConfig(IPMI20_SESSION_T* session, CIM_DNSConfig* configuration, uint8_t channel,
                     uint8_t ipVersion, uint8_t inUse, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr);
        *configuration = {};
        BlockReader bmc(hooks::sessionOf(session, timeout), ownerOf(channel, ipVersion), inUse != 0);
        std::array<std::uint8_t, oem::dnsClientHeadSize> head;
        if (!bmc.read(0, head))
            return;
        ipmi::Reader reader(head);
        const std::uint8_t flags = reader.u8();
        configuration->registersAddress = flags & 1;
        configuration->registersWithDomain = flags >> 1 & 1;
        configuration->fromDhcp = reader.u8() & (CIM_DNS_SERVERS_FROM_DHCP | CIM_DNS_HOST_NAME_FROM_DHCP |
                                                 CIM_DNS_DOMAIN_FROM_DHCP);
        configuration->serverCount = std::min<std::uint8_t>(reader.u8(), CIM_MAX_DNS_SERVERS);
        for (auto& server : configuration->servers)
            std::ranges::copy(reader.bytes(addressSize), server);
        bmc.readText(oem::dnsClientHeadSize, configuration->hostName);
        bmc.readText(oem::dnsClientHeadSize + oem::dnsHostNameSize, configuration->domainName);
        configuration->isSupported = 1;
    });
}

int CIM_SetDNSConfig(IPMI20_SESSION_T* session, const CIM_DNSConfig* configuration, uint8_t channel,
                     uint8_t ipVersion, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr && configuration->serverCount <= CIM_MAX_DNS_SERVERS);
        std::array<std::uint8_t, oem::dnsClientSize> bytes;
        ipmi::Writer writer(bytes);
        writer
            .u8(static_cast<std::uint8_t>((configuration->registersAddress != 0 ? 1 : 0) |
                                          (configuration->registersWithDomain != 0 ? 2 : 0)))
            .u8(configuration->fromDhcp)
            .u8(configuration->serverCount);
        for (const auto& server : configuration->servers)
            writer.bytes(server);
        writer.fill(oem::dnsClientHeadSize - writer.size(), 0);
        writeText(writer, configuration->hostName);
        writeText(writer, configuration->domainName);
        writeBlocks(hooks::sessionOf(session, timeout), ownerOf(channel, ipVersion), writer.written());
    });
}

int CIM_GetDNSSearch(IPMI20_SESSION_T* session, CIM_DNSSearch* search, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(search != nullptr);
        *search = {};
        BlockReader bmc(hooks::sessionOf(session, timeout), {}, 0);
        std::array<std::uint8_t, oem::dnsSearchHeadSize> head;
        if (!bmc.read(0, head))
            return;
        search->appendsPrimarySuffix = head[0] & 1;
        search->appendsParentSuffixes = head[0] >> 1 & 1;
        bmc.readText(oem::dnsSearchHeadSize, search->suffixes);
        search->isSupported = 1;
    });
}

int CIM_SetDNSSearch(IPMI20_SESSION_T* session, const CIM_DNSSearch* search, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(search != nullptr);
        std::array<std::uint8_t, oem::dnsSearchSize> bytes;
        ipmi::Writer writer(bytes);
        writer
            .u8(static_cast<std::uint8_t>((search->appendsPrimarySuffix != 0 ? 1 : 0) |
                                          (search->appendsParentSuffixes != 0 ? 2 : 0)))
            .fill(oem::dnsSearchHeadSize - 1, 0);
        writeText(writer, search->suffixes);
        writeBlocks(hooks::sessionOf(session, timeout), {}, writer.written());
    });
}
