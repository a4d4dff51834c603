// CIM_BootServiceCapabilities: what the boot service can do.
#include "boot/boot_choice.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_BootServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = BootServiceCapabilitiesRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, BootConfigCapabilities),
    PH_PROPERTY(Record, BootStringsSupported),
};

int enumerate(ph::RecordArray<Record>& all, ph::Detail) {
    ph::boot::Flags flags;
    if (!flags.read())
        return -1;
    if (!flags.areThere())
        return 0;
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    ph::copyText(capabilities->InstanceID, "BootServiceCapabilities");
    ph::copyText(capabilities->ElementName, "Boot Service Capabilities");
    ph::setList(capabilities->BootConfigCapabilities, {ph::BootConfigCapabilities::SetsBootRole});
    ph::setList(capabilities->BootStringsSupported, {ph::BootStringsSupported::StructuredBootString});
    return 0;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_BootServiceCapabilities",
                                                 .superclass = "CIM_EnabledLogicalElementCapabilities",
                                                 .source = "one fixed instance; Get System Boot Options",
                                                 .keys = g_BootServiceCapabilitiesKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(BootServiceCapabilities, Record, definition)
