// Instances and values, as text and as JSON.
#pragma once

#include "broker/broker.h"
#include "event_text.h"
#include "text_layout.h"

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <vector>

namespace phctl {

// Writes a value as text on one line. Strings are quoted, so that NULL and empty texts can be told apart.
std::string valueText(const broker::Value& value);

const SensorLabels& noSensors();

// How instances are shown.
struct Presentation {
    broker::PropertyList wanted = {}; // the properties to print, in this order; without it all are
    bool hasWords = false;            // what DMTF's value maps say beside the values: "5 (OK)"
    Layout layout = {};
    const SensorLabels& (*sensors)() = noSensors; // those that events name; called when there is an event
};

// Prints "Name = value" for each property, under the instance's path.
void printInstance(std::ostream& out, const broker::Instance& instance, const Presentation& how = {});

// Instances that come one after the other. Each is put into text at once where they have too many properties for a table.
class InstanceText {
public:
    explicit InstanceText(Presentation how);

    void add(const broker::Instance& instance);
    // Prints a table where the properties are few enough for columns that fit, or else one instance after the
    // other.
    void print(std::ostream& out);

private:
    bool mayBeTable() const;
    void list(const broker::Instance& instance);
    void listKept();

    const Presentation how_;
    std::vector<std::string>
        names_; // those wanted, or all that any instance has, up to one too many for a table
    std::vector<broker::Instance> kept_; // for a table
    std::string text_;
};

// Numbers, booleans, null and arrays as those of JSON; datetimes as DMTF's texts; references as path texts;
// instances as {"path": …, "properties": {…}}, a sensor's with "computed" as computedJson makes it.
nlohmann::ordered_json toJson(const broker::Value& value);
nlohmann::ordered_json toJson(const broker::NamedValues& values);
nlohmann::ordered_json toJson(const broker::Instance& instance);
// With "words": {name: what the value map says}.
nlohmann::ordered_json toJson(const broker::Instance& instance, const Presentation& how);

} // namespace phctl
