// CIM_Fan and CIM_PowerSupply.
#include "device_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* entityModel = R"([
    {"number": 1, "name": "FAN1", "type": "Fan", "entity": 29, "analog": {"unit": "RPM", "m": 100}, "reading": 5000},
    {"number": 2, "name": "FAN2", "type": "Fan", "entity": 29, "entityInstance": 2, "analog": {"unit": "RPM", "m": 100},
     "reading": 6000},
    {"number": 3, "name": "FAN2 Presence", "type": "Fan", "readingType": "presence", "record": "compact",
     "entity": 29, "entityInstance": 2, "supportedStates": [0, 1], "states": [1]},
    {"number": 4, "name": "PSU1", "type": "Power Supply", "readingType": "sensor-specific", "record": "compact",
     "entity": 10, "supportedStates": [0, 1, 2, 3], "states": [0]},
    {"number": 5, "name": "PSU2", "type": "Power Supply", "readingType": "sensor-specific", "record": "compact",
     "entity": 10, "entityInstance": 2, "supportedStates": [0, 1, 2, 3], "states": [0]},
    {"number": 6, "name": "Duty", "type": "Fan", "entity": 30, "analog": {"percentage": true}, "reading": 40},
    {"number": 7, "name": "Board", "readingType": "severity", "record": "compact", "supportedStates": [0, 1]}])";
constexpr const char* cooling = R"([{"entity": 30, "contains": [{"entity": 29, "entityInstance": 2}]}])";

constexpr const char* frus = R"([
    {"id": 1, "name": "PSU1", "entity": 10, "powerSupply": {"capacity": 880, "lowVoltage1": 10000, "highVoltage1": 12700,
     "lowVoltage2": 20000, "highVoltage2": 24000, "lowFrequency": 47, "highFrequency": 63}},
    {"id": 2, "name": "PSU2", "entity": 10, "entityInstance": 2,
     "powerSupply": {"capacity": 3000, "lowVoltage1": 4000, "highVoltage1": 7200}}])";

class EntityDevices : public DeviceFixture {
protected:
    EntityDevices() { serve(entityModel, cooling, frus); }
};

TEST_F(EntityDevices, areDescribedByRowsAndSensors) {
    EXPECT_THAT(propertiesOf(fans.enumerate().instances.at(1)),
                ElementsAre("SystemCreationClassName=CIM_HostComputerSystem", "SystemName=server",
                            "CreationClassName=CIM_Fan", "DeviceID=29.2", "ElementName=Fan 2",
                            "Availability=3", "EnabledState=2", "RequestedState=12", "HealthState=5",
                            "OperationalStatus={2}", "VariableSpeed=TRUE", "ActiveCooling=TRUE"));
    EXPECT_THAT(rows(fans, {"ElementName", "VariableSpeed"}),
                ElementsAre("Fan 1 FALSE", "Fan 2 TRUE", "Cooling Unit 1 TRUE"));
    EXPECT_THAT(
        rows(supplies, {"ElementName", "TotalOutputPower", "Range1InputVoltageLow", "Range1InputVoltageHigh",
                        "Range1InputFrequencyLow", "Range1InputFrequencyHigh", "Range2InputVoltageLow",
                        "Range2InputVoltageHigh", "Range2InputFrequencyHigh"}),
        ElementsAre("Power Supply 1 880000 100000 127000 47 63 200000 240000 63",
                    "Power Supply 2 3000000 40000 72000 0 0 <none> <none> <none>"));
    serve(entityModel);
    EXPECT_THAT(rows(supplies, {"TotalOutputPower", "Range1InputVoltageHigh"}),
                ElementsAre("0 <none>", "0 <none>"));
}

TEST_F(EntityDevices, showTheirHealth) {
    EXPECT_THAT(states(supplies), ElementsAre("10.1 3 2 5 {2}", "10.2 3 2 5 {2}"));
    bmc().setStates("PSU1", 0x05); // predicts its failure
    bmc().setStates("PSU2", 0x0B); // has failed, without input
    EXPECT_THAT(states(supplies), ElementsAre("10.1 10 2 10 {5}", "10.2 10 2 20 {6}"));
    for (const auto& [name, availability] : {std::pair{"FAN1", vbmc::Availability::Unreadable},
                                             {"FAN2", vbmc::Availability::Unavailable},
                                             {"PSU1", vbmc::Availability::Unreadable},
                                             {"PSU2", vbmc::Availability::Unavailable}})
        bmc().setAvailability(name, availability);
    EXPECT_THAT(states(fans), ElementsAre("29.1 2 5 0 {0}", "29.2 2 5 0 {11}", "30.1 3 2 5 {2}"));
    EXPECT_THAT(states(supplies), ElementsAre("10.1 2 5 0 {0}", "10.2 2 5 0 {0}"));
}

TEST_F(EntityDevices, areShownAbsent) {
    bmc().setStates("FAN2 Presence", 0x01);
    bmc().setStates("PSU2", 0);
    EXPECT_EQ(states(fans)[1], "29.2 11 3 10 {12}");
    EXPECT_EQ(states(supplies)[1], "10.2 11 3 10 {12}");
    bmc().setAvailability("FAN2", vbmc::Availability::Unreadable); // as it may when nothing is plugged in
    EXPECT_EQ(states(fans)[1], "29.2 11 3 10 {12}");
    bmc().setAvailability("FAN2 Presence", vbmc::Availability::Unreadable);
    EXPECT_EQ(states(fans)[1], "29.2 2 5 0 {0}") << "nobody knows";
}

TEST_F(EntityDevices, believeAnEntityPresenceSensorFirst) {
    serve(R"([{"number": 1, "name": "PSU", "type": "Power Supply", "readingType": "sensor-specific",
               "record": "compact", "entity": 10, "supportedStates": [0, 1], "states": [0]},
              {"number": 2, "name": "Bay", "type": "Entity Presence", "readingType": "sensor-specific",
               "record": "compact", "entity": 10, "supportedStates": [0, 1, 2], "states": [1]}])");
    EXPECT_THAT(states(supplies), ElementsAre("10.1 11 3 10 {12}"));
    bmc().setStates("Bay", 0x04); // disabled, but there
    EXPECT_THAT(rows(supplies, {"Availability", "EnabledState"}), ElementsAre("10 2"));
}

TEST_F(EntityDevices, areReadOneByOne) {
    const auto paths = fans.names().paths;
    EXPECT_THAT(platformCalls.hooks(), IsEmpty()) << "paths need no reading";
    platformCalls.texts.clear();
    EXPECT_EQ(textOf(fans.get(paths.at(1)).instances.at(0), "DeviceID"), "29.2");
    EXPECT_THAT(platformCalls.hooks(),
                ElementsAre("CIM_GetSensorReading(2, *, 30)", "CIM_GetSensorReading(3, *, 30)"));
    platformCalls.texts.clear();
    supplies.enumerate();
    EXPECT_THAT(platformCalls.hooks(),
                ElementsAre("CIM_GetSensorReading(4, *, 30)", "CIM_GetSensorReading(5, *, 30)"))
        << "each sensor once, and those of other entities not at all";
}

TEST_F(EntityDevices, areNoneWithoutSensors) {
    serve("[]");
    for (const ClassRequests* requests : {&fans, &supplies, &sets}) {
        const broker::Reply reply = requests->enumerate();
        EXPECT_TRUE(reply.ok()) << reply.message;
        EXPECT_THAT(reply.instances, IsEmpty());
    }
    EXPECT_EQ(platformCalls.openSessions, 0);
}

} // namespace
