// Writes what the class tables of the library and the rows of the associations say, in the forms that others
// read:
//
//     schema_generator <directory>
//
//     classes.json                class descriptions
//     ProviderHelper.mof          class declarations
//     ProviderHelper.reg          provider registration in the form of small-footprint object managers
//     ProviderHelperModule.mof    provider registration as PG_Provider* instances
#include "associations/association.h"
#include "associations/profiles.h"
#include "class_list.h"
#include "schema/class_json.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace {

using associations::AssociationClass;
using associations::Placement;
using nlohmann::ordered_json;
using ph::ClassFamily;
using ph::Direction;
using ph::Method;
using ph::Parameter;
using ph::Property;
using ph::typeOf;

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

std::vector<std::string> nameSpacesOf(Placement placement) {
    switch (placement) {
    case Placement::Implementation:
        return {associations::implementationNameSpace};
    case Placement::Interop:
        return {associations::interopNameSpace};
    case Placement::Both:
        return {associations::implementationNameSpace, associations::interopNameSpace};
    }
    throw std::logic_error("no placement");
}

// "[Key] CIM_System REF Antecedent". An embedded instance is a string with a qualifier.
std::string declaration(std::string qualifiers, CMPIType type, const char* className, const char* name) {
    const CMPIType element = type & ~CMPI_ARRAY;
    if (element == CMPI_instance)
        qualifiers +=
            (qualifiers.empty() ? "" : ", ") + std::string("EmbeddedInstance(\"") + className + "\")";
    std::string text = qualifiers.empty() ? "" : '[' + qualifiers + "] ";
    if (element == CMPI_ref)
        text += std::string(className) + " REF";
    else
        text += element == CMPI_instance ? "string" : nameOf(type);
    return text + ' ' + name + (isArray(type) ? "[]" : "");
}

std::string declaration(const Parameter& parameter) {
    return declaration(parameter.direction == Direction::Out ? "In(false), Out" : "In", parameter.type,
                       parameter.className, parameter.name);
}

void writeHead(std::ostream& mof, const char* qualifier, const char* name, const char* superclass) {
    mof << '[' << qualifier << "Provider(\"cmpi:ProviderHelperProviders\")]\nclass " << name;
    if (superclass != nullptr)
        mof << " : " << superclass;
    mof << "\n{\n";
}

void writeProperty(std::ostream& mof, const char* name, CMPIType type, bool isKey,
                   const char* className = nullptr) {
    mof << "    " << declaration(isKey ? "Key" : "", type, className, name) << ";\n";
}

void writeClass(std::ostream& mof, const AssociationClass& association) {
    writeHead(mof, "Association, ", association.name, association.superclass);
    for (const associations::End& end : association.ends)
        writeProperty(mof, end.role, CMPI_ref, true, end.className);
    for (const associations::Declaration& property : association.properties)
        writeProperty(mof, property.name, property.type, false);
    mof << "};\n\n";
}

void writeProfileClass(std::ostream& mof) {
    writeHead(mof, "", associations::profileClass, associations::profileSuperclass);
    const auto properties = associations::profileProperties();
    for (const auto& property : properties)
        writeProperty(mof, property.name, property.type, &property == &properties.front());
    mof << "};\n\n";
}

void writeClass(std::ostream& mof, const ClassFamily& family) {
    writeHead(mof, "", family.name, family.superclass);
    for (const Property& property : family.properties)
        writeProperty(mof, property.name, typeOf(property.kind), property.isKey, property.className);
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

// One served class as registration files name it, and what kinds of provider it has.
struct Registered {
    const char* className;
    std::vector<std::string> nameSpaces;
    const char* kinds;
    const char* kindNumbers; // PG_ProviderCapabilities.ProviderType
};

std::vector<Registered> registeredClasses() {
    std::vector<Registered> all;
    for (const ClassFamily* family : ph::allClasses())
        all.push_back({family->name, nameSpacesOf(Placement::Implementation), "instance method", "2, 5"});
    for (const AssociationClass* association : associations::allAssociations())
        all.push_back(
            {association->name, nameSpacesOf(association->placement), "instance association", "2, 3"});
    all.push_back({associations::profileClass, nameSpacesOf(Placement::Interop), "instance", "2"});
    all.push_back({indicationClass, nameSpacesOf(Placement::Interop), "indication", "4"});
    return all;
}

std::string joined(const std::vector<std::string>& texts, const char* separator) {
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : separator) + text;
    return all;
}

void writeModule(std::ostream& mof) {
    mof << "instance of PG_ProviderModule\n{\n    Name = \"ProviderHelperModule\";\n"
           "    Location = \"ProviderHelperProviders\";\n    Vendor = \"provider-helper\";\n"
           "    Version = \"1.0.0\";\n    InterfaceType = \"CMPI\";\n    InterfaceVersion = "
           "\"2.0.0\";\n};\n\n"
           "instance of PG_Provider\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
           "    Name = \"ProviderHelper\";\n};\n\n";
    for (const Registered& each : registeredClasses())
        mof << "instance of PG_ProviderCapabilities\n{\n    ProviderModuleName = \"ProviderHelperModule\";\n"
               "    ProviderName = \"ProviderHelper\";\n    CapabilityID = \""
            << each.className << "\";\n    ClassName = \"" << each.className << "\";\n    Namespaces = {\""
            << joined(each.nameSpaces, "\", \"") << "\"};\n    ProviderType = {" << each.kindNumbers
            << "}; // " << each.kinds << "\n};\n\n";
}

void writeRegistration(std::ostream& reg) {
    for (const Registered& each : registeredClasses())
        reg << "[" << each.className
            << "]\n   provider: ProviderHelper\n   location: ProviderHelperProviders\n"
            << "   type: " << each.kinds << "\n   namespace: " << joined(each.nameSpaces, " ") << "\n#\n";
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
    ordered_json descriptions = ordered_json::array();
    for (const schema::Class& each : schema::servedClasses())
        descriptions.push_back(schema::toJson(each));
    std::ofstream mof = open("ProviderHelper.mof");
    for (const ClassFamily* family : ph::allClasses()) {
        writeClass(mof, *family);
    }
    for (const AssociationClass* association : associations::allAssociations()) {
        writeClass(mof, *association);
    }
    writeProfileClass(mof);
    open("classes.json") << descriptions.dump(1) << '\n';
    std::ofstream module = open("ProviderHelperModule.mof");
    writeModule(module);
    std::ofstream registration = open("ProviderHelper.reg");
    writeRegistration(registration);
} catch (const std::exception& error) {
    std::cerr << "schema_generator: " << error.what() << '\n';
    return 1;
}
