// The form in which schema_compiler writes the classes. Each has its own features only; what is served is
// listed by name. There are no pointers in it, which the dynamic linker would have to write at each start of a program,
// thousands of them: a text and a list tell where they begin in the one array of their kind.
#pragma once

#include <cmpidt.h>
#include <cstdint>

namespace schema::tables {

struct Text {
    std::uint32_t begin, size;
};

struct List {
    std::uint32_t begin, size;
};

struct Value {
    Text value, meaning;
};

struct Element {
    Text name;
    CMPIType type;
    Text className;
    List values;
    Text units;
    std::uint32_t maxLength;
    bool isRequired, isOurs;
    bool isKey, isWritable; // of a property
    bool isIn, isOut;       // of a parameter
};

struct Method {
    Text name;
    CMPIType type;
    List parameters, values;
    bool isOurs;
};

struct Class {
    Text name, superclass;
    bool isAbstract, isAssociation, isIndication, isOurs;
    bool enumerates, modifies, creates, deletes;
    Text source;
    List nameSpaces; // of names, as are the served ones
    List properties, methods;
    List servedProperties, servedMethods;
};

} // namespace schema::tables
