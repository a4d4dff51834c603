// CIM_EthernetPort: the BMC's network ports, and the method that switches them.
#include "network/lans.h"
#include "network/port_state.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <optional>
#include <string>

constexpr const char* const g_EthernetPortKeyList[4] = {"DeviceID", "SystemCreationClassName",
                                                        "CreationClassName", "SystemName"};

namespace ph::ethernet_port {
namespace {

using Record = EthernetPortRecord;

constexpr const char* className = "CIM_EthernetPort";

// What the BMC does not tell is left out.
bool hasMac(const Record& port) {
    return port.PermanentAddress[0] != '\0';
}
bool hasState(const Record& port) {
    return port.EnabledState != EnabledState::Unknown;
}
// A port with settings has capabilities, if only unknown ones.
bool hasSettings(const Record& port) {
    return port.Capabilities[0] != noSlot;
}

constexpr Property properties[] = {
    PH_KEY(Record, DeviceID),
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, Name),
    PH_PROPERTY(Record, PortType),
    PH_PROPERTY_IF(Record, NetworkAddresses, hasMac),
    PH_PROPERTY_IF(Record, Capabilities, hasSettings),
    PH_PROPERTY_IF(Record, EnabledCapabilities, hasSettings),
    PH_PROPERTY(Record, LinkTechnology),
    PH_PROPERTY_IF(Record, PermanentAddress, hasMac),
    PH_PROPERTY_IF(Record, EnabledState, hasState),
    PH_PROPERTY(Record, Speed),
    PH_PROPERTY(Record, MaxSpeed),
    PH_PROPERTY(Record, RequestedSpeed),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY_IF(Record, FullDuplex, hasSettings),
    PH_PROPERTY_IF(Record, AutoSense, hasSettings),
    PH_PROPERTY_IF(Record, ActiveMaximumTransmissionUnit, hasSettings),
};

constexpr std::uint32_t bitsPerMegabit = 1024 * 1024 * 8; // per Mb/s, as clients of these ports know it

// Returns nothing when the BMC does not tell.
std::optional<bool> isEnabled(IPMI20_SESSION_T* session, const Lan& lan) {
    std::uint8_t enable = CIM_LAN_BOTH;
    if (!lan.isBond && LIBIPMI_HL_GetLANEnable(session, lan.index, &enable, hookTimeout) != 0)
        return std::nullopt;
    return enable != CIM_LAN_DISABLED;
}

// The speed in Mb/s is in bits 8 to 23 of the PHY word.
std::uint16_t readSpeed(IPMI20_SESSION_T* session, const Lan& lan) {
    std::uint32_t phy = 0;
    return CIM_GetPHYConfig(session, lan.channel, &phy, hookTimeout) == 0
               ? static_cast<std::uint16_t>(phy >> 8)
               : 0;
}

int fill(Record& port, IPMI20_SESSION_T* session, const Lan& lan, const CIM_NWExtEthCfg& configuration,
         bool isDefault) {
    const MacText mac = readMac(LIBIPMI_HL_GetMACAddress, session, lan);
    const auto enabled = isEnabled(session, lan);
    const std::uint16_t speed = readSpeed(session, lan);
    const int result = PH_Fill_EthernetPort(&port, mac.text, lan.interfaceName, &configuration, &speed,
                                            enabled.value_or(false));
    if (!enabled)
        port.EnabledState = EnabledState::Unknown;
    if (isDefault) { // the platform's guess
        setSlots(port.Capabilities, {});
        setSlots(port.EnabledCapabilities, {});
    }
    return result;
}

int enumerate(RecordArray<Record>& ports, Detail detail) {
    char systemName[256] = "";
    CIM_NWExtEthCfg configuration{};
    std::uint8_t isDefault = 0;
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 ||
        (detail == Detail::All && CIM_GetNWExtEthCfg(&configuration, &isDefault) != 0) || !session.open())
        return -1;
    int position = 0;
    for (Lan& lan : listLans(session.get())) {
        readName(session.get(), lan);
        Record* port = ports.append();
        if (port == nullptr)
            return -1;
        position = lan.isBond ? ports.count() : position + 1;
        setHostedKeys(*port, processorClass, systemName, className);
        std::snprintf(port->DeviceID, sizeof(port->DeviceID), "%s%d:%s:%d", "EthernetPort", position,
                      lan.interfaceName, lan.index);
        if (detail == Detail::All && fill(*port, session.get(), lan, configuration, isDefault != 0) != 0)
            return -1;
    }
    return 0;
}

// ---- RequestStateChange

