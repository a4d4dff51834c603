#include "ipmi/transport.h"

#include "ipmi/local_device.h"
#include "ipmi/transport_library.h"

#include <utility>

namespace ipmi {
namespace {

ExchangeObserver& observer() {
    static ExchangeObserver instance;
    return instance;
}

class ObservedTransport final : public Transport {
public:
    explicit ObservedTransport(std::unique_ptr<Transport> transport) : transport_(std::move(transport)) {}

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        const std::size_t size = transport_->exchange(netFn, command, request, answer);
        observer()(netFn, command, request, answer.first(size));
        return size;
    }
    void endBy(Clock::time_point deadline) override { transport_->endBy(deadline); }

private:
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

} // namespace

void observeExchanges(ExchangeObserver newObserver) {
    observer() = std::move(newObserver);
}

std::unique_ptr<Transport> openTransport(const SessionSettings& settings) {
    auto transport = open(settings);
    if (observer())
        return std::make_unique<ObservedTransport>(std::move(transport));
    return transport;
}

} // namespace ipmi
