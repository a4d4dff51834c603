#include "virtual-bmc/transport.h"

#include "virtual-bmc/controller.h"
#include "virtual-bmc/state_file.h"

#include <algorithm>
#include <thread>

namespace vbmc {
namespace {

constexpr char title[] = "virtual BMC ";

class VirtualTransport final : public ipmi::Transport {
public:
    explicit VirtualTransport(const ipmi::SessionSettings& settings)
        : name_(title + settings.address), timeout_(settings.timeout), file_(settings.address) {}

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        std::uint8_t storage[ipmi::maxMessage];
        Outcome outcome;
        try {
            file_.transact([&](State& state) { outcome = execute(state, netFn, command, request, storage); });
        } catch (const std::exception& error) {
            throw ipmi::TransportError(title + std::string(error.what()));
        }
        std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(outcome.delay, timeout_));
        if (outcome.size == 0 || outcome.delay > timeout_)
            throw ipmi::TransportError(name_ + ": no answer within " + std::to_string(timeout_.count()) +
                                       " s");
        if (outcome.size > answer.size())
            throw ipmi::TransportError(name_ + ": the answer is too long");
        std::copy_n(storage, outcome.size, answer.begin());
        return outcome.size;
    }

private:
    std::string name_;
    std::chrono::seconds timeout_;
    StateFile file_;
};

} // namespace

std::unique_ptr<ipmi::Transport> openTransport(const ipmi::SessionSettings& settings) {
    try {
        return std::make_unique<VirtualTransport>(settings);
    } catch (const std::exception& error) {
        throw ipmi::TransportError(title + std::string(error.what()));
    }
}

} // namespace vbmc
