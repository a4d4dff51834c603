#include "operations/typing.h"

#include "cimxml/cim_error.h"
#include "cimxml/value_reader.h"
#include "cimxml/value_text.h"

#include <memory>

namespace server {
namespace {

using broker::Value;
using cimxml::CimError;
using cimxml::ErrorCode;

[[noreturn]] void refuse(const schema::Element& declared) {
    throw CimError(ErrorCode::TypeMismatch,
                   std::string(declared.name) + " is of type " + broker::typeName(declared.type));
}

Value toReference(const Value& value, const std::string& nameSpace) {
    broker::ObjectPath path;
    if (const auto* reference = value.as<Value::Reference>()) {
        path = **reference;
    } else {
        const auto* text = value.as<std::string>();
        path = broker::parseObjectPath(text != nullptr ? *text : "");
    }
    complete(path, nameSpace);
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(std::move(path))};
}

Value toEmbedded(const Value& value, const schema::Element& declared, const std::string& nameSpace) {
    broker::Instance instance;
    if (const auto* given = value.as<Value::Embedded>())
        instance = **given;
    else if (const auto* text = value.as<std::string>())
        instance = cimxml::readEmbeddedInstance(*text);
    else
        refuse(declared);
    instance.path.nameSpace = nameSpace;
    complete(instance, nameSpace);
    return {CMPI_instance, std::make_shared<const broker::Instance>(std::move(instance))};
}

Value toSingle(Value value, CMPIType type, const schema::Element& declared, const std::string& nameSpace) {
    if (value.isNull())
        return {type, {}};
    if (type == CMPI_ref)
        return toReference(value, nameSpace);
    if (type == CMPI_instance)
        return toEmbedded(value, declared, nameSpace);
    if (value.as<Value::Reference>() != nullptr || value.as<Value::Embedded>() != nullptr)
        refuse(declared);
    if (value.type == type)
        return value;
    // A number is not taken for a text where a client says of what type its value is.
    if (type == CMPI_string)
        refuse(declared);
    if (auto typed = cimxml::parseValue(type, cimxml::valueText(value)))
        return std::move(*typed);
    refuse(declared);
}

template <class Declared>
void typeAll(broker::NamedValues& values, const std::string& nameSpace, const char* owner,
             std::string_view ownerName, ErrorCode unknown, Declared declaredOf) {
    for (auto& [name, value] : values) {
        const schema::Element* declared = declaredOf(name);
        if (declared == nullptr)
            throw CimError(unknown, std::string(ownerName) + " has no " + owner + ' ' + name);
        name = declared->name;
        value = toType(std::move(value), *declared, nameSpace);
    }
}

} // namespace

Value toType(Value value, const schema::Element& declared, const std::string& nameSpace) {
    try {
        if (!declared.isArray()) {
            if (value.isArray())
                refuse(declared);
            return toSingle(std::move(value), declared.type, declared, nameSpace);
        }
        if (value.isNull())
            return {declared.type, {}};
        auto* elements = std::get_if<Value::Array>(&value.content);
        if (elements == nullptr)
            refuse(declared);
        for (Value& element : *elements)
            element = toSingle(std::move(element), static_cast<CMPIType>(declared.type & ~CMPI_ARRAY),
                               declared, nameSpace);
        value.type = declared.type;
        return value;
    } catch (const broker::PathSyntaxError& error) {
        throw CimError(ErrorCode::TypeMismatch, std::string(declared.name) + ": " + error.what());
    }
}

void complete(broker::ObjectPath& path, const std::string& nameSpace) {
    if (path.nameSpace.empty())
        path.nameSpace = nameSpace;
    const schema::Class* found = schema::find(path.className);
    if (found == nullptr)
        return;
    path.className = found->name;
    for (auto& [name, value] : path.keys) {
        const schema::Property* key = found->property(name);
        if (name.empty())
            for (const schema::Property& property : found->properties)
                if (property.isKey)
                    key = &property;
        if (key == nullptr)
            throw CimError(ErrorCode::InvalidParameter, path.className + " has no key " + name);
        name = key->name;
        // A numeral without quotes is still a text where the key is one.
        if (key->type == CMPI_string && !value.isNull() && value.as<Value::Reference>() == nullptr)
            value = {CMPI_string, cimxml::valueText(value)};
        value = toType(std::move(value), *key, path.nameSpace);
    }
}

void complete(broker::Instance& instance, const std::string& nameSpace) {
    const schema::Class* found = schema::find(instance.path.className);
    if (found == nullptr)
        return;
    instance.path.className = found->name;
    typeAll(instance.properties, nameSpace, "property", found->name, ErrorCode::InvalidParameter,
            [&](const std::string& name) { return found->property(name); });
}

void complete(broker::NamedValues& arguments, const schema::Method& method, const std::string& nameSpace) {
    typeAll(arguments, nameSpace, "parameter", method.name, ErrorCode::InvalidParameter,
            [&](const std::string& name) { return method.parameter(name); });
}

} // namespace server
