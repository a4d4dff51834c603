// A client's connection, with what it may take of time and size.
#pragma once

#include "http/limits.h"

#include <httplib.h>
#include <string>

namespace server {

// Owns its socket. `stopping` is a descriptor that becomes readable when the server ends.
class Connection : public httplib::Stream {
public:
    Connection(int socket, int stopping, const ConnectionLimits& limits);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Waits for the first byte of a request; false when none comes.
    bool awaitRequest();
    // Takes no more requests. A client that still sends gets the answer before the connection is gone.
    void finish();
    bool isFinished() const { return isFinished_ || isBroken_; }
    // Reading a request has ended because it is longer than it may be.
    bool isTooLarge() const { return isTooLarge_; }
    std::chrono::steady_clock::time_point requestStart() const { return start_; }
    std::size_t written() const { return written_; }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !isBroken_; }
    ssize_t read(char* data, std::size_t size) override;
    ssize_t write(const char* data, std::size_t size) override;
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;
    int socket() const override { return socket_; }

protected:
    using Deadline = std::chrono::steady_clock::time_point;

    // Transfer at most `size` bytes at once. They return their number, 0 at the end, or -1 with errno, which
    // is EAGAIN where `events` have to be awaited.
    virtual ssize_t receive(char* data, std::size_t size, short& events);
    virtual ssize_t send(const char* data, std::size_t size, short& events);
    // Tells whether one of the events came.
    bool wait(short events, Deadline deadline) const;
    Deadline within(std::chrono::milliseconds time) const { return std::chrono::steady_clock::now() + time; }

    const ConnectionLimits limits_;

private:
    bool fill(Deadline deadline);

    const int socket_, stopping_;
    std::string buffer_;
    std::size_t next_ = 0, received_ = 0, written_ = 0;
    Deadline start_, end_;
    bool isBroken_ = false, isFinished_ = false, isTooLarge_ = false;
};

} // namespace server
