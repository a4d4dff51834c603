// Puts DMTF's declarations and what is served together, as tables of the schema library and of the association
// provider:
//
//     schema_compiler <directory to write to> <file of declarations>...
//
//     class_tables.inc    the tables that class_schema.cpp reads
//     superclasses.inc    {class, superclass, placement} of every class that is served, and of those above it
//     names.inc           what is served by name, each name once, in the order of strcasecmp
//     keys.inc            {class, key} of every class that is served, as numbers in names.inc
#include "associations/association.h"
#include "merged_classes.h"

#include "schema/class_schema.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <strings.h>
#include <vector>

namespace {

using namespace schema;

std::string literal(std::string_view text) {
    std::string quoted = "\"";
    for (const char each : text)
        quoted += (each == '"' || each == '\\' ? "\\" : "") + std::string(1, each);
    return quoted + '"';
}

std::string typeText(CMPIType type) {
    std::string name(elementTypeName(type));
    if (name == "reference")
        name = "ref";
    else if (name == "datetime")
        name = "dateTime";
    return "CMPI_" + name + ((type & CMPI_ARRAY) != 0 ? "A" : "");
}

const char* text(bool flag) {
    return flag ? "true" : "false";
}

// Writes arrays, of which equal ones are written once.
class TableWriter {
public:
    explicit TableWriter(std::ostream& out) : out_(out) {}

    // Returns the name of the array, or {} when it is empty.
    std::string array(const char* type, const std::vector<std::string>& rows) {
        if (rows.empty())
            return "{}";
        std::string body;
        for (const std::string& row : rows)
            body += "    " + row + ",\n";
        const auto [entry, isNew] = names_.try_emplace(type + ('\n' + body), "");
        if (isNew) {
            entry->second = "table_" + std::to_string(names_.size());
            out_ << "constexpr " << type << ' ' << entry->second << "[] = {\n" << body << "};\n";
        }
        return entry->second;
    }
    std::string names(const std::vector<std::string>& all) { return rows("std::string_view", all, literal); }
    std::string values(const ValueMap& all) {
        return rows("Value", all, [](const auto& each) {
            return '{' + literal(each.first) + ", " + literal(each.second) + '}';
        });
    }
    std::string properties(const std::vector<DeclaredElement>& all) {
        return rows("Property", all, [this](const DeclaredElement& each) {
            return '{' + element(each) + ", " + text(each.isKey) + ", " + text(each.isWritable) + '}';
        });
    }
    std::string methods(const std::vector<DeclaredMethod>& all) {
        return rows("Method", all, [this](const DeclaredMethod& each) {
            const std::string parameters =
                rows("Parameter", each.parameters, [this](const DeclaredElement& one) {
                    return '{' + element(one) + ", " + text(one.isIn) + ", " + text(one.isOut) + '}';
                });
            return '{' + literal(each.name) + ", " + typeText(each.type) + ", " + parameters + ", " +
                   values(each.values) + ", " + text(each.isOurs) + '}';
        });
    }

private:
    template <class All, class RowOf>
    std::string rows(const char* type, const All& all, RowOf rowOf) {
        std::vector<std::string> texts;
        texts.reserve(all.size());
        for (const auto& each : all)
            texts.push_back(rowOf(each));
        return array(type, texts);
    }
    std::string element(const DeclaredElement& each) {
        return '{' + literal(each.name) + ", " + typeText(each.type) + ", " + literal(each.className) + ", " +
               values(each.values) + ", " + literal(each.units) + ", " + std::to_string(each.maxLength) +
               ", " + text(each.isRequired) + ", " + text(each.isOurs) + '}';
    }

