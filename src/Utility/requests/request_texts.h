// The texts in a request's objects: nullptr where there is none.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

namespace ph {

const char* textOf(const CMPIString* string);
const char* textOf(const CMPIData& value);
const char* propertyText(const CMPIInstance* instance, const char* name);
const char* keyText(const CMPIObjectPath* path, const char* name);

// Class names compare without regard to case.
bool isOfClass(const CMPIObjectPath* path, const char* className);

} // namespace ph
