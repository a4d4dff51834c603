// CIM_IndicationFilter on the BMC's platform event filters and the database.
#include "failing_allocation.h"
#include "indications_fixture.h"

#include "ipmi/command.h"
#include "ipmi/pef_configuration.h"

namespace {

using broker::Instance;
using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* critical = "select * from CIM_AlertIndication where PerceivedSeverity=6";
constexpr const char* invalidQuery =
    "CQL QueryCompilation Error - Check syntax / filter properties NOTE : Only (AlertingManagedElement & "
    "PerceivedSeverity) supported\n";
constexpr const char* cimxmlName = "IndicationFilter:CIMXML-7";

class Filters : public Indications {
protected:
    // Filter 3 is enabled, filter 4 is not, filter 5 has bytes that a client of this class never sets.
    Filters() { createBmc(model); }

    static constexpr char model[] = R"({"pef": {"filters": [
        {"number": 3, "bytes": "80 01 01 10 ff ff 07 1a 01 ff ff 00 00 00 00 00 00 00 00 00"},
        {"number": 4, "bytes": "00 01 01 10 ff ff 07 1a 01 ff ff 00 00 00 00 00 00 00 00 00"},
        {"number": 5, "bytes": "40 02 09 00 20 00 01 02 6f 0f 00 01 02 03 04 05 06 07 08 09"}]}})";

    static Instance filter(const std::string& name, const std::string& query = critical) {
        return instance(filterClass, name, {{"Query", text(query)}});
    }
    std::string query(const std::string& name) {
        const Reply reply = classes.at(filterClass).get(path(filterClass, name));
        return reply.instances.empty() ? reply.message : textOf(reply.instances[0], "Query");
    }
    // The entry in the BMC, without its selector.
    Bytes entry(std::uint8_t number) const {
        Bytes answer = ask(ipmi::command::getPefConfiguration, {ipmi::pef::parameter::filter, number, 0});
        return {answer.begin() + 2, answer.end()};
    }
    static Bytes entryBytes(std::initializer_list<std::uint8_t> first) {
        Bytes bytes(first);
        bytes.resize(ipmi::pef::filterSize);
        return bytes;
    }
};

TEST_F(Filters, enabledEntriesAndRowsAreInstances) {
    ASSERT_THAT(create(filter(cimxmlName)), Succeeds());
    const auto filters = list(filterClass);
    ASSERT_EQ(filters.size(), 2U);
    EXPECT_EQ(textOf(filters[0], "SystemCreationClassName"), "CIM_SPComputerSystem");
    EXPECT_EQ(textOf(filters[0], "CreationClassName"), filterClass);
    EXPECT_EQ(textOf(filters[0], "SystemName"), "controller");
    EXPECT_EQ(textOf(filters[0], "Name"), "IndicationFilter:IPMIPEF-1-3");
    EXPECT_EQ(textOf(filters[0], "IndividualSubscriptionSupported"), "TRUE");
    EXPECT_EQ(textOf(filters[0], "SourceNamespace"), "root/interop");
    EXPECT_EQ(textOf(filters[0], "QueryLanguage"), "WQL");
    EXPECT_EQ(textOf(filters[0], "Query"),
              "select * from CIM_AlertIndication where PerceivedSeverity=6 and AlertingManagedElement=07:1a");
    EXPECT_EQ(textOf(filters[1], "Name"), cimxmlName);
    EXPECT_EQ(query(cimxmlName), critical);
    EXPECT_EQ(query("IndicationFilter:IPMIPEF-1-4"), "Failed to Get Instance");

    // Entries that are counted but not filled: nothing of the table before is taken for them.
    PH_STAND_IN(CIM_GetPEFTable, [](auto*, CIM_PEFEntry*, uint8_t* count, int) {
        *count = CIM_MAX_PEF_ENTRIES;
        return 0;
    });
    EXPECT_THAT(names(filterClass), ElementsAre(cimxmlName));
    platformCalls.standIns.clear();

    createBmc("{}");
    ASSERT_THAT(remove(path(filterClass, cimxmlName)), Succeeds());
    EXPECT_THAT(list(filterClass), IsEmpty());
}

TEST_F(Filters, tableLargerThanWhatIsReadIsCut) {
    createBmc(R"({"pef": {"filterCount": 40, "filters": [
        {"number": 30, "bytes": "80 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 00 00 00"},
        {"number": 31, "bytes": "80 01 01 10 ff ff ff ff ff ff ff 00 00 00 00 00 00 00 00 00"}]}})");
    EXPECT_THAT(names(filterClass), ElementsAre("IndicationFilter:IPMIPEF-1-30"));
    EXPECT_THAT(create(filter("IndicationFilter:IPMIPEF-1-35")), Refuses(1, "CreateInstance Failed \n"));
    EXPECT_THAT(create(filter("IndicationFilter:IPMIPEF-1-41")),
                Refuses(1, "CreateInstance Failed - Max Filter limit exceeded \n"));
}

