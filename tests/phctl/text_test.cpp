// What phctl makes of texts: suggestions, columns, values and paths of the command line, readings.
#include "arguments.h"
#include "errors.h"
#include "names.h"
#include "reading_text.h"
#include "text_layout.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using broker::Value;
using phctl::UsageError;
using testing::HasSubstr;

const std::vector<std::string> classes = {"CIM_Sensor", "CIM_NumericSensor", "CIM_HostComputerSystem"};

TEST(Names, nearMissesAreSuggestedAndOthersAreNot) {
    EXPECT_EQ(phctl::nearest("CIM_Senser", classes), "CIM_Sensor");
    EXPECT_EQ(phctl::nearest("cim_numericsensor", classes), "CIM_NumericSensor");
    EXPECT_EQ(phctl::nearest("NumericSensor", classes), "CIM_NumericSensor");
    EXPECT_EQ(phctl::nearest("CIM_Host", classes), "CIM_HostComputerSystem");
    EXPECT_EQ(phctl::nearest("CIM_Fan", classes), "");
    EXPECT_EQ(phctl::nearest("", classes), "");
    EXPECT_EQ(phctl::didYouMean("CIM_Senser", classes), "; did you mean CIM_Sensor?");
    EXPECT_EQ(phctl::didYouMean("xyz", classes), "");
}

class Layout : public testing::Test {
protected:
    static void SetUpTestSuite() { phctl::useUtf8(); }
    static std::string print(const phctl::Table& table, std::size_t width = 0) {
        std::ostringstream out;
        table.print(out, {.width = width});
        return out.str();
    }
};

TEST_F(Layout, columnsAreThoseOfTheTerminalNotBytes) {
    EXPECT_EQ(phctl::displayWidth("Lüfter"), 6u);
    EXPECT_EQ(phctl::displayWidth("温度"), 4u);
    phctl::Table table({"Name", "Reading"});
    table.add({"Lüfter", "3300"});
    table.add({"温度", "-47.5"});
    table.add({"none", "-"});
    EXPECT_EQ(print(table), "Name    Reading\n"
                            "Lüfter     3300\n"
                            "温度      -47.5\n"
                            "none          -\n");
}

TEST_F(Layout, textsGoOnBelowAndWhatDoesNotFitIsNamed) {
    phctl::Table table({"Name", "Reading", "Description"});
    table.add({"Lüfter", "3300", "Fan for the cooling unit of the board"});
    EXPECT_EQ(print(table, 40), "Name    Reading  Description\n"
                                "Lüfter     3300  Fan for the cooling\n"
                                "                 unit of the board\n");
    EXPECT_TRUE(table.fits(28));
    EXPECT_FALSE(table.fits(27));
    EXPECT_EQ(print(table, 27), "Name    Reading\n"
                                "Lüfter     3300\n"
                                "Not shown for want of room: Description (--wide)\n");
    phctl::Table other({"Name", "Reading", "Description"}, {"Reading"});
    other.add({"Lüfter", "3300", "Fan"});
    EXPECT_EQ(print(other, 27), "Name    Description\n"
                                "Lüfter  Fan\n"
                                "Not shown for want of room: Reading (--wide)\n");
    EXPECT_THAT(phctl::wrap("温度計", 4),
                testing::ElementsAre("温度", "計")); // a wide one does not stand half
}

TEST_F(Layout, coloursAreForTerminals) {
    phctl::Table table({"State"});
    table.add({"Critical"}, phctl::Colour::Red);
    std::ostringstream out;
    table.print(out, {.width = 0, .hasColours = true});
    EXPECT_EQ(out.str(), "State\n\x1B[31mCritical\x1B[0m\n");
    EXPECT_EQ(print(table), "State\nCritical\n");
}

TEST_F(Layout, whatABmcSaysCannotSteerTheTerminal) {
    EXPECT_EQ(phctl::printable("Fan\x1B[2J\n"), "Fan\\x1B[2J\\x0A");
    EXPECT_EQ(phctl::printable("caf\xE9"), "caf\\xE9");
    EXPECT_EQ(phctl::printable("ok ü"), "ok ü");
}

Value parse(CMPIType type, const std::vector<std::string>& texts) {
    return phctl::parseValue("P", type, texts, "root/cimv2");
}

TEST(Arguments, integersAreTakenUpToTheirTypesLimits) {
    const std::tuple<CMPIType, const char*, const char*, const char*, const char*> cases[] = {
        {CMPI_uint8, "0", "255", "-1", "256"},
        {CMPI_uint16, "0", "65535", "-1", "65536"},
        {CMPI_uint32, "0", "4294967295", "-1", "4294967296"},
        {CMPI_uint64, "0", "18446744073709551615", "-1", "18446744073709551616"},
        {CMPI_sint8, "-128", "127", "-129", "128"},
        {CMPI_sint16, "-32768", "32767", "-32769", "32768"},
        {CMPI_sint32, "-2147483648", "2147483647", "-2147483649", "2147483648"},
        {CMPI_sint64, "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
         "9223372036854775808"},
    };
    for (const auto& [type, lowest, highest, tooLow, tooHigh] : cases) {
        SCOPED_TRACE(broker::typeName(type));
        EXPECT_EQ(broker::toText(parse(type, {lowest})), lowest);
        EXPECT_EQ(broker::toText(parse(type, {highest})), highest);
        EXPECT_EQ(parse(type, {highest}).type, type);
        for (const char* wrong : {tooLow, tooHigh, "", "1 ", "1.5", "one"})
            EXPECT_THROW(parse(type, {wrong}), UsageError) << wrong;
    }
    EXPECT_EQ(broker::toText(parse(CMPI_uint16, {"0xFF"})), "255");
}

