// Enabling, disabling and resetting the BMC's network interfaces.
#include "network/port_state.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/shared_file.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/dmtf_values.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace ph {
namespace {

// The file "/tmp/ethport_reqstate_eth0"; empty for a name that would lead elsewhere.
struct StateFile {
    explicit StateFile(const char* interfaceName) {
        if (std::strchr(interfaceName, '/') == nullptr)
            std::snprintf(path, sizeof(path), "/tmp/ethport_reqstate_%s", interfaceName);
    }
    char path[256] = "";
};

void writeRequestedState(const char* interfaceName, int state) {
    if (const FilePtr file = writeShared(StateFile(interfaceName).path))
        std::fprintf(file.get(), "%02d", state);
}

// What differs between the bond and a LAN.
struct Switch {
    const char* noEnable;
    const char* noDisable;
    unsigned int pauseSeconds; // of a reset, until the interface is really down
};
constexpr Switch bondSwitch{"Unable to enable the interface",
                            "Atleast one interface should be enabled for communication with BMC", 25};
constexpr Switch lanSwitch{"Unable to enable the EthernertPort",
                           "Atleast one interface must be working for a BMC", 7};

// Returns nullptr, or why the change failed. `set` is bool(bool enabled).
template <class Set>
const char* change(const Switch& kind, bool isEnabled, int requestedState, Set set) {
    switch (requestedState) {
    case RequestedState::Enabled:
        if (isEnabled)
            return "This EthernetPort is already active";
        return set(true) ? nullptr : kind.noEnable;
    case RequestedState::Disabled:
        if (!isEnabled)
            return "This EthernetPort is already disabled";
        return set(false) ? nullptr : kind.noDisable;
    default:
        if (isEnabled) {
            set(false);
            sleep(kind.pauseSeconds);
        }
        set(true);
        return nullptr;
    }
}

enum class Outcome { Done, Refused, NoAnswer };

Outcome changeBond(IPMI20_SESSION_T* session, int requestedState, const char*& refusal) {
    CIM_BondInfo info{};
    if (CIM_IsBondEnabled(session, &info, hookTimeout) != 0)
        return Outcome::NoAnswer;
    CIM_BondConfig bond{};
    refusal = CIM_GetBondEnable(session, &bond, hookTimeout) != 0
                  ? bondSwitch.noDisable
                  : change(bondSwitch, bond.enabled != 0, requestedState, [&](bool enabled) {
                        bond.enabled = enabled;
                        return CIM_SetBondEnable(session, &bond, hookTimeout) == 0;
                    });
    return refusal != nullptr ? Outcome::Refused : Outcome::Done;
}

Outcome changeLan(IPMI20_SESSION_T* session, int lanIndex, int requestedState, const char*& refusal) {
    const auto index = static_cast<std::uint8_t>(lanIndex);
    std::uint8_t enabled = CIM_LAN_DISABLED;
    if (CIM_GetLANEnable(session, index, &enabled, hookTimeout) != 0)
        return Outcome::NoAnswer;
    refusal = change(lanSwitch, enabled != CIM_LAN_DISABLED, requestedState, [&](bool isOn) {
        return CIM_SetLANEnable(session, index, isOn ? CIM_LAN_BOTH : CIM_LAN_DISABLED, hookTimeout) == 0;
    });
    return refusal != nullptr ? Outcome::Refused : Outcome::Done;
}

} // namespace

int readRequestedState(const char* interfaceName) {
    int state = 0;
    const FilePtr file = readShared(StateFile(interfaceName).path);
    if (file == nullptr || std::fscanf(file.get(), "%d", &state) != 1)
        return 0;
    return state;
}

} // namespace ph

int RequestStateChange(const CMPIBroker* broker, const CMPIContext*, const CMPIArgs*, CMPIStatus* status,
                       int lanIndex, const char* interfaceName, int requestedState) {
    using ph::Outcome;
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    const char* refusal = nullptr;
    Outcome outcome = Outcome::Done;
    if (std::strstr(interfaceName, "bond") != nullptr)
        outcome = ph::changeBond(session.get(), requestedState, refusal);
    else if (std::strstr(interfaceName, "eth") != nullptr)
        outcome = ph::changeLan(session.get(), lanIndex, requestedState, refusal);
    if (outcome == Outcome::Refused)
        ph::fail(broker, status, CMPI_RC_ERR_FAILED, refusal);
    if (outcome != Outcome::Done)
        return -1;
    ph::writeRequestedState(interfaceName, requestedState);
    return 0;
}
