#include "operations/catalog.h"

#include "broker/value.h"
#include "cimxml/cim_error.h"

#include <algorithm>
#include <map>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

struct NameSpace {
    const char* name;
    const char* alias;
};
constexpr NameSpace servedNameSpaces[] = {{elementNameSpace, elementNameSpace},
                                          {interopNameSpace, "interop"}};

bool isServedIn(const schema::Class& found, std::string_view nameSpace) {
    return std::find(found.nameSpaces.begin(), found.nameSpaces.end(), nameSpace) != found.nameSpaces.end();
}

// The server's own classes, which the schema has for others to derive from, and those that the providers have
// in root/cimv2 and clients look for where subscriptions are.
struct OwnRow {
    const char* className;
    const char* nameSpace;
};
constexpr OwnRow ownClasses[] = {{"CIM_Namespace", interopNameSpace},
                                 {"CIM_ObjectManager", interopNameSpace},
                                 {"CIM_IndicationSubscription", interopNameSpace},
                                 {"CIM_IndicationSubscription", elementNameSpace},
                                 {"CIM_IndicationFilter", interopNameSpace},
                                 {"CIM_ListenerDestinationCIMXML", interopNameSpace}};

// These classes have instances there, or embedded ones.
std::vector<const schema::Class*> servedIn(std::string_view nameSpace) {
    std::vector<const schema::Class*> classes;
    for (const schema::Class& each : schema::servedClasses())
        if (isServedIn(each, nameSpace))
            classes.push_back(&each);
    for (const OwnRow& row : ownClasses)
        if (row.nameSpace == nameSpace)
            if (const schema::Class* found = schema::find(row.className))
                classes.push_back(found);
    return classes;
}

} // namespace

std::vector<std::string> nameSpaces() {
    std::vector<std::string> names;
    for (const NameSpace& each : servedNameSpaces)
        names.emplace_back(each.name);
    return names;
}

std::string requireNameSpace(std::string_view nameSpace) {
    std::string_view name = nameSpace;
    while (name.starts_with('/'))
        name.remove_prefix(1);
    while (name.ends_with('/'))
        name.remove_suffix(1);
    for (const NameSpace& each : servedNameSpaces)
        if (broker::sameName(name, each.name) || broker::sameName(name, each.alias))
            return each.name;
    throw CimError(ErrorCode::InvalidNamespace, "there is no namespace " + std::string(nameSpace));
}

const std::set<const schema::Class*>& classesIn(std::string_view nameSpace) {
    using Classes = std::set<const schema::Class*>;
    static const auto byNameSpace = [] {
        std::map<std::string, Classes, std::less<>> all;
        for (const NameSpace& each : servedNameSpaces)
            for (const schema::Class* found : servedIn(each.name))
                for (const auto* up = found; up != nullptr; up = schema::find(up->superclass))
                    all[each.name].insert(up);
        return all;
    }();
    return byNameSpace.find(nameSpace)->second;
}

const schema::Class* findClass(std::string_view className, std::string_view nameSpace) {
    const schema::Class* found = schema::find(className);
    if (found != nullptr && !classesIn(nameSpace).contains(found))
        throw CimError(ErrorCode::InvalidClass,
                       "there is no class " + std::string(className) + " in " + std::string(nameSpace));
    return found;
}

const schema::Class& requireClass(std::string_view className, std::string_view nameSpace) {
    if (const schema::Class* found = findClass(className, nameSpace))
        return *found;
    throw CimError(ErrorCode::InvalidClass, "there is no class " + std::string(className));
}

std::vector<const schema::Class*> instantiated(const schema::Class& found, std::string_view nameSpace) {
    std::vector<const schema::Class*> classes;
    for (const schema::Class* each : servedIn(nameSpace))
        if (schema::isSubclass(each->name, found.name) &&
            (each->enumerates || !each->isServed() || each->name == found.name))
            classes.push_back(each);
    return classes;
}

} // namespace server
