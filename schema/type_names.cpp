#include "schema/class_schema.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace schema {

std::string_view elementTypeName(CMPIType type) {
    constexpr std::pair<CMPIType, std::string_view> names[] = {
        {CMPI_boolean, "boolean"},  {CMPI_char16, "char16"}, {CMPI_uint8, "uint8"},
        {CMPI_uint16, "uint16"},    {CMPI_uint32, "uint32"}, {CMPI_uint64, "uint64"},
        {CMPI_sint8, "sint8"},      {CMPI_sint16, "sint16"}, {CMPI_sint32, "sint32"},
        {CMPI_sint64, "sint64"},    {CMPI_real32, "real32"}, {CMPI_real64, "real64"},
        {CMPI_string, "string"},    {CMPI_ref, "reference"}, {CMPI_instance, "instance"},
        {CMPI_dateTime, "datetime"}};
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    const auto* const row = std::ranges::find(names, element, &std::pair<CMPIType, std::string_view>::first);
    if (row == std::end(names))
        throw std::logic_error("no CIM type: " + std::to_string(type));
    return row->second;
}

} // namespace schema
