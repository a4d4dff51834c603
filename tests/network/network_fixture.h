// Requests to the network classes through the provider module, on a virtual BMC with two LANs.
#pragma once

#include "ipmi/lan_configuration.h"
#include "ipmi/oem_commands.h"
#include "managed_bmc.h"
#include "paths.h"
#include "provider_helper/network.h"

inline constexpr char twoLans[] = R"({"lans": [
    {"channel": 1, "name": "eth0", "mac": "00:11:22:33:44:55", "inVlan": true, "vlanId": 1234,
     "ipv4": {"configured": {"address": "192.0.2.10", "netmask": "255.255.255.0", "gateway": "192.0.2.1"},
              "lease": {"address": "192.0.2.77", "netmask": "255.255.254.0", "gateway": "192.0.2.254"}},
     "ipv6": {"advertised": {"address": "2001:db8::a"}, "lease": {"address": "2001:db8::b", "prefixLength": 128}}},
    {"channel": 3, "name": "eth1", "mac": "00:11:22:33:44:66", "speed": 100,
     "ipv4": {"source": "dhcp", "lease": {"address": "198.51.100.7", "netmask": "255.255.255.0"}},
     "ipv6": {"enables": "off"}}],
  "interfaces": {"bond": {"members": [1, 2]}, "ethernet": {"wakeOnLan": true, "mtu": 9000}}})";

inline constexpr CMPIrc invalid = CMPI_RC_ERR_INVALID_PARAMETER;

class Network : public ManagedBmc {
protected:
    Network() : ManagedBmc(twoLans) { broker.loadProvider(paths::providerModule, "ProviderHelper"); }

    // A member of what the BMC says of a LAN ("eth0").
    std::string lan(const char* name, const char* member) const {
        const auto value = row("lans", "name", name).at(member);
        return value.is_string() ? value.get<std::string>() : value.dump();
    }

    std::vector<broker::Instance> list(const std::string& className) {
        const broker::Reply reply = broker.enumerateInstances(path(className));
        EXPECT_TRUE(reply.ok()) << className << ": " << reply.message;
        return reply.instances;
    }
    broker::Instance instance(const std::string& className, std::size_t index = 0) {
        return list(className).at(index);
    }
    std::string get(const std::string& className, const char* property) {
        return textOf(instance(className), property);
    }
};
