#include "cimxml/message_writer.h"

namespace cimxml {
namespace {

void writeError(XmlWriter& xml, const CimError& error) {
    xml.element("ERROR",
                {{"CODE", std::to_string(static_cast<unsigned>(error.code))}, {"DESCRIPTION", error.what()}});
}

void writeResponse(XmlWriter& xml, const Response& response) {
    xml.element("SIMPLERSP", {}, [&] {
        xml.element(response.isExtrinsic ? "METHODRESPONSE" : "IMETHODRESPONSE", {{"NAME", response.name}},
                    [&] {
                        if (const auto* body = std::get_if<Body>(&response.content))
                            (*body)(xml);
                        else
                            writeError(xml, std::get<CimError>(response.content));
                    });
    });
}

} // namespace

void writeMessage(XmlWriter& xml, const Message& message, const NextResponse& next) {
    const auto writeAll = [&] {
        for (const Call& call : message.calls)
            writeResponse(xml, next(call));
    };
    xml.declaration();
    xml.element("CIM", {{"CIMVERSION", "2.0"}, {"DTDVERSION", "2.0"}}, [&] {
        xml.element("MESSAGE", {{"ID", message.id}, {"PROTOCOLVERSION", "1.0"}}, [&] {
            if (message.isMultiple)
                xml.element("MULTIRSP", {}, writeAll);
            else
                writeAll();
        });
    });
    xml.flush();
}

} // namespace cimxml
