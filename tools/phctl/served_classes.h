// The schema as commands ask for it: classes that are served, and lists of names.
#pragma once

#include "schema/class_schema.h"

#include <string>
#include <string_view>
#include <vector>

namespace phctl {

// Returns nullptr for a class that is not served: another module may have it. Names compare without regard to
// case.
const schema::Class* servedClass(std::string_view className);

// Finds what is served of that name, or nullptr.
const schema::Property* servedProperty(const schema::Class& owner, std::string_view name);
const schema::Method* servedMethod(const schema::Class& owner, std::string_view name);

// Returns the namespace for requests on a class that name none: the first that serves it.
std::string defaultNameSpace(std::string_view className);

template <class All>
std::vector<std::string> namesOf(const All& all) {
    std::vector<std::string> names;
    names.reserve(std::size(all));
    for (const auto& each : all)
        names.emplace_back(each.name);
    return names;
}

std::vector<std::string> classNames();

// CIM_Sensor and CIM_NumericSensor, whose instances are read from the BMC.
bool isSensorClass(std::string_view className);

} // namespace phctl
