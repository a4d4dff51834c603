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
#include <initializer_list>
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

// One array, of which equal parts are written once.
class Pool {
public:
    // Returns where the rows are, as {begin, size}.
    std::string add(const std::vector<std::string>& rows) {
        std::string body;
        for (const std::string& row : rows)
            body += "    " + row + ",\n";
        const auto [known, isNew] = begins_.try_emplace(body, size_);
        if (isNew) {
            body_ += body;
            size_ += rows.size();
        }
        return '{' + std::to_string(known->second) + ", " + std::to_string(rows.size()) + '}';
    }
    void write(std::ostream& out, const char* type, const char* name) const {
        out << "constexpr " << type << ' ' << name << "[] = {\n" << body_ << "};\n";
    }

private:
    std::map<std::string, std::size_t> begins_;
    std::string body_;
    std::size_t size_ = 0;
};

class TableWriter {
public:
    void add(const DeclaredClass& each) {
        std::string row = '{' + text(each.name) + ", " + text(each.superclass);
        for (const bool flag : {each.isAbstract, each.isAssociation, each.isIndication, each.isOurs,
                                each.enumerates, each.modifies, each.creates, each.deletes})
            row += flagText(flag);
        row += ", " + text(each.source);
        for (const std::string& list :
             {names(each.nameSpaces), properties(each.properties), methods(each.methods),
              names(each.servedProperties), names(each.servedMethods)})
            row += ", " + list;
        classes_.add({row + '}'});
    }

    void write(std::ostream& out) const {
        out << "constexpr char texts[] =\n" << texts_ << ";\n";
        names_.write(out, "Text", "names");
        values_.write(out, "Value", "values");
        elements_.write(out, "Element", "elements");
        methods_.write(out, "Method", "methods");
        classes_.write(out, "Class", "classes");
    }

private:
    std::string text(std::string_view text) {
        const auto [known, isNew] = begins_.try_emplace(std::string(text), textSize_);
        if (isNew) {
            texts_ += "    " + literal(text) + "\"\\0\"\n"; // for those who take them as texts of C
            textSize_ += text.size() + 1;
        }
        return '{' + std::to_string(known->second) + ", " + std::to_string(text.size()) + '}';
    }
    static std::string flagText(bool flag) { return flag ? ", true" : ", false"; }

    template <class All, class RowOf>
    static std::string list(Pool& pool, const All& all, RowOf rowOf) {
        std::vector<std::string> rows(all.size());
        std::ranges::transform(all, rows.begin(), rowOf);
        return pool.add(rows);
    }
    std::string names(const std::vector<std::string>& all) {
        return list(names_, all, [this](const std::string& each) { return text(each); });
    }
    std::string values(const ValueMap& all) {
        return list(values_, all, [this](const auto& each) {
            return '{' + text(each.first) + ", " + text(each.second) + '}';
        });
    }
    std::string properties(const std::vector<DeclaredElement>& all) {
        return list(elements_, all, [this](const DeclaredElement& each) {
            return element(each, {each.isKey, each.isWritable, false, false});
        });
    }
    std::string parameters(const std::vector<DeclaredElement>& all) {
        return list(elements_, all, [this](const DeclaredElement& each) {
            return element(each, {false, false, each.isIn, each.isOut});
        });
    }
    std::string methods(const std::vector<DeclaredMethod>& all) {
        return list(methods_, all, [this](const DeclaredMethod& each) {
            return '{' + text(each.name) + ", " + typeText(each.type) + ", " + parameters(each.parameters) +
                   ", " + values(each.values) + flagText(each.isOurs) + '}';
        });
    }
    std::string element(const DeclaredElement& each, std::initializer_list<bool> flags) {
        std::string row = '{' + text(each.name) + ", " + typeText(each.type) + ", " + text(each.className) +
                          ", " + values(each.values) + ", " + text(each.units) + ", " +
                          std::to_string(each.maxLength) + flagText(each.isRequired) + flagText(each.isOurs);
        for (const bool flag : flags)
            row += flagText(flag);
        return row + '}';
    }

    std::map<std::string, std::size_t> begins_;
    std::string texts_;
    std::size_t textSize_ = 0;
    Pool names_, values_, elements_, methods_, classes_;
};

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

    TableWriter tables;
    for (const DeclaredClass* each : inOrder(served, classes))
        tables.add(*each);
    std::ofstream tableFile = create("class_tables.inc");
    tables.write(tableFile);
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
