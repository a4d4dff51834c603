// CIM_SPComputerSystem: the service processor.
#include "computer-system/computer_system.h"
#include "platform/sysroot.h"
#include "Utility/back-ends/shell.h"
#include "Utility/engine/guard.h"

#include <cstdio>
#include <unistd.h>

constexpr const char* const g_SPComputerSystemKeyList[2] = {"Name", "CreationClassName"};

namespace ph::sp_computer_system {
namespace {

using computer::Record;

constexpr const char* className = processorClass;
constexpr const char* restartMarker = "/conf/spcs_reqstatechange_reboot";

int enumerate(RecordArray<Record>& processors, Detail detail) {
    computer::Source source;
    if (!source.open(PH_GetSPSystemName, SMASH_DEVICE_SP))
        return -1;
    Record* processor = source.append(processors, className);
    if (processor == nullptr)
        return -1;
    return detail == Detail::Names ? 0 : PH_Fill_SPComputerSystem(source.device(), processor);
}

bool isRestartRequested() {
    char path[4096];
    return PH_SysrootPath(restartMarker, path, sizeof(path)) == 0 && access(path, F_OK) == 0;
}

// The controller restarts even when the marker or the device record could not be written.
bool restart() {
    computer::storeRequestedState(SMASH_DEVICE_SP, RequestedState::Reset);
    char touch[64];
    std::snprintf(touch, sizeof(touch), "touch %s", restartMarker);
    runCommand(touch);
    return runCommand("reboot") == 0;
}

bool changeProcessor(CMPIString** keyValues, std::uint16_t state) {
    return state == RequestedState::Reset && RequstStateChangeforSP(keyValues) == 0;
}

MethodAnswer changeState(MethodCall& call) {
    return computer::changeState(call, {"SP_RequestStateChange", changeProcessor, nullptr});
}

bool exists(CMPIString* const* keyValues) {
    return computer::isNamed(keyValues, className, PH_GetSPSystemName);
}

constexpr Method methods[] = {computer::stateChangeMethod(changeState)};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ComputerSystem",
    .source = "table device (Get Device ID, Get Device GUID); the file /conf/spcs_reqstatechange_reboot",
    .keys = g_SPComputerSystemKeyList,
    .properties = computer::properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = computer::invocation(exists)};

} // namespace
} // namespace ph::sp_computer_system

PH_EXPORT_CLASS_FAMILY(SPComputerSystem, HostComputerSystemRecord, ph::sp_computer_system::definition)

int PH_Fill_SPComputerSystem(const DeviceRecord* device, HostComputerSystemRecord* record) {
    char info[32];
    std::snprintf(info, sizeof(info), "%u-%u", device->manufacturerId, device->productId);
    return ph::computer::fill(record, {.identifyingDescriptions = "Manufacturer ID-Product ID",
                                       .otherIdentifyingInfo = info,
                                       .requestedState = ph::sp_computer_system::isRestartRequested()
                                                             ? ph::RequestedState::Reset
                                                             : ph::RequestedState::NotApplicable,
                                       .dedicated = ph::Dedicated::ManagementController,
                                       .operationalStatus = ph::OperationalStatus::InService});
}

int RequstStateChangeforSP(CMPIString** /*keyValues*/) {
    return ph::guarded(false, ph::sp_computer_system::restart) ? 0 : -1;
}

int PH_SPRequestStateChange(const CMPIBroker* broker, const CMPIResult* result, const CMPIObjectPath* ref,
                            const CMPIArgs* in, CMPIArgs* out, CMPIString** keyValues, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_SPComputerSystem, ph::sp_computer_system::methods[0],
        {.broker = broker, .result = result, .ref = ref, .in = in, .out = out}, keyValues, status));
}
