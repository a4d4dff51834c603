// CIM_HostComputerSystem: the managed host.
#include "computer-system/computer_system.h"
#include "computer-system/power_state.h"

#include <cstdio>

constexpr const char* const g_HostComputerSystemKeyList[2] = {"Name", "CreationClassName"};

namespace ph::host_computer_system {
namespace {

using computer::Record;

constexpr const char* className = hostClass;
constexpr int systemBoard = 7; // IPMI entity ID

int enumerate(RecordArray<Record>& hosts, Detail detail) {
    computer::Source source;
    if (!source.open(PH_GetHostSystemName, SMASH_DEVICE_HOST))
        return -1;
    const auto fru = record(db_get_fru_by_entity_id, source.database(), systemBoard);
    if (fru == nullptr)
        return -1;
    Record* host = source.append(hosts, className);
    if (host == nullptr)
        return -1;
    return detail == Detail::Names ? 0 : PH_Fill_HostComputerSystem(source.device(), host, fru.get());
}

constexpr int notCarriedOut = 7;

bool changeHost(CMPIString** keyValues, std::uint16_t state) {
    const int result = SetHostPowerState(keyValues, state);
    if (result == -1)
        RequestStateChangeforHost(keyValues, 0);
    return result == 0;
}

void recordState(CMPIString** keyValues, std::uint16_t state) {
    RequestStateChangeforHost(keyValues, state);
}

bool exists(CMPIString* const* keyValues) {
    return computer::isNamed(keyValues, className, PH_GetHostSystemName);
}

constexpr Method methods[] = {computer::stateChangeMethod(computer::changeHostState)};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ComputerSystem",
    .source = "tables device (Get System GUID) and fru (FRU of the system board); Chassis Control",
    .keys = g_HostComputerSystemKeyList,
    .properties = computer::properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = computer::invocation(exists)};

} // namespace
} // namespace ph::host_computer_system

PH_EXPORT_CLASS_FAMILY(HostComputerSystem, HostComputerSystemRecord, ph::host_computer_system::definition)

ph::MethodAnswer ph::computer::changeHostState(MethodCall& call) {
    return changeState(call, {"Host_RequestStateChange", ph::host_computer_system::changeHost,
                              ph::host_computer_system::recordState});
}

int PH_Fill_HostComputerSystem(const DeviceRecord* device, HostComputerSystemRecord* record,
                               const FruRecord* fru) {
    char info[256];
    std::snprintf(info, sizeof(info), "CIM:%s, CIM:%s:%s, CIM:%d:%d", device->guid, fru->model,
                  fru->serialNumber, device->tag[0], device->tag[1]);
    return ph::computer::fill(record, {.identifyingDescriptions = "CIM:GUID, CIM:Model:SerialNumber, CIM:Tag",
                                       .otherIdentifyingInfo = info,
                                       .requestedState = device->requestedState,
                                       .dedicated = ph::Dedicated::NotDedicated,
                                       .operationalStatus = ph::OperationalStatus::OK});
}

int SetHostPowerState(CMPIString** /*keyValues*/, uint16_t requestedState) {
    switch (requestedState) {
    case ph::RequestedState::Enabled:
        return ph::switchPower(CIM_PowerUp);
    case ph::RequestedState::Disabled:
        return ph::switchPower(CIM_SoftOff);
    case ph::RequestedState::Reset:
        return ph::switchPower(CIM_PowerCycle);
    default:
        return ph::host_computer_system::notCarriedOut;
    }
}

int RequestStateChangeforHost(CMPIString** /*keyValues*/, uint16_t requestedState) {
    return ph::computer::storeRequestedState(SMASH_DEVICE_HOST, requestedState);
}

int PH_HostRequestStateChange(const CMPIBroker* broker, const CMPIResult* result, const CMPIObjectPath* ref,
                              const CMPIArgs* in, CMPIArgs* out, CMPIString** keyValues, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_HostComputerSystem, ph::host_computer_system::methods[0],
        {.broker = broker, .result = result, .ref = ref, .in = in, .out = out}, keyValues, status));
}
