// CIM_BootConfigSetting: what the host boots from always, and what it boots from next.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cmpimacs.h>
#include <string>

constexpr const char* const g_BootConfigSettingKeyList[1] = {"InstanceID"};

namespace ph::boot_config_setting {
namespace {

using Record = BootConfigSettingRecord;
using boot::Configuration;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ChangeableType),
};

bool append(RecordArray<Record>& records, const Configuration& configuration) {
    Record* record = records.append();
    if (record == nullptr)
        return false;
    copyText(record->InstanceID, configuration.instanceId);
    copyText(record->ElementName, configuration.elementName);
    record->ChangeableType =
        configuration.isPersistent ? ChangeableType::Persistent : ChangeableType::Transient;
    return true;
}

int enumerate(RecordArray<Record>& records, Detail) {
    return boot::appendAll(records, boot::configurations(), append);
}

// ---- ChangeBootOrder

constexpr const char* sourceClass = "CIM_BootSourceSetting";
constexpr Parameter changeBootOrderParameters[] = {
    {"Source", CMPI_refA, Direction::In, sourceClass},
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
};

// Returns element `index` of an array of references; nullptr when it is no boot source.
const boot::Source* sourceAt(const CMPIArray* array, CMPICount index) {
    CMPIStatus status = success;
    const CMPIData data = CMGetArrayElementAt(array, index, &status);
    const bool isSource = status.rc == CMPI_RC_OK && data.state == CMPI_goodValue && data.type == CMPI_ref &&
                          data.value.ref != nullptr && isOfClass(data.value.ref, sourceClass);
    return isSource ? boot::findSource(keyText(data.value.ref, "InstanceID")) : nullptr;
}

MethodAnswer changeBootOrder(MethodCall& call) {
    const Configuration* configuration = boot::findConfiguration(call.key(0));
    const auto argument = ph::argument(call.request.in, "Source");
    if (configuration == nullptr || !argument || argument->type != CMPI_refA ||
        argument->value.array == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Source is no array of references");
    CMPIStatus status = success;
    const CMPICount count = CMGetArrayCount(argument->value.array, &status);
    if (status.rc != CMPI_RC_OK || count > 1)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "A boot configuration has one source at most");
    std::uint8_t device = CIM_BOOT_NO_OVERRIDE;
    if (count == 1) {
        const boot::Source* source = sourceAt(argument->value.array, 0);
        if (source == nullptr)
            return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "There is no such boot source");
        device = source->device;
    }
    const std::string jobName = std::string(configuration->instanceId) + "_ChangeBootOrder";
    return call.report(jobName.c_str(), [&] { return boot::changeOrder(*configuration, device); });
}

constexpr Method methods[] = {{.name = "ChangeBootOrder",
                               .parameters = changeBootOrderParameters,
                               .carryOut = changeBootOrder,
                               .job = JobReport{}}};

constexpr ClassDefinition<Record> definition{.name = "CIM_BootConfigSetting",
                                             .superclass = "CIM_SettingData",
                                             .source = "the boot flags (system boot options, parameter 5)",
                                             .keys = g_BootConfigSettingKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .methods = methods,
                                             .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::boot_config_setting

PH_EXPORT_CLASS_FAMILY(BootConfigSetting, BootConfigSettingRecord, ph::boot_config_setting::definition)
