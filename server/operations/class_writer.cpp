#include "operations/class_writer.h"

#include "cimxml/value_text.h"
#include "operations/qualifiers.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::XmlWriter;

template <class Feature>
bool isWanted(const Feature& feature, const schema::Class& described, const ClassExtent& extent) {
    return !extent.isLocal || feature.declaredBy.empty() || feature.declaredBy == described.name;
}

bool isListed(std::string_view name, const ClassExtent& extent) {
    const auto& listed = extent.properties;
    return !listed || std::any_of(listed->begin(), listed->end(),
                                  [&](const std::string& each) { return broker::sameName(each, name); });
}

template <class Feature>
void writeFeatureQualifiers(XmlWriter& xml, const Feature& feature, const ClassExtent& extent) {
    if (extent.withQualifiers)
        writeQualifiers(xml, feature);
}

void writeProperty(XmlWriter& xml, const schema::Property& property, const schema::Class& described,
                   const ClassExtent& extent) {
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

void writeParameter(XmlWriter& xml, const schema::Parameter& parameter, const ClassExtent& extent) {
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
                 const ClassExtent& extent) {
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

} // namespace

void writeClass(XmlWriter& xml, const schema::Class& described, const ClassExtent& extent) {
    xml.element(
        "CLASS",
        {{"NAME", described.name}, {described.superclass.empty() ? "" : "SUPERCLASS", described.superclass}},
        [&] {
            writeFeatureQualifiers(xml, described, extent);
            for (const schema::Property& property : described.properties)
                if (isWanted(property, described, extent) && isListed(property.name, extent))
                    writeProperty(xml, property, described, extent);
            for (const schema::Method& method : described.methods)
                if (isWanted(method, described, extent))
                    writeMethod(xml, method, described, extent);
        });
}

} // namespace server
