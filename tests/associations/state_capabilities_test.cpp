// What RequestedStatesSupported says is what RequestStateChange does: every class with the method has capabilities, and a
// state that they do not name is refused.
#include "association_fixture.h"
#include "schema/class_schema.h"

#include <algorithm>

namespace {

class StateCapabilities : public Associations {
protected:
    std::vector<std::uint64_t> supportedBy(const broker::ObjectPath& element) {
        std::vector<std::uint64_t> states;
        for (const auto& each :
             broker.associators(element, {.assocClass = "CIM_ElementCapabilities"}).instances)
            if (const auto* value = broker::find(each.properties, "RequestedStatesSupported"))
                for (const broker::Value& state : *value->as<broker::Value::Array>())
                    states.push_back(*state.as<std::uint64_t>());
        return states;
    }
};

TEST_F(StateCapabilities, nameAllStatesThatAreTaken) {
    std::size_t count = 0;
    for (const schema::Class& each : schema::servedClasses()) {
        if (std::ranges::none_of(each.servedMethods(),
                                 [](const auto& method) { return method.name == "RequestStateChange"; }))
            continue;
        const auto element = this->element(std::string(each.name));
        const auto supported = supportedBy(element);
        EXPECT_FALSE(supported.empty()) << each.name;
        for (std::uint16_t state = 2; state <= 11; ++state) {
            if (std::ranges::find(supported, state) != supported.end())
                continue;
            const auto reply =
                broker.invokeMethod(element, "RequestStateChange", {{"RequestedState", number(state)}});
            EXPECT_FALSE(reply.ok() && broker::toText(reply.values.at(0)) == "0")
                << each.name << " takes " << state;
        }
        ++count;
    }
    EXPECT_GT(count, 10U);
}

} // namespace
