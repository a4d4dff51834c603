// The schema: the classes that are served, and what DMTF declares around them. Its texts end with a null character.
#pragma once

#include <cmpidt.h>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace schema {

// One entry of a value map: "2", "32768..65535", ".." for all others, or a text of a string property. The
// value "..." ends a list that goes on in DMTF's schema.
struct Value {
    std::string_view value;
    std::string_view meaning;
};

// What properties and parameters have in common.
struct Element {
    std::string_view name;
    CMPIType type = CMPI_null;
    std::string_view className = {}; // of a reference or an embedded instance; empty there: of any
    std::vector<Value> values = {};
    std::string_view units = {}; // PUnit (DSP0004, Annex C): "volt * 10^-3"
    std::uint32_t maxLength = 0; // of a text; 0: not limited
    bool isRequired = false;
    bool isOurs = false; // DMTF has none of this name, or declares it otherwise

    bool isArray() const { return (type & CMPI_ARRAY) != 0; }
};

struct Parameter : Element {
    bool isIn = true;
    bool isOut = false;
};

struct Property : Element {
    bool isKey = false;
    bool isWritable = false;          // in DMTF's schema
    std::string_view origin = {};     // the class that introduces it (CLASSORIGIN)
    std::string_view declaredBy = {}; // the class with the last declaration of it; another one: PROPAGATED
};

struct Method {
    std::string_view name;
    CMPIType type = CMPI_uint32;
    std::vector<Parameter> parameters = {}; // in the order of the signature
    std::vector<Value> values = {};
    bool isOurs = false;
    std::string_view origin = {};
    std::string_view declaredBy = {};

    const Parameter* parameter(std::string_view parameterName) const;
};

struct Class {
    std::string_view name;
    std::string_view superclass; // empty: none
    bool isAbstract = false;
    bool isAssociation = false;
    bool isIndication = false;
    bool isOurs = false; // DMTF has no such class
    // Tells which operations beside getting are not refused.
    bool enumerates = false, modifies = false, creates = false, deletes = false;
    std::string_view source = {};                  // IPMI commands, tables and files that tell of it
    std::vector<std::string_view> nameSpaces = {}; // that serve it; none: others derive from it

    // Own features and inherited ones. Those that are served come first, in the order of publication.
    std::vector<Property> properties = {};
    std::vector<Method> methods = {};
    std::size_t servedPropertyCount = 0, servedMethodCount = 0;

    bool isServed() const { return !nameSpaces.empty(); }
    std::span<const Property> servedProperties() const { return {properties.data(), servedPropertyCount}; }
    std::span<const Method> servedMethods() const { return {methods.data(), servedMethodCount}; }
    // Returns nullptr when there is none. Names compare without regard to case.
    const Property* property(std::string_view propertyName) const;
    const Method* method(std::string_view methodName) const;
};

// The served ones first, in the library's order, then the others by name.
const std::vector<Class>& allClasses();
std::span<const Class> servedClasses();

// Returns nullptr for a class that is not known: another module may serve it. Names compare without regard to
// case.
const Class* find(std::string_view className);

// Tells whether a class is another one or derives from it.
bool isSubclass(std::string_view className, std::string_view ancestor);

// Returns "uint16", "string", "reference", "instance" and the like; for an array, the type of its elements.
std::string_view elementTypeName(CMPIType type);

} // namespace schema
