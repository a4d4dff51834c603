#include "transfer/silent_peers.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

TEST(SilentPeers, areLeftAloneForAMinute) {
    transfer::SilentPeers peers;
    const transfer::SilentPeers::Clock::time_point began{};
    peers.add("a", began);
    peers.add("b", began + 30s);
    EXPECT_TRUE(peers.contains("a", began + 59s));
    EXPECT_FALSE(peers.contains("a", began + 61s));
    EXPECT_TRUE(peers.contains("b", began + 61s));
    EXPECT_FALSE(peers.contains("c", began));
    peers.add("a", began + 61s);
    EXPECT_TRUE(peers.contains("a", began + 62s));
    EXPECT_TRUE(peers.contains("b", began + 62s));
}

} // namespace