TEST(Arguments, otherTypesAreChecked) {
    EXPECT_EQ(parse(CMPI_boolean, {"True"}), (Value{CMPI_boolean, true}));
    EXPECT_EQ(parse(CMPI_string, {"a,b"}), (Value{CMPI_string, std::string("a,b")}));
    EXPECT_EQ(parse(CMPI_real64, {"-2.5e3"}), (Value{CMPI_real64, -2500.0}));
    EXPECT_EQ(broker::toText(parse(CMPI_dateTime, {"00000000000500.000000:000"})),
              "00000000000500.000000:000");
    EXPECT_EQ(broker::toText(parse(CMPI_ref, {"CIM_X.Name=\"a,b\""})), "root/cimv2:CIM_X.Name=\"a,b\"");
    for (const auto& [type, text] : {std::pair<CMPIType, const char*>{CMPI_boolean, "yes"},
                                     {CMPI_real32, "inf"},
                                     {CMPI_dateTime, "yesterday"},
                                     {CMPI_ref, "CIM_X.Name=a"},
                                     {CMPI_instance, "x"}})
        EXPECT_THROW(parse(type, {text}), UsageError) << text;
    EXPECT_THROW(parse(CMPI_string, {"a", "b"}), UsageError); // no array
}

TEST(Arguments, arraysAreListsOrRepeated) {
    EXPECT_EQ(broker::toText(parse(CMPI_uint16A, {"1,2", "3"})), "{1, 2, 3}");
    EXPECT_EQ(broker::toText(parse(CMPI_stringA, {"a\\,b,c\\\\,d\\e"})), R"({"a,b", "c\", "d\e"})");
    EXPECT_EQ(broker::toText(parse(CMPI_stringA, {""})), "{}");
    EXPECT_EQ(broker::toText(parse(CMPI_refA, {"CIM_X.A=1,B=2"})), "{root/cimv2:CIM_X.A=1,B=2}");
    EXPECT_EQ(broker::toText(parse(CMPI_refA, {""})), "{}");
    EXPECT_THROW(parse(CMPI_uint16A, {"1,,2"}), UsageError);
}

TEST(Arguments, namesAreDeclaredOrReported) {
    const schema::Element declared{.name = "RequestedState", .type = CMPI_uint16};
    std::vector<std::string> unknown;
    const auto values =
        phctl::parseArguments({"requestedstate=3", "Other=3", "List=a", "List=b"}, {&declared}, "n", unknown);
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0].name, "RequestedState");
    EXPECT_EQ(values[0].value, (Value{CMPI_uint16, std::uint64_t{3}}));
    EXPECT_EQ(values[1].value, (Value{CMPI_string, std::string("3")}));
    EXPECT_EQ(values[2].value.type, CMPI_stringA);
    EXPECT_EQ(unknown, (std::vector<std::string>{"Other", "List"}));
    for (const char* wrong : {"RequestedState", "=3", ""})
        EXPECT_THROW(phctl::parseArguments({wrong}, {&declared}, "n", unknown), UsageError) << wrong;
}

TEST(Arguments, pathsGetTheNamespaceAndTheClassItsSpelling) {
    EXPECT_EQ(broker::toText(phctl::parsePath("cim_numericsensor.DeviceID=\"x\"", "root/cimv2")),
              "root/cimv2:CIM_NumericSensor.DeviceID=\"x\"");
    EXPECT_EQ(broker::toText(phctl::parsePath("a/b:CIM_X", "root/cimv2")), "a/b:CIM_X");
    try {
        phctl::parsePath("CIM_X.Name=host", "root/cimv2");
        FAIL() << "a text without quotes was taken";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), HasSubstr("single quotes"));
    }
}

broker::NamedValues sensor(std::int64_t reading, std::uint64_t unit, std::uint64_t rate = 0) {
    return {{"CurrentReading", {CMPI_sint32, reading}},
            {"BaseUnits", {CMPI_uint16, unit}},
            {"RateUnits", {CMPI_uint16, rate}},
            {"UnitModifier", {CMPI_sint32, std::int64_t{0}}},
            {"Accuracy", {CMPI_sint32, std::int64_t{100}}},
            {"UpperThresholdCritical", {CMPI_sint32, std::int64_t{9000}}}};
}

TEST(Reading, isAHundredthOfThePublishedNumberInItsUnit) {
    EXPECT_EQ(phctl::readingText(sensor(4700, 1), "CurrentReading"), "47 degrees C");
    EXPECT_EQ(phctl::readingText(sensor(-5, 4), "CurrentReading"), "-0.05 Volts");
    EXPECT_EQ(phctl::readingText(sensor(330000, 18), "CurrentReading"), "3300 RPM");
    EXPECT_EQ(phctl::readingText(sensor(100, 88, 3), "CurrentReading"), "1 error per s");
    EXPECT_EQ(phctl::readingText(sensor(150, 0), "CurrentReading"), "1.5");
    EXPECT_EQ(phctl::readingText(sensor(150, 255), "CurrentReading"), "1.5"); // no unit of IPMI
    EXPECT_EQ(phctl::readingText(sensor(4700, 1), "upperthresholdcritical"), "90 degrees C");
    EXPECT_EQ(phctl::readingText(sensor(4700, 1), "Accuracy"), ""); // hundredths of a per cent
    auto unreadable = sensor(0, 1);
    unreadable.push_back({"CurrentState", {CMPI_string, std::string("Unknown")}});
    EXPECT_EQ(phctl::readingText(unreadable, "CurrentReading"), "");
    EXPECT_EQ(phctl::readingText(unreadable, "UpperThresholdCritical"), "90 degrees C");
    EXPECT_EQ(phctl::readingText({{"CurrentReading", {CMPI_sint32, std::int64_t{4700}}}}, "CurrentReading"),
              "");
}

} // namespace
