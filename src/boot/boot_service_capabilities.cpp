// CIM_BootServiceCapabilities: what the boot service can do.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_BootServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::boot_service_capabilities {
namespace {

using Record = BootServiceCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, BootConfigCapabilities),
    PH_PROPERTY(Record, BootStringsSupported),
};

int enumerate(RecordArray<Record>& all, Detail) {
    boot::Flags flags;
    if (!flags.read())
        return -1;
    if (!flags.areThere())
        return 0;
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "BootServiceCapabilities");
    copyText(capabilities->ElementName, "Boot Service Capabilities");
    setList(capabilities->BootConfigCapabilities, {BootConfigCapabilities::SetsBootRole});
    setList(capabilities->BootStringsSupported, {BootStringsSupported::StructuredBootString});
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_BootServiceCapabilities",
                                             .superclass = "CIM_EnabledLogicalElementCapabilities",
                                             .source = "one fixed instance; Get System Boot Options",
                                             .keys = g_BootServiceCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::boot_service_capabilities

PH_EXPORT_CLASS_FAMILY(BootServiceCapabilities, BootServiceCapabilitiesRecord,
                       ph::boot_service_capabilities::definition)
