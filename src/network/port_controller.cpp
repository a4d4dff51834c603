// CIM_PortController: what the BMC's network ports hang on.
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_PortControllerKeyList[4] = {"DeviceID", "SystemCreationClassName",
                                                          "CreationClassName", "SystemName"};

namespace ph::port_controller {
namespace {

using Record = PortControllerRecord;

constexpr const char* className = "CIM_PortController";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, DeviceID),
    PH_PROPERTY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ControllerType),
    PH_PROPERTY(Record, ProtocolSupported),
    PH_PROPERTY(Record, MaxNumberControlled),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
};

int enumerate(RecordArray<Record>& controllers, Detail) {
    Record* controller = appendOnProcessor(controllers, className);
    return controller != nullptr ? PH_Fill_PortController(controller) : -1;
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_Controller",
                                             .source = "one fixed instance",
                                             .keys = g_PortControllerKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::port_controller

int PH_Fill_PortController(PortControllerRecord* record) {
    ph::copyText(record->SystemCreationClassName, ph::processorClass);
    ph::copyText(record->CreationClassName, ph::port_controller::className);
    ph::copyText(record->DeviceID, "PortController-1.0.0");
    ph::copyText(record->Name, "PortController1");
    ph::copyText(record->ElementName, "Controller for the Network Port");
    record->ControllerType = ph::ControllerType::Ethernet;
    record->ProtocolSupported = ph::ProtocolSupported::Unknown;
    record->MaxNumberControlled = 0;
    record->EnabledState = ph::EnabledState::NotApplicable;
    record->RequestedState = ph::RequestedState::NotApplicable;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PortController, PortControllerRecord, ph::port_controller::definition)
