#include "class_descriptions.h"

#include "broker/value.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace phctl {
namespace {

constexpr char descriptions[] =
#include "class_descriptions.inc"
    ;

CMPIType typeOf(const nlohmann::json& declaration) {
    constexpr CMPIType types[] = {CMPI_boolean, CMPI_uint8,  CMPI_uint16, CMPI_uint32,   CMPI_uint64,
                                  CMPI_sint8,   CMPI_sint16, CMPI_sint32, CMPI_sint64,   CMPI_real32,
                                  CMPI_real64,  CMPI_string, CMPI_ref,    CMPI_instance, CMPI_dateTime};
    const auto name = declaration.at("type").get<std::string>();
    const auto* type = std::find_if(std::begin(types), std::end(types),
                                    [&](CMPIType each) { return broker::typeName(each) == name; });
    if (type == std::end(types))
        throw std::logic_error("class descriptions: no type " + name);
    return declaration.at("array").get<bool>() ? *type | CMPI_ARRAY : *type;
}

std::vector<Declaration> declarations(const nlohmann::json& list) {
    std::vector<Declaration> all;
    for (const auto& entry : list)
        all.push_back({.name = entry.at("name"),
                       .type = typeOf(entry),
                       .isKey = entry.value("key", false),
                       .isOut = entry.value("out", false),
                       .className = entry.value("class", "")});
    return all;
}

std::vector<ClassDescription> load() {
    std::vector<ClassDescription> classes;
    for (const auto& entry : nlohmann::json::parse(descriptions)) {
        std::vector<MethodDescription> methods;
        for (const auto& method : entry.at("methods"))
            methods.push_back({method.at("name"), declarations(method.at("parameters"))});
        classes.push_back({.name = entry.at("name"),
                           .superclass = entry.at("superclass"),
                           .properties = declarations(entry.at("properties")),
                           .methods = std::move(methods),
                           .enumerates = entry.at("enumerate"),
                           .modifies = entry.at("modify"),
                           .creates = entry.at("create"),
                           .deletes = entry.at("delete"),
                           .nameSpaces = entry.at("namespaces")});
    }
    return classes;
}

template <class Named>
const Named* find(const std::vector<Named>& all, std::string_view name) {
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Named& each) { return broker::sameName(each.name, name); });
    return found != all.end() ? &*found : nullptr;
}

} // namespace

bool ClassDescription::isAssociation() const {
    return std::any_of(properties.begin(), properties.end(), [](const Declaration& property) {
        return property.isKey && property.type == CMPI_ref;
    });
}

const MethodDescription* ClassDescription::method(std::string_view methodName) const {
    return find(methods, methodName);
}

const Declaration* ClassDescription::property(std::string_view propertyName) const {
    return find(properties, propertyName);
}

const std::vector<ClassDescription>& describedClasses() {
    static const std::vector<ClassDescription> classes = load();
    return classes;
}

const ClassDescription* describe(std::string_view className) {
    return find(describedClasses(), className);
}

std::string defaultNameSpace(std::string_view className) {
    const ClassDescription* description = describe(className);
    return description != nullptr ? description->nameSpaces.front() : "root/cimv2";
}

const char* descriptionText() {
    return descriptions;
}

std::vector<std::string> classNames() {
    return namesOf(describedClasses());
}

} // namespace phctl
