// Ports on loopback at which nobody answers.
#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

class SilentPort {
public:
    enum Kind {
        Hanging, // connections come about, and nothing comes over them
        Dead     // connections are not answered, as by a machine that is switched off
    };

    // A backlog of 0 has room for one connection: Linux does not answer those that want to be the second.
    explicit SilentPort(Kind kind) {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        auto* const generic = reinterpret_cast<sockaddr*>(&address_);
        const bool isDead = kind == Dead;
        if (bind(listening_, generic, size) != 0 || listen(listening_, isDead ? 0 : 16) != 0 ||
            getsockname(listening_, generic, &size) != 0 || (isDead && connect(filling_, generic, size) != 0))
            throw std::runtime_error("no port on loopback");
    }
    ~SilentPort() {
        close(filling_);
        close(listening_);
    }
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;

    std::uint16_t port() const { return ntohs(address_.sin_port); }

private:
    const int listening_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int filling_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address_{};
};
