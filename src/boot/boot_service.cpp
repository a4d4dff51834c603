// CIM_BootService: says which boot configuration is the next one.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"

constexpr const char* const g_BootServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                       "SystemName", "Name"};

namespace {

using Record = BootServiceRecord;
using ph::MethodAnswer;
using ph::MethodCall;
using ph::Property;
using ph::boot::Configuration;

constexpr const char* className = "CIM_BootService";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, Started),
};

int enumerate(ph::RecordArray<Record>& services, ph::Detail) {
    char systemName[256] = "";
    ph::boot::Flags flags;
    if (PH_GetSPSystemName(systemName) != 0 || !flags.read())
        return -1;
    if (!flags.areThere())
        return 0;
    Record* service = services.append();
    if (service == nullptr)
        return -1;
    ph::setHostedKeys(*service, ph::processorClass, systemName, className);
    ph::copyText(service->Name, "Boot Service");
    ph::copyText(service->ElementName, "Boot Service");
    ph::setList(service->OperationalStatus, {ph::OperationalStatus::OK});
    service->HealthState = ph::HealthState::OK;
    service->EnabledState = ph::EnabledState::Enabled;
    service->RequestedState = ph::RequestedState::NotApplicable;
    service->Started = true;
    return 0;
}

// ---- SetBootConfigRole

constexpr const char* configurationClass = "CIM_BootConfigSetting";
constexpr ph::Parameter setBootConfigRoleParameters[] = {
    {"BootConfigSetting", CMPI_ref, ph::Direction::In, configurationClass},
    {"Role", CMPI_uint16},
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
};

bool mayHave(const Configuration& configuration, std::uint16_t role) {
    using namespace ph::BootRole;
    return configuration.isPersistent ? role == IsNext || role == IsDefault : role == IsNextSingleUse;
}

// The lasting configuration is the next one when no flags of the other hold. It lost its own source to them:
// there is one set of flags.
bool makeNext(const Configuration& configuration) {
    ph::boot::Flags flags;
    if (!flags.read() || !flags.areThere())
        return false;
    if (flags.isNext(configuration))
        return true;
    return configuration.isPersistent ? flags.clear() : flags.set(configuration, CIM_BOOT_NO_OVERRIDE);
}

MethodAnswer setBootConfigRole(MethodCall& call) {
    const CMPIArgs* const in = call.request.in;
    const CMPIObjectPath* setting = ph::referenceArgument(in, "BootConfigSetting", configurationClass);
    const Configuration* configuration =
        setting != nullptr ? ph::boot::findConfiguration(ph::keyText(setting, "InstanceID")) : nullptr;
    if (configuration == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "BootConfigSetting is no boot configuration");
    const auto argument = ph::argument(in, "Role");
    std::uint16_t role = 0;
    if (!argument || GetUINT16Value(*argument, &role) != 0)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Role is no number");
    if (!mayHave(*configuration, role))
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "The boot configuration cannot have this role");
    return call.report("SetBootConfigRole",
                       [&] { return role == ph::BootRole::IsDefault || makeNext(*configuration); });
}

constexpr ph::Method methods[] = {{.name = "SetBootConfigRole",
                                   .parameters = setBootConfigRoleParameters,
                                   .carryOut = setBootConfigRole,
                                   .job = ph::JobReport{}}};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; Get and Set System Boot Options 0 to 5",
    .keys = g_BootServiceKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = ph::noSuchInstance}};

} // namespace

PH_EXPORT_CLASS_FAMILY(BootService, Record, definition)
