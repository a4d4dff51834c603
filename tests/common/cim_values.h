// CIM values, paths and instances as tests write and read them. Link with ph_broker.
#pragma once

#include "broker/broker.h"

#include <concepts>
#include <memory>
#include <string>
#include <utility>
#include <vector>

inline broker::Value text(std::string value) {
    return {CMPI_string, std::move(value)};
}
inline broker::Value texts(std::vector<std::string> values) {
    broker::Value::Array array;
    for (auto& value : values)
        array.push_back(text(std::move(value)));
    return {CMPI_stringA, std::move(array)};
}
inline broker::Value number(std::integral auto value, CMPIType type = CMPI_uint16) {
    return {type, static_cast<std::uint64_t>(value)};
}
inline broker::Value null(CMPIType type) {
    return {type, {}};
}
inline broker::Value arrayOf(CMPIType type, broker::Value::Array elements) {
    return {static_cast<CMPIType>(type | CMPI_ARRAY), std::move(elements)};
}
inline broker::Value reference(broker::ObjectPath path) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(std::move(path))};
}
inline broker::Value embedded(broker::Instance instance) {
    return {CMPI_instance, std::make_shared<const broker::Instance>(std::move(instance))};
}

inline broker::ObjectPath path(const std::string& className, broker::NamedValues keys = {},
                               const std::string& nameSpace = "root/cimv2") {
    return {.host = {}, .nameSpace = nameSpace, .className = className, .keys = std::move(keys)};
}
// The path of what the service processor `system` has.
inline broker::ObjectPath pathOnProcessor(const std::string& className, const std::string& system,
                                          const std::string& name,
                                          const std::string& nameSpace = "root/cimv2") {
    return path(className,
                {{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                 {"CreationClassName", text(className)},
                 {"SystemName", text(system)},
                 {"Name", text(name)}},
                nameSpace);
}

// The property's value as text, "<none>" when the instance does not have it.
inline std::string textOf(const broker::Instance& instance, std::string_view property) {
    const broker::Value* value = broker::find(instance.properties, property);
    return value != nullptr ? broker::toText(*value) : "<none>";
}
inline std::vector<std::string> textsOf(const std::vector<broker::Instance>& instances,
                                        std::string_view property) {
    std::vector<std::string> all;
    for (const broker::Instance& instance : instances)
        all.push_back(textOf(instance, property));
    return all;
}
// "Name=value" of each property, in order.
inline std::vector<std::string> propertiesOf(const broker::Instance& instance) {
    std::vector<std::string> all;
    for (const auto& [name, value] : instance.properties)
        all.push_back(name + '=' + broker::toText(value));
    return all;
}
