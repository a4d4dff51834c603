// The DNS settings of the BMC: those of all clients in one session, and with them whether there are any, and those of
// each.
#pragma once

#include "network/network_clients.h"

namespace ph::dns {

class Settings {
public:
    bool read() { return session_.open() && CIM_GetDNSSearch(session_.get(), &search_, hookTimeout) == 0; }
    bool areThere() const { return search_.isSupported != 0; }
    const CIM_DNSSearch& search() const { return search_; }
    IPMI20_SESSION_T* session() { return session_.get(); }

private:
    IpmiSession session_;
    CIM_DNSSearch search_{};
};

// Enumerates a class of DNS: calls int append(Settings&) on a BMC that has such settings. Returns -1 where it does not
// tell.
template <class Append>
int appendWhereThere(Append append) {
    Settings settings;
    if (!settings.read())
        return -1;
    return settings.areThere() ? append(settings) : 0;
}

// Returns false where the BMC does not tell, or has no DNS settings.
inline bool readConfig(IPMI20_SESSION_T* session, std::uint8_t channel, int ipVersion, bool inUse,
                       CIM_DNSConfig& configuration) {
    return CIM_GetDNSConfig(session, &configuration, channel, static_cast<std::uint8_t>(ipVersion), inUse,
                            hookTimeout) == 0 &&
           configuration.isSupported != 0;
}

// Appends the client records of a class, of which int fill(Record*, const char* interfaceName, int ipVersion, const
// CIM_DNSConfig*) is handed the configuration that is set or in use, nullptr where the BMC does not tell it.
template <class Record, class Fill>
int appendConfigured(RecordArray<Record>& records, const char* className, IPMI20_SESSION_T* session,
                     Detail detail, bool inUse, Fill fill) {
    return appendClients(records, className, session, detail, [&](Record& record, const AddressedLan& each) {
        CIM_DNSConfig configuration{};
        const bool isTold = readConfig(session, each.lan.channel, each.ipVersion, inUse, configuration);
        return fill(&record, each.lan.interfaceName, each.ipVersion, isTold ? &configuration : nullptr);
    });
}

} // namespace ph::dns
