// Addresses of 127.0.0.1.
#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>

namespace ph_test {

inline sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace ph_test
