// CMPI values from and to C++ values.
#pragma once

#include "object.h"

namespace broker {

// Takes what a provider hands over with its type; throws Failure for what does not fit. Without a value, it
// is a null of the type. As everywhere in CMPI, texts come as CMPI_string with a CMPIString, or as CMPI_chars
// with the text itself in place of the value.
Value valueOf(const CMPIValue* value, CMPIType type);

// Makes a value for a provider. Texts, arrays and so on are new objects of the request.
CMPIData dataOf(State& state, const Value& value, CMPIValueState valueState = CMPI_goodValue);

// Finds the entry with this name, or at this place; throws Failure when there is none.
CMPIData dataOf(State& state, const NamedValues& values, const char* name,
                CMPIValueState valueState = CMPI_goodValue);
CMPIData dataAt(State& state, const NamedValues& values, CMPICount index, CMPIString** name,
                CMPIValueState valueState = CMPI_goodValue);

// CMPI_chars is stored as CMPI_string.
CMPIType storedType(CMPIType type);
// A type of single values that a Value can hold.
bool isStorable(CMPIType type);

// Reads a name argument, which must not be missing.
std::string_view nameOf(const char* name);

} // namespace broker
