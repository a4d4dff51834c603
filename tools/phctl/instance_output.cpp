#include "instance_output.h"

#include "reading_text.h"
#include "text_layout.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

namespace phctl {
namespace {

using broker::Instance;
using broker::NamedValues;
using broker::PropertyList;
using broker::Value;
using nlohmann::ordered_json;

// More columns than this make lines that nobody reads.
constexpr std::size_t mostColumns = 8;
// Properties beside which a column tells their meaning.
constexpr struct {
    const char* property;
    const char* title;
} meaningColumns[] = {{"CurrentReading", "Reading"}, {"CreationTimeStamp", "Time"}, {"RecordData", "Event"}};

// Puts a property's value into words; empty where it needs none.
std::string meaningOf(const NamedValues& properties, std::string_view name, const SensorLabels& sensors) {
    const std::string reading = readingText(properties, name);
    return reading.empty() ? logEntryText(properties, name, sensors) : reading;
}

std::string cellText(const NamedValues& properties, const std::string& name) {
    const Value* value = broker::find(properties, name);
    return value != nullptr ? broker::toText(*value) : "-";
}

// Returns the names of the columns: those wanted, or all that any instance has.
std::vector<std::string> columnNames(const std::vector<Instance>& instances, const PropertyList& wanted) {
    if (wanted)
        return *wanted;
    std::vector<std::string> names;
    for (const Instance& instance : instances)
        for (const auto& property : instance.properties)
            if (std::none_of(names.begin(), names.end(),
                             [&](const std::string& name) { return broker::sameName(name, property.name); }))
                names.push_back(property.name);
    return names;
}

struct Column {
    std::string title;
    std::string property;
    bool isMeaning;
};

std::vector<Column> columnsOf(const std::vector<Instance>& instances, const PropertyList& wanted,
                              const SensorLabels& sensors) {
    std::vector<Column> columns;
    for (const std::string& name : columnNames(instances, wanted)) {
        columns.push_back({name, name, false});
        for (const auto& [property, title] : meaningColumns)
            if (broker::sameName(name, property) &&
                std::any_of(instances.begin(), instances.end(), [&](const Instance& instance) {
                    return !meaningOf(instance.properties, name, sensors).empty();
                }))
                columns.push_back({title, name, true});
    }
    return columns;
}

void printTable(std::ostream& out, const std::vector<Instance>& instances, const std::vector<Column>& columns,
                const SensorLabels& sensors, std::size_t width) {
    std::vector<std::string> head;
    head.reserve(columns.size());
    for (const Column& column : columns)
        head.push_back(column.title);
    Table table(head);
    for (const Instance& instance : instances) {
        std::vector<std::string> row;
        row.reserve(columns.size());
        for (const Column& column : columns) {
            const std::string text = column.isMeaning
                                         ? meaningOf(instance.properties, column.property, sensors)
                                         : cellText(instance.properties, column.property);
            row.push_back(text.empty() && column.isMeaning ? "-" : text);
        }
        table.add(std::move(row));
    }
    table.print(out, width);
}

void printProperties(std::ostream& out, const NamedValues& properties, const PropertyList& wanted,
                     const SensorLabels& sensors) {
    std::size_t width = 0;
    NamedValues shown;
    for (const auto& property : properties) {
        if (wanted && std::none_of(wanted->begin(), wanted->end(), [&](const std::string& name) {
                return broker::sameName(name, property.name);
            }))
            continue;
        width = std::max(width, displayWidth(property.name));
        shown.push_back(property);
    }
    for (const auto& [name, value] : shown) {
        out << "  " << name << std::string(width - displayWidth(name), ' ') << " = " << valueText(value);
        if (const std::string meaning = meaningOf(properties, name, sensors); !meaning.empty())
            out << "  (" << printable(meaning) << ')';
        out << '\n';
    }
}

ordered_json elements(const Value::Array& array) {
    ordered_json list = ordered_json::array();
    for (const Value& element : array)
        list.push_back(toJson(element));
    return list;
}

} // namespace

std::string valueText(const Value& value) {
    const std::string text = broker::toText(value);
    return printable(value.as<std::string>() != nullptr ? '"' + text + '"' : text);
}

void printInstance(std::ostream& out, const Instance& instance, const PropertyList& wanted,
                   const SensorLabels& sensors) {
    out << printable(broker::toText(instance.path)) << '\n';
    printProperties(out, instance.properties, wanted, sensors);
}

void printInstances(std::ostream& out, const std::vector<Instance>& instances, const PropertyList& wanted,
                    std::size_t width, const SensorLabels& sensors) {
    if (instances.empty())
        return;
    const auto columns = columnsOf(instances, wanted, sensors);
    if (columns.size() <= mostColumns)
        return printTable(out, instances, columns, sensors, width);
    for (const Instance& instance : instances) {
        if (&instance != &instances.front())
            out << '\n';
        printInstance(out, instance, wanted, sensors);
    }
}

ordered_json toJson(const Value& value) {
    struct Visitor {
        ordered_json operator()(std::monostate) const { return nullptr; }
        ordered_json operator()(bool flag) const { return flag; }
        ordered_json operator()(std::uint64_t number) const { return number; }
        ordered_json operator()(std::int64_t number) const { return number; }
        ordered_json operator()(double number) const { return number; }
        ordered_json operator()(const std::string& text) const { return text; }
        ordered_json operator()(const broker::DateTime& time) const { return time.text(); }
        ordered_json operator()(const Value::Reference& path) const { return broker::toText(*path); }
        ordered_json operator()(const Value::Embedded& instance) const { return toJson(*instance); }
        ordered_json operator()(const Value::Array& array) const { return elements(array); }
    };
    return std::visit(Visitor{}, value.content);
}

ordered_json toJson(const NamedValues& values) {
    ordered_json object = ordered_json::object();
    for (const auto& [name, value] : values)
        object[name] = toJson(value);
    return object;
}

ordered_json toJson(const Instance& instance) {
    return {{"path", broker::toText(instance.path)}, {"properties", toJson(instance.properties)}};
}

void printJson(std::ostream& out, const ordered_json& json) {
    out << json.dump(2, ' ', false, ordered_json::error_handler_t::replace) << '\n';
}

} // namespace phctl
