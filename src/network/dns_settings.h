// The DNS settings of the BMC in one session: those of all clients, and with them whether there are any.
#pragma once

#include "network/addressed_lans.h"
#include "Utility/back-ends/back_ends.h"

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

// Returns false where the BMC does not tell, or has no DNS settings.
inline bool readConfig(IPMI20_SESSION_T* session, std::uint8_t channel, int ipVersion, bool inUse,
                       CIM_DNSConfig& configuration) {
    return CIM_GetDNSConfig(session, &configuration, channel, static_cast<std::uint8_t>(ipVersion), inUse,
                            hookTimeout) == 0 &&
           configuration.isSupported != 0;
}

} // namespace ph::dns
