// GetClass, EnumerateClasses and so on (DSP0200, 5.3.2.1, 5.3.2.11 and 5.3.2.12), and qualifiers.
#include "broker/value.h"
#include "cimxml/cim_error.h"
#include "cimxml/value_text.h"
#include "cimxml/value_writer.h"
#include "operations/operation.h"
#include "operations/qualifiers.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;
using cimxml::XmlWriter;
using Kind = ArgumentKind;

// How much of a class a client wants.
struct Extent {
    bool isLocal, withQualifiers, withOrigin;
    broker::PropertyList properties;

    template <class Feature>
    bool wants(const Feature& feature, const schema::Class& described) const {
        return !isLocal || feature.declaredBy.empty() || feature.declaredBy == described.name;
    }
    bool lists(std::string_view name) const {
        return !properties ||
               std::any_of(properties->begin(), properties->end(),
                           [&](const std::string& each) { return broker::sameName(each, name); });
    }
};

Extent extentOf(const Arguments& arguments) {
    return {.isLocal = arguments.flag("LocalOnly", true),
            .withQualifiers = arguments.flag("IncludeQualifiers", true),
            .withOrigin = arguments.flag("IncludeClassOrigin", false),
            .properties = arguments.texts("PropertyList")};
}

template <class Feature>
void writeFeatureQualifiers(XmlWriter& xml, const Feature& feature, const Extent& extent) {
    if (extent.withQualifiers)
        writeQualifiers(xml, feature);
}

void writeProperty(XmlWriter& xml, const schema::Property& property, const schema::Class& described,
                   const Extent& extent) {
    const bool isReference = cimxml::isReference(property.type);
    const std::string type = cimxml::typeAttribute(property.type);
    const bool isPropagated = !property.declaredBy.empty() && property.declaredBy != described.name;
    xml.element(isReference          ? "PROPERTY.REFERENCE"
                : property.isArray() ? "PROPERTY.ARRAY"
                                     : "PROPERTY",
                {{"NAME", property.name},
                 {isReference ? "" : "TYPE", type},
                 {isReference && !property.className.empty() ? "REFERENCECLASS" : "", property.className},
                 {extent.withOrigin && !property.origin.empty() ? "CLASSORIGIN" : "", property.origin},
                 {isPropagated ? "PROPAGATED" : "", "true"},
                 {cimxml::isEmbedded(property.type) ? "EmbeddedObject" : "", "instance"}},
                [&] { writeFeatureQualifiers(xml, property, extent); });
}

void writeParameter(XmlWriter& xml, const schema::Parameter& parameter, const Extent& extent) {
    const bool isReference = cimxml::isReference(parameter.type);
    const std::string type = cimxml::typeAttribute(parameter.type);
    const char* const elements[][2] = {{"PARAMETER", "PARAMETER.ARRAY"},
                                       {"PARAMETER.REFERENCE", "PARAMETER.REFARRAY"}};
    xml.element(elements[isReference ? 1 : 0][parameter.isArray() ? 1 : 0],
                {{"NAME", parameter.name},
                 {isReference ? "" : "TYPE", type},
                 {isReference && !parameter.className.empty() ? "REFERENCECLASS" : "", parameter.className}},
                [&] { writeFeatureQualifiers(xml, parameter, extent); });
}

void writeMethod(XmlWriter& xml, const schema::Method& method, const schema::Class& described,
                 const Extent& extent) {
    const std::string type = cimxml::typeAttribute(method.type);
    const bool isPropagated = !method.declaredBy.empty() && method.declaredBy != described.name;
    xml.element("METHOD",
                {{"NAME", method.name},
                 {"TYPE", type},
                 {extent.withOrigin && !method.origin.empty() ? "CLASSORIGIN" : "", method.origin},
                 {isPropagated ? "PROPAGATED" : "", "true"}},
                [&] {
                    writeFeatureQualifiers(xml, method, extent);
                    for (const schema::Parameter& parameter : method.parameters)
                        writeParameter(xml, parameter, extent);
                });
}