    std::ostream& out_;
    std::map<std::string, std::string> names_;
};

std::string classRow(TableWriter& tables, const DeclaredClass& each) {
    std::string row = '{' + literal(each.name) + ", " + literal(each.superclass);
    for (const bool flag : {each.isAbstract, each.isAssociation, each.isIndication, each.isOurs,
                            each.enumerates, each.modifies, each.creates, each.deletes})
        row += std::string(", ") + text(flag);
    row += ", " + literal(each.source);
    for (const std::string& table :
         {tables.names(each.nameSpaces), tables.properties(each.properties), tables.methods(each.methods),
          tables.names(each.servedProperties), tables.names(each.servedMethods)})
        row += ", " + table;
    return row + '}';
}

// Served classes in the library's order, then the others by name.
std::vector<const DeclaredClass*> inOrder(const std::vector<DeclaredClass>& served,
                                          const DeclaredClasses& classes) {
    std::vector<const DeclaredClass*> all;
    all.reserve(classes.size());
    for (const DeclaredClass& each : served)
        all.push_back(&classes.at(each.name));
    for (const auto& [name, each] : classes)
        if (each.nameSpaces.empty())
            all.push_back(&each);
    return all;
}

const char* placementText(const DeclaredClass& each) {
    const auto isIn = [&](const char* nameSpace) {
        return std::ranges::find(each.nameSpaces, nameSpace) != each.nameSpaces.end();
    };
    if (!isIn(associations::interopNameSpace))
        return "Placement::Implementation";
    return isIn(associations::implementationNameSpace) ? "Placement::Both" : "Placement::Interop";
}

void writeSuperclasses(std::ostream& out, const std::vector<DeclaredClass>& served,
                       const DeclaredClasses& classes) {
    std::set<std::string> names;
    for (const DeclaredClass& each : served)
        for (std::string name = each.name; !name.empty(); name = classes.at(name).superclass)
            names.insert(name);
    for (const std::string& name : names) {
        const std::string& superclass = classes.at(name).superclass;
        out << '{' << literal(name) << ", " << (superclass.empty() ? "nullptr" : literal(superclass)) << ", "
            << placementText(classes.at(name)) << "},\n";
    }
}

struct WithoutCase {
    bool operator()(const std::string& left, const std::string& right) const {
        return strcasecmp(left.c_str(), right.c_str()) < 0;
    }
};

// CIM names compare without regard to case: two that differ in it alone would be one to clients.
using Names = std::set<std::string, WithoutCase>;

Names namesOf(const std::vector<DeclaredClass>& served) {
    Names names;
    const auto add = [&](const auto& element) {
        if (const auto [known, isNew] = names.insert(element.name); !isNew && *known != element.name)
            throw std::runtime_error("two spellings: " + *known + " and " + element.name);
    };
    for (const DeclaredClass& each : served) {
        add(each);
        for (const DeclaredElement& property : each.properties)
            add(property);
        for (const DeclaredMethod& method : each.methods) {
            add(method);
            for (const DeclaredElement& parameter : method.parameters)
                add(parameter);
        }
    }
    return names;
}

void writeNames(std::ostream& out, const Names& names) {
    for (const std::string& name : names)
        out << literal(name) << ",\n";
}

void writeKeys(std::ostream& out, const std::vector<DeclaredClass>& served, const Names& names) {
    const auto number = [&](const std::string& name) {
        return std::distance(names.begin(), names.find(name));
    };
    for (const DeclaredClass& each : served)
        for (const DeclaredElement& property : each.properties)
            if (property.isKey)
                out << '{' << number(each.name) << ", " << number(property.name) << "}, // " << each.name
                    << '.' << property.name << '\n';
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 3) {
        std::cerr << "usage: schema_compiler <directory to write to> <file of declarations>...\n";
        return 2;
    }
    const std::filesystem::path directory(argv[1]);
    const auto create = [&](const char* name) {
        std::ofstream file(directory / name);
        file.exceptions(std::ios::badbit | std::ios::failbit);
        return file;
    };
    DeclaredClasses classes;
    for (const std::string& name : std::vector<std::string>(argv + 2, argv + argc)) {
        std::ifstream file(name);
        if (!file)
            throw std::runtime_error("cannot read " + name);
        try {
            readClasses(file, classes);
        } catch (const std::exception& error) {
            throw std::runtime_error(name + ", " + error.what());
        }
    }
    const std::vector<DeclaredClass> served = describeServed();
    merge(served, classes);

    std::ofstream tableFile = create("class_tables.inc");
    TableWriter tables(tableFile);
    std::vector<std::string> rows;
    for (const DeclaredClass* each : inOrder(served, classes))
        rows.push_back(classRow(tables, *each));
    const std::string all = tables.array("ClassTable", rows);
    tableFile << "constexpr const auto& classTables = " << all << ";\n";
    std::ofstream superclasses = create("superclasses.inc");
    writeSuperclasses(superclasses, served, classes);
    const Names names = namesOf(served);
    std::ofstream nameFile = create("names.inc");
    writeNames(nameFile, names);
    std::ofstream keys = create("keys.inc");
    writeKeys(keys, served, names);
} catch (const std::exception& error) {
    std::cerr << "schema_compiler: " << error.what() << '\n';
    return 1;
}
