#include "http_sink.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr char answerText[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";

// Takes the next whole request off the text; its body, or nothing while it is not whole.
std::optional<std::string> takeRequest(std::string& text) {
    const std::size_t end = text.find("\r\n\r\n");
    if (end == std::string::npos)
        return std::nullopt;
    const char* length = strcasestr(text.c_str(), "\r\ncontent-length:");
    const std::size_t size = length != nullptr ? std::strtoul(length + 17, nullptr, 10) : 0;
    if (text.size() < end + 4 + size)
        return std::nullopt;
    std::string body = text.substr(end + 4, size);
    text.erase(0, end + 4 + size);
    return body;
}

} // namespace

HttpSink::HttpSink(std::chrono::microseconds delay, std::function<void(const std::string&)> take)
    : delay_(delay), take_(std::move(take)), socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
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
    {
        const std::lock_guard lock(mutex_);
        for (const int connection : open_)
            shutdown(connection, SHUT_RDWR);
    }
    for (std::thread& thread : serving_)
        thread.join();
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
    for (int connection = 0; (connection = accept(socket_, nullptr, nullptr)) >= 0;) {
        const std::lock_guard lock(mutex_);
        open_.push_back(connection);
        serving_.emplace_back([this, connection] { serve(connection); });
    }
}

void HttpSink::serve(int connection) {
    std::string text;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(connection, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(size));
        while (const auto body = takeRequest(text))
            answer(connection, *body);
    }
    const std::lock_guard lock(mutex_);
    open_.remove(connection);
    close(connection);
}

void HttpSink::answer(int connection, const std::string& body) {
    if (take_)
        take_(body);
    if (delay_.count() > 0)
        std::this_thread::sleep_for(delay_);
    if (write(connection, answerText, sizeof answerText - 1) < 0)
        return;
    const std::lock_guard lock(mutex_);
    ++requests_;
    changed_.notify_all();
}

} // namespace bench
