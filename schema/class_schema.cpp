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
namespace {

#include "class_tables.inc"

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
void add(std::vector<Feature>& features, std::span<const Feature> own, std::string_view className) {
    for (Feature feature : own) {
        feature.declaredBy = className;
        const auto inherited = findIn(features, feature.name);
        if (inherited == features.end()) {
            feature.origin = className;
            features.push_back(feature);
        } else {
            inherit(feature, *inherited);
            *inherited = feature;
        }
    }
}

// Brings the served features to the front, in this order.
template <class Feature>
std::size_t bringForward(std::vector<Feature>& features, std::span<const std::string_view> served) {
    auto place = features.begin();
    for (const std::string_view name : served) {
        const auto found = findIn(features, name);
        std::rotate(place, found, std::next(found));
        ++place;
    }
    return served.size();
}

const ClassTable* tableOf(std::string_view className) {
    return pointerTo(std::span(classTables), className);
}

// Visits the classes from the root of the hierarchy down.
void addFeatures(Class& target, const ClassTable& table) {
    if (const ClassTable* superclass = tableOf(table.superclass))
        addFeatures(target, *superclass);
    add(target.properties, table.properties, table.name);
    add(target.methods, table.methods, table.name);
}

Class load(const ClassTable& table) {
    Class loaded{.name = table.name,
                 .superclass = table.superclass,
                 .isAbstract = table.isAbstract,
                 .isAssociation = table.isAssociation,
                 .isIndication = table.isIndication,
                 .isOurs = table.isOurs,
                 .enumerates = table.enumerates,
                 .modifies = table.modifies,
                 .creates = table.creates,
                 .deletes = table.deletes,
                 .source = table.source,
                 .nameSpaces = table.nameSpaces};
    addFeatures(loaded, table);
    loaded.servedPropertyCount = bringForward(loaded.properties, table.servedProperties);
    loaded.servedMethodCount = bringForward(loaded.methods, table.servedMethods);
    return loaded;
}

// Each class is loaded when it is asked for: most programs ask for one.
class Classes {
public:
    const Class& at(std::size_t index) {
        std::call_once(isLoaded_[index], [&] { classes_[index] = load(classTables[index]); });
        return classes_[index];
    }
    const std::vector<Class>& all() {
        for (std::size_t i = 0; i < classes_.size(); ++i)
            at(i);
        return classes_;
    }

private:
    std::vector<Class> classes_ = std::vector<Class>(std::size(classTables));
    std::array<std::once_flag, std::size(classTables)> isLoaded_;
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
    const ClassTable* const table = tableOf(className);
    return table != nullptr ? &classes().at(static_cast<std::size_t>(table - std::data(classTables)))
                            : nullptr;
}

bool isSubclass(std::string_view className, std::string_view ancestor) {
    for (const ClassTable* table = tableOf(className); table != nullptr; table = tableOf(table->superclass))
        if (isSameName(table->name, ancestor))
            return true;
    return false;
}

} // namespace schema
