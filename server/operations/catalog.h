// The namespaces, and the classes in each of them.
#pragma once

#include "schema/class_schema.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace server {

inline constexpr const char* elementNameSpace = "root/cimv2";
inline constexpr const char* interopNameSpace = PH_INTEROP_NAMESPACE;

std::vector<std::string> nameSpaces();
// Returns the namespace in its usual spelling. Throws CimError.
std::string requireNameSpace(std::string_view nameSpace);

// Returns the classes of a namespace: those that are served there, and what they derive from, without order.
const std::set<const schema::Class*>& classesIn(std::string_view nameSpace);
// Returns nullptr where the schema does not know it: another provider module may serve it. Throws CimError
// for a class that is known and not in the namespace.
const schema::Class* findClass(std::string_view className, std::string_view nameSpace);
// Does the same, but throws for a class that is not known, too.
const schema::Class& requireClass(std::string_view className, std::string_view nameSpace);
// Returns the class itself and those that derive from it, as far as they have instances there.
std::vector<const schema::Class*> instantiated(const schema::Class& found, std::string_view nameSpace);

} // namespace server
