// Writes the schema in the forms that others read:
//
//     schema_generator <directory>
//
//     classes.json                what is served
//     classes.md                  the same for people
//     ProviderHelper.mof          the classes that DMTF's schema lacks
//     ProviderHelperFull.mof      all classes that an object manager without DMTF's schema needs
//     ProviderHelperQualifiers.mof  the qualifier types of those
//     ProviderHelper.reg          provider registration in the form of small-footprint object managers
//     ProviderHelperModule.mof    provider registration as PG_Provider* instances
//     ProviderHelperPrefixed.*    classes PH_X : CIM_X for object managers that keep CIM_X for themselves, and
//                                 their registration in both forms, beside that of the module
#include "class_document.h"
#include "mof.h"
#include "registration.h"
#include "schema/class_json.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

void writeClasses(std::ostream& out, const mof::Classes& classes) {
    const auto known = mof::selfContained();
    for (const schema::Class* each : classes)
        mof::writeClass(out, *each, known);
}

void writeJson(std::ostream& out) {
    auto all = nlohmann::ordered_json::array();
    for (const schema::Class& each : schema::servedClasses())
        all.push_back(schema::toJson(each));
    out << all.dump(1) << '\n';
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::cerr << "usage: schema_generator <directory>\n";
        return 2;
    }
    const std::filesystem::path directory(argv[1]);
    const auto write = [&](const char* name, const auto& content) {
        std::ofstream file(directory / name);
        file.exceptions(std::ios::badbit | std::ios::failbit);
        content(file);
    };
    write("classes.json", writeJson);
    write("classes.md", document::writeClasses);
    write("ProviderHelper.mof", [](std::ostream& out) {
        out << "// provider-helper " PH_VERSION
               ": the classes that the DMTF CIM Schema 2.41 lacks. For object\n"
               "// managers that have that schema.\n\n";
        writeClasses(out, mof::extension());
    });
    write("ProviderHelperFull.mof", [](std::ostream& out) {
        out << "// provider-helper " PH_VERSION
               ": every class that is served, with what it derives from and refers\n"
               "// to, after the DMTF CIM Schema 2.41. For object managers without that schema, and those "
               "whose\n"
               "// compiler takes of it what is declared here and keeps the newer declaration of a "
               "class.\n\n";
        writeClasses(out, mof::selfContained());
    });
    write("ProviderHelperQualifiers.mof", mof::writeQualifierTypes);
    write("ProviderHelper.reg",
          [](std::ostream& out) { registration::writeSections(out, registration::servedClasses()); });
    write("ProviderHelperModule.mof", [](std::ostream& out) {
        registration::writeModule(out);
        registration::writeCapabilities(out, registration::servedClasses());
    });
    const auto prefixed = registration::prefixedClasses();
    write("ProviderHelperPrefixed.mof", [&](std::ostream& out) {
        for (const auto& [name, served] : prefixed)
            out << "class " << name << " : " << served->name << " {\n};\n\n";
    });
    write("ProviderHelperPrefixed.reg",
          [&](std::ostream& out) { registration::writeSections(out, prefixed); });
    write("ProviderHelperPrefixedModule.mof",
          [&](std::ostream& out) { registration::writeCapabilities(out, prefixed); });
} catch (const std::exception& error) {
    std::cerr << "schema_generator: " << error.what() << '\n';
    return 1;
}