TEST_F(Filters, pefFilterLivesInItsSlot) {
    const std::string name = "IndicationFilter:IPMIPEF-258-5";
    const Reply created =
        create(filter(name, "select * from CIM_AlertIndication where PerceivedSeverity=3 and "
                            "AlertingManagedElement=01:2f"));
    ASSERT_THAT(created, Succeeds());
    ASSERT_EQ(created.paths.size(), 1U);
    EXPECT_EQ(created.paths[0], path(filterClass, name));
    EXPECT_EQ(entry(5), Bytes({0xC0, 0x03, 0x02, 0x08, 0x20, 0x00, 0x01, 0x2F, 0x6F, 0x0F,
                               0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09}));
    const std::string stored = "IndicationFilter:IPMIPEF-2-5"; // the policy number has 8 bits
    EXPECT_THAT(create(filter(stored)),
                Refuses(1, "CreateInstance Failed - Filter already exists and active \n"));

    EXPECT_THAT(modify(filter(stored, critical)), Succeeds());
    EXPECT_EQ(entry(5), Bytes({0xC0, 0x03, 0x02, 0x10, 0x20, 0x00, 0xFF, 0xFF, 0x6F, 0x0F,
                               0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09}));
    EXPECT_EQ(query(stored), critical);
    EXPECT_THAT(modify(filter(stored, "nonsense")), Refuses(1, invalidQuery));

    EXPECT_THAT(remove(path(filterClass, stored)), Succeeds());
    EXPECT_EQ(entry(5), entryBytes({}));
    EXPECT_THAT(names(filterClass), ElementsAre("IndicationFilter:IPMIPEF-1-3"));
}

TEST_F(Filters, cimxmlFilterLivesInTheDatabase) {
    const std::string longQuery = std::string(critical) + std::string(511 - std::strlen(critical), ' ');
    ASSERT_THAT(create(filter(cimxmlName, longQuery)), Succeeds());
    EXPECT_THAT(modify(filter(cimxmlName, longQuery + ' ')), Refuses(1, "ModifyInstance Failed \n"));
    EXPECT_THAT(create(filter(cimxmlName, "nonsense")), Refuses(1, "Filter already exists and active\n"));
    onDatabase([&](SMASH_DB_HANDLE handle) {
        CimxmlFilterRow row{};
        std::strcpy(row.name, cimxmlName);
        ASSERT_EQ(db_get_indication_filter_cimxml(handle, &row), 0) << db_last_error();
        EXPECT_EQ(row.query, longQuery);
        EXPECT_EQ(row.severity, 0x10);
        EXPECT_EQ(row.sensorType, 0xFF);
        EXPECT_EQ(row.sensorNumber, 0xFF);
    });
    EXPECT_EQ(query(cimxmlName), longQuery.substr(0, 255));

    const char* const fans = "select * from CIM_AlertIndication where AlertingManagedElement=04:30";
    EXPECT_THAT(modify(filter(cimxmlName, fans)), Succeeds());
    onDatabase([&](SMASH_DB_HANDLE handle) {
        CimxmlFilterRow row{};
        std::strcpy(row.name, cimxmlName);
        ASSERT_EQ(db_get_indication_filter_cimxml(handle, &row), 0);
        EXPECT_STREQ(row.query, fans);
        EXPECT_EQ(row.severity, 0);
        EXPECT_EQ(row.sensorType, 0x04);
        EXPECT_EQ(row.sensorNumber, 0x30);
    });
    EXPECT_THAT(modify(filter(cimxmlName, "nonsense")), Refuses(1, invalidQuery));
    EXPECT_THAT(remove(path(filterClass, cimxmlName)), Succeeds());
    EXPECT_THAT(remove(path(filterClass, cimxmlName)),
                Refuses(1, "DeleteInstance Failed - Given instance does not exist \n"));
}

