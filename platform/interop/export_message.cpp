#include "interop/export_message.h"

#include "interop/cim_xml.h"

#include <atomic>
#include <cstdint>

namespace interop {

std::string exportMessage(const CMPIInstance* indication) {
    static std::atomic<std::uint32_t> lastId = 0;
    pugi::xml_document document;
    auto declaration = document.append_child(pugi::node_declaration);
    addAttribute(declaration, "version", "1.0");
    addAttribute(declaration, "encoding", "utf-8");
    auto cim = addElement(document, "CIM");
    addAttribute(cim, "CIMVERSION", "2.0");
    addAttribute(cim, "DTDVERSION", "2.0");
    auto message = addElement(cim, "MESSAGE");
    addAttribute(message, "ID", std::to_string(++lastId));
    addAttribute(message, "PROTOCOLVERSION", "1.0");
    auto call = addElement(addElement(message, "SIMPLEEXPREQ"), "EXPMETHODCALL");
    addAttribute(call, "NAME", "ExportIndication");
    auto parameter = addElement(call, "EXPPARAMVALUE");
    addAttribute(parameter, "NAME", "NewIndication");
    addInstance(parameter, indication);
    return toText(document, true);
}

} // namespace interop
