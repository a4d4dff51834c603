#include "registration.h"

#include "schema/class_schema.h"

#include <string>

namespace registration {
namespace {

using schema::Class;

// What kinds of provider a class has, in the words of one form and the numbers of the other
// (PG_ProviderCapabilities.ProviderType).
struct Kinds {
    const char* words;
    const char* numbers;
};

Kinds kindsOf(const Class& served) {
    if (served.isIndication)
        return {"indication", "4"};
    if (served.isAssociation)
        return {"instance association", "2, 3"};
    return served.servedMethods().empty() ? Kinds{"instance", "2"} : Kinds{"instance method", "2, 5"};
}

std::string nameSpacesOf(const Class& served, const char* separator) {
    std::string all;
    for (const std::string_view each : served.nameSpaces)
        all.append(all.empty() ? "" : separator).append(each);
    return all;
}

} // namespace

Classes servedClasses() {
    Classes classes;
    for (const Class& each : schema::servedClasses())
        classes.push_back({std::string(each.name), &each});
    return classes;
}

Classes prefixedClasses() {
    Classes classes;
    for (const char* name : {"IndicationFilter", "ListenerDestinationCIMXML"})
        classes.push_back({std::string("PH_") + name, schema::find(std::string("CIM_") + name)});
    return classes;
}

void writeSections(std::ostream& out, const Classes& classes) {
    for (const auto& [name, served] : classes)
        out << '[' << name << "]\n   provider: ProviderHelper\n   location: ProviderHelperProviders\n"
            << "   type: " << kindsOf(*served).words << "\n   namespace: " << nameSpacesOf(*served, " ")
            << "\n#\n";
}

void writeModule(std::ostream& out) {
    out << "instance of PG_ProviderModule\n{\n"
           "    Name = \"ProviderHelperModule\";\n"
           "    Vendor = \"provider-helper\";\n"
           "    Version = \"" PH_VERSION "\";\n"
           "    InterfaceType = \"CMPI\";\n"
           "    InterfaceVersion = \"2.0.0\";\n"
           "    Location = \"ProviderHelperProviders\";\n"
           "};\n\n"
           "instance of PG_Provider\n{\n"
           "    ProviderModuleName = \"ProviderHelperModule\";\n"
           "    Name = \"ProviderHelper\";\n"
           "};\n\n";
}

void writeCapabilities(std::ostream& out, const Classes& classes) {
    for (const auto& [name, served] : classes)
        out << "instance of PG_ProviderCapabilities\n{\n"
               "    ProviderModuleName = \"ProviderHelperModule\";\n"
               "    ProviderName = \"ProviderHelper\";\n"
               "    CapabilityID = \""
            << name << "\";\n    ClassName = \"" << name << "\";\n    Namespaces = {\""
            << nameSpacesOf(*served, "\", \"") << "\"};\n    ProviderType = {" << kindsOf(*served).numbers
            << "}; // " << kindsOf(*served).words << "\n};\n\n";
}

} // namespace registration
