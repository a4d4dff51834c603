// The parameters of an intrinsic operation, checked against what it declares.
#pragma once

#include "broker/broker.h"
#include "cimxml/message.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace server {

enum class ArgumentKind { Flag, Number, Text, Texts, ClassName, InstanceName, ObjectName, Instance };

struct ArgumentRow {
    const char* name;
    ArgumentKind kind;
    bool isRequired = false;
};

class Arguments {
public:
    // Throw CimError for parameters that are unknown, given twice, missing or of another kind.
    Arguments(const std::vector<cimxml::Parameter>& given, std::span<const ArgumentRow> declared);

    bool flag(std::string_view name, bool otherwise) const;
    std::optional<std::uint32_t> number(std::string_view name) const;
    std::string text(std::string_view name) const; // empty: not given
    broker::PropertyList texts(std::string_view name) const;
    std::string className(std::string_view name) const; // empty: not given
    // Reads an ObjectName; one that means a class has no keys.
    broker::ObjectPath path(std::string_view name) const;
    const broker::Instance& instance(std::string_view name) const;

private:
    const cimxml::Argument* find(std::string_view name) const;

    const std::vector<cimxml::Parameter>& given_;
};

} // namespace server
