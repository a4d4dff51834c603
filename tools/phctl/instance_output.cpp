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

std::string eventText(const NamedValues& properties, std::string_view name,
                      const SensorLabels& (*sensors)()) {
    const bool isEvent = broker::sameName(name, "RecordData");
    return logEntryText(properties, name, isEvent ? sensors() : noSensors());
}

// Puts the values of an instance into words.
class Meanings {
public:
    Meanings(const Instance& instance, const SensorLabels& (*sensors)())
        : instance_(instance), sensors_(sensors), computed_(computedReading(instance)) {}

    // Empty for a property that needs none.
    std::string of(std::string_view name) const {
        if (computed_)
            if (std::string text = computedText(*computed_, name); !text.empty())
                return text;
        const std::string reading = readingText(instance_.properties, name);
        return reading.empty() ? eventText(instance_.properties, name, sensors_) : reading;
    }

private:
    const Instance& instance_;
    const SensorLabels& (*const sensors_)();
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

struct Column {
    std::string title;
    std::string property;
    bool isMeaning;
};

// Returns no columns where a table would have too many.
std::vector<Column> columnsOf(const std::vector<Instance>& instances, const std::vector<std::string>& names,
                              const Presentation& how) {
    std::vector<Column> columns;
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

std::string instanceText(const Instance& instance, const Presentation& how) {
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
    return text;
}

} // namespace

std::string valueText(const Value& value) {
    const std::string text = broker::toText(value);
    return printable(value.as<std::string>() != nullptr ? '"' + text + '"' : text);
}

const SensorLabels& noSensors() {
    static const SensorLabels none;
    return none;
}

void printInstance(std::ostream& out, const Instance& instance, const Presentation& how) {
    out << instanceText(instance, how);
}

InstanceText::InstanceText(Presentation how) : how_(std::move(how)) {
    if (how_.wanted)
        names_ = *how_.wanted;
}

bool InstanceText::mayBeTable() const {
    return names_.size() <= mostColumns;
}

void InstanceText::list(const Instance& instance) {
    if (!text_.empty())
        text_ += '\n';
    text_ += instanceText(instance, how_);
}

void InstanceText::listKept() {
    for (const Instance& instance : kept_)
        list(instance);
    kept_.clear();
}

void InstanceText::add(const Instance& instance) {
    if (!how_.wanted)
        for (auto property = instance.properties.begin();
             property != instance.properties.end() && mayBeTable(); ++property)
            if (std::ranges::none_of(
                    names_, [&](const std::string& name) { return broker::sameName(name, property->name); }))
                names_.push_back(property->name);
    if (mayBeTable())
        return kept_.push_back(instance);
    listKept();
    list(instance);
}

void InstanceText::print(std::ostream& out) {
    if (const auto columns = columnsOf(kept_, names_, how_); !kept_.empty() && !columns.empty())
        if (const Table table = tableOf(kept_, columns, how_); table.fits(how_.layout.width))
            return table.print(out, how_.layout);
    listKept();
    out << text_;
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

} // namespace phctl
