// A session with the virtual BMC.
#include "ipmi/transport_library.h"
#include "virtual-bmc/controller.h"
#include "virtual-bmc/state/state_file.h"
#include "virtual-bmc/virtual_bmc.h"

#include <algorithm>
#include <platform/sysroot.h>
#include <thread>

namespace vbmc {
namespace {

constexpr char title[] = "virtual BMC ";

class VirtualTransport final : public ipmi::Transport {
public:
    VirtualTransport(const std::filesystem::path& stateFile, int privilege, int timeout)
        : name_(title + stateFile.string()), privilege_(privilege), timeout_(timeout), file_(stateFile) {}

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        std::uint8_t storage[ipmi::maxMessage];
        Outcome outcome;
        try {
            file_.transact([&](State& state) {
                outcome = execute(state, privilege_, netFn, command, request, storage);
            });
        } catch (const std::exception& error) {
            throw ipmi::TransportError(title + std::string(error.what()));
        }
        const auto patience = std::min<ipmi::Clock::duration>(timeout_, deadline_ - ipmi::Clock::now());
        std::this_thread::sleep_for(std::min<ipmi::Clock::duration>(outcome.delay, patience));
        if (outcome.size == 0 || outcome.delay > patience)
            throw ipmi::TransportError(name_ + ": no answer in time");
        if (outcome.size > answer.size())
            throw ipmi::TransportError(name_ + ": the answer is too long");
        std::copy_n(storage, outcome.size, answer.begin());
        return outcome.size;
    }

    void endBy(ipmi::Clock::time_point deadline) override { deadline_ = deadline; }
    bool waits() const override { return false; }

private:
    std::string name_;
    int privilege_;
    std::chrono::seconds timeout_;
    ipmi::Clock::time_point deadline_ = ipmi::Clock::time_point::max();
    StateFile file_;
};

// The address is the state file.
std::unique_ptr<ipmi::Transport> open(const ipmi::SessionSettings& settings) {
    try {
        return std::make_unique<VirtualTransport>(
            settings.address.empty() ? defaultStateFile() : std::filesystem::path(settings.address),
            settings.privilegeLevel, settings.timeout);
    } catch (const std::exception& error) {
        throw ipmi::TransportError(title + std::string(error.what()));
    }
}

} // namespace

std::filesystem::path defaultStateFile() {
    char path[4096];
    if (PH_SysrootPath("/var/lib/virtual-bmc/bmc.state", path, sizeof path) != 0)
        throw Error("PH_SYSROOT is too long");
    return path;
}

} // namespace vbmc

const ipmi::TransportLibrary PH_IpmiTransports{.open = vbmc::open};
