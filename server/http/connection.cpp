#include "http/connection.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace server {
namespace {

constexpr std::size_t bufferSize = 16 * 1024;

using Name = int (*)(int, sockaddr*, socklen_t*);

void addressOf(int socket, Name name, std::string& address, int& port) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    char text[INET6_ADDRSTRLEN] = "";
    port = 0;
    if (name(socket, reinterpret_cast<sockaddr*>(&storage), &size) != 0)
        return;
    if (storage.ss_family == AF_INET) {
        const auto& in = reinterpret_cast<const sockaddr_in&>(storage);
        inet_ntop(AF_INET, &in.sin_addr, text, sizeof text);
        port = ntohs(in.sin_port);
    } else if (storage.ss_family == AF_INET6) {
        const auto& in = reinterpret_cast<const sockaddr_in6&>(storage);
        inet_ntop(AF_INET6, &in.sin6_addr, text, sizeof text);
        port = ntohs(in.sin6_port);
    }
    constexpr std::string_view mapped = "::ffff:";
    address = std::strncmp(text, mapped.data(), mapped.size()) == 0 ? text + mapped.size() : text;
}

} // namespace

Connection::Connection(int socket, int stopping, const ConnectionLimits& limits)
    : limits_(limits), socket_(socket), stopping_(stopping) {
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    fcntl(socket_, F_SETFL, fcntl(socket_, F_GETFL) | O_NONBLOCK);
}

Connection::~Connection() {
    ::close(socket_);
}

void Connection::finish() {
    constexpr std::chrono::milliseconds lingering{1000};
    isFinished_ = true;
    ::shutdown(socket_, SHUT_WR);
    char ignored[4096];
    const Deadline deadline = within(lingering);
    while (::recv(socket_, ignored, sizeof ignored, 0) > 0 || (errno == EAGAIN && wait(POLLIN, deadline)))
        if (std::chrono::steady_clock::now() > deadline)
            return;
}

bool Connection::wait(short events, Deadline deadline) const {
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now())
                .count();
        if (left <= 0)
            return false;
        pollfd descriptor{.fd = socket_, .events = events, .revents = 0};
        const int ready = poll(&descriptor, 1, static_cast<int>(left) + 1);
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

bool Connection::fill(Deadline deadline) {
    buffer_.resize(bufferSize);
    next_ = 0;
    for (;;) {
        short events = POLLIN;
        const ssize_t size = receive(buffer_.data(), buffer_.size(), events);
        buffer_.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        if (size > 0)
            return true;
        if (size == 0 || errno != EAGAIN || !wait(events, deadline))
            return false;
        buffer_.resize(bufferSize);
    }
}

bool Connection::awaitRequest() {
    received_ = written_ = 0;
    const Deadline idleEnd = within(limits_.idle);
    if (next_ == buffer_.size()) {
        pollfd descriptors[] = {{.fd = socket_, .events = POLLIN, .revents = 0},
                                {.fd = stopping_, .events = POLLIN, .revents = 0}};
        while (poll(descriptors, 2, static_cast<int>(limits_.idle.count())) < 0)
            if (errno != EINTR || std::chrono::steady_clock::now() > idleEnd)
                return false;
        if (descriptors[0].revents == 0 || descriptors[1].revents != 0 || !fill(idleEnd))
            return false;
    }
    start_ = std::chrono::steady_clock::now();
    end_ = start_ + limits_.request;
    return true;
}

ssize_t Connection::read(char* data, std::size_t size) {
    if (isFinished_ || std::chrono::steady_clock::now() > end_ || received_ >= limits_.requestSize ||
        (next_ == buffer_.size() && !fill(end_))) {
        isFinished_ = true; // it can still be told why
        isTooLarge_ = received_ >= limits_.requestSize;
        return -1;
    }
    const std::size_t count = std::min({size, buffer_.size() - next_, limits_.requestSize - received_});
    std::memcpy(data, buffer_.data() + next_, count);
    next_ += count;
    received_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* data, std::size_t size) {
    const Deadline deadline = within(limits_.write);
    std::size_t done = 0;
    while (done < size && !isBroken_) {
        short events = POLLOUT;
        const ssize_t count = send(data + done, size - done, events);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (count == 0 || errno != EAGAIN || !wait(events, deadline))
            isBroken_ = true;
    }
    written_ += done;
    return isBroken_ ? -1 : static_cast<ssize_t>(size);
}

ssize_t Connection::receive(char* data, std::size_t size, short&) {
    return ::recv(socket_, data, size, 0);
}

ssize_t Connection::send(const char* data, std::size_t size, short&) {
    return ::send(socket_, data, size, MSG_NOSIGNAL);
}

void Connection::get_remote_ip_and_port(std::string& address, int& port) const {
    addressOf(socket_, getpeername, address, port);
}

void Connection::get_local_ip_and_port(std::string& address, int& port) const {
    addressOf(socket_, getsockname, address, port);
}

} // namespace server
