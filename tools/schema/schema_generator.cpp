// Writes what the library's class tables say, in the forms that others read:
//
//     schema_generator <directory>
//
//     classes.json                class descriptions
//     class_descriptions.inc      the same as a C++ string literal, for phctl
//     ProviderHelper.mof          class declarations
//     ProviderHelper.reg          provider registration in the form of small-footprint object managers
//     ProviderHelperModule.mof    provider registration as PG_Provider* instances
#include "class_list.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

namespace {

using nlohmann::ordered_json;
using ph::ClassFamily;
using ph::Direction;
using ph::Kind;
using ph::Method;
using ph::Parameter;
using ph::Property;

CMPIType typeOf(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
        return CMPI_boolean;
    case Kind::Uint8:
        return CMPI_uint8;
    case Kind::Uint16:
        return CMPI_uint16;
    case Kind::Uint32:
        return CMPI_uint32;
    case Kind::Uint64:
        return CMPI_uint64;
    case Kind::Sint8:
        return CMPI_sint8;
    case Kind::Sint16:
        return CMPI_sint16;
    case Kind::Sint32:
        return CMPI_sint32;
    case Kind::Sint64:
        return CMPI_sint64;
    case Kind::Real32:
        return CMPI_real32;
    case Kind::Real64:
        return CMPI_real64;
    case Kind::Text:
    case Kind::TextRef:
        return CMPI_string;
    case Kind::Uint16List:
    case Kind::Uint16ListRef:
    case Kind::Uint16Slots:
        return CMPI_uint16A;
    case Kind::StringList:
        return CMPI_stringA;
    case Kind::DateTimeText:
    case Kind::DateTimeValue:
        return CMPI_dateTime;
    }
    throw std::logic_error("a kind without a CIM type");
}

std::string nameOf(CMPIType type) {
    constexpr std::pair<CMPIType, const char*> names[] = {
        {CMPI_boolean, "boolean"}, {CMPI_uint8, "uint8"},       {CMPI_uint16, "uint16"},
        {CMPI_uint32, "uint32"},   {CMPI_uint64, "uint64"},     {CMPI_sint8, "sint8"},
        {CMPI_sint16, "sint16"},   {CMPI_sint32, "sint32"},     {CMPI_sint64, "sint64"},
        {CMPI_real32, "real32"},   {CMPI_real64, "real64"},     {CMPI_string, "string"},
        {CMPI_ref, "reference"},   {CMPI_instance, "instance"}, {CMPI_dateTime, "datetime"},
    };
    for (const auto& [code, name] : names)
        if (code == (type & ~CMPI_ARRAY))
            return name;
    throw std::logic_error("no CIM type: " + std::to_string(type));
}

bool isArray(CMPIType type) {
    return (type & CMPI_ARRAY) != 0;
}

ordered_json describe(const Method& method) {
    ordered_json parameters = ordered_json::array();
    for (const Parameter& parameter : method.parameters) {
        parameters.push_back({{"name", parameter.name},
                              {"type", nameOf(parameter.type)},
                              {"array", isArray(parameter.type)},
                              {"out", parameter.direction == Direction::Out}});
        if (parameter.className != nullptr)
            parameters.back()["class"] = parameter.className;
    }
    return {{"name", method.name}, {"parameters", std::move(parameters)}};
}

ordered_json describe(const ClassFamily& family) {
    ordered_json description{{"name", family.name},
                             {"superclass", family.superclass != nullptr ? family.superclass : ""},
                             {"properties", ordered_json::array()},
                             {"methods", ordered_json::array()}};
    for (const Property& property : family.properties) {
        const CMPIType type = typeOf(property.kind);
        description["properties"].push_back({{"name", property.name},
                                             {"type", nameOf(type)},
                                             {"array", isArray(type)},
                                             {"key", property.isKey}});
    }
    for (const Method& method : family.methods)
        description["methods"].push_back(describe(method));
    description["enumerate"] = family.enumerate != nullptr;
    description["modify"] = family.modify != nullptr;
    description["create"] = family.create != nullptr;
    description["delete"] = family.remove != nullptr;
    return description;
}

