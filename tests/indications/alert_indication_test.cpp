// Alerts as CIM_AlertIndication, and their delivery through the broker and the alert pipe.
#include "delivery_fixture.h"
#include "elapsed.h"

#include <cmpimacs.h>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using broker::Instance;
using broker::Reply;
using broker::Value;
using testing::ElementsAre;

AlertRecord fullAlert() {
    AlertRecord alert{};
    alert.argumentCount = ALERT_ARGUMENTS;
    std::strcpy(alert.Description, "Upper Critical - going high");
    std::strcpy(alert.EventID, "12a");
    std::strcpy(alert.AlertingManagedElement, "1:26");
    alert.AlertingElementFormat = 1;
    alert.AlertType = 5;
    std::strcpy(alert.PerceivedSeverity, "6 (Critical)");
    std::strcpy(alert.OwningEntity, "TRZ");
    alert.EventTime = 4294; // seconds: the last whole one whose microseconds fit
    std::strcpy(alert.MessageID, "12");
    for (int i = 0; i < ALERT_ARGUMENTS; ++i)
        std::snprintf(alert.MessageArguments[i], sizeof alert.MessageArguments[i], "argument %d", i);
    return alert;
}

class AlertIndications : public DeliveryFixture {
protected:
    // Nothing when the function fails.
    std::optional<Instance> indicationOf(const AlertRecord& alert) {
        broker::Scope scope(broker);
        const SelEventMessage message = thresholdEvent();
        CMPIInstance* made = nullptr;
        const std::size_t before = broker.liveObjects();
        const int result =
            Create_AlertIndication_Instance(broker.handle(), scope.makeContext(), &alert, &made, &message);
        EXPECT_EQ(result, made != nullptr ? 0 : 1);
        std::optional<Instance> instance;
        if (made != nullptr) {
            instance = broker::toInstance(made);
            CMRelease(made);
        }
        // The monitor's thread lives as long as the process: what it makes does not go by itself.
        EXPECT_EQ(broker.liveObjects(), before + 1) << "all but the context is released";
        return instance;
    }
};

TEST_F(AlertIndications, haveTheAlertsProperties) {
    const Instance indication = indicationOf(fullAlert()).value();
    EXPECT_EQ(indication.path, indicationClass);
    EXPECT_EQ(indication.properties,
              (broker::NamedValues{
                  {"IndicationTime", {CMPI_dateTime, broker::DateTime{.microseconds = 4294000000}}},
                  {"Description", text("Upper Critical - going high")},
                  {"EventID", text("12a")},
                  {"AlertingElementFormat", number(1)},
                  {"AlertType", number(5)},
                  {"PerceivedSeverity", text("6 (Critical)")},
                  {"OwningEntity", text("TRZ")},
                  {"MessageID", text("12")},
                  {"AlertingManagedElement", text("1:26")},
                  {"MessageArguments",
                   texts({"argument 0", "argument 1", "argument 2", "argument 3", "argument 4"})}}))
        << testing::PrintToString(propertiesOf(indication));
}

TEST_F(AlertIndications, leaveOutWhatIsEmptyButTheSeverity) {
    AlertRecord empty{};
    empty.argumentCount = ALERT_ARGUMENTS;
    const Instance indication = indicationOf(empty).value();
    EXPECT_THAT(propertiesOf(indication),
                ElementsAre("AlertingElementFormat=0", "AlertType=0",
                            "PerceivedSeverity=", R"(MessageArguments={"", "", "", "", ""})"));
}

// DMTF's property is a number. What else such a broker refuses fails as ever.
TEST_F(AlertIndications, haveTheSeveritysNumberWhereTextIsRefused) {
    CMPIType refused = CMPI_null;
    broker.beStrict([&](const std::string&, std::string_view property) -> std::optional<CMPIType> {
        if (property == "PerceivedSeverity")
            return CMPI_uint16;
        return property == "MessageID" && refused != CMPI_null ? refused : CMPIType{CMPI_null};
    });
    broker::Scope scope(broker);
    const AlertRecord alert = fullAlert();
    const SelEventMessage message = thresholdEvent();
    CMPIInstance* made = nullptr;
    ASSERT_EQ(Create_AlertIndication_Instance(broker.handle(), scope.makeContext(), &alert, &made, &message),
              0);
    const Instance indication = broker::toInstance(made);
    EXPECT_EQ(*broker::find(indication.properties, "PerceivedSeverity"),
              (Value{CMPI_uint16, std::uint64_t{6}}));
    CMRelease(made);
    refused = CMPI_uint8;
    EXPECT_EQ(Create_AlertIndication_Instance(broker.handle(), scope.makeContext(), &alert, &made, &message),
              1);
}

// Some brokers make an instance with all properties of its class, and look at the type of no value.
TEST_F(AlertIndications, haveTheSeveritysNumberWhereTheInstanceDoes) {
    static std::map<std::string, CMPIType> given;
    static CMPIInstanceFT careless;
    broker::Scope scope(broker);
    const AlertRecord alert = fullAlert();
    const SelEventMessage message = thresholdEvent();
    for (const CMPIType type : std::initializer_list<CMPIType>{CMPI_uint16, CMPI_string}) {
        CMPIInstance* const instance =
            scope.make({.path = indicationClass, .properties = {{"PerceivedSeverity", {type, {}}}}});
        careless = *instance->ft;
        careless.setProperty = [](const CMPIInstance*, const char* name, const CMPIValue*,
                                  const CMPIType valueType) {
            given[name] = valueType;
            return CMPIStatus{CMPI_RC_OK, nullptr};
        };
        instance->ft = &careless;
        ASSERT_EQ(
            Set_AlertIndication_Properties(broker.handle(), scope.makeContext(), &alert, instance, &message),
            0);
        EXPECT_EQ(given["PerceivedSeverity"], type);
    }
}

