// What the library says of its classes: names, properties, methods.
#pragma once

#include <cmpidt.h>
#include <string>
#include <string_view>
#include <vector>

namespace phctl {

// A property or a parameter.
struct Declaration {
    std::string name;
    CMPIType type;
    bool isKey = false;
    bool isOut = false;
    std::string className = {}; // of references and embedded instances
};

struct MethodDescription {
    std::string name;
    std::vector<Declaration> parameters;
};

struct ClassDescription {
    std::string name;
    std::string superclass; // empty: none
    std::vector<Declaration> properties;
    std::vector<MethodDescription> methods;
    // Operations beside getting: which are not refused.
    bool enumerates, modifies, creates, deletes;
    std::vector<std::string> nameSpaces; // that serve it

    bool isAssociation() const;
    const MethodDescription* method(std::string_view methodName) const;
    const Declaration* property(std::string_view propertyName) const;
};

const std::vector<ClassDescription>& describedClasses();

// nullptr for a class that is not described: another module may serve it. Case does not count.
const ClassDescription* describe(std::string_view className);

// Where requests on a class go that name no namespace: to the first that serves it.
std::string defaultNameSpace(std::string_view className);

// The JSON text of all descriptions.
const char* descriptionText();

std::vector<std::string> classNames();
template <class Named>
std::vector<std::string> namesOf(const std::vector<Named>& all) {
    std::vector<std::string> names;
    names.reserve(all.size());
    for (const Named& each : all)
        names.push_back(each.name);
    return names;
}

} // namespace phctl