// "[Out] CIM_ConcreteJob REF Job". An embedded instance is a string with a qualifier.
std::string declaration(const Parameter& parameter) {
    const CMPIType type = parameter.type & ~CMPI_ARRAY;
    std::string text = parameter.direction == Direction::Out ? "[In(false), Out" : "[In";
    if (type == CMPI_instance)
        text += std::string(", EmbeddedInstance(\"") + parameter.className + "\")";
    text += "] ";
    if (type == CMPI_ref)
        text += std::string(parameter.className) + " REF";
    else
        text += type == CMPI_instance ? "string" : nameOf(type);
    return text + ' ' + parameter.name + (isArray(parameter.type) ? "[]" : "");
}

void writeClass(std::ostream& mof, const ClassFamily& family) {
    mof << "[Provider(\"cmpi:ProviderHelperProviders\")]\nclass " << family.name;
    if (family.superclass != nullptr)
        mof << " : " << family.superclass;
    mof << "\n{\n";
    for (const Property& property : family.properties) {
        const CMPIType type = typeOf(property.kind);
        mof << "    " << (property.isKey ? "[Key] " : "") << nameOf(type) << " " << property.name
            << (isArray(type) ? "[]" : "") << ";\n";
    }
    for (const Method& method : family.methods) {
        mof << "    uint32 " << method.name << '(';
        for (const char* separator = ""; const Parameter& parameter : method.parameters) {
            mof << separator << declaration(parameter);
            separator = ", ";
        }
        mof << ");\n";
    }
    mof << "};\n\n";
}

// What the indication provider delivers; no class family, because nobody asks for instances of it.
constexpr const char* indicationClass = "CIM_AlertIndication";

// `types` are those of PG_ProviderCapabilities.ProviderType.
void writeCapabilities(std::ostream& mof, const char* className, const char* nameSpace, const char* types) {
    mof << "instance of PG_ProviderCapabilities\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
           "    ProviderName = \"ProviderHelper\";\n    CapabilityID = \""
        << className << "\";\n    ClassName = \"" << className << "\";\n    Namespaces = {\"" << nameSpace
        << "\"};\n    ProviderType = " << types << "\n};\n\n";
}

void writeModule(std::ostream& mof) {
    mof << "instance of PG_ProviderModule\n{\n    Name = \"ProviderHelperModule\";\n"
           "    Location = \"ProviderHelperProviders\";\n    Vendor = \"provider-helper\";\n"
           "    Version = \"1.0.0\";\n    InterfaceType = \"CMPI\";\n    InterfaceVersion = "
           "\"2.0.0\";\n};\n\n"
           "instance of PG_Provider\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
           "    Name = \"ProviderHelper\";\n};\n\n";
    for (const ClassFamily* family : ph::allClasses())
        writeCapabilities(mof, family->name, "root/cimv2", "{2, 5}; // instance, method");
    writeCapabilities(mof, indicationClass, "root/interop", "{4}; // indication");
}

void writeSection(std::ostream& reg, const char* className, const char* nameSpace, const char* types) {
    reg << "[" << className << "]\n   provider: ProviderHelper\n   location: ProviderHelperProviders\n"
        << "   type: " << types << "\n   namespace: " << nameSpace << "\n#\n";
}

void writeRegistration(std::ostream& reg) {
    for (const ClassFamily* family : ph::allClasses())
        writeSection(reg, family->name, "root/cimv2", "instance method");
    writeSection(reg, indicationClass, "root/interop", "indication");
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::cerr << "usage: schema_generator <directory>\n";
        return 2;
    }
    const std::filesystem::path directory(argv[1]);
    const auto open = [&](const char* name) {
        std::ofstream file(directory / name);
        file.exceptions(std::ios::badbit | std::ios::failbit);
        return file;
    };
    ordered_json descriptions;
    std::ofstream mof = open("ProviderHelper.mof");
    for (const ClassFamily* family : ph::allClasses()) {
        descriptions.push_back(describe(*family));
        writeClass(mof, *family);
    }
    open("classes.json") << descriptions.dump(1) << '\n';
    open("class_descriptions.inc") << "R\"json(" << descriptions.dump() << ")json\"\n";
    std::ofstream module = open("ProviderHelperModule.mof");
    writeModule(module);
    std::ofstream registration = open("ProviderHelper.reg");
    writeRegistration(registration);
} catch (const std::exception& error) {
    std::cerr << "schema_generator: " << error.what() << '\n';
    return 1;
}
