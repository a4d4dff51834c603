// The types that a strict broker insists on. Link with ph_schema.
#pragma once

#include "schema/class_schema.h"

#include <optional>

// As the schema declares them; anything goes in a class that it does not have.
inline std::optional<CMPIType> declaredType(const std::string& className, std::string_view property) {
    const schema::Class* const declared = schema::find(className);
    if (declared == nullptr)
        return CMPI_null;
    const schema::Property* const found = declared->property(property);
    return found != nullptr ? std::optional(found->type) : std::nullopt;
}
