// What is served, out of the library's class tables and the rows of the associations.
#include "associations/association.h"
#include "associations/profiles.h"
#include "class_list.h"
#include "merged_classes.h"

namespace schema {
namespace {

using associations::Placement;

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

std::vector<std::string> nameSpacesOf(Placement placement) {
    switch (placement) {
    case Placement::Implementation:
        return {associations::implementationNameSpace};
    case Placement::Interop:
        return {associations::interopNameSpace};
    case Placement::Both:
        return {associations::implementationNameSpace, associations::interopNameSpace};
    }
    throw std::logic_error("no placement");
}

DeclaredMethod describe(const ph::Method& method) {
    DeclaredMethod description{.name = method.name, .type = method.valueType};
    for (const ph::Parameter& parameter : method.parameters)
        description.parameters.push_back({.name = parameter.name,
                                          .type = parameter.type,
                                          .className = textOf(parameter.className),
                                          .isIn = parameter.direction != ph::Direction::Out,
                                          .isOut = parameter.direction != ph::Direction::In});
    return description;
}

DeclaredClass describe(const ph::ClassFamily& family) {
    DeclaredClass description{.name = family.name, .superclass = textOf(family.superclass)};
    for (const ph::Property& property : family.properties)
        description.properties.push_back({.name = property.name,
                                          .type = ph::typeOf(property.kind),
                                          .className = textOf(property.className),
                                          .isKey = property.isKey});
    for (const ph::Method& method : family.methods)
        description.methods.push_back(describe(method));
    description.enumerates = family.enumerate != nullptr;
    description.modifies = family.modify != nullptr;
    description.creates = family.create != nullptr;
    description.deletes = family.remove != nullptr;
    description.source = family.source;
    description.nameSpaces = nameSpacesOf(family.isInInterop ? Placement::Both : Placement::Implementation);
    return description;
}

// Nobody changes an association or a profile.
DeclaredClass describe(const associations::AssociationClass& association) {
    DeclaredClass description{.name = association.name,
                              .superclass = textOf(association.superclass),
                              .isAssociation = true,
                              .enumerates = true,
                              .source = "the elements that it associates",
                              .nameSpaces = nameSpacesOf(association.placement)};
    for (const associations::End& end : association.ends)
        description.properties.push_back(
            {.name = end.role, .type = CMPI_ref, .className = end.className, .isKey = true});
    for (const associations::Declaration& property : association.properties)
        description.properties.push_back({.name = property.name, .type = property.type});
    return description;
}

DeclaredClass describeProfiles() {
    DeclaredClass description{.name = associations::profileClass,
                              .superclass = associations::profileSuperclass,
                              .enumerates = true,
                              .source = "docs/profiles.md",
                              .nameSpaces = nameSpacesOf(Placement::Interop)};
    for (const auto& property : associations::profileProperties())
        description.properties.push_back(
            {.name = property.name, .type = property.type, .isKey = description.properties.empty()});
    return description;
}

} // namespace

std::vector<DeclaredClass> describeServed() {
    std::vector<DeclaredClass> all;
    for (const ph::ClassFamily* family : ph::allClasses())
        all.push_back(describe(*family));
    for (const associations::AssociationClass* association : associations::allAssociations())
        all.push_back(describe(*association));
    all.push_back(describeProfiles());
    // The indication provider delivers it, in whichever namespace takes it; nobody asks for its instances.
    all.push_back({.name = "CIM_AlertIndication",
                   .superclass = "CIM_ProcessIndication",
                   .isIndication = true,
                   .source = "SEL records and the event pipe",
                   .nameSpaces = nameSpacesOf(Placement::Both)});
    return all;
}

} // namespace schema
