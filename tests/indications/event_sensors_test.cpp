// Sensor instances by the numbers of events.
#include "delivery_fixture.h"

#include <cmpimacs.h>

namespace {

using broker::Instance;

class EventSensors : public DeliveryFixture {
protected:
    // The broker's sensors have these DeviceIDs.
    void serve(std::vector<std::string> deviceIds) {
        broker.setRouter([this, deviceIds = std::move(deviceIds)](const broker::Request& request) {
            EXPECT_EQ(request.path, path("CIM_Sensor"));
            broker::Reply reply;
            for (const std::string& id : deviceIds) {
                Instance sensor{.path = request.path, .properties = {}};
                if (!id.empty())
                    sensor.properties = {{"DeviceID", {CMPI_string, id}}};
                reply.instances.push_back(std::move(sensor));
            }
            return reply;
        });
    }
    // The DeviceID of the first sensor with this number, "none" without one.
    std::string find(int number) {
        broker::Scope scope(broker);
        const CMPIContext* context = scope.makeContext();
        const std::size_t before = broker.liveObjects();
        CMPIEnumeration* all = CacheSensorInstances(broker.handle(), context);
        EXPECT_LE(broker.liveObjects(), before + 1) << "only the enumeration";
        const CMPIInstance* sensor = GetSpecificEventSensorObjectInstances(number, all);
        return sensor != nullptr ? broker::toText(broker::toInstance(sensor).properties.at(0).value) : "none";
    }
};

TEST_F(EventSensors, areFoundByNumber) {
    serve({"", "odd", "32.1.0.1.01.99:Fan", "32.26.0.1.01.99:Inlet", "32.26.0.1.01.99:Second",
           "32.5.0.1.01.99:Five"});
    EXPECT_EQ(find(26), "32.26.0.1.01.99:Inlet");
    EXPECT_EQ(find(1), "32.1.0.1.01.99:Fan");
    EXPECT_EQ(find(0), "32.5.0.1.01.99:Five") << "0 stands for 5";
    EXPECT_EQ(find(2), "none");
    broker.setRouter([](const broker::Request&) { return broker::Reply{.code = CMPI_RC_ERR_FAILED}; });
    EXPECT_EQ(find(26), "none");
}

TEST_F(EventSensors, tellTheirTextsAndPaths) {
    broker::Scope scope(broker);
    const Instance sensor{.path = path("CIM_Sensor", {{"DeviceID", text("32.26.0.1.01.99:Inlet")}}),
                          .properties = {{"Name", text("Inlet Temp")}, {"Number", number(3)}}};
    const CMPIInstance* instance = scope.make(sensor);
    const std::size_t before = broker.liveObjects();
    char name[8] = "before";
    char place[256] = "before";
    EXPECT_EQ(
        get_alerting_managed_element_from_instance(instance, "Name", name, sizeof name, place, sizeof place),
        0);
    EXPECT_STREQ(name, "Inlet T") << "cut";
    EXPECT_EQ(place, broker::toText(sensor.path));
    EXPECT_EQ(broker.liveObjects(), before + 1) << "only the text of the property";
    for (const char* other : {"Number", "Missing"}) {
        EXPECT_EQ(get_cmpi_str_property_value(instance, other, name, sizeof name), 0);
        EXPECT_STREQ(name, "");
    }
    broker.failCall("getObjectPath", 1);
    EXPECT_EQ(
        get_alerting_managed_element_from_instance(instance, "Name", name, sizeof name, place, sizeof place),
        -1);
    EXPECT_STREQ(place, "");
}

} // namespace
