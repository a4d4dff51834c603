#include "operations/arguments.h"

#include "cimxml/cim_error.h"
#include "cimxml/value_text.h"

#include <algorithm>

namespace server {
namespace {

using cimxml::Argument;
using cimxml::CimError;
using cimxml::ErrorCode;
using Texts = std::vector<std::string>;

bool isOf(ArgumentKind kind, const Argument& value) {
    const auto* text = std::get_if<std::string>(&value);
    switch (kind) {
    case ArgumentKind::Flag:
        return text != nullptr && cimxml::parseValue(CMPI_boolean, *text).has_value();
    case ArgumentKind::Number:
        return text != nullptr && cimxml::parseValue(CMPI_uint32, *text).has_value();
    case ArgumentKind::Text:
        return text != nullptr;
    case ArgumentKind::Texts:
        return std::holds_alternative<Texts>(value);
    case ArgumentKind::ClassName:
        return std::holds_alternative<cimxml::ClassName>(value);
    case ArgumentKind::InstanceName:
        return std::holds_alternative<broker::ObjectPath>(value);
    case ArgumentKind::ObjectName:
        return std::holds_alternative<broker::ObjectPath>(value) ||
               std::holds_alternative<cimxml::ClassName>(value);
    case ArgumentKind::Instance:
        return std::holds_alternative<broker::Instance>(value);
    }
    return false;
}

bool isNull(const Argument& value) {
    return std::holds_alternative<std::monostate>(value);
}

[[noreturn]] void refuse(const std::string& name, const char* why) {
    throw CimError(ErrorCode::InvalidParameter, "parameter " + name + ' ' + why);
}

} // namespace

Arguments::Arguments(const std::vector<cimxml::Parameter>& given, std::span<const ArgumentRow> declared)
    : given_(given) {
    for (const cimxml::Parameter& parameter : given) {
        const auto row = std::find_if(declared.begin(), declared.end(), [&](const ArgumentRow& each) {
            return broker::sameName(each.name, parameter.name);
        });
        if (row == declared.end())
            refuse(parameter.name, "is unknown");
        if (&parameter.value != find(parameter.name))
            refuse(parameter.name, "is given twice");
        if (!isNull(parameter.value) && !isOf(row->kind, parameter.value))
            refuse(parameter.name, "has a value of another kind");
    }
    for (const ArgumentRow& row : declared)
        if (const Argument* value = find(row.name); row.isRequired && (value == nullptr || isNull(*value)))
            refuse(row.name, "is missing");
}

const Argument* Arguments::find(std::string_view name) const {
    for (const cimxml::Parameter& parameter : given_)
        if (broker::sameName(parameter.name, name))
            return &parameter.value;
    return nullptr;
}

std::string Arguments::text(std::string_view name) const {
    const Argument* value = find(name);
    const auto* text = value != nullptr ? std::get_if<std::string>(value) : nullptr;
    return text != nullptr ? *text : "";
}

bool Arguments::flag(std::string_view name, bool otherwise) const {
    const std::string given = text(name);
    return given.empty() ? otherwise
                         : std::get<bool>(cimxml::parseValue(CMPI_boolean, given).value().content);
}

std::optional<std::uint32_t> Arguments::number(std::string_view name) const {
    const std::string given = text(name);
    if (given.empty())
        return std::nullopt;
    return static_cast<std::uint32_t>(
        std::get<std::uint64_t>(cimxml::parseValue(CMPI_uint32, given).value().content));
}

broker::PropertyList Arguments::texts(std::string_view name) const {
    const Argument* value = find(name);
    const auto* list = value != nullptr ? std::get_if<Texts>(value) : nullptr;
    return list != nullptr ? broker::PropertyList(*list) : std::nullopt;
}

std::string Arguments::className(std::string_view name) const {
    const Argument* value = find(name);
    const auto* given = value != nullptr ? std::get_if<cimxml::ClassName>(value) : nullptr;
    return given != nullptr ? given->name : "";
}

broker::ObjectPath Arguments::path(std::string_view name) const {
    const Argument* value = find(name);
    if (value == nullptr || isNull(*value))
        return {};
    if (const auto* given = std::get_if<cimxml::ClassName>(value))
        return {.host = {}, .nameSpace = {}, .className = given->name, .keys = {}};
    return std::get<broker::ObjectPath>(*value);
}

const broker::Instance& Arguments::instance(std::string_view name) const {
    return std::get<broker::Instance>(*find(name));
}

} // namespace server
