#include "ipmi/transport.h"

#include "ipmi/first_question.h"
#include "ipmi/local_device.h"
#include "ipmi/transport_library.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

namespace ipmi {
namespace {

ExchangeObserver& observer() {
    static ExchangeObserver instance;
    return instance;
}

std::function<void(Transport&)>& firstQuestion() {
    static std::function<void(Transport&)> instance;
    return instance;
}

std::mutex openFailureMutex;
std::string& openFailure() {
    static std::string instance;
    return instance;
}

std::optional<Clock::time_point>& processDeadline() {
    static std::optional<Clock::time_point> instance;
    return instance;
}

// A transport as the whole process wants it: observed, and within its time.
class ProcessTransport final : public Transport {
public:
    explicit ProcessTransport(std::unique_ptr<Transport> transport) : transport_(std::move(transport)) {
        if (processDeadline())
            transport_->endBy(*processDeadline());
    }

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        if (processDeadline() && Clock::now() >= *processDeadline())
            throw DeadlineError("the time of the command is over");
        try {
            const std::size_t size = transport_->exchange(netFn, command, request, answer);
            observe(netFn, command, request, answer.first(size));
            return size;
        } catch (const TransportError&) {
            observe(netFn, command, request, {});
            throw;
        }
    }
    void endBy(Clock::time_point deadline) override {
        transport_->endBy(processDeadline() ? std::min(deadline, *processDeadline()) : deadline);
    }
    bool waits() const override { return transport_->waits(); }

private:
    static void observe(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                        std::span<const std::uint8_t> answer) {
        if (observer())
            observer()(netFn, command, request, answer);
    }

    std::unique_ptr<Transport> transport_;
};

std::unique_ptr<Transport> openWithFreeIpmi(const SessionSettings& settings) {
    static const TransportLibrary& library = loadTransportLibrary("libphipmi-freeipmi.so");
    return library.open(settings);
}

std::unique_ptr<Transport> openVirtualBmc(const SessionSettings& settings) {
    static const TransportLibrary& library = loadTransportLibrary("libphipmi-vbmc.so");
    return library.open(settings);
}

// The address names a driver. Linux's is enough where there is one.
std::unique_ptr<Transport> openLocalDevice(const SessionSettings& settings) {
    const bool isOfLinux = settings.address == "openipmi";
    if (settings.address.empty() || isOfLinux)
        if (auto device = ipmi::LocalDevice::find(settings))
            return device;
    if (isOfLinux)
        throw TransportError("there is no local IPMI device /dev/ipmi0");
    try {
        return openWithFreeIpmi(settings);
    } catch (const TransportError& error) {
        if (!settings.address.empty())
            throw;
        throw TransportError("there is no local IPMI device /dev/ipmi0; " + std::string(error.what()));
    }
}

std::unique_ptr<Transport> open(const SessionSettings& settings) {
    switch (settings.interfaceType) {
    case SessionSettings::Lan:
        return openWithFreeIpmi(settings);
    case SessionSettings::LocalDevice:
        return openLocalDevice(settings);
    case SessionSettings::VirtualBmc:
        return openVirtualBmc(settings);
    }
    throw TransportError("IPMI interface type " + std::to_string(settings.interfaceType) +
                         " is unknown; 0 is LAN, 1 the local device, 2 the virtual BMC");
}

void askFirstQuestion(Transport& opened) {
    try {
        firstQuestion()(opened);
    } catch (const std::exception&) { // what the transport was opened for comes next
    }
}

std::unique_ptr<Transport> openForProcess(const SessionSettings& settings) {
    if (!observer() && !processDeadline() && !firstQuestion())
        return open(settings);
    SessionSettings limited = settings;
    if (processDeadline()) {
        const auto left = std::chrono::ceil<std::chrono::seconds>(*processDeadline() - Clock::now());
        if (left.count() <= 0)
            throw DeadlineError("the time of the command is over");
        limited.timeout =
            static_cast<int>(std::min<std::chrono::seconds::rep>(limited.timeout, left.count()));
    }
    auto opened = open(limited);
    if (firstQuestion())
        askFirstQuestion(*opened);
    return std::make_unique<ProcessTransport>(std::move(opened));
}

} // namespace

void observeExchanges(ExchangeObserver newObserver) {
    observer() = std::move(newObserver);
}

void askFirst(std::function<void(Transport&)> ask) {
    firstQuestion() = std::move(ask);
}

void endExchangesBy(Clock::time_point deadline) {
    processDeadline() = deadline;
}

std::string lastOpenFailure() {
    const std::lock_guard lock(openFailureMutex);
    return openFailure();
}

std::unique_ptr<Transport> openTransport(const SessionSettings& settings) {
    try {
        return openForProcess(settings);
    } catch (const DeadlineError&) {
        throw;
    } catch (const TransportError& error) {
        const std::lock_guard lock(openFailureMutex);
        openFailure() = error.what();
        throw;
    }
}

} // namespace ipmi
