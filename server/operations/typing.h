// Requests as clients write them, in the names and types that the classes declare.
#pragma once

#include "broker/value.h"
#include "schema/class_schema.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace server {

// All below throw CimError for what does not fit. A class that the schema does not know is left as it is:
// another provider module may serve it.

// Returns the value in a declared type; what came without a type is a text.
broker::Value toType(broker::Value value, const schema::Element& declared, const std::string& nameSpace);
// Types a path's class and keys, and adds a namespace where it has none.
void complete(broker::ObjectPath& path, const std::string& nameSpace);
// Properties that the class has not are refused.
void complete(broker::Instance& instance, const std::string& nameSpace);
// Types the arguments of a method.
void complete(broker::NamedValues& arguments, const schema::Method& method, const std::string& nameSpace);

} // namespace server
