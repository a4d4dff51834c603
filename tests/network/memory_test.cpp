#include "failing_allocation.h"
#include "network_fixture.h"

namespace {

class Memory : public Network {};

TEST_F(Memory, enumerationGivesAllOrNothing) {
    unsigned failures = 0;
    for (unsigned nth = 1;; ++nth) {
        EthernetPortRecord* ports = nullptr;
        int count = 0;
        failAllocation(nth);
        const int result = PH_Enum_All_EthernetPort(&ports, &count, 0);
        const bool failed = allocationFailed();
        failAllocation(0);
        EXPECT_EQ(result, failed ? -1 : 0);
        EXPECT_EQ(count, failed ? 0 : 2);
        PH_Clean_EthernetPort(&ports, count);
        if (!failed)
            break;
        ++failures;
    }
    EXPECT_GE(failures, 3U); // the array, and an address of each port
}

TEST_F(Memory, arrayThatCannotGrowIsFreed) {
    IPProtocolEndpointRecord* records = nullptr;
    int count = 0;
    const auto append = [&] {
        return PH_CreateIPProtocolEndpointInstance(&records, &count, "SP", "eth0", 1, 3, "192.0.2.1",
                                                   "255.0.0.0", 0, 0, 4);
    };
    ASSERT_EQ(append(), 0);
    failAllocation(1);
    EXPECT_EQ(append(), -1);
    EXPECT_TRUE(allocationFailed());
    EXPECT_EQ(records, nullptr);
    EXPECT_EQ(count, 0);
}

} // namespace
