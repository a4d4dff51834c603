#include "merged_classes.h"

#include <algorithm>
#include <stdexcept>
#include <strings.h>

namespace schema {
namespace {

bool isSame(const std::string& left, const std::string& right) {
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

template <class Named>
const Named* findIn(const std::vector<Named>& all, const std::string& name) {
    const auto found = std::ranges::find_if(all, [&](const Named& each) { return isSame(each.name, name); });
    return found != all.end() ? &*found : nullptr;
}

// Finds the declarations of a feature, from the class up.
template <class Feature>
std::vector<const Feature*> declarationsOf(const DeclaredClasses& classes, std::string className,
                                           std::vector<Feature> DeclaredClass::*features,
                                           const std::string& name) {
    std::vector<const Feature*> found;
    while (!className.empty()) {
        const DeclaredClass& owner = classes.at(className);
        if (const Feature* feature = findIn(owner.*features, name))
            found.push_back(feature);
        className = owner.superclass;
    }
    return found;
}

bool isDeclaredSo(const DeclaredElement& served, const DeclaredElement& declared) {
    return served.name == declared.name && served.type == declared.type &&
           isSame(served.className, declared.className) && served.isIn == declared.isIn &&
           served.isOut == declared.isOut;
}

template <class Feature>
void declare(std::vector<Feature>& features, Feature feature) {
    const auto own =
        std::ranges::find_if(features, [&](const Feature& each) { return isSame(each.name, feature.name); });
    if (own != features.end())
        *own = std::move(feature);
    else
        features.push_back(std::move(feature));
}

void mergeProperty(const DeclaredElement& served, const DeclaredClasses& classes, DeclaredClass& target) {
    const auto declared = declarationsOf(classes, target.name, &DeclaredClass::properties, served.name);
    const bool isKey = std::ranges::any_of(declared, &DeclaredElement::isKey);
    target.servedProperties.push_back(served.name);
    if (!declared.empty() && isDeclaredSo(served, *declared.front()) && isKey == served.isKey)
        return;
    DeclaredElement own = declared.empty() ? served : *declared.front();
    own.type = served.type;
    own.className = served.className;
    own.isKey = served.isKey;
    own.isOurs = true;
    declare(target.properties, std::move(own));
}

void mergeMethod(const DeclaredMethod& served, const DeclaredClasses& classes, DeclaredClass& target) {
    const auto declared = declarationsOf(classes, target.name, &DeclaredClass::methods, served.name);
    target.servedMethods.push_back(served.name);
    const DeclaredMethod none;
    const DeclaredMethod& dmtf = declared.empty() ? none : *declared.front();
    DeclaredMethod own = served;
    own.values = dmtf.values;
    own.isOurs = served.name != dmtf.name || served.type != dmtf.type ||
                 served.parameters.size() != dmtf.parameters.size();
    for (std::size_t i = 0; i < own.parameters.size(); ++i) {
        DeclaredElement& parameter = own.parameters[i];
        const DeclaredElement* same = findIn(dmtf.parameters, parameter.name);
        parameter.isOurs = same == nullptr || !isDeclaredSo(parameter, *same);
        if (!parameter.isOurs)
            parameter = *same;
        own.isOurs = own.isOurs || parameter.isOurs || same != &dmtf.parameters[i];
    }
    if (!declared.empty())
        own.type = dmtf.type; // no override changes the type of a value, whatever is returned
    if (own.isOurs)
        declare(target.methods, std::move(own));
}

void mergeClass(const DeclaredClass& served, DeclaredClasses& classes) {
    const auto [entry, isNew] =
        classes.emplace(served.name, DeclaredClass{.name = served.name,
                                                   .superclass = served.superclass,
                                                   .isAssociation = served.isAssociation,
                                                   .isOurs = true});
    DeclaredClass& target = entry->second;
    if (!isSame(target.superclass, served.superclass))
        throw std::runtime_error(served.name + " derives from " + served.superclass +
                                 ", in DMTF's schema from " + target.superclass);
    if (!served.superclass.empty() && !classes.contains(served.superclass))
        throw std::runtime_error(served.name + ": there is no superclass " + served.superclass);
    target.enumerates = served.enumerates;
    target.modifies = served.modifies;
    target.creates = served.creates;
    target.deletes = served.deletes;
    target.source = served.source;
    target.nameSpaces = served.nameSpaces;
    for (const DeclaredElement& property : served.properties)
        mergeProperty(property, classes, target);
    for (const DeclaredMethod& method : served.methods)
        mergeMethod(method, classes, target);
}

} // namespace

void merge(const std::vector<DeclaredClass>& served, DeclaredClasses& classes) {
    for (const auto& [name, each] : classes)
        if (!each.superclass.empty() && !classes.contains(each.superclass))
            throw std::runtime_error(name + ": there is no superclass " + each.superclass);
    // A feature of a served superclass is inherited too: that class comes first.
    std::vector<std::string> done;
    const auto mergeOnce = [&](const auto& self, const DeclaredClass& each) -> void {
        if (std::ranges::find(done, each.name) != done.end())
            return;
        done.push_back(each.name);
        if (const DeclaredClass* superclass = findIn(served, each.superclass))
            self(self, *superclass);
        mergeClass(each, classes);
    };
    for (const DeclaredClass& each : served)
        mergeOnce(mergeOnce, each);
}

} // namespace schema
