#include "associations/profiles.h"

#include <algorithm>

namespace associations {
namespace {

constexpr const char* ofBaseServer[] = {profileRegistration,
                                        sensors,
                                        fan,
                                        powerSupply,
                                        cpu,
                                        systemMemory,
                                        recordLog,
                                        bootControl,
                                        osStatus,
                                        physicalAsset,
                                        serviceProcessor,
                                        powerStateManagement,
                                        softwareInventory,
                                        textConsoleRedirection,
                                        kvmRedirection};
constexpr const char* ofServiceProcessor[] = {profileRegistration,
                                              recordLog,
                                              ethernetPort,
                                              hostLanNetworkPort,
                                              ipInterface,
                                              dhcpClient,
                                              dnsClient,
                                              powerStateManagement,
                                              simpleIdentityManagement,
                                              roleBasedAuthorization,
                                              softwareInventory,
                                              textConsoleRedirection,
                                              kvmRedirection,
                                              softwareUpdate};
constexpr const char* ofComponent[] = {profileRegistration};
constexpr const char* ofDevice[] = {profileRegistration, sensors};
constexpr const char* ofIpInterface[] = {profileRegistration, dhcpClient, dnsClient};
constexpr const char* ofSoftwareUpdate[] = {profileRegistration, softwareInventory};
constexpr const char* ofHostLanNetworkPort[] = {profileRegistration, ethernetPort};

constexpr Profile profileTable[] = {
    {profileRegistration, "Profile Registration", "1.0.0", false},
    {baseServer, "Base Server", "1.0.0", true, ofBaseServer},
    {serviceProcessor, "Service Processor", "1.0.0", false, ofServiceProcessor},
    {sensors, "Sensors", "1.0.0", false, ofComponent},
    {fan, "Fan", "1.0.0", false, ofDevice},
    {powerSupply, "Power Supply", "1.0.0", false, ofDevice},
    {cpu, "CPU", "1.0.0", false, ofDevice},
    {systemMemory, "System Memory", "1.0.0", false, ofDevice},
    {recordLog, "Record Log", "1.0.0", false, ofComponent},
    {physicalAsset, "Physical Asset", "1.0.0", false, ofComponent},
    {osStatus, "OS Status", "1.0.0", false, ofComponent},
    {bootControl, "Boot Control", "1.0.0", false, ofComponent},
    {ethernetPort, "Ethernet Port", "1.0.0", false, ofComponent},
    {hostLanNetworkPort, "Host LAN Network Port", "1.0.0", false, ofHostLanNetworkPort},
    {ipInterface, "IP Interface", "1.0.0", false, ofIpInterface},
    {dhcpClient, "DHCP Client", "1.0.0", false, ofComponent},
    {dnsClient, "DNS Client", "1.0.0", false, ofComponent},
    {powerStateManagement, "Power State Management", "1.0.0", false, ofComponent},
    {simpleIdentityManagement, "Simple Identity Management", "1.0.0", false, ofComponent},
    {roleBasedAuthorization, "Role Based Authorization", "1.0.0", false, ofComponent},
    {softwareInventory, "Software Inventory", "1.0.0", false, ofComponent},
    {textConsoleRedirection, "Text Console Redirection", "1.0.0", false, ofComponent},
    {kvmRedirection, "KVM Redirection", "1.0.0", false, ofComponent},
    {softwareUpdate, "Software Update", "1.0.0", false, ofSoftwareUpdate},
};

Numbers isProfile(const Profile&) {
    return {2};
}

Numbers dmtf(const Profile&) {
    return {2};
}

Numbers advertiseTypes(const Profile& profile) {
    constexpr std::uint64_t notAdvertised = 2, slp = 3;
    return {profile.isAdvertised ? slp : notAdvertised};
}

constexpr ProfileProperty properties[] = {
    {"InstanceID", CMPI_string, &Profile::instanceId},
    {"ElementName", CMPI_string, &Profile::name},
    {"SpecificationType", CMPI_uint16, nullptr, isProfile},
    {"RegisteredOrganization", CMPI_uint16, nullptr, dmtf},
    {"RegisteredName", CMPI_string, &Profile::name},
    {"RegisteredVersion", CMPI_string, &Profile::version},
    {"AdvertiseTypes", CMPI_uint16A, nullptr, advertiseTypes},
};

} // namespace

std::span<const Profile> profiles() {
    return profileTable;
}

std::span<const ProfileProperty> profileProperties() {
    return properties;
}

bool isReferencedBy(std::string_view referenced, std::string_view referring) {
    return std::ranges::any_of(profileTable, [&](const Profile& each) {
        return referring == each.instanceId &&
               std::ranges::any_of(each.referenced, [&](const char* one) { return referenced == one; });
    });
}

} // namespace associations
