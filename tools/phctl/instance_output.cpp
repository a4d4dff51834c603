#include "instance_output.h"

#include "computed_readings.h"
#include "reading_text.h"
#include "value_words.h"

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
} meaningColumns[] = {{"CurrentReading", "Reading"},
                      {"CurrentState", "State"},
                      {"CreationTimeStamp", "Time"},
                      {"RecordData", "Event"}};

// Puts the values of an instance into words.
class Meanings {
public:
    Meanings(const Instance& instance, const SensorLabels& sensors)
        : instance_(instance), sensors_(sensors), computed_(computedReading(instance)) {}

    // Empty for a property that needs none.
    std::string of(std::string_view name) const {
        if (computed_)
            if (std::string text = computedText(*computed_, name); !text.empty())
                return text;
        const std::string reading = readingText(instance_.properties, name);
        return reading.empty() ? logEntryText(instance_.properties, name, sensors_) : reading;
    }

private:
    const Instance& instance_;
    const SensorLabels& sensors_;
    const std::optional<SensorLine> computed_;
};

// A value as text, with its words where they are wanted.
std::string textOf(const Instance& instance, std::string_view name, const Value& value, bool hasWords,
                   std::string (*toText)(const Value&)) {
    const std::string words = hasWords ? valueWords(instance.path.className, name, value) : std::string();
    return toText(value) + (words.empty() ? "" : " (" + words + ')');
}

std::string cellText(const Instance& instance, const std::string& name, bool hasWords) {
    const Value* value = broker::find(instance.properties, name);
    return value != nullptr ? textOf(instance, name, *value, hasWords, broker::toText) : "-";
}

// Returns the names of the columns: those wanted, or all that any instance has, up to one too many for a table.
std::vector<std::string> columnNames(const std::vector<Instance>& instances, const PropertyList& wanted) {
    if (wanted)
        return *wanted;
    std::vector<std::string> names;
    for (const Instance& instance : instances)
        for (const auto& property : instance.properties)
            if (std::none_of(names.begin(), names.end(), [&](const std::string& name) {
                    return broker::sameName(name, property.name);
                })) {
                names.push_back(property.name);
                if (names.size() > mostColumns)
                    return names;
            }
    return names;
}

struct Column {
    std::string title;
    std::string property;
    bool isMeaning;
};

// Returns no columns where a table would have too many.
std::vector<Column> columnsOf(const std::vector<Instance>& instances, const Presentation& how) {
    std::vector<Column> columns;
    const auto names = columnNames(instances, how.wanted);
    if (names.size() > mostColumns)
        return columns;
    for (const std::string& name : names) {
        columns.push_back({name, name, false});
        for (const auto& [property, title] : meaningColumns)
            if (broker::sameName(name, property) &&
                std::any_of(instances.begin(), instances.end(), [&](const Instance& instance) {
                    return !Meanings(instance, how.sensors).of(name).empty();
                }))
                columns.push_back({title, name, true});
    }
    if (columns.size() > mostColumns)
        columns.clear();
    return columns;
}

Table tableOf(const std::vector<Instance>& instances, const std::vector<Column>& columns,
              const Presentation& how) {
    std::vector<std::string> head;
    head.reserve(columns.size());
    for (const Column& column : columns)
        head.push_back(column.title);
    Table table(head);
    for (const Instance& instance : instances) {
        const Meanings meanings(instance, how.sensors);
        std::vector<std::string> row;
        row.reserve(columns.size());
        for (const Column& column : columns) {
            const std::string text = column.isMeaning ? meanings.of(column.property)
                                                      : cellText(instance, column.property, how.hasWords);
            row.push_back(text.empty() && column.isMeaning ? "-" : text);
        }
        table.add(std::move(row));
    }
    return table;
}

bool isWanted(const PropertyList& wanted, const std::string& name) {
    return !wanted || std::ranges::any_of(
                          *wanted, [&](const std::string& each) { return broker::sameName(each, name); });
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

void printInstance(std::ostream& out, const Instance& instance, const Presentation& how) {
    std::string text = printable(broker::toText(instance.path)) + '\n';
    const Meanings meanings(instance, how.sensors);
    std::size_t width = 0;
    for (const auto& property : instance.properties)
        if (isWanted(how.wanted, property.name))
            width = std::max(width, displayWidth(property.name));
    for (const auto& [name, value] : instance.properties) {
        if (!isWanted(how.wanted, name))
            continue;
        text.append("  ").append(name).append(width - displayWidth(name), ' ').append(" = ");
        text += textOf(instance, name, value, how.hasWords, valueText);
        if (const std::string meaning = meanings.of(name); !meaning.empty())
            text.append("  (").append(printable(meaning)).append(")");
        text += '\n';
    }
    out << text;
}

void printInstances(std::ostream& out, const std::vector<Instance>& instances, const Presentation& how) {
    if (instances.empty())
        return;
    if (const auto columns = columnsOf(instances, how); !columns.empty())
        if (const Table table = tableOf(instances, columns, how); table.fits(how.layout.width))
            return table.print(out, how.layout);
    for (const Instance& instance : instances) {
        if (&instance != &instances.front())
            out << '\n';
        printInstance(out, instance, how);
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
    ordered_json json = {{"path", broker::toText(instance.path)},
                         {"properties", toJson(instance.properties)}};
    if (const auto computed = computedReading(instance))
        json["computed"] = computedJson(computed->sensor, computed->reading);
    return json;
}

ordered_json toJson(const Instance& instance, const Presentation& how) {
    ordered_json json = toJson(instance);
    if (!how.hasWords)
        return json;
    auto words = ordered_json::object();
    for (const auto& [name, value] : instance.properties)
        if (const std::string text = valueWords(instance.path.className, name, value); !text.empty())
            words[name] = text;
    json["words"] = std::move(words);
    return json;
}

void printJson(std::ostream& out, const ordered_json& json) {
    out << json.dump(2, ' ', false, ordered_json::error_handler_t::replace) << '\n';
}

} // namespace phctl
