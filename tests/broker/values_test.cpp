// Values and points in time: their texts, and their way through CMPI and back.
#include "broker/broker.h"

#include <cmpimacs.h>
#include <ctime>
#include <gmock/gmock.h>

namespace {

using broker::Broker;
using broker::DateTime;
using broker::Instance;
using broker::ObjectPath;
using broker::Scope;
using broker::Value;

const ObjectPath disk{"host", "root/cimv2", "CIM_Disk", {{"DeviceID", {CMPI_string, std::string("sda")}}}};

Value arrayOf(CMPIType type, Value::Array elements) {
    return {static_cast<CMPIType>(type | CMPI_ARRAY), std::move(elements)};
}

const struct {
    Value value;
    std::string text;
} valueCases[] = {
    {{CMPI_uint16, {}}, "NULL"},
    {{CMPI_boolean, true}, "TRUE"},
    {{CMPI_boolean, false}, "FALSE"},
    {{CMPI_uint8, std::uint64_t{255}}, "255"},
    {{CMPI_uint16, std::uint64_t{65535}}, "65535"},
    {{CMPI_char16, std::uint64_t{0x20AC}}, "8364"},
    {{CMPI_uint32, std::uint64_t{4294967295}}, "4294967295"},
    {{CMPI_uint64, ~std::uint64_t{0}}, "18446744073709551615"},
    {{CMPI_sint8, std::int64_t{-128}}, "-128"},
    {{CMPI_sint16, std::int64_t{-32768}}, "-32768"},
    {{CMPI_sint32, std::int64_t{-2147483648}}, "-2147483648"},
    {{CMPI_sint64, INT64_MIN}, "-9223372036854775808"},
    {{CMPI_real32, double{0.1F}}, "0.1"},
    {{CMPI_real64, -2.5}, "-2.5"},
    {{CMPI_string, std::string("a \"b\"")}, "a \"b\""},
    {{CMPI_string, std::string()}, ""},
    {{CMPI_dateTime, DateTime{1'000'000, true, 0}}, "00000000000001.000000:000"},
    {{CMPI_ref, std::make_shared<const ObjectPath>(disk)}, "//host/root/cimv2:CIM_Disk.DeviceID=\"sda\""},
    {{CMPI_instance, std::make_shared<const Instance>(Instance{disk, {{"Size", {CMPI_uint64, {}}}}})},
     "instance of CIM_Disk"},
    {arrayOf(CMPI_uint16, {{CMPI_uint16, std::uint64_t{2}}, {CMPI_uint16, {}}}), "{2, NULL}"},
    {arrayOf(CMPI_string, {{CMPI_string, std::string("a, b")}, {CMPI_string, {}}}), "{\"a, b\", NULL}"},
    {arrayOf(CMPI_string, {}), "{}"},
    {arrayOf(CMPI_instance, {{CMPI_instance, std::make_shared<const Instance>(Instance{disk, {}})}}),
     "{instance of CIM_Disk}"},
};

TEST(Value, roundTripsThroughAProperty) {
    Broker broker;
    for (const auto& [value, text] : valueCases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(toText(value), text);
        Scope scope(broker);
        CMPIInstance* instance = scope.make(Instance{});
        const CMPIData given = scope.makeData(value);
        EXPECT_EQ(given.type, value.type);
        EXPECT_EQ(CMIsNullValue(given), value.isNull());
        EXPECT_EQ(CMSetProperty(instance, "P", value.isNull() ? nullptr : &given.value, given.type).rc,
                  CMPI_RC_OK);
        CMPIStatus status{};
        EXPECT_EQ(broker::toValue(CMGetProperty(instance, "p", &status)), value);
        EXPECT_EQ(status.rc, CMPI_RC_OK);
        EXPECT_EQ(broker::toInstance(instance).properties, (broker::NamedValues{{"P", value}}));
    }
    EXPECT_EQ(broker.liveObjects(), 0U);
}

TEST(Value, differsByTypeAndByTarget) {
    EXPECT_NE((Value{CMPI_uint8, std::uint64_t{1}}), (Value{CMPI_uint16, std::uint64_t{1}}));
    ObjectPath other = disk;
    other.nameSpace = "root/other";
    EXPECT_NE((Value{CMPI_ref, std::make_shared<const ObjectPath>(disk)}),
              (Value{CMPI_ref, std::make_shared<const ObjectPath>(other)}));
}

struct TimeCase {
    const char* text;
    std::uint64_t microseconds;
};

// Seconds since 1970 as GNU date gives them.
constexpr TimeCase times[] = {
    {"19700101000000.000000+000", 0},
    {"20260131235959.250000+060", 1769900399'250000},
    {"20240229120000.000000-300", 1709226000'000000},
    {"19700101000000.000000-720", 43200'000000},
    {"00000001020304.000005:000", 93784'000005},
    {"99999999235959.999999:000", 8639999999999'999999},
};

TEST(DateTime, textRoundTrip) {
    for (const TimeCase& time : times) {
        SCOPED_TRACE(time.text);
        const auto parsed = DateTime::parse(time.text);
        ASSERT_TRUE(parsed.has_value());
        EXPECT_EQ(parsed->microseconds, time.microseconds);
        EXPECT_EQ(parsed->text(), time.text);
    }
}

TEST(DateTime, refusesWhatIsNoTime) {
    for (const char* text :
         {"", "20260131235959.250000+06", "20260131235959.250000+0600", "20260231000000.000000+000",
          "20261301000000.000000+000", "20260131240000.000000+000", "20260131236000.000000+000",
          "20260131235960.000000+000", "20260131235959,000000+000", "20260131235959.000000*000",
          "19691231235959.000000+000", "2026013123595a.000000+000", "00000001020304.000000:001",
          "********235959.000000+000", "+0260131235959.000000+000"})
        EXPECT_FALSE(DateTime::parse(text).has_value()) << text;
}

TEST(DateTime, throughCmpi) {
    Broker broker;
    const Scope scope(broker);
    CMPIStatus status{};
    const CMPIDateTime* time = CMNewDateTimeFromChars(broker.handle(), "20260131235959.250000+060", &status);
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(CMGetBinaryFormat(time, nullptr), 1769900399'250000U);
    EXPECT_STREQ(CMGetCharPtr(CMGetStringFormat(time, nullptr)), "20260131235959.250000+060");
    EXPECT_FALSE(CMIsInterval(time, nullptr));

    const CMPIDateTime* interval = CMNewDateTimeFromBinary(broker.handle(), 93784'000005U, 1, &status);
    EXPECT_TRUE(CMIsInterval(interval, nullptr));
    EXPECT_STREQ(CMGetCharPtr(CMGetStringFormat(interval, nullptr)), "00000001020304.000005:000");

    EXPECT_EQ(CMNewDateTimeFromChars(broker.handle(), "yesterday", &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);

    const CMPIUint64 now = CMGetBinaryFormat(CMNewDateTime(broker.handle(), nullptr), nullptr);
    EXPECT_NEAR(static_cast<double>(now) / 1e6, static_cast<double>(std::time(nullptr)), 60);
}

} // namespace
