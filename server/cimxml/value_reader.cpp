#include "cimxml/value_reader.h"

#include "cimxml/cim_error.h"
#include "cimxml/value_text.h"
#include "interop/xml_text.h"

#include <algorithm>
#include <memory>

namespace cimxml {
namespace {

using broker::Value;

[[noreturn]] void fail(const std::string& description) {
    throw CimError(ErrorCode::InvalidParameter, description);
}

pugi::xml_node firstElement(pugi::xml_node parent) {
    return parent.find_child([](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

pugi::xml_node requireElement(pugi::xml_node parent) {
    const pugi::xml_node child = firstElement(parent);
    if (child.empty())
        fail(std::string(parent.name()) + " is empty");
    return child;
}

// Refuses what is declared in a DOCTYPE, and elements that are too deep in each other.
class Checker : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override {
        if (node.type() == pugi::node_doctype)
            throw BadRequest(400, "request-not-valid", "a document type declaration is not accepted");
        if (depth() > deepest)
            throw BadRequest(400, "request-not-valid", "elements are too deep in each other");
        return true;
    }
};

Value single(CMPIType type, const std::string& text) {
    if (auto value = parseValue(type, text))
        return std::move(*value);
    throw CimError(ErrorCode::TypeMismatch, '"' + text.substr(0, 100) + "\" is no " + broker::typeName(type));
}

Value readReference(pugi::xml_node valueReference) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(readPath(requireElement(valueReference)))};
}

Value readInstanceText(const std::string& text) {
    return {CMPI_instance, std::make_shared<const broker::Instance>(readEmbeddedInstance(text))};
}

std::optional<CMPIType> declaredType(pugi::xml_node element, const char* name) {
    const pugi::xml_attribute type = element.attribute(name);
    if (type.empty())
        return std::nullopt;
    if (const auto known = typeNamed(type.value()))
        return known;
    fail(std::string(type.value()) + " is no type");
}

Value readKeyValue(pugi::xml_node element) {
    const std::string text = elementText(element);
    if (const auto type = declaredType(element, "TYPE"); type && !isReference(*type))
        return single(*type, text);
    const std::string kind = element.attribute("VALUETYPE").as_string("string");
    if (kind == "boolean")
        return single(CMPI_boolean, text);
    if (kind != "numeric")
        return {CMPI_string, text};
    if (auto number = parseNumber(text))
        return std::move(*number);
    throw CimError(ErrorCode::TypeMismatch, '"' + text.substr(0, 100) + "\" is no number");
}

Value readKey(pugi::xml_node element) {
    if (is(element, "KEYVALUE"))
        return readKeyValue(element);
    if (is(element, "VALUE.REFERENCE"))
        return readReference(element);
    fail(std::string("a key's value is no ") + element.name());
}

// The older form of a path has a single key without its name.
void readKeys(pugi::xml_node instanceName, broker::ObjectPath& path) {
    for (const pugi::xml_node child : instanceName.children()) {
        if (is(child, "KEYBINDING"))
            broker::set(path.keys, attribute(child, "NAME"), readKey(requireElement(child)));
        else if (is(child, "KEYVALUE") || is(child, "VALUE.REFERENCE"))
            path.keys.push_back({"", readKey(child)});
    }
}

void readNameSpacePath(pugi::xml_node element, broker::ObjectPath& path) {
    path.host = elementText(element.child("HOST"));
    path.nameSpace = readNameSpace(element.child("LOCALNAMESPACEPATH"));
}

// Reads the elements of an array, each of the type or null.
template <class Read>
Value readArray(pugi::xml_node array, CMPIType type, Read read) {
    Value::Array elements;
    for (const pugi::xml_node child : array.children()) {
        if (child.type() != pugi::node_element)
            continue;
        elements.push_back(is(child, "VALUE.NULL") ? Value{type, {}} : read(child));
    }
    return {static_cast<CMPIType>(type | CMPI_ARRAY), std::move(elements)};
}

bool holdsEmbedded(pugi::xml_node holder) {
    for (const char* name : {"EmbeddedObject", "EMBEDDEDOBJECT"})
        if (!holder.attribute(name).empty())
            return true;
    return false;
}

} // namespace

void parseDocument(pugi::xml_document& document, std::string_view text) {
    const auto result = document.load_buffer(
        text.data(), text.size(), pugi::parse_default | pugi::parse_doctype | pugi::parse_ws_pcdata_single);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    if (!result)
        throw BadRequest(400, "request-not-well-formed", result.description());
    Checker checker;
    document.traverse(checker);
}

std::string elementText(pugi::xml_node element) {
    std::string text;
    for (const pugi::xml_node child : element.children())
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += child.value();
    return text;
}

std::string attribute(pugi::xml_node element, const char* name) {
    std::string value = element.attribute(name).value();
    if (value.empty())
        fail(std::string(element.name()) + " has no " + name);
    return value;
}

std::string readNameSpace(pugi::xml_node localNameSpacePath) {
    std::string path;
    for (const pugi::xml_node part : localNameSpacePath.children("NAMESPACE"))
        path += (path.empty() ? "" : "/") + attribute(part, "NAME");
    return path;
}

bool isPath(pugi::xml_node element) {
    constexpr const char* names[] = {"INSTANCENAME", "LOCALINSTANCEPATH", "INSTANCEPATH",
                                     "CLASSNAME",    "LOCALCLASSPATH",    "CLASSPATH"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* name) { return is(element, name); });
}

