#include "host_power.h"

#include "errors.h"
#include "schema/class_schema.h"

#include <algorithm>
#include <iostream>

namespace phctl {
namespace {

constexpr const char* hostClass = "CIM_HostComputerSystem";
constexpr const char* association = "CIM_AssociatedPowerManagementService";
constexpr const char* powerState = "PowerState";

// Returns the state in the words of DMTF's value map, or as a number where that has no words.
std::string meaningOf(const std::string& state) {
    const auto& values = schema::find(association)->property(powerState)->values;
    const auto known = std::ranges::find(values, state, &schema::Value::value);
    return known != values.end() ? std::string(known->meaning) : state;
}

// Asks beside what the user asked for: a failure here does not fail the command.
broker::Reply ask(Requester& requester, const broker::ObjectPath& host) {
    try {
        return requester.execute({.operation = broker::Request::Operation::References,
                                  .path = host,
                                  .properties = broker::PropertyList({powerState}),
                                  .filter = {.resultClass = association}});
    } catch (const Failure&) {
        return {};
    }
}

} // namespace

bool isHost(const broker::ObjectPath& path) {
    return broker::sameName(path.className, hostClass);
}

void printHostPower(Requester& requester, const broker::ObjectPath& host) {
    for (const broker::Instance& power : ask(requester, host).instances)
        if (const broker::Value* state = broker::find(power.properties, powerState))
            std::cout << "Power: " << meaningOf(broker::toText(*state)) << '\n';
}

} // namespace phctl
