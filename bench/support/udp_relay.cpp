#include "support/udp_relay.h"

#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {
namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int udpSocket() {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket < 0)
        throw std::runtime_error("no UDP socket");
    return socket;
}

} // namespace

UdpRelay::UdpRelay(std::uint16_t target) : client_(udpSocket()), server_(udpSocket()) {
    auto own = loopback(0);
    socklen_t size = sizeof own;
    const auto to = loopback(target);
    if (::bind(client_, reinterpret_cast<const sockaddr*>(&own), size) != 0 ||
        ::getsockname(client_, reinterpret_cast<sockaddr*>(&own), &size) != 0 ||
        ::connect(server_, reinterpret_cast<const sockaddr*>(&to), sizeof to) != 0 || ::pipe(stop_) != 0)
        throw std::runtime_error("cannot relay on loopback");
    port_ = ntohs(own.sin_port);
    thread_ = std::thread([this] { run(); });
}

UdpRelay::~UdpRelay() {
    ::close(stop_[1]);
    thread_.join();
    for (const int descriptor : {client_, server_, stop_[0]})
        ::close(descriptor);
}

void UdpRelay::run() {
    std::array<std::uint8_t, 2048> bytes;
    sockaddr_in peer{};
    std::array<pollfd, 3> waiting{{{client_, POLLIN, 0}, {server_, POLLIN, 0}, {stop_[0], POLLIN, 0}}};
    while (::poll(waiting.data(), waiting.size(), -1) >= 0 && waiting[2].revents == 0) {
        if (waiting[0].revents != 0) {
            socklen_t size = sizeof peer;
            const auto length =
                ::recvfrom(client_, bytes.data(), bytes.size(), 0, reinterpret_cast<sockaddr*>(&peer), &size);
            if (length > 0) {
                ++requests_;
                ::send(server_, bytes.data(), static_cast<std::size_t>(length), 0);
            }
        }
        if (waiting[1].revents != 0) {
            const auto length = ::recv(server_, bytes.data(), bytes.size(), 0);
            if (length > 0)
                ::sendto(client_, bytes.data(), static_cast<std::size_t>(length), 0,
                         reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
        }
    }
}

} // namespace bench