broker::ObjectPath readPath(pugi::xml_node element) {
    broker::ObjectPath path;
    if (!isPath(element))
        fail(std::string(element.name()) + " is no path");
    if (is(element, "LOCALINSTANCEPATH") || is(element, "LOCALCLASSPATH"))
        path.nameSpace = readNameSpace(element.child("LOCALNAMESPACEPATH"));
    else if (is(element, "INSTANCEPATH") || is(element, "CLASSPATH"))
        readNameSpacePath(element.child("NAMESPACEPATH"), path);
    for (const pugi::xml_node named : {element, element.child("INSTANCENAME"), element.child("CLASSNAME")}) {
        if (is(named, "INSTANCENAME")) {
            path.className = attribute(named, "CLASSNAME");
            readKeys(named, path);
        } else if (is(named, "CLASSNAME")) {
            path.className = attribute(named, "NAME");
        }
    }
    if (path.className.empty())
        fail(std::string(element.name()) + " names no class");
    return path;
}

broker::Instance readInstance(pugi::xml_node element) {
    if (!is(element, "INSTANCE"))
        fail(std::string(element.name()) + " is no INSTANCE");
    broker::Instance instance;
    instance.path.className = attribute(element, "CLASSNAME");
    for (const pugi::xml_node child : element.children())
        if (is(child, "PROPERTY") || is(child, "PROPERTY.ARRAY") || is(child, "PROPERTY.REFERENCE"))
            broker::set(instance.properties, attribute(child, "NAME"), readValue(child, "TYPE"));
    return instance;
}

broker::Instance readEmbeddedInstance(const std::string& text) {
    pugi::xml_document document;
    try {
        parseDocument(document, text);
    } catch (const BadRequest& error) {
        fail(std::string("an embedded instance: ") + error.what());
    }
    return readInstance(requireElement(document));
}

Value readValue(pugi::xml_node holder, const char* typeAttribute) {
    const bool isArray = is(holder, "PROPERTY.ARRAY");
    const bool embedded = holdsEmbedded(holder);
    const auto declared = declaredType(holder, typeAttribute);
    const CMPIType type = is(holder, "PROPERTY.REFERENCE") ? CMPI_ref
                          : embedded                       ? CMPI_instance
                                                           : declared.value_or(CMPI_string);
    const auto read = [&](pugi::xml_node value) {
        if (embedded)
            return readInstanceText(elementText(value));
        return type == CMPI_ref ? Value{CMPI_string, elementText(value)} : single(type, elementText(value));
    };
    const pugi::xml_node element = holder.find_child(
        [](pugi::xml_node child) { return child.type() == pugi::node_element && !is(child, "QUALIFIER"); });
    if (element.empty())
        return {static_cast<CMPIType>(type | (isArray ? CMPI_ARRAY : 0)), {}};
    if (is(element, "VALUE"))
        return read(element);
    if (is(element, "VALUE.ARRAY"))
        return readArray(element, type, read);
    if (is(element, "VALUE.REFERENCE"))
        return readReference(element);
    if (is(element, "VALUE.REFARRAY"))
        return readArray(element, CMPI_ref, readReference);
    if (isPath(element))
        return {CMPI_ref, std::make_shared<const broker::ObjectPath>(readPath(element))};
    if (is(element, "INSTANCE"))
        return {CMPI_instance, std::make_shared<const broker::Instance>(readInstance(element))};
    fail(std::string(holder.name()) + " holds no " + element.name());
}

} // namespace cimxml
