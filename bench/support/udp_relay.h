// Stands between a program and a BMC on loopback and counts what the program sends: each datagram is one IPMI
// message or one step of opening and closing a session.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace bench {

class UdpRelay {
public:
    // Relays between a free port on loopback and `target`. Serves one client at a time.
    explicit UdpRelay(std::uint16_t target);
    ~UdpRelay();
    UdpRelay(const UdpRelay&) = delete;
    UdpRelay& operator=(const UdpRelay&) = delete;

    std::uint16_t port() const { return port_; }
    std::size_t requests() const { return requests_; }

private:
    void run();

    int client_; // sockets
    int server_;
    int stop_[2]; // a pipe
    std::uint16_t port_ = 0;
    std::atomic<std::size_t> requests_{0};
    std::thread thread_;
};

} // namespace bench
