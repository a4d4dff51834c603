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
constexpr char currentReading[] = "CurrentReading";

std::string cellText(const NamedValues& properties, const std::string& name) {
    const Value* value = broker::find(properties, name);
    return value != nullptr ? broker::toText(*value) : "-";
}

// Names of the columns: those wanted, or all that any instance has.
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

void printTable(std::ostream& out, const std::vector<Instance>& instances,
                const std::vector<std::string>& names, std::size_t width) {
    const bool hasReadings = std::any_of(instances.begin(), instances.end(), [](const Instance& instance) {
        return !readingText(instance.properties, currentReading).empty();
    });
    const auto withReading = [&](std::vector<std::string>& row, const std::string& name, std::string text) {
        if (hasReadings && broker::sameName(name, currentReading))
            row.push_back(std::move(text));
    };
    std::vector<std::string> head;
    for (const std::string& name : names) {
        head.push_back(name);
        withReading(head, name, "Reading");
    }
    Table table(head);
    for (const Instance& instance : instances) {
        std::vector<std::string> row;
        for (const std::string& name : names) {
            row.push_back(cellText(instance.properties, name));
            const std::string reading = readingText(instance.properties, currentReading);
            withReading(row, name, reading.empty() ? "-" : reading);
        }
        table.add(std::move(row));
    }
    table.print(out, width);
}

void printProperties(std::ostream& out, const NamedValues& properties, const PropertyList& wanted,
                     const std::string& indent) {
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
        out << indent << name << std::string(width - displayWidth(name), ' ') << " = " << valueText(value);
        if (const std::string reading = readingText(properties, name); !reading.empty())
            out << "  (" << reading << ')';
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

void printInstance(std::ostream& out, const Instance& instance, const PropertyList& wanted) {
    out << printable(broker::toText(instance.path)) << '\n';
    printProperties(out, instance.properties, wanted, "  ");
}

void printInstances(std::ostream& out, const std::vector<Instance>& instances, const PropertyList& wanted,
                    std::size_t width) {
    if (instances.empty())
        return;
    const auto names = columnNames(instances, wanted);
    if (names.size() <= mostColumns)
        return printTable(out, instances, names, width);
    for (const Instance& instance : instances) {
        if (&instance != &instances.front())
            out << '\n';
        printInstance(out, instance, wanted);
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
