// Methods of the view, which are those of the classes that it is a view of.
#include "boot/boot_choice.h"
#include "firmware/installation.h"
#include "RecordLogProfile/record_log_id.h"
#include "Utility/requests/request_texts.h"
#include "views/physical_computer_system_view.h"

#include <cmpimacs.h>
#include <cstring>
#include <optional>

namespace ph::view {
namespace {

constexpr const char* bootString = "StructuredBootString";
constexpr Refusal noSource{CMPI_RC_ERR_INVALID_PARAMETER, "StructuredBootString is no boot source"};
constexpr Refusal notOne{CMPI_RC_ERR_INVALID_PARAMETER, "A boot order has one source at most"};

const boot::Configuration& configuration(bool isPersistent) {
    const auto all = boot::configurations();
    return all[0].isPersistent == isPersistent ? all[0] : all[1];
}

MethodAnswer change(MethodCall& call, const char* jobName, bool isPersistent, std::uint8_t device) {
    return call.report(jobName, [&] { return boot::changeOrder(configuration(isPersistent), device); });
}

bool isManagementFirmware(std::uint16_t classification) {
    constexpr std::uint16_t firmware = 10, managementFirmware = 14;
    return classification == firmware || classification == managementFirmware;
}

} // namespace

MethodAnswer clearLog(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, "LogInstanceID");
    const char* const given = argument ? textOf(*argument) : nullptr;
    char own[320];
    if (given == nullptr || !writeLogInstanceId(own, sizeof own) || std::strcmp(given, own) != 0)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "LogInstanceID is no log of the system");
    return eraseLog() ? methodDone : methodFailed;
}

MethodAnswer modifyBootOrder(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, bootString);
    if (!argument || argument->type != CMPI_stringA || argument->value.array == nullptr)
        return call.refuse(noSource);
    const CMPICount count = CMGetArrayCount(argument->value.array, nullptr);
    if (count > 1)
        return call.refuse(notOne);
    std::uint8_t device = CIM_BOOT_NO_OVERRIDE;
    if (count == 1) {
        const CMPIData first = CMGetArrayElementAt(argument->value.array, 0, nullptr);
        const boot::Source* const source = boot::findSourceByString(textOf(first));
        if (source == nullptr)
            return call.refuse(noSource);
        device = source->device;
    }
    return change(call, "View_ModifyPersistentBootConfigOrder", true, device);
}

MethodAnswer setBootSource(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, bootString);
    const boot::Source* const source = argument ? boot::findSourceByString(textOf(*argument)) : nullptr;
    return source != nullptr ? change(call, "View_SetOneTimeBootSource", false, source->device)
                             : call.refuse(noSource);
}

MethodAnswer installSoftware(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, "Classifications");
    if (argument && argument->type == CMPI_uint16A && argument->value.array != nullptr) {
        const CMPICount count = CMGetArrayCount(argument->value.array, nullptr);
        for (CMPICount i = 0; i < count; ++i)
            if (!isManagementFirmware(CMGetArrayElementAt(argument->value.array, i, nullptr).value.uint16))
                return methodNotSupported;
    }
    // The view's method has no values for the reasons.
    const MethodAnswer answer = firmware::installFromUri(call);
    return !answer || answer == methodNotSupported || answer == methodStarted ? answer : methodFailed;
}

} // namespace ph::view
