// Classes as they are declared, each with its own features only: what the schema is compiled from.
#pragma once

#include <cmpidt.h>
#include <istream>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace schema {

using ValueMap = std::vector<std::pair<std::string, std::string>>; // values and what they mean

// A property or a parameter.
struct DeclaredElement {
    std::string name;
    CMPIType type = CMPI_null;
    std::string className = {};
    ValueMap values = {};
    std::string units = {};
    unsigned maxLength = 0;
    bool isRequired = false, isOurs = false;
    bool isKey = false, isWritable = false; // of a property
    bool isIn = true, isOut = false;        // of a parameter
};

struct DeclaredMethod {
    std::string name;
    CMPIType type = CMPI_uint32;
    std::vector<DeclaredElement> parameters = {};
    ValueMap values = {};
    bool isOurs = false;
};

struct DeclaredClass {
    std::string name, superclass;
    bool isAbstract = false, isAssociation = false, isIndication = false, isOurs = false;
    std::vector<DeclaredElement> properties = {};
    std::vector<DeclaredMethod> methods = {};
    // What is served.
    bool enumerates = false, modifies = false, creates = false, deletes = false;
    std::string source = {}; // where its values come from
    std::vector<std::string> nameSpaces = {}, servedProperties = {}, servedMethods = {};
};

struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const; // without regard to case
};
using DeclaredClasses = std::map<std::string, DeclaredClass, NameLess>;

// Reads the classes of a file, whose form dmtf/README.md describes. Throws std::runtime_error with the line
// that it does not understand.
void readClasses(std::istream& file, DeclaredClasses& classes);

// Returns the CIM type of that name; throws std::runtime_error where there is none.
CMPIType typeOfName(std::string_view name);

} // namespace schema
