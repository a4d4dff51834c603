#include "schema/class_json.h"

#include <nlohmann/json.hpp>

namespace schema {
namespace {

using nlohmann::ordered_json;

ordered_json toJson(std::span<const Value> values) {
    ordered_json map = ordered_json::object();
    for (const Value& each : values)
        map[std::string(each.value)] = each.meaning;
    return map;
}

void addDetails(ordered_json& json, const Element& element) {
    if (!element.className.empty())
        json["class"] = element.className;
    if (!element.units.empty())
        json["units"] = element.units;
    if (element.maxLength != 0)
        json["maxLength"] = element.maxLength;
    if (!element.values.empty())
        json["values"] = toJson(element.values);
}

ordered_json toJson(const Property& property) {
    ordered_json json{{"name", property.name},
                      {"type", elementTypeName(property.type)},
                      {"array", property.isArray()},
                      {"key", property.isKey},
                      {"origin", property.origin}};
    addDetails(json, property);
    return json;
}

ordered_json toJson(const Method& method) {
    ordered_json parameters = ordered_json::array();
    for (const Parameter& each : method.parameters) {
        parameters.push_back({{"name", each.name},
                              {"type", elementTypeName(each.type)},
                              {"array", each.isArray()},
                              {"in", each.isIn},
                              {"out", each.isOut}});
        addDetails(parameters.back(), each);
    }
    ordered_json json{
        {"name", method.name}, {"type", elementTypeName(method.type)}, {"parameters", std::move(parameters)}};
    if (!method.values.empty())
        json["values"] = toJson(method.values);
    return json;
}

template <class Feature>
ordered_json toJson(std::span<const Feature> features) {
    ordered_json list = ordered_json::array();
    for (const Feature& each : features)
        list.push_back(toJson(each));
    return list;
}

} // namespace

ordered_json toJson(const Class& described) {
    return {{"name", described.name},
            {"superclass", described.superclass},
            {"association", described.isAssociation},
            {"indication", described.isIndication},
            {"properties", toJson(described.servedProperties())},
            {"methods", toJson(described.servedMethods())},
            {"enumerate", described.enumerates},
            {"modify", described.modifies},
            {"create", described.creates},
            {"delete", described.deletes},
            {"source", described.source},
            {"namespaces", described.nameSpaces}};
}

} // namespace schema
