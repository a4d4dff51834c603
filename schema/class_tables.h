// The form in which schema_compiler writes the classes. Each has its own features only; what is served is
// listed by name.
#pragma once

#include "schema/class_schema.h"

namespace schema {

struct ClassTable {
    std::string_view name, superclass;
    bool isAbstract, isAssociation, isIndication, isOurs;
    bool enumerates, modifies, creates, deletes;
    std::string_view source;
    std::span<const std::string_view> nameSpaces;
    std::span<const Property> properties;
    std::span<const Method> methods;
    std::span<const std::string_view> servedProperties, servedMethods;
};

} // namespace schema
