// Indication filters in OpenIPMI's BMC simulator, with ipmitool as the witness of what it holds.
#include "provider_on_simulator.h"

#include <sstream>

namespace {

using broker::Instance;
using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

class PeerIndications : public ProviderOnSimulator {
protected:
    static Instance instance(const std::string& className, const std::string& name, const char* property,
                             const std::string& value) {
        const auto object = pathOnProcessor(className, "sim", name, "root/interop");
        Instance made{object, object.keys};
        made.properties.push_back({property, text(value)});
        return made;
    }
    std::vector<Instance> listed(const char* className) { return list(path(className, {}, "root/interop")); }

    // The bytes that `ipmitool raw` prints.
    std::string raw(const std::string& bytes) const {
        std::istringstream printed(ipmitool("raw " + bytes));
        std::string all;
        for (std::string byte; printed >> byte;)
            all += (all.empty() ? "" : " ") + byte;
        return all;
    }
    std::string filter(int number) const { return raw("4 0x13 6 " + std::to_string(number) + " 0"); }
};

TEST_F(PeerIndications, filtersAreWhatIpmitoolReads) {
    constexpr const char* name = "IndicationFilter:IPMIPEF-3-2";
    constexpr const char* filterClass = "CIM_IndicationFilter";
    const Instance made = instance(
        filterClass, name, "Query",
        "select * from CIM_AlertIndication where PerceivedSeverity=6 and AlertingManagedElement=07:1a");
    Reply reply = broker.createInstance(made.path, made);
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(filter(2), "11 02 80 01 03 10 00 00 07 1a 00 00 00 00 00 00 00 00 00 00 00 00");

    const Instance changed =
        instance(filterClass, name, "Query", "select * from CIM_AlertIndication where PerceivedSeverity=3");
    reply = broker.modifyInstance(changed.path, changed);
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(filter(2), "11 02 80 01 03 08 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00");

    reply = broker.deleteInstance(made.path);
    ASSERT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(filter(2), "11 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_THAT(listed(filterClass), IsEmpty());
}

TEST_F(PeerIndications, filtersThatIpmitoolWritesAreInstances) {
    raw("4 0x12 6 4 0xc0 1 5 0x20 0xff 0xff 1 0xff 1 0xff 0xff 0 0 0 0 0 0 0 0 0");
    raw("4 0x12 6 5 0x40 1 5 0x20 0xff 0xff 1 0xff 1 0xff 0xff 0 0 0 0 0 0 0 0 0"); // not enabled
    const auto filters = listed("CIM_IndicationFilter");
    EXPECT_THAT(textsOf(filters, "Name"), ElementsAre("IndicationFilter:IPMIPEF-5-4"));
    EXPECT_THAT(textsOf(filters, "Query"),
                ElementsAre("select * from CIM_AlertIndication where PerceivedSeverity=7 and "
                            "AlertingManagedElement=01:ff"));
}

// The simulator's LAN has no alert destinations (parameter 17 is 0), and it has none of the OEM commands.
TEST_F(PeerIndications, destinationsNeedABmcThatHasThem) {
    ASSERT_EQ(raw("0xc 2 1 17 0 0"), "11 00");
    for (const auto& [className, name, value] :
         {std::tuple{"CIM_ListenerDestinationSNMP", "SNMP:01:1", "192.0.2.9"},
          {"CIM_ListenerDestinationSNMP", "SNMP:01:2", "2001:db8::9"},
          {"CIM_ListenerDestinationSMTP", "SMTP:01:1", "UID:2"}}) {
        EXPECT_THAT(listed(className), IsEmpty());
        const Instance made = instance(className, name, "Destination", value);
        EXPECT_EQ(broker.createInstance(made.path, made).message, "Create Instance Failed") << name;
    }
}

} // namespace
