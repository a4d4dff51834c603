// Interfaces, bonding, PHY and Ethernet settings: OEM commands (docs/oem-commands.md).
#include "hooks/configured_session.h"
#include "hooks/oem.h"
#include "ipmi/oem_commands.h"

#include <cstdio>
#include <stdexcept>

// Layouts shared with the library.
static_assert(offsetof(CIM_BondInfo, enabled) == 0 && sizeof(CIM_BondInfo) == 2);
static_assert(offsetof(CIM_BondConfig, enabled) == 0 && offsetof(CIM_BondConfig, members) == 4 &&
              sizeof(CIM_BondConfig) == 6);
static_assert(offsetof(CIM_NWExtEthCfg, capability) == 6 && sizeof(CIM_NWExtEthCfg) == 8);

namespace {

using ipmi::Answer;
namespace oem = ipmi::oem;

constexpr std::size_t longestName = 16;
constexpr int configuredTimeout = 30; // seconds, of the call that is not told how long it may take

// The name becomes part of keys and of a file's name.
bool isName(std::span<const std::uint8_t> bytes) {
    return !bytes.empty() && bytes.size() <= longestName && std::ranges::all_of(bytes, [](std::uint8_t c) {
        return c > ' ' && c < 0x7F && c != '/' && c != ':' && c != '*' && c != '"' && c != '\'';
    });
}

int readLanEnable(const char* hook, const IPMI20_SESSION_T* session, int timeout, std::uint8_t lanIndex,
                  std::uint8_t* enable) {
    return hooks::guarded(hook, [&] {
        hooks::require(enable != nullptr);
        const auto answer = hooks::runOem(hooks::sessionOf(session, timeout), oem::getLanEnable, {lanIndex});
        auto reader = answer.reader();
        *enable = reader.u8() & CIM_LAN_BOTH;
        answer.verify(reader);
    });
}

struct Bond {
    std::uint8_t lanIndex = 0;
    CIM_BondConfig configuration = {};
};

Bond decodeBond(const Answer& answer) {
    auto reader = answer.reader();
    Bond bond;
    bond.configuration.enabled = reader.u8() & 1;
    bond.lanIndex = reader.u8();
    bond.configuration.mode = reader.u8();
    bond.configuration.milliseconds = reader.u16();
    bond.configuration.members = reader.u16();
    answer.verify(reader);
    return bond;
}

} // namespace

int CIM_GetLANIndex(IPMI20_SESSION_T* session, uint8_t lanIndex, char* name, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(name != nullptr);
        std::snprintf(name, CIM_INTERFACE_NAME_SIZE, "eth%d", lanIndex - 1);
        if (const auto answer =
                hooks::askOem(hooks::sessionOf(session, timeout), oem::getInterfaceName, {lanIndex})) {
            if (!isName(answer->data()))
                throw std::runtime_error("the BMC's name of LAN " + std::to_string(lanIndex) +
                                         " is no interface name");
            *std::ranges::copy(answer->data(), name).out = '\0';
        }
    });
}

int CIM_GetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* enable, int timeout) {
    return readLanEnable(__func__, session, timeout, lanIndex, enable);
}

int LIBIPMI_HL_GetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* enable, int timeout) {
    return readLanEnable(__func__, session, timeout, lanIndex, enable);
}

int CIM_SetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t enable, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::runOem(hooks::sessionOf(session, timeout), oem::setLanEnable, {lanIndex, enable});
    });
}

int CIM_IsBondEnabled(IPMI20_SESSION_T* session, CIM_BondInfo* info, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(info != nullptr);
        *info = {};
        if (const auto answer = hooks::askOem(hooks::sessionOf(session, timeout), oem::getBond)) {
            const Bond bond = decodeBond(*answer);
            *info = {.enabled = bond.configuration.enabled, .lanIndex = bond.lanIndex};
        }
    });
}

int CIM_GetBondEnable(IPMI20_SESSION_T* session, CIM_BondConfig* configuration, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr);
        *configuration =
            decodeBond(hooks::runOem(hooks::sessionOf(session, timeout), oem::getBond)).configuration;
    });
}

int CIM_SetBondEnable(IPMI20_SESSION_T* session, const CIM_BondConfig* configuration, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr);
        std::array<std::uint8_t, 6> storage;
        ipmi::Writer request(storage);
        request.u8(configuration->enabled)
            .u8(configuration->mode)
            .u16(configuration->milliseconds)
            .u16(configuration->members);
        hooks::runOem(hooks::sessionOf(session, timeout), oem::setBond, request.written());
    });
}

int CIM_GetPHYConfig(IPMI20_SESSION_T* session, uint8_t channel, uint32_t* phy, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(phy != nullptr);
        const auto answer = hooks::runOem(hooks::sessionOf(session, timeout), oem::getPhy, {channel});
        auto reader = answer.reader();
        *phy = reader.u32();
        answer.verify(reader);
    });
}

int CIM_GetNWExtEthCfg(CIM_NWExtEthCfg* configuration, uint8_t* isDefault) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr && isDefault != nullptr);
        *configuration = {
            .duplex = 1, .autoNegotiation = 1, .mtu = 1500, .capability = 0, .enabledCapability = 0};
        *isDefault = 1;
        hooks::Session bmc(hooks::openConfiguredSession());
        bmc.begin(configuredTimeout);
        if (const auto answer = hooks::askOem(bmc, oem::getEthernetSettings)) {
            auto reader = answer->reader();
            configuration->duplex = reader.u16();
            configuration->autoNegotiation = reader.u16();
            configuration->mtu = reader.u16();
            configuration->capability = reader.u8();
            configuration->enabledCapability = reader.u8();
            answer->verify(reader);
            *isDefault = 0;
        }
    });
}
