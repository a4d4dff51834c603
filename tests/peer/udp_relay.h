// A relay on a free loopback port, between a client and a BMC, that hands answers on as a bad network does.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace ph_test {

// When the copies of the nth answer, counted from 0, are handed on after it came; none loses it.
using Deliveries = std::vector<std::chrono::milliseconds>;
using AnswerRule = std::function<Deliveries(unsigned number)>;

class UdpRelay {
public:
    // Relays between one client and the BMC at `port` of 127.0.0.1. `rule` is called by the relay's thread.
    UdpRelay(std::uint16_t port, AnswerRule rule);
    ~UdpRelay();
    UdpRelay(const UdpRelay&) = delete;
    UdpRelay& operator=(const UdpRelay&) = delete;

    std::uint16_t port() const { return port_; }

private:
    void run();

    AnswerRule rule_;
    int client_;
    int bmc_;
    std::uint16_t port_ = 0;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace ph_test
