// Equality of CMPI values.
#include "broker_fixture.h"
#include "Utility/values/value_comparison.h"

namespace {

using broker::DateTime;
using broker::ObjectPath;
using broker::Value;

const Value same[][2] = {
    {null(CMPI_string), null(CMPI_uint8)},
    {text("a"), text("a")},
    {text(""), text("")},
    {number(255, CMPI_uint8), number(255, CMPI_uint8)},
    {number(UINT64_MAX, CMPI_uint64), number(UINT64_MAX, CMPI_uint64)},
    {negative(CMPI_sint16, -1), negative(CMPI_sint16, -1)},
    {{CMPI_boolean, true}, {CMPI_boolean, true}},
    {{CMPI_real32, 0.5}, {CMPI_real32, 0.5}},
    {{CMPI_real64, -0.0}, {CMPI_real64, 0.0}},
    {{CMPI_dateTime, DateTime{5, false, 60}}, {CMPI_dateTime, DateTime{5, false, 0}}},
    {text("5"), number(5)},
    {text("0x10"), number(16, CMPI_uint8)},
    {text("4294967295"), number(4294967295, CMPI_uint64)},
    {text("-5"), negative(CMPI_sint32, -5)},
    {text("+127"), negative(CMPI_sint8, 127)},
    {text("TRUE"), {CMPI_boolean, true}},
    {text("false"), {CMPI_boolean, false}},
};

const Value different[][2] = {
    {null(CMPI_string), text("")},
    {null(CMPI_uint8), number(0, CMPI_uint8)},
    {text("a"), text("A")},
    {number(1), number(257)},
    {number(1), number(1, CMPI_uint32)},
    {number(1, CMPI_uint64), number(0x1'0000'0001, CMPI_uint64)},
    {{CMPI_boolean, true}, number(1, CMPI_uint8)},
    {{CMPI_real64, 0.5}, {CMPI_real64, 0.25}},
    {{CMPI_real32, 1.0}, {CMPI_real64, 1.0}},
    {{CMPI_dateTime, DateTime{5, true, 0}}, {CMPI_dateTime, DateTime{6, true, 0}}},
    {text("5"), negative(CMPI_sint32, 5)}, // a signed number wants a sign
    {text("five"), number(5)},
    {text("6"), number(5)},
    {text("1"), {CMPI_boolean, true}},
    {text("0.5"), {CMPI_real64, 0.5}},
    {{CMPI_char16, std::uint64_t{65}}, {CMPI_char16, std::uint64_t{65}}}, // not a type that is compared
    {{CMPI_ref, std::make_shared<const ObjectPath>()}, {CMPI_ref, std::make_shared<const ObjectPath>()}},
};

class ValueComparison : public BrokerFixture {
protected:
    bool compare(const Value& a, const Value& b) { return ph::CompareDataValues(data(a), data(b)) == 1; }
};

TEST_F(ValueComparison, ofSingleValues) {
    for (const auto& [a, b] : same) {
        EXPECT_TRUE(compare(a, b)) << toText(a) << " " << toText(b);
        EXPECT_TRUE(compare(b, a)) << toText(b) << " " << toText(a);
    }
    for (const auto& [a, b] : different) {
        EXPECT_FALSE(compare(a, b)) << toText(a) << " " << toText(b);
        EXPECT_FALSE(compare(b, a)) << toText(b) << " " << toText(a);
    }
}

TEST_F(ValueComparison, onlyGoodAndNullValuesCompare) {
    const CMPIData good = data(number(5));
    for (const int state : {CMPI_keyValue, CMPI_notFound, CMPI_badValue}) {
        CMPIData other = good;
        other.state = static_cast<CMPIValueState>(state);
        EXPECT_FALSE(ph::CompareDataValues(good, other));
        EXPECT_FALSE(ph::CompareDataValues(other, good));
        EXPECT_FALSE(ph::CompareDataValues(other, other));
    }
}

TEST_F(ValueComparison, ofArrays) {
    const auto compareArrays = [&](const Value& a, const Value& b) {
        return ph::sameValue(data(a), data(b));
    };
    const Value numbers = arrayOf(CMPI_uint16, {number(1), number(2)});
    EXPECT_TRUE(compareArrays(numbers, numbers));
    EXPECT_TRUE(compareArrays(numbers, arrayOf(CMPI_string, {text("1"), text("0x2")})));
    EXPECT_TRUE(compareArrays(arrayOf(CMPI_string, {}), arrayOf(CMPI_string, {})));
    EXPECT_TRUE(
        compareArrays(arrayOf(CMPI_string, {null(CMPI_string)}), arrayOf(CMPI_string, {null(CMPI_string)})));
    EXPECT_TRUE(compareArrays(null(CMPI_uint16A), null(CMPI_uint16A)));
    EXPECT_FALSE(compareArrays(numbers, arrayOf(CMPI_uint16, {number(2), number(1)})));
    EXPECT_FALSE(compareArrays(numbers, arrayOf(CMPI_uint16, {number(1)})));
    EXPECT_FALSE(compareArrays(numbers, null(CMPI_uint16A)));
    EXPECT_FALSE(compareArrays(null(CMPI_uint16A), numbers));
    EXPECT_FALSE(compareArrays(numbers, number(1)));
}

TEST_F(ValueComparison, zeroes) {
    for (const Value& value :
         {number(0, CMPI_uint8), negative(CMPI_sint64, 0), Value{CMPI_boolean, false},
          Value{CMPI_real32, 0.0}, Value{CMPI_real64, 0.0}, null(CMPI_string), null(CMPI_ref)})
        EXPECT_TRUE(ph::isZero(data(value))) << toText(value);
    for (const Value& value :
         {number(1, CMPI_uint8), negative(CMPI_sint64, INT64_MIN), Value{CMPI_boolean, true},
          Value{CMPI_real32, 0.5}, text(""), arrayOf(CMPI_uint16, {})})
        EXPECT_FALSE(ph::isZero(data(value))) << toText(value);
    EXPECT_TRUE(ph::isZero(stringData(nullptr)));
}

} // namespace
