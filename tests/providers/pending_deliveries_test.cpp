// When indications are offered again that the object manager did not take.
#include "pending_deliveries.h"

#include "broker/broker.h"

#include <gmock/gmock.h>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Pending : public testing::Test {
protected:
    Pending() {
        broker.setRouter([this](const broker::Request& request) {
            const auto number = [](CMPIType type, unsigned value) {
                return broker::Value{type, std::uint64_t{value}};
            };
            EXPECT_EQ(request.path.className, "CIM_IndicationService");
            broker::Reply reply{.done = true};
            if (attempts > 0)
                reply.instances.push_back({request.path,
                                           {{"DeliveryRetryAttempts", number(CMPI_uint16, attempts)},
                                            {"DeliveryRetryInterval", number(CMPI_uint32, interval)}}});
            return reply;
        });
        broker.setIndicationHandler([this](const std::string& nameSpace, const broker::Instance& indication) {
            EXPECT_EQ(nameSpace, "root/cimv2");
            offered.push_back(indication.path.className);
            if (indication.path.className == "CIM_Refused")
                throw std::runtime_error("no");
        });
    }
    void add(const char* className) {
        broker::Scope making(broker);
        const broker::ObjectPath path{
            .host = {}, .nameSpace = "root/interop", .className = className, .keys = {}};
        CMPIInstance* const made = making.make(broker::Instance{path, {}});
        pending.add(context, objects::Owned<CMPIInstance>(CMClone(made, nullptr)));
    }
    // What is offered now.
    std::vector<std::string> offer() {
        offered.clear();
        next = pending.offer(context);
        return offered;
    }

    broker::Broker broker;
    broker::Scope scope{broker};
    const CMPIContext* const context = scope.makeContext();
    unsigned attempts = 2, interval = 1;
    std::vector<std::string> offered;
    PendingDeliveries pending{broker.handle()};
    PendingDeliveries::Clock::time_point next;
};

TEST_F(Pending, areOfferedAsOftenAsTheServiceSays) {
    add("CIM_Refused");
    const std::size_t before = broker.liveObjects();
    add("CIM_Taken");
    EXPECT_THAT(offer(), IsEmpty()) << "it is too early";
    EXPECT_LE(next, PendingDeliveries::Clock::now() + std::chrono::seconds(1));
    std::this_thread::sleep_until(next + std::chrono::milliseconds(20));
    EXPECT_THAT(offer(), ElementsAre("CIM_Refused", "CIM_Taken"));
    EXPECT_EQ(broker.liveObjects(), before);
    EXPECT_THAT(offer(), IsEmpty());
    std::this_thread::sleep_until(next + std::chrono::milliseconds(20));
    EXPECT_THAT(offer(), ElementsAre("CIM_Refused"));
    EXPECT_EQ(next, PendingDeliveries::Clock::time_point::max()) << "none is left";
}

TEST_F(Pending, areNoMoreThanMemoryAllows) {
    interval = 0;
    for (int i = 0; i < 1000; ++i)
        add(i < 900 ? "CIM_Refused" : "CIM_Taken");
    EXPECT_THAT(offer(), testing::SizeIs(256));
    EXPECT_EQ(std::ranges::count(offered, "CIM_Taken"), 100) << "the oldest are given up";
}

TEST_F(Pending, needAService) {
    attempts = interval = 0;
    const std::size_t before = broker.liveObjects();
    add("CIM_Taken");
    EXPECT_EQ(broker.liveObjects(), before);
    EXPECT_THAT(offer(), IsEmpty());
}

} // namespace
