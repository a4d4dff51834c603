#include "arguments.h"

#include "errors.h"
#include "numbers.h"
#include "served_classes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

using broker::Value;

[[noreturn]] void fail(const std::string& name, const std::string& text, const std::string& expected) {
    throw UsageError(name + ": \"" + text + "\" is not " + expected);
}

// The width of one of the eight CMPI integer types, in bits.
int widthOf(CMPIType type) {
    return 8 << (type >> 4 & 3);
}

Value parseUnsigned(const std::string& name, CMPIType type, const std::string& text) {
    const auto number = readInteger<std::uint64_t>(text);
    const std::uint64_t highest = std::numeric_limits<std::uint64_t>::max() >> (64 - widthOf(type));
    if (!number || *number > highest)
        fail(name, text, "a " + broker::typeName(type) + " (0 to " + std::to_string(highest) + ")");
    return {type, *number};
}

Value parseSigned(const std::string& name, CMPIType type, const std::string& text) {
    const std::int64_t highest = std::numeric_limits<std::int64_t>::max() >> (64 - widthOf(type));
    const auto number = readNumber<std::int64_t>(text);
    if (!number || *number > highest || *number < -highest - 1)
        fail(name, text,
             "a " + broker::typeName(type) + " (" + std::to_string(-highest - 1) + " to " +
                 std::to_string(highest) + ")");
    return {type, *number};
}

Value parseScalar(const std::string& name, CMPIType type, const std::string& text,
                  const std::string& nameSpace) {
    switch (type) {
    case CMPI_boolean:
        if (!broker::sameName(text, "true") && !broker::sameName(text, "false"))
            fail(name, text, "a boolean (true or false)");
        return {type, broker::sameName(text, "true")};
    case CMPI_uint8:
    case CMPI_uint16:
    case CMPI_uint32:
    case CMPI_uint64:
        return parseUnsigned(name, type, text);
    case CMPI_sint8:
    case CMPI_sint16:
    case CMPI_sint32:
    case CMPI_sint64:
        return parseSigned(name, type, text);
    case CMPI_real32:
    case CMPI_real64: {
        const auto number = readNumber<double>(text);
        if (!number || !std::isfinite(*number))
            fail(name, text, "a number");
        return {type, *number};
    }
    case CMPI_string:
        return {type, text};
    case CMPI_dateTime: {
        const auto time = broker::DateTime::parse(text);
        if (!time)
            fail(name, text, "a datetime (yyyymmddhhmmss.mmmmmm+utc, or ddddddddhhmmss.mmmmmm:000)");
        return {type, *time};
    }
    case CMPI_ref:
        return {type, std::make_shared<const broker::ObjectPath>(parsePath(text, nameSpace))};
    default:
        throw UsageError(name + ": a value of type " + broker::typeName(type) + " cannot be given here");
    }
}

// "a,b\,c" is "a" and "b,c"; an empty text has no elements.
std::vector<std::string> splitList(const std::string& text) {
    std::vector<std::string> elements;
    if (text.empty())
        return elements;
    elements.emplace_back();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape =
            text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == ',' || text[i + 1] == '\\');
        if (text[i] == ',')
            elements.emplace_back();
        else
            elements.back() += text[isEscape ? ++i : i];
    }
    return elements;
}

// Returns a JSON value's texts, as they would stand on the command line.
std::vector<std::string> textsOf(const nlohmann::json& json) {
    std::vector<std::string> texts;
    for (const auto& element : json.is_array() ? json : nlohmann::json::array({json}))
        texts.push_back(element.is_string() ? element.get<std::string>() : element.dump());
    return texts;
}

// Reads a property of an embedded instance.
Value parseProperty(const std::string& name, const schema::Element& property, const nlohmann::json& json,
                    const std::string& nameSpace) {
    const std::string place = name + '.' + std::string(property.name);
    const auto elementType = static_cast<CMPIType>(property.type & ~CMPI_ARRAY);
    Value::Array elements;
    for (const std::string& text : textsOf(json))
        elements.push_back(parseScalar(place, elementType, text, nameSpace));
    if ((property.type & CMPI_ARRAY) != 0)
        return {property.type, std::move(elements)};
    if (elements.size() != 1)
        throw UsageError(place + " is no array");
    return std::move(elements.front());
}

const schema::Property& requireProperty(const std::string& name, const std::string& className,
                                        const std::string& member) {
    const schema::Class* described = servedClass(className);
    const schema::Property* property = described != nullptr ? servedProperty(*described, member) : nullptr;
    if (property == nullptr)
        throw UsageError(name + ": " + className + " has no property " + member);
    return *property;
}

