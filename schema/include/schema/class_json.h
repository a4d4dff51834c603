// What is served of a class, as JSON.
#pragma once

#include "schema/class_schema.h"

#include <nlohmann/json_fwd.hpp>

namespace schema {

nlohmann::ordered_json toJson(const Class& described);

} // namespace schema
