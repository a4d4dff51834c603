#include "udp_relay.h"

#include "loopback.h"

#include <map>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace ph_test {
namespace {

using Clock = std::chrono::steady_clock;

int openSocket() {
    return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

} // namespace

UdpRelay::UdpRelay(std::uint16_t port, AnswerRule rule)
    : rule_(std::move(rule)), client_(openSocket()), bmc_(openSocket()) {
    auto own = loopback(0);
    const auto other = loopback(port);
    socklen_t size = sizeof own;
    if (::bind(client_, reinterpret_cast<sockaddr*>(&own), size) != 0 ||
        ::getsockname(client_, reinterpret_cast<sockaddr*>(&own), &size) != 0 ||
        ::connect(bmc_, reinterpret_cast<const sockaddr*>(&other), sizeof other) != 0)
        throw std::runtime_error("no relay on loopback");
    port_ = ntohs(own.sin_port);
    thread_ = std::thread([this] { run(); });
}

UdpRelay::~UdpRelay() {
    isEnding_ = true;
    thread_.join();
    ::close(client_);
    ::close(bmc_);
}

void UdpRelay::run() {
    std::multimap<Clock::time_point, std::vector<char>> waiting;
    sockaddr_in client{};
    unsigned answers = 0;
    while (!isEnding_) {
        pollfd sockets[] = {{.fd = client_, .events = POLLIN, .revents = 0},
                            {.fd = bmc_, .events = POLLIN, .revents = 0}};
        ::poll(sockets, 2, waiting.empty() ? 20 : 1);
        std::vector<char> message(1024);
        socklen_t size = sizeof client;
        if ((sockets[0].revents & POLLIN) != 0)
            if (const auto length = ::recvfrom(client_, message.data(), message.size(), 0,
                                               reinterpret_cast<sockaddr*>(&client), &size);
                length > 0)
                ::send(bmc_, message.data(), static_cast<std::size_t>(length), 0);
        if ((sockets[1].revents & POLLIN) != 0)
            if (const auto length = ::recv(bmc_, message.data(), message.size(), 0); length > 0) {
                message.resize(static_cast<std::size_t>(length));
                for (const auto delay : rule_(answers++))
                    waiting.emplace(Clock::now() + delay, message);
            }
        while (!waiting.empty() && waiting.begin()->first <= Clock::now()) {
            const auto& answer = waiting.begin()->second;
            ::sendto(client_, answer.data(), answer.size(), 0, reinterpret_cast<sockaddr*>(&client),
                     sizeof client);
            waiting.erase(waiting.begin());
        }
    }
}

} // namespace ph_test