// A state is a number or its text; anything else is none.
int requestedState(const CMPIData& argument) {
    if (argument.type == CMPI_uint16)
        return argument.value.uint16;
    const char* text = textOf(argument);
    const long state = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
    return state >= 0 && state <= UINT16_MAX ? static_cast<int>(state) : 0; // 4294967298 is not 2
}

std::string findPort(CMPIString** keyValues) {
    Record* port = nullptr;
    const int result = PH_Get_EthernetPort(&port, keyValues);
    std::string deviceId = result == 0 ? port->DeviceID : "";
    PH_Clean_EthernetPort(&port, 1);
    return deviceId;
}

struct PortName {
    char interfaceName[CIM_INTERFACE_NAME_SIZE] = "";
    int lanIndex = 0;
};

// "EthernetPort1:eth0:1"; runs of colons separate as one does.
bool parse(const std::string& deviceId, PortName& name) {
    return std::sscanf(deviceId.c_str(), "%*[^:]%*[:]%31[^:]%*[:]%d", name.interfaceName, &name.lanIndex) ==
           2;
}

bool isStateOfPort(int state) {
    using namespace RequestedState;
    return state == Enabled || state == Disabled || state == Reset;
}

MethodAnswer changeState(MethodCall& call) {
    const Request& request = call.request;
    const auto argument = ph::argument(request.in, "RequestedState");
    if (!argument)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Parameter");
    const int state = requestedState(*argument);
    const std::string deviceId = findPort(call.keys);
    if (deviceId.empty())
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Given instance does not exist");
    PortName port;
    if (!parse(deviceId, port))
        return methodFailed;
    const std::string jobName = std::string("EthernetPort_RequestStateChange_") + port.interfaceName;
    return call.report(jobName.c_str(), [&] {
        return isStateOfPort(state) &&
               RequestStateChange(request.broker, request.context, request.in, &call.status, port.lanIndex,
                                  port.interfaceName, state) == 0;
    });
}

constexpr Method methods[] = {{.name = requestStateChange,
                               .parameters = requestStateChangeParameters,
                               .carryOut = changeState,
                               .job = JobReport{.notCreated = {}},
                               .refusedValue = methodFailed}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_NetworkPort",
    .source = "Get Channel Info; LAN configuration parameter 5; LAN, bond, PHY and Ethernet settings (OEM)",
    .keys = g_EthernetPortKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.unknownMethod = {CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method Name"},
                   .isTakenUpFirst = true,
                   .closes = Invocation::Closes::Always}};

} // namespace
} // namespace ph::ethernet_port

int PH_Fill_EthernetPort(EthernetPortRecord* record, const char* macAddress, const char* interfaceName,
                         const CIM_NWExtEthCfg* configuration, const uint16_t* speed, int enabled) {
    constexpr std::size_t shownOfMac = 15; // as clients of these ports know it
    record->NetworkAddresses[0] = strndup(macAddress, shownOfMac);
    if (record->NetworkAddresses[0] == nullptr)
        return -1;
    ph::copyText(record->ElementName, "Logical representation of Network Communications");
    ph::copyText(record->Name, "EthernetPort");
    ph::copyText(record->PermanentAddress, macAddress);
    const std::uint32_t bits = *speed * ph::ethernet_port::bitsPerMegabit; // 32 bits: 1000 Mb/s wraps
    record->PortType =
        bits == 100 * ph::ethernet_port::bitsPerMegabit ? ph::PortType::T10Or100 : ph::PortType::T10;
    record->Speed = record->MaxSpeed = record->RequestedSpeed = bits;
    const auto wakeOnLan = [](int isSet) -> std::uint16_t {
        return isSet != 0 ? ph::PortCapabilities::WakeOnLan : ph::PortCapabilities::Unknown;
    };
    ph::setSlots(record->Capabilities, {wakeOnLan(configuration->capability)});
    ph::setSlots(record->EnabledCapabilities, {wakeOnLan(configuration->enabledCapability)});
    record->LinkTechnology = ph::LinkTechnology::Ethernet;
    record->FullDuplex = configuration->duplex == 1;
    record->AutoSense = configuration->autoNegotiation == 1;
    record->ActiveMaximumTransmissionUnit = configuration->mtu;
    record->EnabledState = enabled != 0 ? ph::EnabledState::Enabled : ph::EnabledState::Disabled;
    record->RequestedState = static_cast<uint16_t>(ph::readRequestedState(interfaceName));
    return 0;
}

PH_EXPORT_CLASS_FAMILY(EthernetPort, EthernetPortRecord, ph::ethernet_port::definition)
