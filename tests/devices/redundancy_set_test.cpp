// CIM_RedundancySet.
#include "device_fixture.h"

namespace {

using testing::ElementsAre;

// The machine has two fans, a cooling unit, two supplies, and a redundancy sensor.
std::string machine(const std::string& sensorType, int entity) {
    std::string sensors = "[";
    int number = 1;
    for (const auto& [type, entityId, instance] : {std::tuple{"Fan", 29, 1},
                                                   {"Fan", 29, 2},
                                                   {"Fan", 30, 1},
                                                   {"Power Supply", 10, 1},
                                                   {"Power Supply", 10, 2}}) {
        sensors += R"({"name": "S", "type": ")" + std::string(type) + R"(", "number": )" +
                   std::to_string(number++) + R"(, "entity": )" + std::to_string(entityId) +
                   R"(, "entityInstance": )" + std::to_string(instance) + R"(, "analog": {"unit": "RPM"}}, )";
    }
    return sensors + R"({"number": 9, "name": "Spare", "type": ")" + sensorType + R"(", "entity": )" +
           std::to_string(entity) +
           R"(, "readingType": "redundancy", "record": "compact", "supportedStates": [0, 1, 2, 3, 4, 5, 6, 7]}])";
}

class RedundancySets : public DeviceFixture {
protected:
    std::vector<std::string> members() const {
        return rows(sets, {"MinNumberNeeded", "VendorIdentifyingInfo"});
    }
};

TEST_F(RedundancySets, areDescribed) {
    serve(machine("Fan", 30));
    EXPECT_THAT(propertiesOf(only(sets)),
                ElementsAre("InstanceID=IPMI:server 32.9.0.4.0b.99:Spare", "ElementName=Spare",
                            "RedundancyStatus=0", "TypeOfSet={2}", "MinNumberNeeded=1",
                            "VendorIdentifyingInfo=29.1 29.2"));
}

TEST_F(RedundancySets, haveTheWorstAssertedStatus) {
    serve(machine("Fan", 30));
    const std::pair<std::uint16_t, const char*> cases[] = {{0x01, "2"}, {0x02, "4"}, {0x04, "3"}, {0x08, "4"},
                                                           {0x10, "4"}, {0x20, "5"}, {0x40, "3"}, {0x80, "3"},
                                                           {0x05, "3"}, {0x26, "5"}, {0x00, "0"}};
    for (const auto& [states, status] : cases) {
        bmc().setStates("Spare", states);
        EXPECT_EQ(textOf(only(sets), "RedundancyStatus"), status) << states;
    }
    bmc().setStates("Spare", 0x01);
    for (const auto availability : {vbmc::Availability::Unavailable, vbmc::Availability::Unreadable}) {
        bmc().setAvailability("Spare", availability);
        EXPECT_EQ(textOf(only(sets), "RedundancyStatus"), "0");
    }
}

TEST_F(RedundancySets, findTheirMembers) {
    constexpr const char* none = "[]";
    // The last fan stands alone.
    constexpr const char* some =
        R"([{"entity": 30, "contains": [{"entity": 29}, {"entity": 10, "entityInstance": 2}]},
                                     {"entity": 30, "entityInstance": 2, "contains": [{"entity": 29, "entityInstance": 2}]}])";
    const struct {
        const char* type;
        int entity;
        const char* associations;
        const char* members;
    } cases[] = {
        {"Fan", 30, some, "1 29.1 10.2"},
        {"Fan", 29, none, "1 29.1 29.2"},
        {"Power Supply", 19, some, "1 10.1 10.2"}, // of whose entity they say nothing
        {"Power Unit", 10, none, "1 10.1 10.2"},
        {"Power Unit", 7, none, "1 10.1 10.2"}, // a system board is no device: the type decides
        {"Cooling Device", 21, none, "1 29.1 29.2"},
        {"Memory", 32, none, "0 <none>"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.type) + " sensor of entity " + std::to_string(item.entity));
        serve(machine(item.type, item.entity), item.associations);
        EXPECT_THAT(members(), ElementsAre(item.members));
    }
    serve(R"([{"number": 1, "name": "Blower", "type": "Fan", "entity": 30, "entityInstance": 2, "analog": {}},
              {"number": 2, "name": "Spare", "type": "Fan", "entity": 30, "readingType": "redundancy",
               "record": "compact", "supportedStates": [0, 1]}])");
    EXPECT_THAT(members(), ElementsAre("0 30.2")) << "a BMC that calls fans cooling units";
}

} // namespace
