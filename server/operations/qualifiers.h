// The qualifiers of classes (DSP0004, 5.6.3): what each is declared as, and which ones a class has.
#pragma once

#include "cimxml/xml_writer.h"
#include "schema/class_schema.h"

#include <span>
#include <string>

namespace server {

struct QualifierRow {
    const char* name;
    CMPIType type;
    const char* defaultValue; // nullptr: none
    const char* scopes;       // of CLASS, ASSOCIATION, INDICATION, PROPERTY, REFERENCE, METHOD, PARAMETER
    bool isOverridable = true;
    bool isInherited = true;
    bool isTranslatable = false;
};

std::span<const QualifierRow> qualifierRows();
void writeDeclaration(cimxml::XmlWriter& xml, const QualifierRow& row);

void writeQualifiers(cimxml::XmlWriter& xml, const schema::Class& described);
void writeQualifiers(cimxml::XmlWriter& xml, const schema::Property& property);
void writeQualifiers(cimxml::XmlWriter& xml, const schema::Method& method);
void writeQualifiers(cimxml::XmlWriter& xml, const schema::Parameter& parameter);

} // namespace server
