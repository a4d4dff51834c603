// A listener on loopback that takes every POST, keeps the connections open, and counts what came.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace bench {

class HttpSink {
public:
    // `take` is given each request's body, before the answer that goes out after `delay`.
    explicit HttpSink(std::chrono::microseconds delay = {},
                      std::function<void(const std::string&)> take = {});
    ~HttpSink();
    HttpSink(const HttpSink&) = delete;
    HttpSink& operator=(const HttpSink&) = delete;

    int port() const { return port_; }
    std::size_t requests() const;
    // Waits until so many requests have come, false after ten seconds.
    bool await(std::size_t count) const;

private:
    void serve();
    void serve(int connection);
    void answer(int connection, const std::string& body);

    const std::chrono::microseconds delay_;
    const std::function<void(const std::string&)> take_;
    int socket_;
    int port_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::size_t requests_ = 0;
    std::list<int> open_; // connections
    std::list<std::thread> serving_;
    std::thread thread_;
};

} // namespace bench
