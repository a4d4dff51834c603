#include "associations/class_hierarchy.h"

#include "associations/association.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

namespace associations {
namespace {

struct Derivation {
    const char* className;
    const char* superclass; // nullptr: none
};

// The library's classes, as their own tables describe them.
constexpr Derivation elementClasses[] = {
#include "element_classes.inc"
};

// What these and the associations derive from, of the DMTF schema.
constexpr Derivation schemaClasses[] = {
    {"CIM_Capabilities", "CIM_ManagedElement"},
    {"CIM_Component", nullptr},
    {"CIM_ComputerSystem", "CIM_System"},
    {"CIM_Controller", "CIM_LogicalDevice"},
    {"CIM_Dependency", nullptr},
    {"CIM_DeviceConnection", "CIM_Dependency"},
    {"CIM_EnabledLogicalElement", "CIM_LogicalElement"},
    {"CIM_EnabledLogicalElementCapabilities", "CIM_Capabilities"},
    {"CIM_HostedDependency", "CIM_Dependency"},
    {"CIM_Job", "CIM_LogicalElement"},
    {"CIM_ListenerDestination", "CIM_ManagedElement"},
    {"CIM_Log", "CIM_EnabledLogicalElement"},
    {"CIM_LogicalDevice", "CIM_EnabledLogicalElement"},
    {"CIM_LogicalElement", "CIM_ManagedSystemElement"},
    {"CIM_LogicalPort", "CIM_LogicalDevice"},
    {"CIM_ManagedElement", nullptr},
    {"CIM_ManagedSystemElement", "CIM_ManagedElement"},
    {"CIM_NetworkPort", "CIM_LogicalPort"},
    {"CIM_ProtocolEndpoint", "CIM_ServiceAccessPoint"},
    {"CIM_RecordForLog", "CIM_ManagedElement"},
    {"CIM_ReferencedSpecification", "CIM_Dependency"},
    {"CIM_RegisteredProfile", "CIM_RegisteredSpecification"},
    {"CIM_RegisteredSpecification", "CIM_ManagedElement"},
    {"CIM_SAPSAPDependency", "CIM_Dependency"},
    {"CIM_SecurityService", "CIM_Service"},
    {"CIM_Service", "CIM_EnabledLogicalElement"},
    {"CIM_ServiceAccessPoint", "CIM_EnabledLogicalElement"},
    {"CIM_SettingData", "CIM_ManagedElement"},
    {"CIM_System", "CIM_EnabledLogicalElement"},
};

template <class Table>
const char* superclassIn(const Table& table, const char* className) {
    const auto* row = std::ranges::find_if(
        table, [&](const Derivation& each) { return isSameName(each.className, className); });
    return row != std::end(table) ? row->superclass : nullptr;
}

const char* superclassOf(const char* className) {
    for (const AssociationClass* each : allAssociations())
        if (isSameName(each->name, className))
            return each->superclass;
    const char* superclass = superclassIn(elementClasses, className);
    return superclass != nullptr ? superclass : superclassIn(schemaClasses, className);
}

} // namespace

bool isSameName(const char* left, const char* right) {
    return strcasecmp(left, right) == 0;
}

bool isA(const char* className, const char* ancestor) {
    for (; className != nullptr; className = superclassOf(className))
        if (isSameName(className, ancestor))
            return true;
    return false;
}

} // namespace associations
