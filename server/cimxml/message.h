// A CIM-XML request (DSP0200, 5.4 and DSP0201) as C++ values, with nothing known of its operations or classes.
#pragma once

#include "broker/value.h"
#include "cimxml/cim_error.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace cimxml {

struct ClassName {
    std::string name;
};

// What an IPARAMVALUE holds: nothing, a text, texts, or what an object is named or described by.
using Argument = std::variant<std::monostate, std::string, std::vector<std::string>, ClassName,
                              broker::ObjectPath, broker::Instance>;

struct Parameter {
    std::string name;
    Argument value;
};

struct IntrinsicCall {
    std::string nameSpace;
    std::vector<Parameter> parameters;
};

// A method of an instance, or without keys of a class.
struct ExtrinsicCall {
    broker::ObjectPath target;
    broker::NamedValues arguments;
};

// Values without a TYPE are strings, and numbers of the widest type.
struct Call {
    std::string name;
    // The call's own error, which does not concern the other calls of the message.
    std::variant<IntrinsicCall, ExtrinsicCall, CimError> content;
    bool isExtrinsic = false;
};

struct Message {
    std::string id;
    bool isMultiple = false;
    std::vector<Call> calls;
};

// Throws BadRequest.
Message readMessage(std::string_view text);

} // namespace cimxml
