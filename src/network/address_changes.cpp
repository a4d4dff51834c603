// An endpoint's address changed in the BMC: by DHCP, or to a static one.
#include "network/endpoint_name.h"
#include "network/setting_values.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/debug_log.h"
#include "Utility/requests/request_status.h"

#include <arpa/inet.h>

namespace {

constexpr const char* failed = "Failed in SetProperty in StaticIPAssignmentSettingData";
constexpr const char* noChannel = "Channel Number not found in InstanceID property";
constexpr const char* ipv4SourceFailed =
    "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIPv4Source Failed";
constexpr const char* notSet = "Failed to SetIPv4Address in StaticIPAssignmentSettingData";

using Ipv4Setter = int (*)(IPMI20_SESSION_T*, const uint8_t*, uint8_t, int);

struct Ipv4Step {
    const char* property;
    Ipv4Setter set;
};
constexpr Ipv4Step ipv4Steps[] = {
    {"IPv4Address", CIM_SetIPv4Address},
    {"SubnetMask", CIM_SetIPv4NetMask},
    {"GatewayIPv4Address", CIM_SetIPv4Gateway},
};

// These return nullptr, or what failed. The source comes first, and stays when a later step fails.

const char* useDhcp(const char* endpointName) {
    const auto channel = ph::channelOf(endpointName);
    if (!channel)
        return "Channel Number not found in Name property";
    const auto version = ph::ipVersionOf(endpointName);
    if (!version)
        return "IP Version not found in Name property";
    ph::IpmiSession session;
    if (!session.open())
        return failed;
    if (*version == '4')
        return CIM_SetIPv4Source(session.get(), CIM_ADDRESS_SOURCE_DYNAMIC, *channel, ph::hookTimeout) == 0
                   ? nullptr
                   : ipv4SourceFailed;
    return CIM_SetIPv6Source(session.get(), CIM_ADDRESS_SOURCE_DYNAMIC, *channel, ph::hookTimeout) == 0
               ? nullptr
               : "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIP6Source Failed";
}

const char* useStaticIpv4(const char* endpointName, const CMPIInstance* setting) {
    const auto channel = ph::channelOf(endpointName);
    if (!channel)
        return noChannel;
    ph::Database database;
    ph::IpmiSession session;
    if (!database.open(PH_CreateSmashDBHandle) || !session.open())
        return failed;
    if (CIM_SetIPv4Source(session.get(), CIM_ADDRESS_SOURCE_STATIC, *channel, ph::hookTimeout) != 0)
        return ipv4SourceFailed;
    for (const Ipv4Step& step : ipv4Steps) {
        std::uint8_t address[4];
        if (PH_ConvertStrToIP(ph::textProperty(setting, step.property), address) != 0)
            return "Failed to ConvertStrToIP in StaticIPAssignmentSettingData";
        if (step.set(session.get(), address, *channel, ph::hookTimeout) != 0)
            return notSet;
    }
    if (db_delete_static_ip(database.get()) != 0) // the BMC has the address: that is what was asked for
        PH_LOG("The static address that was applied stays staged");
    return nullptr;
}

const char* useStaticIpv6(const char* endpointName, const CMPIInstance* setting) {
    const auto channel = ph::channelOf(endpointName);
    if (!channel)
        return noChannel;
    ph::IpmiSession session;
    if (!session.open())
        return failed;
    if (CIM_SetIPv6Source(session.get(), CIM_ADDRESS_SOURCE_STATIC, *channel, ph::hookTimeout) != 0)
        return "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIPv6Source Failed";
    std::uint8_t address[16];
    if (inet_pton(AF_INET6, ph::textProperty(setting, "IPv6Address"), address) != 1)
        return "Failed in SetProperty in StaticIPAssignmentSettingData - IP Conversion Failed";
    if (CIM_SetIPv6Address(session.get(), address, *channel, ph::hookTimeout) != 0)
        return "Failed to SetIPv6Address in StaticIPAssignmentSettingData";
    const auto prefixLength = ph::prefixLengthProperty(setting);
    if (!prefixLength || CIM_SetIPv6Prefix(session.get(), *prefixLength, *channel, ph::hookTimeout) != 0)
        return "Failed to SetIPv6Prefix in StaticIPAssignmentSettingData";
    if (inet_pton(AF_INET6, ph::textProperty(setting, "GatewayIPv6Address"), address) == 1 &&
        CIM_SetIPv6Gateway(session.get(), address, *channel, ph::hookTimeout) != 0)
        return notSet;
    return nullptr;
}

int report(const CMPIBroker* broker, const char* failure, CMPIStatus* status) {
    if (failure == nullptr)
        return 0;
    ph::fail(broker, status, CMPI_RC_ERR_INVALID_PARAMETER, failure);
    return -1;
}

} // namespace

int PH_ApplySettingToDHCPIP(const CMPIBroker* broker, const char* endpointName, CMPIStatus* status) {
    return report(broker, useDhcp(endpointName), status);
}

int PH_ApplySettingToStaticIP(const CMPIBroker* broker, const char* endpointName, const CMPIInstance* setting,
                              CMPIStatus* status) {
    return report(broker, useStaticIpv4(endpointName, setting), status);
}

int PH_ApplySettingToStaticIPv6(const CMPIBroker* broker, const char* endpointName,
                                const CMPIInstance* setting, CMPIStatus* status) {
    return report(broker, useStaticIpv6(endpointName, setting), status);
}
