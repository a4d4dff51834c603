// What clients may take of the server's time and memory.
#pragma once

#include <chrono>
#include <cstddef>

namespace server {

struct ConnectionLimits {
    std::chrono::milliseconds idle{15'000}; // between requests
    std::chrono::milliseconds request{
        30'000};                             // from a request's first byte to its last, and the TLS handshake
    std::chrono::milliseconds write{30'000}; // for each part of an answer
    std::size_t requestSize = 0;             // with its head
};

} // namespace server
