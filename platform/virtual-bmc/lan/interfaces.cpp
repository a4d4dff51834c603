#include "virtual-bmc/lan/interfaces.h"

#include "ipmi/lan_configuration.h"
#include "ipmi/oem_commands.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace oem = ipmi::oem;

constexpr std::uint8_t off = 0;
constexpr std::uint8_t both = 3;
constexpr std::size_t leastMembers = 2;

const Lan* findByIndex(const State& state, std::size_t lanIndex) {
    const auto& list = state.get<Lans>().list;
    return lanIndex >= 1 && lanIndex <= list.size() ? &list[lanIndex - 1] : nullptr;
}

// Tells whether the controller can be reached. A bond works whatever its members are set to as single LANs.
bool works(const Bond& bond, const std::vector<Lan>& lans) {
    return bond.isEnabled || std::ranges::any_of(lans, [](const Lan& lan) { return lan.enable != off; });
}

std::uint8_t getInterfaceName(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::size_t index = request.u8();
    const Lan* const lan = findByIndex(state, index);
    if (lan == nullptr)
        return completion::parameterOutOfRange;
    const Bond& bond = state.get<Interfaces>().bond;
    const bool isBond = bond.isEnabled && bond.members.front() == index;
    const std::string name = isBond ? Bond::interfaceName : lan->name;
    answer.bytes(std::span(reinterpret_cast<const std::uint8_t*>(name.data()), name.size()));
    return completion::success;
}

std::uint8_t getLanEnable(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const Lan* const lan = findByIndex(state, request.u8());
    if (lan == nullptr)
        return completion::parameterOutOfRange;
    answer.u8(lan->enable);
    return completion::success;
}

std::uint8_t setLanEnable(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::size_t index = request.u8();
    const std::uint8_t enable = request.u8();
    if (findByIndex(state, index) == nullptr || enable > both)
        return completion::parameterOutOfRange;
    auto& lans = state.edit<Lans>().list;
    lans[index - 1].enable = enable;
    return works(state.get<Interfaces>().bond, lans) ? completion::success : completion::notInPresentState;
}

std::uint8_t getBond(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const Bond& bond = state.get<Interfaces>().bond;
    const std::uint16_t first = bond.members.empty() ? 0 : bond.members.front();
    answer.u8(bond.isEnabled).u8(static_cast<std::uint8_t>(first)).u8(bond.mode).u16(bond.milliseconds);
    answer.u16(bond.mask());
    return completion::success;
}

std::uint8_t setBondEnabled(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t isEnabled = request.u8();
    const std::uint8_t mode = request.u8();
    const std::uint16_t milliseconds = request.u16();
    const std::uint16_t mask = request.u16();
    constexpr std::uint8_t lastMode = 6;
    const std::size_t lanCount = state.get<Lans>().list.size();
    if (isEnabled > 1 || mode > lastMode || mask >> lanCount != 0)
        return completion::invalidDataField;
    Interfaces& interfaces = state.edit<Interfaces>();
    Bond& bond = interfaces.bond;
    bond.mode = mode;
    bond.milliseconds = milliseconds;
    bond.members.clear();
    for (std::uint16_t index = 1; index <= lanCount; ++index)
        if ((mask >> (index - 1) & 1) != 0)
            bond.members.push_back(index);
    return interfaces.setBond(state, isEnabled != 0) ? completion::success : completion::notInPresentState;
}

std::uint8_t getPhy(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const Lan* const lan = state.get<Lans>().find(request.u8() & 0x0F);
    if (lan == nullptr)
        return completion::parameterOutOfRange;
    answer.u8(static_cast<std::uint8_t>(lan->isLinkUp | lan->isFullDuplex << 1 | lan->autoNegotiates << 2))
        .u16(lan->isLinkUp ? lan->speed : 0)
        .u8(0);
    return completion::success;
}

std::uint8_t getEthernetSettings(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const Ethernet& ethernet = state.get<Interfaces>().ethernet;
    answer.u16(ethernet.isFullDuplex ? 1 : 2)
        .u16(ethernet.autoNegotiates ? 1 : 2)
        .u16(ethernet.mtu)
        .u8(ethernet.hasWakeOnLan)
        .u8(ethernet.isWakeOnLanEnabled);
    return completion::success;
}

} // namespace

void Bond::fields(Fields& fields) {
    fields("enabled", isEnabled);
    fields.number("mode", mode, 0, 6);
    fields("milliseconds", milliseconds);
    fields("members", members);
    if (!fields.isReading())
        return;
    const Place place{&fields.place(), "members"};
    if (isEnabled && members.size() < leastMembers)
        fail(place, "a bond has two members at least");
    if (std::ranges::any_of(members, [](unsigned index) { return index < 1 || index > ipmi::channel::last; }))
        fail(place, "LAN indices are 1 to 11");
}

std::uint16_t Bond::mask() const {
    unsigned bits = 0;
    for (const std::uint16_t index : members)
        bits |= 1U << (index - 1);
    return static_cast<std::uint16_t>(bits);
}

void Ethernet::fields(Fields& fields) {
    fields("fullDuplex", isFullDuplex);
    fields("autoNegotiation", autoNegotiates);
    fields("mtu", mtu);
    fields("wakeOnLan", hasWakeOnLan);
    fields("wakeOnLanEnabled", isWakeOnLanEnabled);
}

std::span<const Command> Interfaces::commands() {
    static constexpr Command table[] = {
        {oem::getInterfaceName, 1, getInterfaceName},
        {oem::getLanEnable, 1, getLanEnable},
        {oem::setLanEnable, 2, setLanEnable},
        {oem::getBond, 0, getBond},
        {oem::setBond, 6, setBondEnabled},
        {oem::getPhy, 1, getPhy},
        {oem::getEthernetSettings, 0, getEthernetSettings},
    };
    return table;
}

void Interfaces::fields(Fields& fields) {
    fields("bond", bond);
    fields("ethernet", ethernet);
}

bool Interfaces::setBond(const State& state, bool isEnabled) {
    bond.isEnabled = isEnabled;
    return (!isEnabled || bond.members.size() >= leastMembers) && works(bond, state.get<Lans>().list);
}

Json Interfaces::describe(const State&) const {
    Json json = Json::object();
    json["bond"] = bond.isEnabled;
    json["bondMembers"] = bond.members;
    json["mtu"] = ethernet.mtu;
    return json;
}

} // namespace vbmc
