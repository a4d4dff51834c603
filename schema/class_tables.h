// The form in which schema_compiler writes the classes: own features only, and what is served by name.
#pragma once

#include "schema/class_schema.h"

namespace schema {

struct ClassTable {
    std::string_view name, superclass;
    bool isAbstract, isAssociation, isIndication, isOurs;
    bool enumerates, modifies, creates, deletes;
    std::span<const std::string_view> nameSpaces;
    std::span<const Property> properties;
    std::span<const Method> methods;
    std::span<const std::string_view> servedProperties, servedMethods;
};

} // namespace schema
