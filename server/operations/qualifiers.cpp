#include "operations/qualifiers.h"

#include "broker/value.h"
#include "cimxml/value_text.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace server {
namespace {

using cimxml::XmlWriter;
using Texts = std::vector<std::string>;

constexpr const char* anyClass = "CLASS ASSOCIATION INDICATION";
constexpr const char* typedElements = "PROPERTY METHOD PARAMETER";
constexpr const char* features = "PROPERTY REFERENCE METHOD PARAMETER";

constexpr QualifierRow qualifierTable[] = {
    {.name = "Abstract",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = anyClass,
     .isInherited = false},
    {.name = "Association",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = "ASSOCIATION",
     .isOverridable = false},
    {.name = "EmbeddedInstance", .type = CMPI_string, .defaultValue = nullptr, .scopes = typedElements},
    {.name = "In",
     .type = CMPI_boolean,
     .defaultValue = "TRUE",
     .scopes = "PARAMETER",
     .isOverridable = false},
    {.name = "Indication",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = "CLASS INDICATION",
     .isOverridable = false},
    {.name = "Key",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = "PROPERTY REFERENCE",
     .isOverridable = false},
    {.name = "MaxLen", .type = CMPI_uint32, .defaultValue = nullptr, .scopes = typedElements},
    {.name = "Out",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = "PARAMETER",
     .isOverridable = false},
    {.name = "PUnit", .type = CMPI_string, .defaultValue = nullptr, .scopes = typedElements},
    {.name = "Required",
     .type = CMPI_boolean,
     .defaultValue = "FALSE",
     .scopes = features,
     .isOverridable = false},
    {.name = "ValueMap", .type = CMPI_stringA, .defaultValue = nullptr, .scopes = typedElements},
    {.name = "Values",
     .type = CMPI_stringA,
     .defaultValue = nullptr,
     .scopes = typedElements,
     .isTranslatable = true},
    {.name = "Write", .type = CMPI_boolean, .defaultValue = "FALSE", .scopes = "PROPERTY REFERENCE"},
};

const char* yesNo(bool flag) {
    return flag ? "true" : "false";
}

const QualifierRow& rowOf(std::string_view name) {
    const auto* row = std::find_if(std::begin(qualifierTable), std::end(qualifierTable),
                                   [&](const QualifierRow& each) { return each.name == name; });
    if (row == std::end(qualifierTable))
        throw std::logic_error("no qualifier " + std::string(name));
    return *row;
}

void write(XmlWriter& xml, std::string_view name, const Texts& values) {
    const QualifierRow& row = rowOf(name);
    const std::string type = cimxml::typeAttribute(row.type);
    xml.element("QUALIFIER",
                {{"NAME", name},
                 {"TYPE", type},
                 {"OVERRIDABLE", yesNo(row.isOverridable)},
                 {"TOSUBCLASS", yesNo(row.isInherited)},
                 {row.isTranslatable ? "TRANSLATABLE" : "", "true"}},
                [&] {
                    const auto writeAll = [&] {
                        for (const std::string& value : values)
                            xml.textElement("VALUE", value);
                    };
                    if ((row.type & CMPI_ARRAY) != 0)
                        xml.element("VALUE.ARRAY", {}, writeAll);
                    else
                        writeAll();
                });
}

void writeFlag(XmlWriter& xml, const char* name, bool flag) {
    if (flag)
        write(xml, name, {"TRUE"});
}

void writeText(XmlWriter& xml, const char* name, std::string_view text) {
    if (!text.empty())
        write(xml, name, {std::string(text)});
}

void writeValues(XmlWriter& xml, std::span<const schema::Value> values) {
    Texts map, meanings;
    for (const schema::Value& value : values) {
        if (value.value == "...") // the list is not whole
            continue;
        map.emplace_back(value.value);
        meanings.emplace_back(value.meaning);
    }
    if (map.empty())
        return;
    write(xml, "ValueMap", map);
    write(xml, "Values", meanings);
}

void writeElement(XmlWriter& xml, const schema::Element& element) {
    writeFlag(xml, "Required", element.isRequired);
    if (element.maxLength != 0)
        write(xml, "MaxLen", {std::to_string(element.maxLength)});
    writeText(xml, "PUnit", element.units);
    if (cimxml::isEmbedded(element.type))
        writeText(xml, "EmbeddedInstance", element.className);
    writeValues(xml, element.values);
}

} // namespace

std::span<const QualifierRow> qualifierRows() {
    return qualifierTable;
}

void writeDeclaration(XmlWriter& xml, const QualifierRow& row) {
    const std::string type = cimxml::typeAttribute(row.type);
    const auto isFor = [&](std::string_view scope) {
        return yesNo(std::string_view(row.scopes).find(scope) != std::string_view::npos);
    };
    xml.element("QUALIFIER.DECLARATION",
                {{"NAME", row.name},
                 {"TYPE", type},
                 {"ISARRAY", yesNo((row.type & CMPI_ARRAY) != 0)},
                 {"OVERRIDABLE", yesNo(row.isOverridable)},
                 {"TOSUBCLASS", yesNo(row.isInherited)},
                 {"TRANSLATABLE", yesNo(row.isTranslatable)}},
                [&] {
                    xml.element("SCOPE", {{"CLASS", isFor("CLASS")},
                                          {"ASSOCIATION", isFor("ASSOCIATION")},
                                          {"REFERENCE", isFor("REFERENCE")},
                                          {"PROPERTY", isFor("PROPERTY")},
                                          {"METHOD", isFor("METHOD")},
                                          {"PARAMETER", isFor("PARAMETER")},
                                          {"INDICATION", isFor("INDICATION")}});
                    if (row.defaultValue != nullptr)
                        xml.textElement("VALUE", row.defaultValue);
                });
}

void writeQualifiers(XmlWriter& xml, const schema::Class& described) {
    writeFlag(xml, "Association", described.isAssociation);
    writeFlag(xml, "Indication", described.isIndication);
    writeFlag(xml, "Abstract", described.isAbstract);
}

void writeQualifiers(XmlWriter& xml, const schema::Property& property) {
    writeFlag(xml, "Key", property.isKey);
    writeFlag(xml, "Write", property.isWritable);
    writeElement(xml, property);
}

void writeQualifiers(XmlWriter& xml, const schema::Method& method) {
    writeValues(xml, method.values);
}

void writeQualifiers(XmlWriter& xml, const schema::Parameter& parameter) {
    // In is true unless it is declared otherwise.
    if (!parameter.isIn)
        write(xml, "In", {"FALSE"});
    writeFlag(xml, "Out", parameter.isOut);
    writeElement(xml, parameter);
}

} // namespace server