TEST_F(Filters, whatCannotBeCreatedIsRefusedWithItsReason) {
    const char* const invalidFormat = "Invalid format for property \"Name\"\n";
    // One character more than the rows have room for.
    const std::string longName = std::string(cimxmlName) + std::string(256 - std::strlen(cimxmlName), '0');
    const std::string longQuery = std::string(critical) + std::string(512 - std::strlen(critical), ' ');
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"IndicationFilter", critical, 4, invalidFormat},
        {"IndicationFilter:", critical, 4, invalidFormat},
        {"IndicationFilter:IPMIPEF", critical, 4, invalidFormat},
        {"IndicationFilter:IPMIPEF-1", critical, 4, invalidFormat},
        {"IndicationFilter:IPMIPEF-1-x", critical, 4, invalidFormat},
        {"IndicationFilter:CIMXML-x", critical, 4, invalidFormat},
        {"IndicationFilter:OTHER-1", critical, 1, "CreateInstance Failed \n"},
        {"IndicationFilter:IPMIPEF-1-0", critical, 1, "CreateInstance Failed \n"},
        {"IndicationFilter:IPMIPEF-1--2", critical, 1, "CreateInstance Failed \n"},
        {"IndicationFilter:IPMIPEF-1-40", critical, 1,
         "CreateInstance Failed - Max Filter limit exceeded \n"},
        {"IndicationFilter:IPMIPEF-1-99999999999999999999", critical, 1,
         "CreateInstance Failed - Max Filter limit exceeded \n"},
        {"IndicationFilter:IPMIPEF-1-3", critical, 1,
         "CreateInstance Failed - Filter already exists and active \n"},
        {"IndicationFilter:IPMIPEF-1-5", "nonsense", 1, invalidQuery},
        {"IndicationFilter:CIMXML-1", "nonsense", 1, invalidQuery},
        {longName.c_str(), critical, 1, "CreateInstance Failed \n"},
        {"IndicationFilter:CIMXML-1", longQuery.c_str(), 1, "CreateInstance Failed \n"},
    };
    for (const auto& [name, query, code, message] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THAT(create(filter(name, query)), Refuses(code, message));
    }
    EXPECT_THAT(names(filterClass), ElementsAre("IndicationFilter:IPMIPEF-1-3"));

    Instance incomplete = filter("IndicationFilter:IPMIPEF-1-5");
    const auto without = [&](const char* property) {
        Instance changed = incomplete;
        std::erase_if(changed.properties, [&](const auto& entry) { return entry.name == property; });
        return changed;
    };
    EXPECT_THAT(create(without("Query")), Refuses(1, "Required Query property"));
    EXPECT_THAT(create(without("Name")), Refuses(1, "Required Name property"));
    for (std::size_t i = 0; i < 3; ++i) {
        Instance wrong = incomplete;
        wrong.path.keys[i].value = text("something else");
        EXPECT_THAT(create(wrong),
                    Refuses(4, "Invalid key properties : Only 'Name' prop is variable, refer other instances "
                               "of IF"))
            << wrong.path.keys[i].name;
    }
    incomplete.path.keys.pop_back();
    EXPECT_THAT(create(incomplete), Refuses(1, "Key Properties missing"));
}

TEST_F(Filters, changesOfWhatIsNotThereAreRefused) {
    const std::string absent = "IndicationFilter:IPMIPEF-1-4";
    EXPECT_THAT(modify(filter(absent)),
                Refuses(1, "ModifyInstance Failed - Given instance does not exist \n"));
    EXPECT_THAT(remove(path(filterClass, absent)),
                Refuses(1, "DeleteInstance Failed - Given instance does not exist \n"));
    Instance withoutQuery = filter("IndicationFilter:IPMIPEF-1-3");
    withoutQuery.properties.pop_back();
    EXPECT_THAT(modify(withoutQuery), Refuses(1, "Required Query property"));
}

TEST_F(Filters, rowsOfAThirdKindStay) {
    onDatabase([](SMASH_DB_HANDLE handle) {
        CimxmlFilterRow row{};
        std::strcpy(row.name, "Vendor:OTHER-1");
        ASSERT_EQ(db_set_indication_filter_cimxml(handle, &row), 0);
    });
    EXPECT_THAT(modify(filter("Vendor:OTHER-1")), Refuses(1, "ModifyInstance Failed \n"));
    EXPECT_THAT(remove(path(filterClass, "Vendor:OTHER-1")), Succeeds());
    EXPECT_THAT(names(filterClass), ElementsAre("IndicationFilter:IPMIPEF-1-3", "Vendor:OTHER-1"));
}

TEST_F(Filters, arraysOfCallersGrowOrGo) {
    IndicationFilterRecord* filters = nullptr;
    int count = 0;
    const auto add = [&](const char* name, int namesOnly) {
        return PH_Create_IndicationFilterInstance(&filters, &count, "BMC", name, critical, namesOnly);
    };
    ASSERT_EQ(add("one", 0), 0);
    ASSERT_EQ(add("two", 1), 0);
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(filters[0].Name, "one");
    EXPECT_STREQ(filters[0].Query, critical);
    EXPECT_STREQ(filters[1].Name, "two");
    EXPECT_STREQ(filters[1].Query, "");
    EXPECT_EQ(add(nullptr, 0), -1);
    EXPECT_EQ(filters, nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(PH_Create_IndicationFilterInstance(nullptr, &count, "BMC", "one", critical, 0), -1);

    for (int kept = 0; kept < 2; ++kept) {
        while (count < kept)
            ASSERT_EQ(add("kept", 0), 0);
        failAllocation(1);
        EXPECT_EQ(add("lost", 0), -1);
        failAllocation(0);
        EXPECT_EQ(filters, nullptr);
        EXPECT_EQ(count, 0);
    }
}

} // namespace
