#include "mof.h"

#include <algorithm>
#include <string>

namespace mof {
namespace {

using schema::Class;
using schema::Element;
using schema::Method;
using schema::Parameter;
using schema::Property;

constexpr std::size_t lineLength = 100;
// Older than any that DMTF's classes have: a compiler that keeps the newer one of two declarations keeps DMTF's.
constexpr const char* version = "1.0.0";

bool holds(const Classes& classes, std::string_view name) {
    return std::ranges::find(classes, name, [](const Class* each) { return each->name; }) != classes.end();
}

void addWithSuperclasses(Classes& classes, std::string_view name) {
    const Class* each = schema::find(name);
    if (each == nullptr || holds(classes, each->name))
        return;
    addWithSuperclasses(classes, each->superclass);
    classes.push_back(each);
}

bool isKnown(const Element& element, const Classes& known) {
    return element.className.empty() || holds(known, element.className);
}

bool isDeclared(const Property& property, const Class& by, const Classes& known) {
    return property.declaredBy == by.name && isKnown(property, known);
}

bool isDeclared(const Method& method, const Class& by, const Classes& known) {
    return method.declaredBy == by.name && std::ranges::all_of(method.parameters, [&](const Parameter& each) {
               return isKnown(each, known);
           });
}

// Orders the classes so that those which a declaration names come before it, as far as none of them names it
// in turn.
class Ordering {
public:
    explicit Ordering(const Classes& all) : all_(all) {
        for (const Class* each : all)
            add(each->name);
    }
    Classes ordered;

private:
    void add(std::string_view name) {
        if (name.empty() || !holds(all_, name) || holds(begun_, name))
            return;
        const Class& each = *schema::find(name);
        begun_.push_back(&each);
        add(each.superclass);
        for (const Property& property : each.properties)
            if (isDeclared(property, each, all_))
                add(property.className);
        for (const Method& method : each.methods)
            if (isDeclared(method, each, all_))
                for (const Parameter& parameter : method.parameters)
                    add(parameter.className);
        ordered.push_back(&each);
    }

    const Classes& all_;
    Classes begun_;
};

std::string quotedText(std::string_view text) {
    std::string result = "\"";
    for (const char each : text)
        result += (each == '"' || each == '\\' ? "\\" : "") + std::string(1, each);
    return result + '"';
}

// Name {"a", "b"}, on as many lines as it needs.
std::string list(std::string_view name, const std::vector<std::string>& texts, const std::string& indent) {
    std::string result = std::string(name) + " {";
    std::size_t length = indent.size() + result.size();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string item = quotedText(texts[i]) + (i + 1 < texts.size() ? "," : "}");
        if (i > 0 && length + 1 + item.size() > lineLength) {
            result += '\n' + indent + "  ";
            length = indent.size() + 2;
        } else if (i > 0) {
            result += ' ';
            ++length;
        }
        result += item;
        length += item.size();
    }
    return result;
}

using Qualifiers = std::vector<std::string>;

void addValues(Qualifiers& qualifiers, std::span<const schema::Value> values, const std::string& indent) {
    if (values.empty())
        return;
    std::vector<std::string> numbers;
    std::vector<std::string> meanings;
    for (const schema::Value& each : values) {
        const bool goesOn = each.value == "...";
        numbers.emplace_back(goesOn ? ".." : each.value);
        meanings.emplace_back(goesOn ? "Another value of DMTF's" : each.meaning);
    }
    qualifiers.push_back(list("ValueMap", numbers, indent));
    qualifiers.push_back(list("Values", meanings, indent));
}

void addElement(Qualifiers& qualifiers, const Element& element, const std::string& indent) {
    if (element.isRequired)
        qualifiers.emplace_back("Required");
    if (element.maxLength != 0)
        qualifiers.push_back("MaxLen (" + std::to_string(element.maxLength) + ')');
    if (!element.units.empty())
        qualifiers.push_back("PUnit (" + quotedText(element.units) + ')');
    if ((element.type & ~CMPI_ARRAY) == CMPI_instance)
        qualifiers.push_back(element.className.empty()
                                 ? "EmbeddedObject"
                                 : "EmbeddedInstance (" + quotedText(element.className) + ')');
    addValues(qualifiers, element.values, indent);
}

// "[Key, MaxLen (64)]" and a new line; value maps stand on lines of their own.
std::string text(const Qualifiers& qualifiers, const std::string& indent) {
    if (qualifiers.empty())
        return {};
    std::string result = indent + '[';
    for (const std::string& each : qualifiers) {
        if (&each != &qualifiers.front())
            result += each.starts_with("Value") ? ",\n" + indent + ' ' : ", ";
        result += each;
    }
    return result + "]\n";
}

// "CIM_System REF Name", "uint16 Name[]"; an embedded instance is a string.
std::string declaration(const Element& element) {
    const auto type = static_cast<CMPIType>(element.type & ~CMPI_ARRAY);
    std::string result;
    if (type == CMPI_ref)
        result.append(element.className).append(" REF");
    else
        result = type == CMPI_instance ? "string" : schema::elementTypeName(type);
    return result.append(" ").append(element.name) + (element.isArray() ? "[]" : "");
}

void write(std::ostream& out, const Property& property) {
    const std::string indent(4, ' ');
    Qualifiers qualifiers;
    if (property.isKey)
        qualifiers.emplace_back("Key");
    if (property.isWritable)
        qualifiers.emplace_back("Write");
    if (property.origin != property.declaredBy)
        qualifiers.push_back("Override (" + quotedText(property.name) + ')');
    addElement(qualifiers, property, indent);
    out << text(qualifiers, indent) << indent << declaration(property) << ";\n";
}

void write(std::ostream& out, const Method& method) {
    const std::string indent(4, ' ');
    const std::string inner(8, ' ');
    Qualifiers qualifiers;
    if (method.origin != method.declaredBy)
        qualifiers.push_back("Override (" + quotedText(method.name) + ')');
    addValues(qualifiers, method.values, indent);
    out << text(qualifiers, indent) << indent << schema::elementTypeName(method.type) << ' ' << method.name
        << '(';
    for (const Parameter& parameter : method.parameters) {
        Qualifiers direction{parameter.isIn ? "In" : "In (false)"};
        if (parameter.isOut)
            direction.emplace_back("Out");
        addElement(direction, parameter, inner);
        out << (&parameter != &method.parameters.front() ? ",\n" : "\n") << text(direction, inner) << inner
            << declaration(parameter);
    }
    out << ");\n";
}

} // namespace

