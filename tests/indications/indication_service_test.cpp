// CIM_IndicationService and its settings: one row, changed through either.
#include "managed_bmc.h"
#include "provider_helper/indications.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class IndicationService : public ManagedBmc {
protected:
    static broker::NamedValues attempts(broker::Value value) { return {{"DeliveryRetryAttempts", value}}; }
    static broker::NamedValues interval(broker::Value value) { return {{"DeliveryRetryInterval", value}}; }

    // With the properties listed, or as all that differs.
    static broker::Reply change(const ClassRequests& requests, const broker::NamedValues& values,
                                bool listed) {
        broker::Instance instance = only(requests);
        broker::PropertyList names;
        for (const auto& [name, value] : values) {
            for (auto& property : instance.properties)
                if (property.name == name)
                    property.value = value;
            if (listed) {
                if (!names)
                    names.emplace();
                names->push_back(name);
            }
        }
        return requests.modify(instance, names);
    }
    std::vector<std::string> policy(const ClassRequests& requests) const {
        const auto instance = only(requests);
        return {textOf(instance, "DeliveryRetryAttempts"), textOf(instance, "DeliveryRetryInterval")};
    }

    const ClassRequests services{broker, PH_CLASS_FUNCTIONS(IndicationService)};
    const ClassRequests settings{broker, PH_CLASS_FUNCTIONS(IndicationServiceSettingData)};
};

TEST_F(IndicationService, isChangedWithItsSettings) {
    EXPECT_THAT(policy(services), ElementsAre("3", "20"));
    ASSERT_TRUE(change(settings, attempts(number(7)), true).ok());
    ASSERT_TRUE(change(services, interval(number(86400, CMPI_uint32)), false).ok());
    ASSERT_TRUE(change(services, {}, false).ok());
    for (const ClassRequests* requests : {&services, &settings})
        EXPECT_THAT(policy(*requests), ElementsAre("7", "86400"));
    ASSERT_TRUE(change(settings, attempts(text("100")), true).ok());
    synchronise(stateFile);
    EXPECT_THAT(policy(services), ElementsAre("100", "86400")) << "what a client set outlives a sync";
}

TEST_F(IndicationService, refusesWhatItCannotDo) {
    constexpr const char* wrongAttempts = "DeliveryRetryAttempts Parameter is Invalid";
    constexpr const char* wrongInterval = "DeliveryRetryInterval Parameter is Invalid";
    constexpr const char* fixed = "Invalid Property(s): SubscriptionRemovalAction";
    broker::NamedValues half = attempts(number(9));
    half.push_back({"DeliveryRetryInterval", number(86401, CMPI_uint32)});
    const std::tuple<broker::NamedValues, const char*> cases[] = {
        {attempts(number(101)), wrongAttempts},
        {attempts(text("65536")), wrongAttempts},
        {attempts(null(CMPI_uint16)), wrongAttempts},
        {interval(number(86401, CMPI_uint32)), wrongInterval},
        {half, wrongInterval},
        {{{"SubscriptionRemovalAction", number(2)}}, fixed},
    };
    for (const auto& [values, message] : cases)
        for (const ClassRequests* requests : {&services, &settings})
            for (const bool listed : {true, false})
                EXPECT_THAT(change(*requests, values, listed),
                            Refuses(CMPI_RC_ERR_INVALID_PARAMETER, message));
    EXPECT_THAT(policy(services), ElementsAre("3", "20"));

    broker::Instance other = only(settings);
    other.path.keys[0].value = text("another");
    EXPECT_THAT(settings.modify(other), Refuses(CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist"));
}

TEST_F(IndicationService, isNotThereWithoutItsRow) {
    platformCalls.broken = {"db_set_indication_service"};
    EXPECT_EQ(change(services, attempts(number(9)), true).message, "SetInstance Failed");
    EXPECT_THAT(policy(services), ElementsAre("3", "20"));
    PH_STAND_IN(db_get_all_indication_service,
                [](auto, IndicationServiceRow** rows, int* count) { return *rows = nullptr, *count = 0; });
    EXPECT_THAT(services.enumerate().instances, IsEmpty());
    EXPECT_TRUE(settings.names().ok());
    platformCalls.broken = {"db_get_all_indication_service"};
    EXPECT_EQ(services.enumerate().message, "Failed to Enumerate Instance");
}

} // namespace