void writeClass(XmlWriter& xml, const schema::Class& described, const Extent& extent) {
    xml.element(
        "CLASS",
        {{"NAME", described.name}, {described.superclass.empty() ? "" : "SUPERCLASS", described.superclass}},
        [&] {
            writeFeatureQualifiers(xml, described, extent);
            for (const schema::Property& property : described.properties)
                if (extent.wants(property, described) && extent.lists(property.name))
                    writeProperty(xml, property, described, extent);
            for (const schema::Method& method : described.methods)
                if (extent.wants(method, described))
                    writeMethod(xml, method, described, extent);
        });
}

cimxml::Body getClass(const Operation& operation) {
    const schema::Class& found =
        requireClass(operation.arguments.className("ClassName"), operation.nameSpace);
    return returnItems(std::vector{&found},
                       [extent = extentOf(operation.arguments)](XmlWriter& xml, const schema::Class* each) {
                           writeClass(xml, *each, extent);
                       });
}

// The subclasses of the class that is named, or those without a superclass: direct ones, or with
// DeepInheritance all.
std::vector<const schema::Class*> subclasses(const Operation& operation) {
    const std::string ancestor = operation.arguments.className("ClassName");
    const bool isDeep = operation.arguments.flag("DeepInheritance", false);
    if (!ancestor.empty())
        requireClass(ancestor, operation.nameSpace);
    std::vector<const schema::Class*> classes;
    for (const schema::Class* each : classesIn(operation.nameSpace)) {
        const bool isOne = isDeep ? ancestor.empty() || (!broker::sameName(each->name, ancestor) &&
                                                         schema::isSubclass(each->name, ancestor))
                                  : broker::sameName(each->superclass, ancestor);
        if (isOne)
            classes.push_back(each);
    }
    std::sort(classes.begin(), classes.end(),
              [](const auto* left, const auto* right) { return left->name < right->name; });
    return classes;
}

cimxml::Body enumerateClasses(const Operation& operation) {
    return returnItems(subclasses(operation),
                       [extent = extentOf(operation.arguments)](XmlWriter& xml, const schema::Class* each) {
                           writeClass(xml, *each, extent);
                       });
}

cimxml::Body enumerateClassNames(const Operation& operation) {
    return returnItems(subclasses(operation), [](XmlWriter& xml, const schema::Class* each) {
        xml.element("CLASSNAME", {{"NAME", each->name}});
    });
}

cimxml::Body enumerateQualifiers(const Operation&) {
    return returnItems(qualifierRows(), writeDeclaration);
}

cimxml::Body getQualifier(const Operation& operation) {
    const std::string name = operation.arguments.text("QualifierName");
    for (const QualifierRow& row : qualifierRows())
        if (broker::sameName(row.name, name))
            return returnItems(std::vector{row}, writeDeclaration);
    throw CimError(ErrorCode::NotFound, "there is no qualifier " + name);
}

constexpr ArgumentRow getArguments[] = {{"ClassName", Kind::ClassName, true},
                                        {"LocalOnly", Kind::Flag},
                                        {"IncludeQualifiers", Kind::Flag},
                                        {"IncludeClassOrigin", Kind::Flag},
                                        {"PropertyList", Kind::Texts}};
constexpr ArgumentRow enumerateArguments[] = {{"ClassName", Kind::ClassName},
                                              {"DeepInheritance", Kind::Flag},
                                              {"LocalOnly", Kind::Flag},
                                              {"IncludeQualifiers", Kind::Flag},
                                              {"IncludeClassOrigin", Kind::Flag}};
constexpr ArgumentRow namesArguments[] = {{"ClassName", Kind::ClassName}, {"DeepInheritance", Kind::Flag}};
constexpr ArgumentRow qualifierArguments[] = {{"QualifierName", Kind::Text, true}};

constexpr OperationRow rows[] = {
    {"GetClass", Access::Read, getArguments, getClass},
    {"EnumerateClasses", Access::Read, enumerateArguments, enumerateClasses},
    {"EnumerateClassNames", Access::Read, namesArguments, enumerateClassNames},
    {"EnumerateQualifiers", Access::Read, {}, enumerateQualifiers},
    {"GetQualifier", Access::Read, qualifierArguments, getQualifier},
};

} // namespace

std::span<const OperationRow> classOperations() {
    return rows;
}

} // namespace server
