// A listener on loopback that takes every POST, and counts them.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

namespace bench {

class HttpSink {
public:
    HttpSink();
    ~HttpSink();
    HttpSink(const HttpSink&) = delete;
    HttpSink& operator=(const HttpSink&) = delete;

    int port() const { return port_; }
    std::size_t requests() const;
    // Waits until so many requests have come, false after ten seconds.
    bool await(std::size_t count) const;

private:
    void serve();
    void answer(int connection);

    int socket_;
    int port_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::size_t requests_ = 0;
    std::thread thread_;
};

} // namespace bench
