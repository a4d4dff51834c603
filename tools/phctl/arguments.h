// Values that are given as Name=value on the command line.
#pragma once

#include "broker/value.h"
#include "schema/class_schema.h"

#include <string>
#include <vector>

namespace phctl {

// A value of the type from its text; `name` is for the error. Numbers may be hexadecimal (0x…), an array is a
// list with commas, of which a backslash takes the meaning. Throws UsageError.
broker::Value parseValue(const std::string& name, CMPIType type, const std::vector<std::string>& texts,
                         const std::string& nameSpace);

// What may be given: properties or parameters.
using Declared = std::vector<const schema::Element*>;
template <class Element>
Declared declared(std::span<const Element> elements) {
    Declared all;
    for (const Element& each : elements)
        all.push_back(&each);
    return all;
}

// Reads the values of arguments such as "RequestedState=2", typed as they are declared. An array may be
// repeated, and an embedded instance is a JSON object of its properties. A name that is not declared is taken
// as a string, because the provider has to decide about it, and reported to `unknown`. Throws UsageError.
broker::NamedValues parseArguments(const std::vector<std::string>& arguments, const Declared& declared,
                                   const std::string& nameSpace, std::vector<std::string>& unknown);

// An object path without a namespace gets `nameSpace`, or when that is empty the class's own; a described
// class its usual spelling, and keys that are references. Throws UsageError.
broker::ObjectPath parsePath(const std::string& text, const std::string& nameSpace);

} // namespace phctl
