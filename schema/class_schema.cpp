#include "schema/class_schema.h"

#include "class_tables.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <strings.h>
#include <utility>

namespace schema {
namespace tables {
namespace {
#include "class_tables.inc"
}
} // namespace tables

namespace {

std::string_view textOf(const tables::Text& text) {
    return {tables::texts + text.begin, text.size};
}

// The part of an array that a list names.
template <class Row, std::size_t size>
std::span<const Row> rowsOf(const Row (&rows)[size], tables::List list) {
    return std::span(rows).subspan(list.begin, list.size);
}

template <class Read, class Row>
std::vector<Read> read(std::span<const Row> rows, Read (*one)(const Row&)) {
    std::vector<Read> all;
    all.reserve(rows.size());
    std::ranges::transform(rows, std::back_inserter(all), one);
    return all;
}

Value readValue(const tables::Value& row) {
    return {textOf(row.value), textOf(row.meaning)};
}

Element readElement(const tables::Element& row) {
    return {.name = textOf(row.name),
            .type = row.type,
            .className = textOf(row.className),
            .values = read(rowsOf(tables::values, row.values), readValue),
            .units = textOf(row.units),
            .maxLength = row.maxLength,
            .isRequired = row.isRequired,
            .isOurs = row.isOurs};
}

Property readProperty(const tables::Element& row) {
    return {readElement(row), row.isKey, row.isWritable};
}

Parameter readParameter(const tables::Element& row) {
    return {readElement(row), row.isIn, row.isOut};
}

Method readMethod(const tables::Method& row) {
    return {.name = textOf(row.name),
            .type = row.type,
            .parameters = read(rowsOf(tables::elements, row.parameters), readParameter),
            .values = read(rowsOf(tables::values, row.values), readValue),
            .isOurs = row.isOurs};
}

bool isSameName(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

template <class Range>
auto findIn(Range&& all, std::string_view name) {
    return std::ranges::find_if(all, [&](const auto& each) { return isSameName(each.name, name); });
}

template <class Range>
auto* pointerTo(const Range& all, std::string_view name) {
    const auto found = findIn(all, name);
    return found != all.end() ? &*found : nullptr;
}

template <class T>
void keepUnlessSaid(T& said, const T& inherited) {
    if (said == T{})
        said = inherited;
}

// An overriding declaration keeps what it does not say.
void inherit(Property& property, const Property& inherited) {
    if (property.values.empty())
        property.values = inherited.values;
    keepUnlessSaid(property.units, inherited.units);
    keepUnlessSaid(property.maxLength, inherited.maxLength);
    keepUnlessSaid(property.isRequired, inherited.isRequired);
    keepUnlessSaid(property.isKey, inherited.isKey);
    keepUnlessSaid(property.isWritable, inherited.isWritable);
    property.origin = inherited.origin;
}

void inherit(Method& method, const Method& inherited) {
    if (method.values.empty())
        method.values = inherited.values;
    method.origin = inherited.origin;
}

// Adds a class's own features to the inherited ones.
template <class Feature>
void add(std::vector<Feature>& features, std::vector<Feature> own, std::string_view className) {
    for (Feature& feature : own) {
        feature.declaredBy = className;
        const auto inherited = findIn(features, feature.name);
        if (inherited == features.end()) {
            feature.origin = className;
            features.push_back(std::move(feature));
        } else {
            inherit(feature, *inherited);
            *inherited = std::move(feature);
        }
    }
}

// Brings the served features to the front, in this order.
template <class Feature>
std::size_t bringForward(std::vector<Feature>& features, tables::List served) {
    auto place = features.begin();
    for (const tables::Text name : rowsOf(tables::names, served)) {
        const auto found = findIn(features, textOf(name));
        std::rotate(place, found, std::next(found));
        ++place;
    }
    return served.size;
}

const tables::Class* tableOf(std::string_view className) {
    const auto* const found = std::ranges::find_if(
        tables::classes, [&](const tables::Class& each) { return isSameName(textOf(each.name), className); });
    return found != std::end(tables::classes) ? found : nullptr;
}

// Visits the classes from the root of the hierarchy down.
void addFeatures(Class& target, const tables::Class& table) {
    if (const tables::Class* superclass = tableOf(textOf(table.superclass)))
        addFeatures(target, *superclass);
    add(target.properties, read(rowsOf(tables::elements, table.properties), readProperty),
        textOf(table.name));
    add(target.methods, read(rowsOf(tables::methods, table.methods), readMethod), textOf(table.name));
}

Class load(const tables::Class& table) {
    Class loaded{.name = textOf(table.name),
                 .superclass = textOf(table.superclass),
                 .isAbstract = table.isAbstract,
                 .isAssociation = table.isAssociation,
                 .isIndication = table.isIndication,
                 .isOurs = table.isOurs,
                 .enumerates = table.enumerates,
                 .modifies = table.modifies,
                 .creates = table.creates,
                 .deletes = table.deletes,
                 .source = textOf(table.source),
                 .nameSpaces = read(rowsOf(tables::names, table.nameSpaces), textOf)};
    addFeatures(loaded, table);
    loaded.servedPropertyCount = bringForward(loaded.properties, table.servedProperties);
    loaded.servedMethodCount = bringForward(loaded.methods, table.servedMethods);
    return loaded;
}

// Each class is loaded when it is asked for: most programs ask for one.
class Classes {
public:
    const Class& at(std::size_t index) {
        std::call_once(isLoaded_[index], [&] { classes_[index] = load(tables::classes[index]); });
        return classes_[index];
    }
    const std::vector<Class>& all() {
        for (std::size_t i = 0; i < classes_.size(); ++i)
            at(i);
        return classes_;
    }

private:
    std::vector<Class> classes_ = std::vector<Class>(std::size(tables::classes));
    std::array<std::once_flag, std::size(tables::classes)> isLoaded_;
};

Classes& classes() {
    static Classes instance;
    return instance;
}

} // namespace

const Parameter* Method::parameter(std::string_view parameterName) const {
    return pointerTo(parameters, parameterName);
}

const Property* Class::property(std::string_view propertyName) const {
    return pointerTo(properties, propertyName);
}

const Method* Class::method(std::string_view methodName) const {
    return pointerTo(methods, methodName);
}

const std::vector<Class>& allClasses() {
    return classes().all();
}

std::span<const Class> servedClasses() {
    const auto& all = allClasses();
    const auto end = std::ranges::find_if_not(all, &Class::isServed);
    return {all.begin(), end};
}

const Class* find(std::string_view className) {
    const tables::Class* const table = tableOf(className);
    return table != nullptr ? &classes().at(static_cast<std::size_t>(table - std::data(tables::classes)))
                            : nullptr;
}

bool isSubclass(std::string_view className, std::string_view ancestor) {
    for (const tables::Class* table = tableOf(className); table != nullptr;
         table = tableOf(textOf(table->superclass)))
        if (isSameName(textOf(table->name), ancestor))
            return true;
    return false;
}

} // namespace schema
