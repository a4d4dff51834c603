#include "virtual-bmc/faults.h"

#include "virtual-bmc/state/json_fields.h"

#include <algorithm>

namespace vbmc {
namespace {

constexpr Choice kinds[] = {{Fault::CompletionCode, "completion code"},
                            {Fault::ShortAnswer, "short answer"},
                            {Fault::Late, "late"},
                            {Fault::Silent, "silent"}};

bool isOf(const Fault& fault, std::uint8_t netFn, std::uint8_t command) {
    return fault.netFn == netFn && fault.command == command;
}

bool isCounted(const Fault& fault) {
    return fault.skip > 0 || fault.calls > 0;
}

} // namespace

void FaultEntry::fields(Fields& fields) {
    fields.required("netFn", netFn);
    fields.required("command", command);
    fields.choice("kind", kind, kinds);
    fields("value", value);
    fields("skip", skip);
    fields("calls", calls);
}

void FaultEntry::check(const Place& place) const {
    const Place valuePlace{&place, "value"};
    if (kind == CompletionCode && (value == 0 || value > 0xFF))
        fail(valuePlace, "a completion code other than 00h is expected");
    if (kind == ShortAnswer && value == 0)
        fail(valuePlace, "an answer has 1 byte at least");
}

const Fault* Faults::strike(std::uint8_t netFn, std::uint8_t command) const {
    const auto found = std::ranges::find_if(
        list, [&](const Fault& fault) { return isOf(fault, netFn, command) && fault.skip == 0; });
    return found != list.end() ? &*found : nullptr;
}

bool Faults::counts(std::uint8_t netFn, std::uint8_t command) const {
    return std::ranges::any_of(
        list, [&](const Fault& fault) { return isOf(fault, netFn, command) && isCounted(fault); });
}

void Faults::countCall(std::uint8_t netFn, std::uint8_t command) {
    const Fault* const struck = strike(netFn, command);
    std::erase_if(list, [&](FaultEntry& fault) {
        if (&fault == struck)
            return fault.calls > 0 && --fault.calls == 0;
        if (isOf(fault, netFn, command) && fault.skip > 0)
            --fault.skip;
        return false;
    });
}

Json Faults::describe(const State&) const {
    if (list.empty())
        return {};
    Json json = Json::array();
    for (FaultEntry fault : list) {
        Json row = Json::object();
        row["netFn"] = fault.netFn;
        row["command"] = fault.command;
        row["kind"] = nameOf(kinds, fault.kind);
        row["value"] = fault.value;
        row["skip"] = fault.skip;
        row["calls"] = fault.calls;
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
