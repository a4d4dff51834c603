// How elements meet whose keys hold the same thing in different forms.
#pragma once

#include <string_view>

namespace associations {

// A port "EthernetPort1:eth0:1", a LAN endpoint "LANEndpoint-eth0" and an IP endpoint
// "IPProtocolEndpoint1*Channel-1*eth0-4" share the network interface that each names.
bool portHasLanEndpoint(std::string_view port, std::string_view lanEndpoint);
bool lanEndpointCarriesIp(std::string_view lanEndpoint, std::string_view ipEndpoint);

// A job's name begins with that of the service whose method it runs: "SSHProtocolService_RequestStateChange".
bool serviceRunsJob(std::string_view service, std::string_view job);
// A job's name may also end with the interface of the port: "EthernetPort_RequestStateChange_eth0".
bool portRunsJob(std::string_view port, std::string_view job);

} // namespace associations