// An instance as a JSON object of its properties. It may hold a password: errors do not show texts of it.
Value parseInstance(const std::string& name, const std::string& className, const std::string& text,
                    const std::string& nameSpace) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object())
        throw UsageError(name + R"( is an instance: give its properties as JSON, {"Name": "value", …})");
    broker::Instance instance{
        .path = {.host = {},
                 .nameSpace = nameSpace.empty() ? defaultNameSpace(className) : nameSpace,
                 .className = className,
                 .keys = {}},
        .properties = {}};
    for (const auto& [member, value] : json.items()) {
        const schema::Property& property = requireProperty(name, className, member);
        broker::set(instance.properties, std::string(property.name),
                    parseProperty(name, property, value, nameSpace));
    }
    return {CMPI_instance, std::make_shared<const broker::Instance>(std::move(instance))};
}

} // namespace

Value parseValue(const std::string& name, CMPIType type, const std::vector<std::string>& texts,
                 const std::string& nameSpace) {
    const auto elementType = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    if ((type & CMPI_ARRAY) == 0) {
        if (texts.size() != 1)
            throw UsageError(name + " is no array, and was given " + std::to_string(texts.size()) + " times");
        return parseScalar(name, elementType, texts.front(), nameSpace);
    }
    Value::Array elements;
    for (const std::string& text : texts) {
        if (text.empty()) // an array without elements
            continue;
        // Commas are part of an object path.
        for (const std::string& element : elementType == CMPI_ref ? std::vector{text} : splitList(text))
            elements.push_back(parseScalar(name, elementType, element, nameSpace));
    }
    return {type, std::move(elements)};
}

broker::NamedValues parseArguments(const std::vector<std::string>& arguments, const Declared& declared,
                                   const std::string& nameSpace, std::vector<std::string>& unknown) {
    struct Given {
        std::string name;
        std::vector<std::string> texts;
    };
    std::vector<Given> all;
    for (const std::string& argument : arguments) {
        const std::size_t sign = argument.find('=');
        if (sign == 0 || sign == std::string::npos)
            throw UsageError("expected Name=value instead of \"" + argument + '"');
        const std::string name = argument.substr(0, sign);
        auto same = std::find_if(all.begin(), all.end(),
                                 [&](const Given& given) { return broker::sameName(given.name, name); });
        if (same == all.end())
            same = all.insert(all.end(), {name, {}});
        same->texts.push_back(argument.substr(sign + 1));
    }
    broker::NamedValues values;
    for (const Given& given : all) {
        const auto declaration =
            std::find_if(declared.begin(), declared.end(), [&](const schema::Element* each) {
                return broker::sameName(each->name, given.name);
            });
        const bool isKnown = declaration != declared.end();
        if (!isKnown)
            unknown.push_back(given.name);
        const CMPIType type = isKnown                  ? (*declaration)->type
                              : given.texts.size() > 1 ? CMPI_stringA
                                                       : CMPI_string;
        values.push_back({isKnown ? std::string((*declaration)->name) : given.name,
                          type == CMPI_instance && given.texts.size() == 1
                              ? parseInstance(given.name, std::string((*declaration)->className),
                                              given.texts.front(), nameSpace)
                              : parseValue(given.name, type, given.texts, nameSpace)});
    }
    return values;
}

broker::ObjectPath parsePath(const std::string& text, const std::string& nameSpace) {
    broker::ObjectPath path;
    try {
        path = broker::parseObjectPath(text);
    } catch (const broker::PathSyntaxError& error) {
        throw UsageError("object path " + text + ": " + error.what() +
                         (text.find('"') == std::string::npos && text.find('=') != std::string::npos
                              ? " (for the shell, a path stands in single quotes)"
                              : ""));
    }
    if (path.nameSpace.empty())
        path.nameSpace = nameSpace.empty() ? defaultNameSpace(path.className) : nameSpace;
    if (const schema::Class* described = schema::find(path.className)) {
        path.className = described->name;
        for (auto& [name, value] : path.keys) {
            // Only the class tells whether a text is a reference.
            const schema::Property* key = described->property(name);
            const auto* reference = value.as<std::string>();
            if (key != nullptr && key->type == CMPI_ref && reference != nullptr)
                value = parseScalar(name, CMPI_ref, std::string(*reference), nameSpace);
        }
    }
    return path;
}

} // namespace phctl
