#include "machine.h"

#include "bmc_session.h"
#include "cim_values.h"
#include "virtual-bmc/virtual_bmc.h"

#include <provider_helper/provider_helper.h>

#include <fstream>
#include <map>

namespace {

namespace fs = std::filesystem;

constexpr char model[] = R"({
    "device": {"deviceGuid": "6b1f3d52-8f0e-4a61-9c37-50d4a2e8c911",
               "systemGuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"},
    "frus": [{"id": 0, "name": "Board", "chassis": {"type": 23, "serialNumber": "CH42"},
              "board": {"manufactured": "2024-03-01", "manufacturer": "Maker", "product": "Model 7",
                        "serialNumber": "SN42"}},
             {"id": 1, "name": "Supply", "entity": 10, "product": {"partNumber": "P-1"}, "powerSupply": {"hotSwap": true}}],
    "sdrRepository": {"genericDevices": [{"name": "CPU1", "entity": 3}]},
    "smbios": {
        "processors": [{"socket": "CPU1", "version": "CPU 7", "family": 1, "maxSpeed": 3000, "currentSpeed": 2000, "externalClock": 100,
                        "cores": 2, "enabledCores": 2, "characteristics": 4}],
        "memory": {"modules": [{"socket": "DIMM", "bank": "A", "size": 1024, "speed": 2400, "configuredSpeed": 2133}]},
        "slots": [{"name": "PCIe", "type": "pci-express-4", "width": "x4", "usage": "in-use", "bus": 1, "device": 0, "function": 0},
                  {"name": "PCI", "type": "pci", "width": 5, "number": 2}],
        "ports": [{"externalName": "COM", "externalConnector": "db-9-male", "type": "serial"}],
        "onboardDevices": [{"name": "NIC", "type": "ethernet", "bus": 2}]},
    "systemInfo": {"firmwareVersion": "1.02", "osName": "Linux"},
    "users": [{"id": 2, "name": "root", "email": "root@example.org"}, {"id": 3, "name": "operator", "privilege": "operator"}],
    "services": [{"name": "web", "port": 80}, {"name": "ssh", "securePort": 22, "activeSessions": 1},
                 {"name": "telnet", "port": 23, "activeSessions": 1},
                 {"name": "kvm", "port": 5900}, {"name": "cd-media"}, {"name": "fd-media"}],
    "chassis": {"softOffDelay": 0, "cycleInterval": 0},
    "watchdog": {"use": "os", "action": "hard-reset", "interval": 6000, "endsAt": 4102444800000},
    "sensors": [
        {"number": 1, "name": "Inlet", "analog": {"unit": "degrees C"}, "reading": 25,
         "thresholds": {"upperNonCritical": 40, "upperCritical": 45}},
        {"number": 2, "name": "PSU", "type": "Power Supply", "readingType": "sensor-specific", "record": "compact",
         "entity": 10, "supportedStates": [0, 1, 3], "states": [0]},
        {"number": 3, "name": "Rotor", "type": "Fan", "entity": 29, "analog": {"unit": "RPM", "m": 100}, "reading": 5000},
        {"number": 4, "name": "Supplies", "type": "Power Supply", "readingType": "redundancy", "record": "compact",
         "entity": 19, "supportedStates": [0, 1], "states": [0]}],
    "lans": [{"channel": 1, "name": "eth0", "mac": "02:00:5e:10:20:30",
              "ipv4": {"configured": {"address": "192.0.2.10", "netmask": "255.255.255.0", "gateway": "192.0.2.1"},
                       "lease": {"address": "192.0.2.77", "netmask": "255.255.255.0", "gateway": "192.0.2.1"}},
              "ipv6": {"advertised": {"address": "2001:db8::a"}}},
             {"channel": 2, "name": "eth1", "mac": "02:00:5e:10:20:31",
              "ipv4": {"source": "dhcp", "lease": {"address": "198.51.100.7", "netmask": "255.255.255.0"}}}],
    "sol": {"channels": [{"channel": 1}, {"channel": 2, "enabled": false}], "capacity": 2,
            "active": [{"instance": 2, "session": 4711}]},
    "alertDestinations": [{"channel": 1, "selector": 1, "kind": "e-mail", "user": 2},
                          {"channel": 1, "selector": 2, "kind": "trap", "ipv4": "192.0.2.9"}],
    "mail": {"servers": [{"channel": 1, "enabled": true, "ipv4": "192.0.2.1"}]},
    "pef": {"filters": [
        {"number": 1, "bytes": "80 01 01 10 ff ff 01 ff 01 ff ff 00 00 00 00 00 00 00 00 00"}]}})";

void store() {
    CimxmlDestinationRow destination{"CIMXML-7", "http://192.0.2.9:5988/listener"};
    CimxmlFilterRow filter{"IndicationFilter:CIMXML-7",
                           "select * from CIM_AlertIndication where PerceivedSeverity=6", 0xFF, 0xFF, 6};
    SMASH_DB_HANDLE database = nullptr;
    EXPECT_EQ(db_init(&database), 0);
    EXPECT_EQ(db_set_listener_destination(database, &destination), 0);
    EXPECT_EQ(db_set_indication_filter_cimxml(database, &filter), 0);
    EXPECT_EQ(db_close(database), 0);

    char job[64];
    EXPECT_EQ(PH_CreateJobInstance("Running", job, 4, "2"), 0);
    EXPECT_EQ(PH_CreateJobInstance("Failed", job, 10, "17,6"), 0);
    EXPECT_EQ(PH_CreateErrorInstance(job), 0);
}

} // namespace

Machine::Machine(int interfaceType) {
    sysroot_.standInForCommands();
    std::ofstream(sysroot_.place("/processes")) << "  200 pts/0    S+     0:00 smashclp\n";
    fs::create_directories(sysroot_.place("/etc/ssh"));
    std::ofstream(sysroot_.place("/etc/ssh/sshd_config")) << "Protocol 2\nCiphers aes256-ctr,3des-cbc\n";
    const fs::path stateFile = sysroot_.place("/var/lib/virtual-bmc/bmc.state");
    vbmc::createFromText(stateFile, model, "model");
    vbmc::VirtualBmc(stateFile).addSensorEvent("Inlet", 9, false);
    synchronise(stateFile);
    ipmi::SessionSettings session = virtualBmc(stateFile);
    session.interfaceType = interfaceType;
    storeSession(session);
    store();
    before_ = std::make_unique<SavedFiles>(sysroot_.place("/"));
}

broker::Instance Machine::newInstance(const std::string& className) {
    const std::map<std::string, broker::NamedValues> properties{
        {"CIM_Account",
         {{"Name", text("IPMI User-4")},
          {"UserID", text("eva")},
          {"UserPassword", {CMPI_stringA, broker::Value::Array{text("word")}}}}},
        {"CIM_IndicationFilter",
         {{"Name", text("IndicationFilter:CIMXML-8")},
          {"Query", text("select * from CIM_AlertIndication where PerceivedSeverity=6")}}},
        {"CIM_ListenerDestinationCIMXML",
         {{"Name", text("CIMXML-8")}, {"Destination", text("http://192.0.2.9:5988/listener")}}},
    };
    broker::Instance instance{
        .path = {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = {}},
        .properties = {}};
    if (const auto found = properties.find(className); found != properties.end())
        instance.properties = found->second;
    return instance;
}
