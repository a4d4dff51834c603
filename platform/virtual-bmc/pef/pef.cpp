#include "virtual-bmc/pef/pef.h"

#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/set_in_progress.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace pef = ipmi::pef;

constexpr std::uint8_t numberMask = 0x7F;

// ---- Tables

template <class Entry>
const Entry* find(const std::vector<Entry>& entries, std::uint8_t number) {
    const auto found = std::ranges::find(entries, number, &Entry::number);
    return found != entries.end() ? &*found : nullptr;
}

bool isSlot(std::uint8_t number, std::uint8_t count) {
    return number >= 1 && number <= count;
}

template <class Entry>
std::uint8_t readEntry(const std::vector<Entry>& entries, std::uint8_t count, std::uint8_t selector,
                       ipmi::Writer& answer) {
    const std::uint8_t number = selector & numberMask;
    if (!isSlot(number, count))
        return completion::parameterOutOfRange;
    const Entry* const entry = find(entries, number);
    answer.u8(number).bytes(entry != nullptr ? entry->bytes : Entry().bytes);
    return completion::success;
}

template <class Entry>
bool put(std::vector<Entry>& entries, std::uint8_t count, std::uint8_t number,
         std::span<const std::uint8_t> bytes) {
    if (!isSlot(number, count))
        return false;
    const auto place = std::ranges::lower_bound(entries, number, {}, &Entry::number);
    const bool isThere = place != entries.end() && place->number == number;
    Entry& entry = isThere ? *place : *entries.insert(place, Entry{.number = number});
    std::ranges::copy(bytes, entry.bytes.begin());
    return true;
}

template <class Entry>
std::uint8_t writeEntry(std::vector<Entry>& entries, std::uint8_t count, ipmi::Reader request) {
    const std::uint8_t number = request.u8() & numberMask;
    const auto bytes = request.bytes(Entry().bytes.size());
    if (!request.ok())
        return completion::requestLengthInvalid;
    return put(entries, count, number, bytes) ? completion::success : completion::parameterOutOfRange;
}

template <class Entry>
void checkTable(const Place& place, const char* name, const std::vector<Entry>& entries, std::uint8_t count) {
    const Place table{&place, name};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (!isSlot(entries[i].number, count))
            fail(Place{&table, nullptr, i}, "there are the numbers 1 to " + std::to_string(count));
        if (i > 0 && entries[i].number <= entries[i - 1].number)
            fail(Place{&table, nullptr, i}, "entries stand in the order of their numbers");
    }
}

// ---- Commands

std::uint8_t getCapabilities(State& state, ipmi::Reader, ipmi::Writer& answer) {
    answer.u8(pef::version).u8(pef::alertAction).u8(state.get<Pef>().filterCount);
    return completion::success;
}

std::uint8_t setPefParameters(State& state, ipmi::Reader request, ipmi::Writer&) {
    auto& machine = state.edit<Pef>();
    const std::uint8_t number = request.u8() & numberMask;
    switch (number) {
    case pef::parameter::setInProgress:
        return setProgress(machine.isSetInProgress, request.u8());
    case pef::parameter::control:
        machine.control = request.u8();
        return completion::success;
    case pef::parameter::actionControl:
        machine.actionControl = request.u8();
        return completion::success;
    case pef::parameter::filter:
        return writeEntry(machine.filters, machine.filterCount, request);
    case pef::parameter::policy:
        return writeEntry(machine.policies, machine.policyCount, request);
    case pef::parameter::filterCount:
    case pef::parameter::policyCount:
        return pef::parameterIsReadOnly;
    default:
        return pef::parameterNotSupported;
    }
}

std::uint8_t getPefParameters(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& machine = state.get<Pef>();
    const std::uint8_t number = request.u8();
    const std::uint8_t selector = request.u8();
    constexpr std::uint8_t revisionOnly = 0x80;
    answer.u8(pef::parameterRevision);
    if ((number & revisionOnly) != 0)
        return completion::success;
    switch (number) {
    case pef::parameter::setInProgress:
        answer.u8(machine.isSetInProgress);
        return completion::success;
    case pef::parameter::control:
        answer.u8(machine.control);
        return completion::success;
    case pef::parameter::actionControl:
        answer.u8(machine.actionControl);
        return completion::success;
    case pef::parameter::filterCount:
        answer.u8(machine.filterCount);
        return completion::success;
    case pef::parameter::filter:
        return readEntry(machine.filters, machine.filterCount, selector, answer);
    case pef::parameter::policyCount:
        answer.u8(machine.policyCount);
        return completion::success;
    case pef::parameter::policy:
        return readEntry(machine.policies, machine.policyCount, selector, answer);
    default:
        return pef::parameterNotSupported;
    }
}

} // namespace

template <std::size_t Size>
void PefEntry<Size>::fields(Fields& fields) {
    fields.required("number", number);
    fields.required("bytes", bytes);
}

template <std::size_t Size>
void PefEntry<Size>::check(const Place& place) const {
    if (bytes.size() != Size)
        fail(Place{&place, "bytes"}, "it has " + std::to_string(Size) + " bytes");
}

std::span<const Command> Pef::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getPefCapabilities, 0, getCapabilities},
        {ipmi::command::setPefConfiguration, 2, setPefParameters},
        {ipmi::command::getPefConfiguration, 3, getPefParameters},
    };
    return table;
}

void Pef::fields(Fields& fields) {
    fields.number("filterCount", filterCount, 0, numberMask);
    fields("filters", filters);
    fields.number("policyCount", policyCount, 0, numberMask);
    fields("policies", policies);
    fields("control", control);
    fields("actionControl", actionControl);
    fields("setInProgress", isSetInProgress);
}

void Pef::check(const Place& place) const {
    checkTable(place, "filters", filters, filterCount);
    checkTable(place, "policies", policies, policyCount);
}

bool Pef::setPolicy(std::uint8_t number, std::span<const std::uint8_t, pef::policySize> bytes) {
    return put(policies, policyCount, number, bytes);
}

// The filters and the policy entries that are enabled.
Json Pef::describe(const State&) const {
    Json filterRows = Json::array();
    for (const PefFilter& filter : filters) {
        if ((filter.bytes[0] & pef::filterEnabled) == 0)
            continue;
        Json row = Json::object();
        row["number"] = filter.number;
        row["policy"] = filter.bytes[2] & pef::policyNumberMask;
        row["severity"] = writeHex(std::span(filter.bytes).subspan(3, 1));
        row["sensorType"] = writeHex(std::span(filter.bytes).subspan(6, 1));
        row["sensor"] = writeHex(std::span(filter.bytes).subspan(7, 1));
        filterRows.push_back(std::move(row));
    }
    Json policyRows = Json::array();
    for (const AlertPolicy& entry : policies) {
        if ((entry.bytes[0] & pef::policyEnabled) == 0)
            continue;
        Json row = Json::object();
        row["number"] = entry.number;
        row["policy"] = entry.bytes[0] >> 4;
        row["rule"] = entry.bytes[0] & pef::policyRuleMask;
        row["channel"] = entry.bytes[1] >> 4;
        row["selector"] = entry.bytes[1] & 0x0F;
        policyRows.push_back(std::move(row));
    }
    Json json = Json::object();
    json["enabled"] = (control & pef::enabled) != 0;
    json["sendsAlerts"] = (actionControl & pef::alertAction) != 0;
    json["filters"] = std::move(filterRows);
    json["policies"] = std::move(policyRows);
    return json;
}

} // namespace vbmc
