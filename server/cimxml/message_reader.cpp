#include "cimxml/message.h"
#include "cimxml/value_reader.h"
#include "interop/xml_text.h"

namespace cimxml {
namespace {

[[noreturn]] void refuse(const char* error, const std::string& description) {
    throw BadRequest(400, error, description);
}

pugi::xml_node require(pugi::xml_node parent, const char* name) {
    const pugi::xml_node child = parent.child(name);
    if (child.empty())
        refuse("request-not-valid", std::string(parent.name()) + " has no " + name);
    return child;
}

// Every version 2.x and 1.x is understood.
void checkVersion(pugi::xml_node element, const char* name, std::string_view major, const char* error) {
    const std::string_view version = element.attribute(name).value();
    if (version.empty())
        refuse("request-not-valid", std::string(element.name()) + " has no " + name);
    if (!version.starts_with(major))
        throw BadRequest(501, error, std::string(name) + ' ' + std::string(version) + " is not supported");
}

std::vector<std::string> readTexts(pugi::xml_node array) {
    std::vector<std::string> texts;
    for (const pugi::xml_node child : array.children("VALUE"))
        texts.push_back(elementText(child));
    return texts;
}

Argument readArgument(pugi::xml_node parameter) {
    const pugi::xml_node child =
        parameter.find_child([](pugi::xml_node node) { return node.type() == pugi::node_element; });
    if (child.empty())
        return {};
    if (is(child, "VALUE"))
        return elementText(child);
    if (is(child, "VALUE.ARRAY"))
        return readTexts(child);
    if (is(child, "CLASSNAME"))
        return ClassName{attribute(child, "NAME")};
    if (is(child, "VALUE.REFERENCE"))
        return readPath(child.first_child());
    if (isPath(child))
        return readPath(child);
    if (is(child, "INSTANCE"))
        return readInstance(child);
    if (is(child, "VALUE.NAMEDINSTANCE")) {
        broker::Instance instance = readInstance(child.child("INSTANCE"));
        instance.path = readPath(child.child("INSTANCENAME"));
        return instance;
    }
    throw CimError(ErrorCode::NotSupported, std::string("a parameter is no ") + child.name());
}

IntrinsicCall readIntrinsic(pugi::xml_node element) {
    IntrinsicCall call{.nameSpace = readNameSpace(element.child("LOCALNAMESPACEPATH")), .parameters = {}};
    for (const pugi::xml_node child : element.children("IPARAMVALUE"))
        call.parameters.push_back({attribute(child, "NAME"), readArgument(child)});
    return call;
}

ExtrinsicCall readExtrinsic(pugi::xml_node element) {
    ExtrinsicCall call;
    const pugi::xml_node target = element.find_child([](pugi::xml_node child) { return isPath(child); });
    if (target.empty())
        throw CimError(ErrorCode::InvalidParameter, "the method names no object");
    call.target = readPath(target);
    for (const pugi::xml_node child : element.children("PARAMVALUE"))
        broker::set(call.arguments, attribute(child, "NAME"), readValue(child, "PARAMTYPE"));
    return call;
}

Call readCall(pugi::xml_node request) {
    pugi::xml_node element = request.child("IMETHODCALL");
    const bool isExtrinsic = element.empty();
    if (isExtrinsic)
        element = require(request, "METHODCALL");
    const std::string name = element.attribute("NAME").value();
    if (name.empty())
        refuse("request-not-valid", std::string(element.name()) + " has no NAME");
    try {
        if (isExtrinsic)
            return {name, readExtrinsic(element), isExtrinsic};
        return {name, readIntrinsic(element), isExtrinsic};
    } catch (const CimError& error) {
        return {name, error, isExtrinsic};
    }
}

} // namespace

Message readMessage(std::string_view text) {
    // Refuses a byte order mark, and bytes that XML cannot carry: another reader might read them differently.
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    if (interop::xmlText(text) != text)
        refuse("request-not-well-formed", "the request is not UTF-8, or has control characters");
    pugi::xml_document document;
    parseDocument(document, text);
    const pugi::xml_node cim = require(document, "CIM");
    checkVersion(cim, "CIMVERSION", "2.", "unsupported-cim-version");
    checkVersion(cim, "DTDVERSION", "2.", "unsupported-dtd-version");
    const pugi::xml_node element = require(cim, "MESSAGE");
    checkVersion(element, "PROTOCOLVERSION", "1.", "unsupported-protocol-version");
    Message message{.id = element.attribute("ID").value(), .isMultiple = false, .calls = {}};
    if (!element.child("SIMPLEEXPREQ").empty() || !element.child("MULTIEXPREQ").empty())
        throw BadRequest(501, "unsupported-operation", "this is no listener for indications");
    if (const pugi::xml_node multiple = element.child("MULTIREQ")) {
        message.isMultiple = true;
        for (const pugi::xml_node request : multiple.children("SIMPLEREQ"))
            message.calls.push_back(readCall(request));
        if (message.calls.size() < 2)
            refuse("request-not-valid", "MULTIREQ has fewer than two requests");
    } else {
        message.calls.push_back(readCall(require(element, "SIMPLEREQ")));
    }
    return message;
}

} // namespace cimxml
