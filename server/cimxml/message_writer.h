// Responses (DSP0200, 5.4.2).
#pragma once

#include "cimxml/message.h"
#include "cimxml/xml_writer.h"

#include <functional>
#include <optional>

namespace cimxml {

// Writes what is in an element.
using Body = std::function<void(XmlWriter&)>;

// The outcome of a call.
struct Response {
    std::string name; // of the operation or the method
    bool isExtrinsic = false;
    // Writes what IMETHODRESPONSE or METHODRESPONSE holds, or why there is nothing.
    std::variant<Body, CimError> content;
};

// It is asked for one response after the other, so that only one is held at a time.
using NextResponse = std::function<Response(const Call& call)>;

void writeMessage(XmlWriter& xml, const Message& message, const NextResponse& next);

} // namespace cimxml
