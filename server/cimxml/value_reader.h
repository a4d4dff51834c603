// Elements of DSP0201 as C++ values.
#pragma once

#include "broker/value.h"

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace cimxml {

// Limits how deep elements may be in each other; those of embedded instances count from their instance.
constexpr int deepest = 64;

// Parses a text into the document. DOCTYPE is refused, so that nothing declares entities. Throws BadRequest.
void parseDocument(pugi::xml_document& document, std::string_view text);

inline bool is(pugi::xml_node element, std::string_view name) {
    return element.name() == name;
}

// All below throw CimError for what does not fit.

std::string elementText(pugi::xml_node element);
// Returns a mandatory attribute.
std::string attribute(pugi::xml_node element, const char* name);
// Returns "root/cimv2" of a LOCALNAMESPACEPATH.
std::string readNameSpace(pugi::xml_node localNameSpacePath);
// Reads INSTANCENAME, LOCALINSTANCEPATH, INSTANCEPATH, and with a class's name alone CLASSNAME,
// LOCALCLASSPATH and CLASSPATH.
broker::ObjectPath readPath(pugi::xml_node element);
bool isPath(pugi::xml_node element);
broker::Instance readInstance(pugi::xml_node instance);
// Reads the instance that a string value holds as text.
broker::Instance readEmbeddedInstance(const std::string& text);
// Reads what a PARAMVALUE or a PROPERTY… element holds. Without a type it is what the value looks like.
broker::Value readValue(pugi::xml_node holder, const char* typeAttribute);

} // namespace cimxml
