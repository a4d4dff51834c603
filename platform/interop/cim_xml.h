// CIM-XML elements (DSP0201) of CMPI objects, which are asked through their function tables only.
//
// Each function appends to `parent` and throws std::runtime_error for an object that fails to answer or a
// value that CIM-XML cannot express, such as an array of references.
#pragma once

#include <cmpift.h>
#include <pugixml.hpp>
#include <string>

namespace interop {

// An element or an attribute, whose text may be anything (see xmlText).
pugi::xml_node addElement(pugi::xml_node parent, const char* name);
void addAttribute(pugi::xml_node element, const char* name, const std::string& value);

void addInstance(pugi::xml_node parent, const CMPIInstance* instance);

// Returns the document as text, without layout.
std::string toText(const pugi::xml_document& document, bool withDeclaration);

} // namespace interop
