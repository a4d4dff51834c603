// How elements meet whose keys hold the same thing in different forms.
#pragma once

#include <string_view>

namespace associations {

// A port "EthernetPort1:eth0:1", a LAN endpoint "LANEndpoint-eth0" and an IP endpoint
// "IPProtocolEndpoint1*Channel-1*eth0-4" share the network interface that each names.
bool portHasLanEndpoint(std::string_view port, std::string_view lanEndpoint);
bool lanEndpointCarriesIp(std::string_view lanEndpoint, std::string_view ipEndpoint);

// "DHCPProtocolEndpoint1*Channel-1*eth0-4" is on the same LAN, by the same version of IP, as an IP endpoint or setting whose
// name ends alike.
bool shareAddress(std::string_view first, std::string_view second);

// A service "ssh" listens at the ports "TCPProtocolEndpoint-ssh-clear" and "…-encrypted"; the web service "web"
// is "http" at the one and "https" at the other.
bool serviceListensAt(std::string_view service, std::string_view port);

// A service "KVMProtocolService" has the access points whose names begin with "KVM": "KVMRedirectionSAP".
bool serviceHasAccessPoint(std::string_view service, std::string_view accessPoint);
// So does its port, in the word for the service: "TCPProtocolEndpoint-cd-media-clear", "CDMEDIARedirectionSAP".
bool portIsOfAccessPoint(std::string_view port, std::string_view accessPoint);

// The capabilities of a physical element are named "PhysicalAssetCapabilities:<Tag>", those of a service
// "SSHCapabilities:<Name>".
bool hasCapabilities(std::string_view element, std::string_view capabilities);

// An identity is named "Identity:<Name>" after its account, and describes itself by roles: "operator on channel 1".
bool isIdentityOf(std::string_view identity, std::string_view account);
bool isRoleOf(std::string_view role, std::string_view description);

// A physical element "10.1.1:PSU1" is the body of the device "10.1": both begin with their IPMI entity.
bool realizesDevice(std::string_view tag, std::string_view device);

// A job's name begins with that of the service whose method it runs: "SSHProtocolService_RequestStateChange".
bool serviceRunsJob(std::string_view service, std::string_view job);
// A job's name may also end with the interface of the port: "EthernetPort_RequestStateChange_eth0".
bool portRunsJob(std::string_view port, std::string_view job);
// And that of a DHCP endpoint ends with its interface and version: "DHCPProtocolEndpoint_RequestStateChange_eth0-4".
bool dhcpRunsJob(std::string_view endpoint, std::string_view job);

// A description "FAN1(34.32.0):Fan for Fan 1" ends with the name of what its sensor watches.
bool sensorWatches(std::string_view description, std::string_view device);
// The same for whatever is a part of the memory: "DIMM A1 Temp(7.32.0):Temperature for Memory Device 1".
bool sensorWatchesMemory(std::string_view description, std::string_view memory);
// A description "memory socket with 32.1:DIMM A1" ends with a tag.
bool endsWithTag(std::string_view description, std::string_view tag);
bool isTagAtEnd(std::string_view tag, std::string_view description);
// A core "SMBIOS:server 3.1.7" is one of the processor "3.1".
bool isCoreOf(std::string_view processor, std::string_view core);
// A list "29.1 29.2" has an ID.
bool listsMember(std::string_view list, std::string_view id);

} // namespace associations
