// Method ApplySettingToIPProtocolEndpoint: which assignment, for which endpoint, with which address.
#include "network/endpoint_name.h"
#include "network/ip_assignment.h"
#include "network/setting_values.h"
#include "provider_helper/network.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <cmpimacs.h>
#include <cstring>
#include <initializer_list>
#include <strings.h>

namespace {

constexpr const char* nameSpace = "root/cimv2";
constexpr const char* assignmentClass = "CIM_IPAssignmentSettingData";
constexpr const char* endpointClass = "CIM_IPProtocolEndpoint";
constexpr const char* staticClass = "CIM_StaticIPAssignmentSettingData";
constexpr const char* badAssignment = "IPAssignmentSettingData InstanceID is Invalid";

// One request: what it names, and how it fails.
class Application {
public:
    explicit Application(ph::MethodCall& call) : call_(call), broker_(call.request.broker) {}

    bool run() { return readArguments() && exists() && apply(); }

private:
    struct Key {
        const char* name;
        const char* value;
    };

    bool refuse(CMPIrc code, const char* message) {
        call_.refuse(code, message);
        return false;
    }

    bool readArguments();
    bool exists();
    bool apply();
    bool applyStatic();

    CMPIEnumeration* enumerate(const char* className, const char* failure);
    // Whether the broker serves an instance with these keys. Reports what fails, not that there is none.
    bool find(const char* className, const char* failure, std::initializer_list<Key> keys, bool& isFound);

    ph::MethodCall& call_;
    const CMPIBroker* broker_;

