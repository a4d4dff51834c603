// Instances as text and JSON.
#include "instance_output.h"
#include "json_text.h"
#include "text_layout.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using broker::Instance;
using broker::Value;

Value text(const char* content) {
    return {CMPI_string, std::string(content)};
}

Instance instance(const char* name, broker::NamedValues properties) {
    Instance result{{.host = "", .nameSpace = "n", .className = "CIM_X", .keys = {{"Name", text(name)}}}, {}};
    result.properties = std::move(properties);
    return result;
}

class Output : public testing::Test {
protected:
    static void SetUpTestSuite() { phctl::useUtf8(); }
    static std::string print(const std::vector<Instance>& instances,
                             const broker::PropertyList& wanted = {}) {
        std::ostringstream out;
        phctl::InstanceText printed({.wanted = wanted});
        for (const Instance& each : instances)
            printed.add(each);
        printed.print(out);
        return out.str();
    }
};

TEST_F(Output, fewPropertiesMakeATable) {
    const Instance one = instance("a", {{"Name", text("a")},
                                        {"State", {CMPI_uint16, std::uint64_t{5}}},
                                        {"Empty", {CMPI_stringA, Value::Array{}}},
                                        {"Null", {CMPI_string, std::monostate{}}}});
    const Instance other = instance("b", {{"Name", text("b")}, {"State", {CMPI_uint16, std::uint64_t{12}}}});
    EXPECT_EQ(print({one, other}), "Name  State  Empty  Null\n"
                                   "a         5  {}     NULL\n"
                                   "b        12  -      -\n");
    // What is asked for, in that order, also where keys came along.
    EXPECT_EQ(print({one, other}, {{"state", "Missing"}}), "state  Missing\n"
                                                           "    5  -\n"
                                                           "   12  -\n");
    EXPECT_EQ(print({}), "");
}

TEST_F(Output, readingsAreScaledBesideTheirNumber) {
    const Instance sensor = instance("a", {{"CurrentReading", {CMPI_sint32, std::int64_t{4700}}},
                                           {"BaseUnits", {CMPI_uint16, std::uint64_t{1}}}});
    EXPECT_EQ(print({sensor}), "CurrentReading  Reading       BaseUnits\n"
                               "          4700  47 degrees C          1\n");
}

TEST_F(Output, manyPropertiesAreListedInstanceByInstance) {
    broker::NamedValues properties;
    for (int i = 0; i < 8; ++i)
        properties.push_back({"P" + std::to_string(i), {CMPI_uint16A, Value::Array{}}});
    properties.push_back({"Longer", text("NULL")});
    const std::string printed = print({instance("a", properties), instance("b", properties)});
    EXPECT_THAT(printed, testing::StartsWith("n:CIM_X.Name=\"a\"\n  P0     = {}\n"));
    EXPECT_THAT(printed, testing::HasSubstr("  Longer = \"NULL\"\n\nn:CIM_X.Name=\"b\"\n"));
}

TEST_F(Output, jsonKeepsTypesApart) {
    const auto path = std::make_shared<const broker::ObjectPath>(instance("r", {}).path);
    const auto embedded = std::make_shared<const Instance>(instance("e", {{"Name", text("e")}}));
    const Instance all = instance(
        "a",
        {{"Big", {CMPI_uint64, ~std::uint64_t{0}}},
         {"Negative", {CMPI_sint8, std::int64_t{-5}}},
         {"Flag", {CMPI_boolean, false}},
         {"Null", {CMPI_uint16, std::monostate{}}},
         {"Real", {CMPI_real64, 0.5}},
         {"Text", text("5")},
         {"List",
          {CMPI_uint16A, Value::Array{{CMPI_uint16, std::uint64_t{2}}, {CMPI_uint16, std::monostate{}}}}},
         {"Time", {CMPI_dateTime, broker::DateTime{.microseconds = 60'000'000, .interval = true}}},
         {"Reference", {CMPI_ref, path}},
         {"Instance", {CMPI_instance, embedded}}});
    EXPECT_EQ(phctl::toJson(all).dump(),
              R"({"path":"n:CIM_X.Name=\"a\"","properties":{"Big":18446744073709551615,"Negative":-5,)"
              R"("Flag":false,"Null":null,"Real":0.5,"Text":"5","List":[2,null],)"
              R"("Time":"00000000000100.000000:000","Reference":"n:CIM_X.Name=\"r\"",)"
              R"("Instance":{"path":"n:CIM_X.Name=\"e\"","properties":{"Name":"e"}}}})");
}

TEST_F(Output, jsonIsUtf8WhateverABmcSays) {
    std::ostringstream out;
    phctl::printJson(out, phctl::toJson(text("caf\xE9")));
    EXPECT_EQ(nlohmann::json::parse(out.str()), "caf\xEF\xBF\xBD");
}

} // namespace
