// CIM-XML requests. What is read can be written, and says the same when it is read again.
#include "target.h"

#include "cimxml/message.h"
#include "cimxml/value_reader.h"
#include "cimxml/value_writer.h"

#include <string>

namespace {

std::string write(const broker::Instance& instance) {
    std::string text;
    cimxml::XmlWriter xml([&](std::string_view part) { text += part; });
    cimxml::writeInstance(xml, instance);
    xml.flush();
    return text;
}

void checkInstance(const broker::Instance& instance) {
    if (instance.path.className.empty())
        return;
    const std::string text = write(instance);
    require(write(cimxml::readEmbeddedInstance(text)) == text, "an instance that was written reads back");
}

void check(const cimxml::IntrinsicCall& call) {
    for (const cimxml::Parameter& parameter : call.parameters)
        if (const auto* instance = std::get_if<broker::Instance>(&parameter.value))
            checkInstance({{.host = {}, .nameSpace = {}, .className = instance->path.className, .keys = {}},
                           instance->properties});
}

void check(const cimxml::ExtrinsicCall& call) {
    checkInstance({{.host = {}, .nameSpace = {}, .className = "CIM_Arguments", .keys = {}}, call.arguments});
}

void check(const cimxml::CimError&) {}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto message = cimxml::readMessage({reinterpret_cast<const char*>(data), size});
        require(!message.calls.empty(), "a message has a call");
        for (const cimxml::Call& call : message.calls)
            std::visit([](const auto& content) { check(content); }, call.content);
    } catch (const cimxml::BadRequest&) {
    }
    return 0;
}