Classes selfContained() {
    Classes classes;
    for (const Class& each : schema::servedClasses())
        addWithSuperclasses(classes, each.name);
    // A class that is referred to may refer to others.
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const Class& each = *classes[i];
        for (const Property& property : each.properties)
            addWithSuperclasses(classes, property.className);
        for (const Method& method : each.servedMethods())
            for (const Parameter& parameter : method.parameters)
                addWithSuperclasses(classes, parameter.className);
    }
    return Ordering(classes).ordered;
}

Classes extension() {
    Classes classes = selfContained();
    std::erase_if(classes, [](const Class* each) { return !each->isOurs; });
    return classes;
}

void writeQualifierTypes(std::ostream& out) {
    constexpr const char* types[] = {
        "Abstract : boolean = false, Scope(class, association, indication), Flavor(EnableOverride, "
        "Restricted)",
        "Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass)",
        "EmbeddedInstance : string = null, Scope(property, method, parameter)",
        "EmbeddedObject : boolean = false, Scope(property, method, parameter), "
        "Flavor(DisableOverride, ToSubclass)",
        "In : boolean = true, Scope(parameter), Flavor(DisableOverride, ToSubclass)",
        "Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass)",
        "Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass)",
        "MaxLen : uint32 = null, Scope(property, method, parameter)",
        "Out : boolean = false, Scope(parameter), Flavor(DisableOverride, ToSubclass)",
        "Override : string = null, Scope(property, reference, method), Flavor(EnableOverride, Restricted)",
        "PUnit : string = null, Scope(property, method, parameter)",
        "Required : boolean = false, Scope(property, reference, method, parameter), "
        "Flavor(DisableOverride, ToSubclass)",
        "ValueMap : string[], Scope(property, method, parameter)",
        "Values : string[], Scope(property, method, parameter), Flavor(EnableOverride, ToSubclass, "
        "Translatable)",
        "Version : string = null, Scope(class, association, indication), Flavor(EnableOverride, Restricted, "
        "Translatable)",
        "Write : boolean = false, Scope(property, reference)",
    };
    for (const char* type : types)
        out << "Qualifier " << type << ";\n";
}

void writeClass(std::ostream& out, const Class& declared, const Classes& known) {
    Qualifiers qualifiers;
    if (declared.isAssociation)
        qualifiers.emplace_back("Association"); // it has to be the first
    if (declared.isIndication)
        qualifiers.emplace_back("Indication");
    if (declared.isAbstract)
        qualifiers.emplace_back("Abstract");
    qualifiers.push_back("Version (" + quotedText(version) + ')');
    out << text(qualifiers, "") << "class " << declared.name;
    if (!declared.superclass.empty())
        out << " : " << declared.superclass;
    out << " {\n";
    for (const Property& property : declared.properties)
        if (isDeclared(property, declared, known))
            write(out, property);
    for (const Method& method : declared.methods)
        if (isDeclared(method, declared, known))
            write(out, method);
    out << "};\n\n";
}

} // namespace mof
