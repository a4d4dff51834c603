#include "http_sink.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr char answerText[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

// Bytes of a request whose head is complete; 0 while it is not.
std::size_t requestSize(const std::string& text) {
    const std::size_t end = text.find("\r\n\r\n");
    if (end == std::string::npos)
        return 0;
    const char* length = strcasestr(text.c_str(), "\r\ncontent-length:");
    return end + 4 + (length != nullptr ? std::strtoul(length + 17, nullptr, 10) : 0);
}

} // namespace

HttpSink::HttpSink() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket_, generic, size) != 0 || listen(socket_, 16) != 0 ||
        getsockname(socket_, generic, &size) != 0)
        throw std::runtime_error("no listener on loopback");
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

HttpSink::~HttpSink() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
}

std::size_t HttpSink::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

bool HttpSink::await(std::size_t count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 10s, [&] { return requests_ >= count; });
}

void HttpSink::serve() {
    for (int connection = 0; (connection = accept(socket_, nullptr, nullptr)) >= 0; close(connection))
        answer(connection);
}

void HttpSink::answer(int connection) {
    std::string text;
    char buffer[4096];
    while (requestSize(text) == 0 || text.size() < requestSize(text)) {
        const ssize_t size = read(connection, buffer, sizeof buffer);
        if (size <= 0)
            return;
        text.append(buffer, static_cast<std::size_t>(size));
    }
    if (write(connection, answerText, sizeof answerText - 1) < 0)
        return;
    const std::lock_guard lock(mutex_);
    ++requests_;
    changed_.notify_all();
}

} // namespace bench
