// A filter's query and what it stands for, in both directions.
#include <provider_helper/indications.h>

#include <gtest/gtest.h>
#include <string>

namespace {

std::string query(std::uint8_t severity, std::uint8_t sensorType, std::uint8_t sensorNumber) {
    CIM_PEFEntry entry{};
    entry.eventSeverity = severity;
    entry.sensorType = sensorType;
    entry.sensorNumber = sensorNumber;
    char text[256];
    ConstructFilterQuery(text, &entry);
    return text;
}

struct Selection {
    int severity;
    int sensorType;
    int sensorNumber;
};

constexpr const char* everything = "select * from CIM_AlertIndication";

TEST(FilterQuery, saysWhatAnEntrySelects) {
    const struct {
        Selection entry;
        std::string conditions;
    } cases[] = {
        {{0, 0xFF, 0xFF}, ""},
        {{0, 0x07, 0x1A}, " where AlertingManagedElement=07:1a"},
        {{0, 0xFF, 0x01}, " where AlertingManagedElement=ff:01"},
        {{0x10, 0xFF, 0xFF}, " where PerceivedSeverity=6"},
        {{0x10, 0x07, 0x1A}, " where PerceivedSeverity=6 and AlertingManagedElement=07:1a"},
        {{0x01, 0xFF, 0xFF}, " where PerceivedSeverity=1"},
        {{0x02, 0xFF, 0xFF}, " where PerceivedSeverity=2"},
        {{0x04, 0xFF, 0xFF}, " where PerceivedSeverity=4"},
        {{0x08, 0xFF, 0xFF}, " where PerceivedSeverity=3"},
        {{0x20, 0xFF, 0xFF}, " where PerceivedSeverity=7"},
        {{0x18, 0xFF, 0xFF}, " where PerceivedSeverity=0"},
        {{0x80, 0xFF, 0xFF}, " where PerceivedSeverity=0"},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(query(static_cast<std::uint8_t>(expected.entry.severity),
                        static_cast<std::uint8_t>(expected.entry.sensorType),
                        static_cast<std::uint8_t>(expected.entry.sensorNumber)),
                  everything + expected.conditions);
}

TEST(FilterQuery, isCompiledToWhatItSelects) {
    const struct {
        std::string query;
        Selection entry;
    } cases[] = {
        {everything, {0, 0xFF, 0xFF}},
        {"SELECT * FROM cim_alertindication", {0, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication where PerceivedSeverity=6", {0x10, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication \tWHERE\r PerceivedSeverity=4 ", {0x04, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication where PerceivedSeverity=5", {0, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication where PerceivedSeverity=", {0, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication where Anything=", {0, 0xFF, 0xFF}},
        {"select * from CIM_AlertIndication where AlertingManagedElement=07:1a", {0, 0x07, 0x1A}},
        {"select * from CIM_AlertIndication where AlertingManagedElement=7", {0, 0x07, 0x00}},
        {"select * from CIM_AlertIndication where PerceivedSeverity=6 and AlertingManagedElement=07:1A",
         {0x10, 0x07, 0x1A}},
        {"select * from CIM_AlertIndication where AlertingManagedElement=00:01 AND PerceivedSeverity=7",
         {0x20, 0x00, 0x01}},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.query);
        CIM_PEFEntry entry{};
        entry.filterConfiguration = 0x80;
        entry.alertPolicyNumber = 3;
        EXPECT_EQ(CompileQueryAndSeverity(expected.query.c_str(), &entry), 0);
        EXPECT_EQ(entry.eventSeverity, expected.entry.severity);
        EXPECT_EQ(entry.sensorType, expected.entry.sensorType);
        EXPECT_EQ(entry.sensorNumber, expected.entry.sensorNumber);
        EXPECT_EQ(entry.filterConfiguration, 0x80);
        EXPECT_EQ(entry.alertPolicyNumber, 3);
    }
}

TEST(FilterQuery, isRefusedWhenItIsNoFilter) {
    for (const std::string conditions :
         {" ", "X", " where", " and", " PerceivedSeverity=6", " where where PerceivedSeverity=6",
          " where PerceivedSeverity=6 where", " where PerceivedSeverity", " where PerceivedSeverity = 6",
          " where perceivedseverity=6", " where EventID=1", " where and PerceivedSeverity=6",
          " where PerceivedSeverity=6 and", " where PerceivedSeverity=6 and and AlertingManagedElement=07:1a",
          " where PerceivedSeverity=6 AlertingManagedElement=07:1a", " where AlertingManagedElement=00:00",
          " where PerceivedSeverity=6 and AlertingManagedElement=00:00",
          " where AlertingManagedElement=zz:zz"}) {
        CIM_PEFEntry entry{};
        EXPECT_EQ(CompileQueryAndSeverity((everything + conditions).c_str(), &entry), -1) << conditions;
    }
    CIM_PEFEntry entry{};
    EXPECT_EQ(CompileQueryAndSeverity("", &entry), -1);
    EXPECT_EQ(CompileQueryAndSeverity("select * from CIM_ProcessIndication", &entry), -1);
    EXPECT_EQ(CompileQueryAndSeverity(nullptr, &entry), -1);
    // Only the first 255 characters of the conditions count.
    const std::string late = std::string(everything) + std::string(250, ' ') + " where PerceivedSeverity=6";
    EXPECT_EQ(CompileQueryAndSeverity(late.c_str(), &entry), -1);
}

} // namespace
