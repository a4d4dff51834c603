// CIM_ConcreteCollection: all capabilities of a system, all its settings and so on, whatever their classes are.
#include "provider_helper/computer_system.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_ConcreteCollectionKeyList[1] = {"InstanceID"};

namespace ph::concrete_collection {
namespace {

using Record = ConcreteCollectionRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, Description),
};

// Who is a member is in the rows of the associations, which know a collection by its InstanceID.
constexpr struct {
    const char *system, *name, *description;
} collections[] = {
    {"Host", "Capabilities", "Capabilities of the host's power, boot control and physical elements"},
    {"Host", "Sensors", "Sensors that watch the host"},
    {"Host", "Settings", "Boot configurations and boot sources of the host"},
    {"SP", "Capabilities", "Capabilities of the service processor's services and network clients"},
    {"SP", "Consoles", "Text consoles that the service processor redirects"},
    {"SP", "Logs", "Event logs that the service processor keeps"},
    {"SP", "Settings", "Settings of the service processor's services and networks"},
};

int enumerate(RecordArray<Record>& all, Detail) {
    for (const auto& each : collections) {
        Record* collection = all.append();
        if (collection == nullptr)
            return -1;
        std::snprintf(collection->InstanceID, sizeof collection->InstanceID, "ConcreteCollection:%s %s",
                      each.system, each.name);
        copyText(collection->ElementName, each.name);
        copyText(collection->Description, each.description);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_ConcreteCollection",
                                             .superclass = "CIM_Collection",
                                             .source = "a fixed instance of each kind and system",
                                             .keys = g_ConcreteCollectionKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::concrete_collection

PH_EXPORT_CLASS_FAMILY(ConcreteCollection, ConcreteCollectionRecord, ph::concrete_collection::definition)
