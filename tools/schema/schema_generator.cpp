// Writes what the library's class tables say, in the forms that others read:
//
//     schema_generator <directory>
//
//     classes.json                 class descriptions
//     classes.inc                  the same as a C++ string literal, for phctl
//     ProviderHelper.mof           class declarations of the classes that are not in the DMTF schema as they
//     stand ProviderHelper.reg           provider registration in the form of small-footprint object managers
//     ProviderHelperModule.mof     provider registration as PG_Provider* instances
#include "class_list.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using ph::ClassFamily;
using ph::Kind;
using ph::Property;

struct CimType {
    const char* name;
    bool isArray;
};

CimType cimType(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
        return {"boolean", false};
    case Kind::Uint8:
        return {"uint8", false};
    case Kind::Uint16:
        return {"uint16", false};
    case Kind::Uint32:
        return {"uint32", false};
    case Kind::Uint64:
        return {"uint64", false};
    case Kind::Sint8:
        return {"sint8", false};
    case Kind::Sint16:
        return {"sint16", false};
    case Kind::Sint32:
        return {"sint32", false};
    case Kind::Sint64:
        return {"sint64", false};
    case Kind::Real32:
        return {"real32", false};
    case Kind::Real64:
        return {"real64", false};
    case Kind::Text:
    case Kind::TextRef:
        return {"string", false};
    case Kind::Uint16List:
    case Kind::Uint16ListRef:
        return {"uint16", true};
    case Kind::Uint16Slots:
        return {"uint16", true};
    case Kind::DateTimeText:
    case Kind::DateTimeValue:
        return {"datetime", false};
    case Kind::StringList:
        return {"string", true};
    }
    throw std::logic_error("a kind without a CIM type");
}

nlohmann::ordered_json describe(const ClassFamily& family) {
    nlohmann::ordered_json description{{"name", family.name},
                                       {"superclass", family.superclass != nullptr ? family.superclass : ""}};
    for (const Property& property : family.properties) {
        const CimType type = cimType(property.kind);
        description["properties"].push_back(
            {{"name", property.name}, {"type", type.name}, {"array", type.isArray}, {"key", property.isKey}});
    }
    description["modify"] = family.modify != nullptr;
    description["create"] = family.create != nullptr;
    description["delete"] = family.remove != nullptr;
    description["methods"] = nlohmann::ordered_json::array();
    return description;
}

void writeClass(std::ostream& mof, const ClassFamily& family) {
    mof << "[Provider(\"cmpi:ProviderHelperProviders\")]\nclass " << family.name;
    if (family.superclass != nullptr)
        mof << " : " << family.superclass;
    mof << "\n{\n";
    for (const Property& property : family.properties) {
        const CimType type = cimType(property.kind);
        mof << "    " << (property.isKey ? "[Key] " : "") << type.name << " " << property.name
            << (type.isArray ? "[]" : "") << ";\n";
    }
    mof << "};\n\n";
}

void writeModule(std::ostream& mof) {
    mof << "instance of PG_ProviderModule\n{\n    Name = \"ProviderHelperModule\";\n"
           "    Location = \"ProviderHelperProviders\";\n    Vendor = \"provider-helper\";\n"
           "    Version = \"1.0.0\";\n    InterfaceType = \"CMPI\";\n    InterfaceVersion = "
           "\"2.0.0\";\n};\n\n"
           "instance of PG_Provider\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
           "    Name = \"ProviderHelper\";\n};\n\n";
    for (const ClassFamily* family : ph::allClasses())
        mof << "instance of PG_ProviderCapabilities\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
               "    ProviderName = \"ProviderHelper\";\n    CapabilityID = \""
            << family->name << "\";\n    ClassName = \"" << family->name
            << "\";\n    Namespaces = {\"root/cimv2\"};\n    ProviderType = {2, 5}; // instance, "
               "method\n};\n\n";
}

void writeRegistration(std::ostream& reg) {
    for (const ClassFamily* family : ph::allClasses())
        reg << "[" << family->name << "]\n   provider: ProviderHelper\n   location: ProviderHelperProviders\n"
            << "   type: instance method\n   namespace: root/cimv2\n#\n";
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
    nlohmann::ordered_json descriptions;
    std::ofstream mof = open("ProviderHelper.mof");
    for (const ClassFamily* family : ph::allClasses()) {
        descriptions.push_back(describe(*family));
        writeClass(mof, *family);
    }
    open("classes.json") << descriptions.dump(1) << '\n';
    open("classes.inc") << "R\"json(" << descriptions.dump() << ")json\"\n";
    std::ofstream module = open("ProviderHelperModule.mof");
    writeModule(module);
    std::ofstream registration = open("ProviderHelper.reg");
    writeRegistration(registration);
} catch (const std::exception& error) {
    std::cerr << "schema_generator: " << error.what() << '\n';
    return 1;
}
