// The local IPMI device of the machine, through the interface that Linux drivers of all kinds share.
#pragma once

#include "ipmi/transport.h"

#include <optional>

namespace ipmi {

class LocalDevice final : public Transport {
public:
    // Returns nothing where the machine has no such device. Throws TransportError when it cannot be opened.
    static std::unique_ptr<LocalDevice> find(const SessionSettings& settings);

    // Takes the descriptor over.
    LocalDevice(int descriptor, std::string name, std::chrono::seconds timeout);
    ~LocalDevice() override;
    LocalDevice(const LocalDevice&) = delete;
    LocalDevice& operator=(const LocalDevice&) = delete;

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;
    void endBy(Clock::time_point deadline) override { deadline_ = deadline; }

private:
    void send(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request);
    std::optional<std::size_t> receive(std::span<std::uint8_t> answer);
    void awaitMessage(Clock::time_point end) const;
    [[noreturn]] void failWithErrno(const char* what) const;

    int descriptor_;
    std::string name_;
    std::chrono::seconds timeout_;
    Clock::time_point deadline_ = Clock::time_point::max();
    long messageId_ = 0;
};

} // namespace ipmi