TEST_F(AlertIndications, countMicrosecondsIn32Bits) {
    AlertRecord alert = fullAlert();
    for (const auto& [seconds, microseconds] : std::initializer_list<std::pair<std::uint32_t, std::uint64_t>>{
             {4295, 32704}, {0x66322EC0, 0x66322EC0ULL * 1000000 % (1ULL << 32)}}) {
        alert.EventTime = seconds;
        const Instance indication = indicationOf(alert).value();
        EXPECT_EQ(indication.properties.at(0).value.as<broker::DateTime>()->microseconds, microseconds);
    }
}

TEST_F(AlertIndications, failWhenTheBrokerDoes) {
    for (const char* call : {"newObjectPath", "newInstance", "newDateTimeFromBinary", "newString", "newArray",
                             "setElementAt", "setProperty"})
        for (unsigned nth = 1;; ++nth) {
            SCOPED_TRACE(std::string(call) + ' ' + std::to_string(nth));
            broker.resetCalls();
            ASSERT_TRUE(indicationOf(fullAlert()).has_value());
            if (nth > broker.calls(call))
                break;
            broker.resetCalls();
            broker.failCall(call, nth);
            EXPECT_FALSE(indicationOf(fullAlert()).has_value());
        }
}

class BrokerDelivery : public DeliveryFixture {
protected:
    int deliver() {
        broker::Scope scope(broker);
        const CMPIInstance* indication = scope.make(Instance{.path = indicationClass, .properties = {}});
        return Deliver_SEL_Indication(broker.handle(), scope.makeContext(), indication);
    }
    // The indication service of the object manager, with these properties.
    void serve(broker::NamedValues policy) {
        broker.setRouter([this, policy = std::move(policy)](const broker::Request& request) {
            EXPECT_EQ(request.path, path("CIM_IndicationService", {}, "root/interop"));
            Reply reply;
            reply.instances = {{.path = request.path, .properties = policy}};
            return reply;
        });
    }
    static broker::NamedValues policy(std::uint64_t attempts, std::uint64_t seconds) {
        return {{"DeliveryRetryAttempts", number(attempts)},
                {"DeliveryRetryInterval", number(seconds, CMPI_uint32)}};
    }
    // Deliveries fail so many times; where they went.
    void failDeliveries(std::size_t times) {
        broker.setIndicationHandler([this, times](const std::string& nameSpace, const Instance&) {
            nameSpaces.push_back(nameSpace);
            if (nameSpaces.size() <= times)
                throw std::runtime_error("listener is gone");
        });
    }
    std::vector<std::string> nameSpaces;
};

TEST_F(BrokerDelivery, isTriedAgainAsTheServiceSays) {
    auto mistyped = policy(2, 20);
    mistyped[1].value = number(20);
    auto missing = policy(2, 20);
    missing.pop_back();
    using Pauses = std::vector<unsigned>;
    const struct {
        const char* what;
        std::optional<broker::NamedValues> policy;
        std::size_t failures;
        int result;
        Pauses pauses; // one before each further attempt
    } cases[] = {
        {"works at once", policy(3, 20), 0, 0, {}},
        {"works in the end", policy(3, 20), 2, 0, {20, 20}},
        {"fails", policy(3, 20), 9, 1, {20, 20, 20}},
        {"no service", {}, 9, 1, {}},
        {"no attempts", policy(0, 20), 9, 1, {}},
        {"no policy", broker::NamedValues{}, 9, 1, {}},
        {"interval of another type", mistyped, 2, 0, {0, 0}},
        {"no interval", missing, 2, 0, {0, 0}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        if (item.policy)
            serve(*item.policy);
        else
            broker.setRouter({});
        nameSpaces.clear();
        platformCalls.pauses.clear();
        failDeliveries(item.failures);
        EXPECT_EQ(deliver(), item.result);
        EXPECT_EQ(platformCalls.pauses, item.pauses);
        ASSERT_EQ(nameSpaces.size(), item.pauses.size() + 1);
        EXPECT_EQ(nameSpaces[0], "root/interop");
        for (std::size_t i = 1; i < nameSpaces.size(); ++i)
            EXPECT_EQ(nameSpaces[i], "root/cimv2");
    }
}

class AlertPipe : public DeliveryFixture {
protected:
    const std::string pipe = sysroot.place("/tmp/Alert_fifo");
    const std::string message = std::string(ALERT_PIPE_MESSAGE_SIZE, 'm');
};

TEST_F(AlertPipe, takesWholeMessages) {
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    SendIndication(message.c_str());
    char received[2 * ALERT_PIPE_MESSAGE_SIZE];
    EXPECT_EQ(read(reader, received, sizeof received), ALERT_PIPE_MESSAGE_SIZE);
    close(reader);
}

TEST_F(AlertPipe, isNotWaitedFor) {
    SendIndication(message.c_str()); // no pipe
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_LT(seconds([&] { SendIndication(message.c_str()); }), 5) << "nobody reads from it";
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_LT(seconds([&] {
                  for (int i = 0; i < 100; ++i) // more than it holds
                      SendIndication(message.c_str());
              }),
              5);
    close(reader);
    EXPECT_THAT(delivery.debugLines, testing::Contains("134 SendIndication - Opening pipe failed").Times(2));
    EXPECT_THAT(delivery.debugLines, testing::Contains("134 SendIndication - Write on pipe failed"));
}

} // namespace