    const char* assignment_ = ""; // InstanceID of the configuration
    const char* systemCreationClassName_ = "";
    const char* creationClassName_ = "";
    const char* systemName_ = "";
    const char* endpointName_ = "";
};

bool Application::readArguments() {
    const CMPIObjectPath* configuration =
        ph::referenceArgument(call_.request.in, "Configuration", assignmentClass);
    if (configuration == nullptr)
        return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Configuration Parameter is Invalid");
    const CMPIObjectPath* endpoint = ph::referenceArgument(call_.request.in, "Endpoint", endpointClass);
    if (endpoint == nullptr)
        return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Endpoint Parameter is Invalid");
    assignment_ = ph::keyText(configuration, "InstanceID");
    systemCreationClassName_ = ph::keyText(endpoint, "SystemCreationClassName");
    creationClassName_ = ph::keyText(endpoint, "CreationClassName");
    systemName_ = ph::keyText(endpoint, "SystemName");
    endpointName_ = ph::keyText(endpoint, "Name");
    for (const char* text :
         {assignment_, systemCreationClassName_, creationClassName_, systemName_, endpointName_})
        if (text == nullptr || *text == '\0')
            return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Configuration or Endpoint Parameters are Empty");
    return std::strstr(assignment_, "IPAssignmentSettingData") != nullptr ||
           refuse(CMPI_RC_ERR_INVALID_PARAMETER, badAssignment);
}

CMPIEnumeration* Application::enumerate(const char* className, const char* failure) {
    CMPIStatus status = ph::success;
    const CMPIObjectPath* path = CMNewObjectPath(broker_, nameSpace, className, &status);
    if (path == nullptr || status.rc != CMPI_RC_OK) {
        refuse(CMPI_RC_ERR_FAILED, "Failed to Create New Object Path");
        return nullptr;
    }
    CMPIEnumeration* instances = CBEnumInstances(broker_, call_.request.context, path, nullptr, &status);
    if (instances == nullptr || status.rc != CMPI_RC_OK) {
        refuse(CMPI_RC_ERR_FAILED, failure);
        return nullptr;
    }
    return instances;
}

// Returns the next instance of an enumeration; nullptr at its end.
const CMPIInstance* next(CMPIEnumeration* instances) {
    if (!CMHasNext(instances, nullptr))
        return nullptr;
    const CMPIData data = CMGetNext(instances, nullptr);
    return data.type == CMPI_instance ? data.value.inst : nullptr;
}

bool Application::find(const char* className, const char* failure, std::initializer_list<Key> keys,
                       bool& isFound) {
    isFound = false;
    CMPIEnumeration* instances = enumerate(className, failure);
    if (instances == nullptr)
        return false;
    while (const CMPIInstance* instance = next(instances)) {
        bool matches = true;
        for (const Key& key : keys)
            matches = matches && strcasecmp(ph::textProperty(instance, key.name), key.value) == 0;
        isFound = isFound || matches;
    }
    return true;
}

bool Application::exists() {
    bool hasAssignment = false;
    bool hasEndpoint = false;
    if (!find(assignmentClass, "Failed to Enumerate IPAssignmentSettingData instances",
              {{"InstanceID", assignment_}}, hasAssignment) ||
        !find(endpointClass, "Failed to Enumerate IPProtocolEndpoint instances",
              {{"SystemCreationClassName", systemCreationClassName_},
               {"CreationClassName", creationClassName_},
               {"SystemName", systemName_},
               {"Name", endpointName_}},
              hasEndpoint))
        return false;
    return (hasAssignment && hasEndpoint) || refuse(CMPI_RC_ERR_FAILED, "Input key properties are Invalid");
}

bool Application::apply() {
    if (strcasecmp(assignment_, ph::dhcpAssignment) == 0)
        return PH_ApplySettingToDHCPIP(broker_, endpointName_, &call_.status) == 0;
    if (strcasecmp(assignment_, ph::staticAssignment) == 0)
        return applyStatic();
    return refuse(CMPI_RC_ERR_INVALID_PARAMETER, badAssignment);
}

bool isNoIpv4(const char* text) {
    constexpr std::uint8_t none[4] = {}; // 0.0.0.0, however it is written
    std::uint8_t address[4];
    return PH_ConvertStrToIP(text, address) == 0 && std::ranges::equal(address, none);
}
bool isNoIpv6(const char* text) {
    return std::strcmp(text, "::") == 0;
}

bool Application::applyStatic() {
    constexpr const char* notEnumerated = "Failed to Enumerate StaticIPAssignSettingData instances";
    const auto version = ph::ipVersionOf(endpointName_);
    if (!version || (*version != '4' && *version != '6'))
        return refuse(CMPI_RC_ERR_FAILED, "Unable to fetch IP version");
    CMPIEnumeration* settings = enumerate(staticClass, notEnumerated);
    if (settings == nullptr)
        return false;
    const CMPIInstance* setting = next(settings);
    if (setting == nullptr)
        return refuse(CMPI_RC_ERR_FAILED, notEnumerated);
    const auto isNone = [&](bool (*test)(const char*)) {
        return [=](const char* property) { return test(ph::textProperty(setting, property)); };
    };
    if (*version == '4') {
        constexpr const char* addresses[] = {"IPv4Address", "SubnetMask", "GatewayIPv4Address"};
        if (std::ranges::any_of(addresses, isNone(isNoIpv4)))
            return refuse(CMPI_RC_ERR_FAILED,
                          "IPv4Address, SubnetMask or GatewayIPv4Address Parameters are Invalid");
        return PH_ApplySettingToStaticIP(broker_, endpointName_, setting, &call_.status) == 0;
    }
    constexpr const char* addresses[] = {"IPv6Address", "GatewayIPv6Address"};
    if (std::ranges::any_of(addresses, isNone(isNoIpv6)))
        return refuse(CMPI_RC_ERR_FAILED, "IPv6Address or GatewayIPv6Address Parameters are Invalid");
    return PH_ApplySettingToStaticIPv6(broker_, endpointName_, setting, &call_.status) == 0;
}

} // namespace

ph::MethodAnswer ph::applySetting(MethodCall& call) {
    return call.report("ApplySettingToIPProtocolEndpoint", [&] { return Application(call).run(); });
}
