// Answers every request on associations, out of their rows.
//
// A request is answered in three steps: the rows that the filters leave, the source object, and one pass over
// each class at the other ends. A class for which no row is left is never asked.
#pragma once

#include "associations/elements.h"

namespace associations {

// The filters of DSP0200; nullptr filters nothing. References use the first as the class of the association.
struct Filter {
    const char* assocClass = nullptr;
    const char* resultClass = nullptr;
    const char* role = nullptr;
    const char* resultRole = nullptr;
};

enum class Want { Instances, Names };

// Whether requests on instances of the class are answered here: associations and CIM_RegisteredProfile.
bool serves(const char* className);

// These return their results, and throw Failure. An object that does not exist has no associations.
void associators(const Request& request, const Filter& filter, Want want);
void references(const Request& request, const Filter& filter, Want want);
// These answer requests on the class that `ref` names.
void enumerate(const Request& request, Want want);
void getInstance(const Request& request);

} // namespace associations
