#include "ipmi/transport.h"

#include "ipmi/lan_transport.h"
#include "ipmi/local_transport.h"
#include "virtual-bmc/transport.h"

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

std::unique_ptr<Transport> open(const SessionSettings& settings) {
    switch (settings.interfaceType) {
    case SessionSettings::Lan:
        return std::make_unique<LanTransport>(settings);
    case SessionSettings::LocalDevice:
        return std::make_unique<LocalTransport>(settings);
    case SessionSettings::VirtualBmc:
        return vbmc::openTransport(settings);
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
