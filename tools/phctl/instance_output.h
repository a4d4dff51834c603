// Instances and values, as text and as JSON.
#pragma once

#include "broker/broker.h"
#include "event_text.h"

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <vector>

namespace phctl {

// Writes a value as text on one line. Strings are quoted, so that NULL and empty texts can be told apart.
std::string valueText(const broker::Value& value);

// Prints "Name = value" for each property, under the instance's path. `sensors` are those that events name.
void printInstance(std::ostream& out, const broker::Instance& instance, const broker::PropertyList& wanted,
                   const SensorLabels& sensors = {});

// Prints a table where the properties are few enough for columns, or else one instance after the other.
// `wanted` names the properties to print, in its order; without it all are.
void printInstances(std::ostream& out, const std::vector<broker::Instance>& instances,
                    const broker::PropertyList& wanted, std::size_t width, const SensorLabels& sensors = {});

// Numbers, booleans, null and arrays as those of JSON; datetimes as DMTF's texts; references as path texts;
// instances as {"path": …, "properties": {…}}.
nlohmann::ordered_json toJson(const broker::Value& value);
nlohmann::ordered_json toJson(const broker::NamedValues& values);
nlohmann::ordered_json toJson(const broker::Instance& instance);
void printJson(std::ostream& out, const nlohmann::ordered_json& json);

} // namespace phctl
