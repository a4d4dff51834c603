// Values as the text of a VALUE or KEYVALUE element (DSP0201, 5.2.4).
#pragma once

#include "broker/value.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimxml {

// Returns the type named "uint16", "reference" and so on; nothing for what is no type of CIM. "instance" is
// none.
std::optional<CMPIType> typeNamed(std::string_view name);
// Returns the TYPE attribute: an embedded instance is a string, and an array has the type of its elements.
std::string typeAttribute(CMPIType type);

bool isReference(CMPIType type);
bool isEmbedded(CMPIType type);
bool isNumber(CMPIType type);

// Reads a single value of a type, neither a reference nor an embedded instance; nothing where the text is
// none.
std::optional<broker::Value> parseValue(CMPIType type, const std::string& text);
// Reads a number, of whatever type holds it.
std::optional<broker::Value> parseNumber(const std::string& text);

// Returns the text of such a value that is not null.
std::string valueText(const broker::Value& value);

} // namespace cimxml
