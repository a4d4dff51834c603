// A port on loopback that is as silent as that of a machine which is switched off.
#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

// A backlog of 0 has room for one connection: Linux does not answer those that want to be the second.
class DeafPort {
public:
    DeafPort() {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        auto* const generic = reinterpret_cast<sockaddr*>(&address_);
        if (bind(listening_, generic, size) != 0 || listen(listening_, 0) != 0 ||
            getsockname(listening_, generic, &size) != 0 || connect(filling_, generic, size) != 0)
            throw std::runtime_error("no port on loopback");
    }
    ~DeafPort() {
        close(filling_);
        close(listening_);
    }
    DeafPort(const DeafPort&) = delete;
    DeafPort& operator=(const DeafPort&) = delete;

    std::uint16_t port() const { return ntohs(address_.sin_port); }

private:
    const int listening_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int filling_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address_{};
};
