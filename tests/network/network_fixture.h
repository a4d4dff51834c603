// Requests to the network classes, on a virtual BMC with two LANs.
#pragma once

#include "broker/broker.h"
#include "virtual-bmc/virtual_bmc.h"

#include <platform/cim_hooks.h>
#include <platform/smash_db.h>
#include <provider_helper/network.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sysroot_fixture.h>

// What sleep() was called with; it does not sleep in this program.
extern std::vector<unsigned int> pauses;

class Network : public SysrootFixture {
protected:
    Network();
    ~Network() override;

    void createBmc(const std::string& model) const;
    vbmc::VirtualBmc bmc() const { return vbmc::VirtualBmc(stateFile); }
    // A member of what the BMC says of a LAN ("eth0").
    std::string lan(const std::string& name, const char* member) const;
    // From now on this command is answered with `code`, after `skip` calls.
    void failCommand(std::uint8_t netFn, std::uint8_t command, std::uint8_t code, unsigned skip = 0) const;

    // A message of the BMC: network function, command, data.
    std::vector<std::vector<std::uint8_t>> changesOfLans() const; // Set LAN parameters

    static broker::ObjectPath path(const std::string& className, broker::NamedValues keys = {});
    static broker::Value text(const std::string& value) { return {CMPI_string, value}; }
    static broker::Value number(std::uint64_t value) { return {CMPI_uint16, value}; }
    static broker::Value reference(const broker::ObjectPath& path);

    std::vector<broker::Instance> list(const std::string& className);
    broker::Instance instance(const std::string& className, std::size_t index = 0);
    // A property of an instance as text; "(none)" where it has none.
    static std::string get(const broker::Instance& instance, const char* property);
    std::string get(const std::string& className, const char* property) {
        return get(instance(className), property);
    }

    // The state and operational status of the job that a method returned, and how many errors it has.
    struct Job {
        std::string state;
        std::string status;
        std::size_t errors = 0;
        std::string name;
    };
    Job job(const broker::Reply& reply);
    // Runs a method whose refusal still hands out the job: the embedded broker gives no results of a failed
    // request, so the job is the last one of the database.
    Job lastJob();

    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    broker::Broker broker;
};

inline constexpr char twoLans[] = R"({"lans": [
    {"channel": 1, "name": "eth0", "mac": "00:11:22:33:44:55", "inVlan": true, "vlanId": 1234,
     "ipv4": {"configured": {"address": "192.0.2.10", "netmask": "255.255.255.0", "gateway": "192.0.2.1"},
              "lease": {"address": "192.0.2.77", "netmask": "255.255.254.0", "gateway": "192.0.2.254"}},
     "ipv6": {"advertised": {"address": "2001:db8::a"}, "lease": {"address": "2001:db8::b", "prefixLength": 128}}},
    {"channel": 3, "name": "eth1", "mac": "00:11:22:33:44:66", "speed": 100,
     "ipv4": {"source": "dhcp", "lease": {"address": "198.51.100.7", "netmask": "255.255.255.0"}},
     "ipv6": {"enables": "off"}}],
  "interfaces": {"bond": {"members": [1, 2]}, "ethernet": {"wakeOnLan": true, "mtu": 9000}}})";
