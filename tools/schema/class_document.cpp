#include "class_document.h"

#include "associations/association.h"
#include "schema/class_schema.h"

#include <algorithm>
#include <string>

namespace document {
namespace {

using schema::Class;

std::string typeOf(const schema::Element& element) {
    std::string text(schema::elementTypeName(element.type));
    if (!element.className.empty())
        text.append(" ").append(element.className);
    return text + (element.isArray() ? "[]" : "");
}

// Anchors of headings are in lower case.
std::string linkTo(std::string_view className) {
    std::string anchor(className);
    std::ranges::transform(anchor, anchor.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return "[`" + std::string(className) + "`](#" + anchor + ")";
}

std::string operationsOf(const Class& each) {
    std::string text = each.isIndication ? "delivered" : each.enumerates ? "enumerate, get" : "embedded only";
    for (const auto& [isOffered, name] :
         {std::pair{each.modifies, "modify"}, {each.creates, "create"}, {each.deletes, "delete"}})
        if (isOffered)
            text.append(", ").append(name);
    return text;
}

std::string signatureOf(const schema::Method& method) {
    std::string text =
        std::string(schema::elementTypeName(method.type)) + ' ' + std::string(method.name) + '(';
    const char* separator = "";
    for (const schema::Parameter& parameter : method.parameters) {
        text.append(separator).append(!parameter.isOut ? "" : parameter.isIn ? "in out " : "out ");
        text.append(typeOf(parameter)).append(" ").append(parameter.name);
        separator = ", ";
    }
    return text + ')';
}

std::string textOf(const associations::Elements& elements) {
    std::string text = linkTo(elements.className);
    if (elements.property != nullptr)
        text += " (" + std::string(elements.property) + " `" + elements.prefix + "…`)";
    return text;
}

// What an association of this class connects.
void writeEnds(std::ostream& out, const Class& association) {
    for (const associations::Row& row : associations::rows())
        if (row.associationClass->name == association.name)
            out << "- " << row.associationClass->ends[0].role << ' ' << textOf(row.ends[0]) << ", "
                << row.associationClass->ends[1].role << ' ' << textOf(row.ends[1]) << '\n';
}

// The associations that lead on from an instance of this class, each once.
void writeAssociations(std::ostream& out, const Class& element) {
    std::vector<std::string_view> names;
    for (const associations::Row& row : associations::rows()) {
        const std::string_view name = row.associationClass->name;
        if (std::ranges::find(names, name) == names.end() &&
            (element.name == row.ends[0].className || element.name == row.ends[1].className))
            names.push_back(name);
    }
    if (names.empty())
        return;
    out << "\nAssociations: ";
    for (const std::string_view name : names)
        out << (name == names.front() ? "" : ", ") << linkTo(name);
    out << '\n';
}

void writeClass(std::ostream& out, const Class& each) {
    out << "\n### " << each.name << "\n\n";
    if (!each.superclass.empty())
        out << "Derives from `" << each.superclass << "`. ";
    out << "Operations: " << operationsOf(each) << ". Source: " << each.source << ".\n";
    if (!each.servedProperties().empty()) {
        out << "\n| property | type |\n|---|---|\n";
        for (const schema::Property& property : each.servedProperties())
            out << "| `" << property.name << '`' << (property.isKey ? " (key)" : "") << " | "
                << typeOf(property) << (property.units.empty() ? "" : ", in ") << property.units << " |\n";
    }
    if (!each.servedMethods().empty())
        out << '\n';
    for (const schema::Method& method : each.servedMethods())
        out << "- `" << signatureOf(method) << "`\n";
    if (each.isAssociation) {
        out << '\n';
        writeEnds(out, each);
    }
    writeAssociations(out, each);
}

} // namespace

void writeClasses(std::ostream& out) {
    out << "# Classes\n\nWhat is served, as the class tables and the rows of the associations have it. This "
           "file is "
           "generated:\nthe build writes it to `share/provider-helper/schema/classes.md`, and a test "
           "compares the two. "
           "What the\nproperties mean, and the values that they take, is in DMTF's schema; `phctl classes "
           "CIM_X --json` "
           "has both.\n";
    for (const bool isAssociation : {false, true}) {
        out << (isAssociation ? "\n## Associations\n" : "\n## Elements\n");
        for (const Class& each : schema::servedClasses())
            if (each.isAssociation == isAssociation)
                writeClass(out, each);
    }
}

} // namespace document
