// Values as the text of CIM-XML elements.
#include "cimxml/message.h"
#include "cimxml/value_reader.h"
#include "cimxml/value_text.h"
#include "cimxml/value_writer.h"

#include <gmock/gmock.h>

namespace {

using broker::Value;
using cimxml::parseValue;

// What is read of a text is written as the second one; without one it is refused.
TEST(CimXmlValues, TextOfEveryType) {
    struct Row {
        CMPIType type;
        const char* text;
        const char* written;
    };
    constexpr Row rows[] = {
        {CMPI_uint8, "255", "255"},
        {CMPI_uint8, "256", nullptr},
        {CMPI_uint8, "-1", nullptr},
        {CMPI_uint16, " 0xFfFf\n", "65535"},
        {CMPI_uint16, "101B", "5"},
        {CMPI_uint16, "", nullptr},
        {CMPI_uint16, "1 2", nullptr},
        {CMPI_uint32, "+4294967295", "4294967295"},
        {CMPI_uint64, "18446744073709551615", "18446744073709551615"},
        {CMPI_uint64, "18446744073709551616", nullptr},
        {CMPI_sint8, "-128", "-128"},
        {CMPI_sint8, "128", nullptr},
        {CMPI_sint32, "-0x80000000", "-2147483648"},
        {CMPI_sint64, "-9223372036854775808", "-9223372036854775808"},
        {CMPI_sint64, "9223372036854775808", nullptr},
        {CMPI_real32, "3", "3.0"},
        {CMPI_real64, "+1e30", "1.0e+30"},
        {CMPI_real64, "-inf", "-INF"},
        {CMPI_real64, "1,5", nullptr},
        {CMPI_boolean, "true", "TRUE"},
        {CMPI_boolean, "0", nullptr},
        {CMPI_char16, "\xE2\x82\xAC", "\xE2\x82\xAC"},
        {CMPI_char16, "ab", nullptr},
        {CMPI_dateTime, "20260131235959.000000+060", "20260131235959.000000+060"},
        {CMPI_dateTime, "2026", nullptr},
        {CMPI_string, "", ""},
    };
    for (const Row& row : rows) {
        const auto value = parseValue(row.type, row.text);
        SCOPED_TRACE(broker::typeName(row.type) + " \"" + row.text + '"');
        ASSERT_EQ(value.has_value(), row.written != nullptr);
        if (value) {
            EXPECT_EQ(value->type, row.type);
            EXPECT_EQ(cimxml::valueText(*value), row.written);
        }
    }
}

TEST(CimXmlValues, InstanceReadsBackAsItWasWritten) {
    const auto path = std::make_shared<const broker::ObjectPath>(
        broker::parseObjectPath(R"(//host:5988/root/cimv2:CIM_X.Name="a<\"&\\",Number=7,Flag=TRUE)"));
    const auto inner = std::make_shared<const broker::Instance>(
        broker::Instance{.path = {.host = {}, .nameSpace = {}, .className = "CIM_Inner", .keys = {}},
                         .properties = {{"Deeper", {CMPI_string, std::string("]]> \r\n <![CDATA[")}}}});
    const broker::Instance instance{
        .path = {.host = {}, .nameSpace = {}, .className = "CIM_Outer", .keys = {}},
        .properties = {
            {"Null", {CMPI_uint16, {}}},
            {"Blanks", {CMPI_string, std::string("  ")}},
            {"Empty", {CMPI_stringA, Value::Array{}}},
            {"List", {CMPI_stringA, Value::Array{{CMPI_string, std::string("a")}, {CMPI_string, {}}}}},
            {"Reference", {CMPI_ref, path}},
            {"Embedded", {CMPI_instance, inner}},
            {"Several", {CMPI_instanceA, Value::Array{{CMPI_instance, inner}, {CMPI_instance, {}}}}}}};
    std::string text;
    cimxml::XmlWriter xml([&](std::string_view part) { text += part; });
    cimxml::writeInstance(xml, instance);
    xml.flush();
    EXPECT_EQ(cimxml::readEmbeddedInstance(text), instance) << text;
}

} // namespace
