// CIM_BootService: says which boot configuration is the next one.
#include "boot/boot_choice.h"
#include "Utility/engine/processor_service.h"
#include "Utility/requests/request_texts.h"

constexpr const char* const g_BootServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                       "SystemName", "Name"};

namespace ph::boot_service {
namespace {

using Record = BootServiceRecord;
using boot::Configuration;

constexpr const char* className = "CIM_BootService";

int enumerate(RecordArray<Record>& services, Detail detail) {
    boot::Flags flags;
    if (!flags.read())
        return -1;
    return flags.areThere() ? appendService(services, detail, className, "Boot Service") : 0;
}

// ---- SetBootConfigRole

constexpr const char* configurationClass = "CIM_BootConfigSetting";
constexpr Parameter setBootConfigRoleParameters[] = {
    {"BootConfigSetting", CMPI_ref, Direction::In, configurationClass},
    {"Role", CMPI_uint16},
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
};

bool mayHave(const Configuration& configuration, std::uint16_t role) {
    using namespace BootRole;
    return configuration.isPersistent ? role == IsNext || role == IsDefault : role == IsNextSingleUse;
}

// The lasting configuration is the next one when no flags of the other hold. It lost its own source to them:
// there is one set of flags.
bool makeNext(const Configuration& configuration) {
    boot::Flags flags;
    if (!flags.read() || !flags.areThere())
        return false;
    if (flags.isNext(configuration))
        return true;
    return configuration.isPersistent ? flags.clear() : flags.set(configuration, CIM_BOOT_NO_OVERRIDE);
}

MethodAnswer setBootConfigRole(MethodCall& call) {
    const CMPIArgs* const in = call.request.in;
    const CMPIObjectPath* setting = referenceArgument(in, "BootConfigSetting", configurationClass);
    const Configuration* configuration =
        setting != nullptr ? boot::findConfiguration(keyText(setting, "InstanceID")) : nullptr;
    if (configuration == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "BootConfigSetting is no boot configuration");
    const auto argument = ph::argument(in, "Role");
    std::uint16_t role = 0;
    if (!argument || GetUINT16Value(*argument, &role) != 0)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Role is no number");
    if (!mayHave(*configuration, role))
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "The boot configuration cannot have this role");
    return call.report("SetBootConfigRole",
                       [&] { return role == BootRole::IsDefault || makeNext(*configuration); });
}

constexpr Method methods[] = {{.name = "SetBootConfigRole",
                               .parameters = setBootConfigRoleParameters,
                               .carryOut = setBootConfigRole,
                               .job = JobReport{}}};

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_Service",
                                             .source =
                                                 "one fixed instance; Get and Set System Boot Options 0 to 5",
                                             .keys = g_BootServiceKeyList,
                                             .properties = serviceProperties<Record>,
                                             .enumerate = enumerate,
                                             .methods = methods,
                                             .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::boot_service

PH_EXPORT_CLASS_FAMILY(BootService, BootServiceRecord, ph::boot_service::definition)
