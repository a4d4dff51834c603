// The intrinsic operations (DSP0200, 5.3.2): each is a row of a table.
#pragma once

#include "cimxml/message_writer.h"
#include "operations/arguments.h"
#include "operations/caller.h"
#include "operations/catalog.h"
#include "operations/objects.h"

#include <span>

namespace server {

class OpenEnumerations;

// An operation that is under way.
struct Operation {
    Objects& objects;
    OpenEnumerations& enumerations;
    const Caller& caller;
    std::string nameSpace;
    const Arguments& arguments;
};

struct OperationRow {
    const char* name;
    Access access;
    std::span<const ArgumentRow> arguments;
    // Carries it out, and returns what writes the outcome. Throws CimError.
    cimxml::Body (*run)(const Operation& operation);
};

std::span<const OperationRow> instanceOperations();
std::span<const OperationRow> associationOperations();
std::span<const OperationRow> pullOperations();
std::span<const OperationRow> classOperations();

// Writes the IRETURNVALUE with what `write` makes of each item.
template <class Items, class Write>
cimxml::Body returnItems(Items items, Write write) {
    return [items = std::move(items), write](cimxml::XmlWriter& xml) {
        xml.element("IRETURNVALUE", {}, [&] {
            for (const auto& item : items)
                write(xml, item);
        });
    };
}

inline cimxml::Body returnNothing() {
    return [](cimxml::XmlWriter&) {};
}

} // namespace server
