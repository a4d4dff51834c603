#include "hook_calls.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace {

constexpr int timeout = 30;
constexpr std::uint16_t logRoom = 8; // records

// Out-arguments that hold more than one of their type.
struct Room {
    std::string_view hook;
    std::size_t parameter; // counted from 0
    std::size_t elements;
};
constexpr Room rooms[] = {
    {"CIM_GetLANDestinationType_AddrTable", 1, CIM_MAX_LAN_DESTINATIONS},
    {"CIM_GetLANDestinationType_AddrTable", 2, CIM_MAX_LAN_DESTINATIONS},
    {"OEM_GetHostSystemName", 0, 256},
    {"OEM_GetSPSystemName", 0, 256},
    {"CIM_GetLANCount", 2, CIM_MAX_LANS},
    {"CIM_Get_MACAddress", 1, 6},
    {"LIBIPMI_HL_GetMACAddress", 1, 6},
    {"CIM_TRZGetEmailDest", 3, CIM_EMAIL_SUBJECT_SIZE + 1},
    {"CIM_TRZGetEmailDest", 4, CIM_EMAIL_MESSAGE_SIZE + 1},
    {"CIM_TRZGetUserEmail", 2, CIM_USER_EMAIL_SIZE},
    {"CIM_TRZGetSMTPServerInfo", 1, CIM_SMTP_ADDRESS_SIZE},
    {"CIM_TRZGetSMTPServer2Info", 1, CIM_SMTP_ADDRESS_SIZE},
    {"CIM_TRZGetSMTPServerInfoIPv6", 1, 16},
    {"CIM_TRZGetSMTPServer2InfoIPv6", 1, 16},
    {"CIM_GetLANIndex", 2, CIM_INTERFACE_NAME_SIZE},
    {"CIM_GetPEFTable", 1, CIM_MAX_PEF_ENTRIES},
    {"CIM_GetSELRecords", 1, logRoom},
    {"CIM_GetUser", 2, CIM_USER_NAME_SIZE},
    {"CIM_GetOpenSessions", 1, CIM_MAX_OPEN_SESSIONS},
    {"CIM_GetSystemInfo", 2, CIM_SYSTEM_INFO_SIZE},
    {"CIM_GetStoredFirmware", 1, CIM_MAX_STORED_FIRMWARE},
};

std::size_t roomOf(std::string_view hook, std::size_t parameter) {
    for (const Room& room : rooms)
        if (room.hook == hook && room.parameter == parameter)
            return room.elements;
    return 1;
}

// ---- What a hook that succeeds may hand out

using Faults = std::vector<std::string>;

void expect(Faults& faults, bool holds, const char* fault) {
    if (!holds)
        faults.emplace_back(fault);
}
template <std::size_t size>
void expectEnd(Faults& faults, const char (&text)[size]) {
    expect(faults, std::memchr(text, '\0', size) != nullptr, "a text has no end");
}

template <class Out>
void verify(Faults&, const Out&) {}
void verify(Faults& faults, const CIM_IPv4NetworkCfg& configuration) {
    expect(faults, configuration.source <= CIM_ADDRESS_SOURCE_OTHER, "the source is none");
}
void verify(Faults& faults, const CIM_IPv6NetworkCfg& configuration) {
    expect(faults,
           configuration.source == CIM_ADDRESS_SOURCE_STATIC ||
               configuration.source == CIM_ADDRESS_SOURCE_DYNAMIC,
           "the source is neither static nor dynamic");
    expect(faults, configuration.prefixLength <= 128, "the prefix is longer than an address");
}
void verify(Faults& faults, const CIM_IPv6Addresses& list) {
    expect(faults, list.count <= CIM_MAX_IPV6_ADDRESSES, "there are more addresses than room");
    for (std::size_t i = 0; i < std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES); ++i)
        expect(faults, list.addresses[i].prefixLength <= 128 && list.addresses[i].origin <= 2,
               "an address has no such prefix or origin");
}
void verify(Faults& faults, const CIM_IPv6Routers& list) {
    expect(faults, list.count <= CIM_MAX_IPV6_ROUTERS, "there are more routers than room");
}
void verify(Faults& faults, const CIM_DNSConfig& dns) {
    expectEnd(faults, dns.hostName);
    expectEnd(faults, dns.domainName);
    expect(faults, dns.isSupported <= 1 && dns.fromDhcp <= 7 && dns.serverCount <= CIM_MAX_DNS_SERVERS,
           "a field of the DNS settings is out of its range");
}
void verify(Faults& faults, const CIM_DNSSearch& search) {
    expectEnd(faults, search.suffixes);
    expect(faults, search.isSupported <= 1, "isSupported is neither 0 nor 1");
}
void verify(Faults& faults, const CIM_SMTPInfo& server) {
    expectEnd(faults, server.userName);
    expectEnd(faults, server.password);
    expect(faults, server.isEnabled <= 1, "isEnabled is neither 0 nor 1");
}
void verify(Faults& faults, const CIM_ServiceConf& service) {
    expectEnd(faults, service.name);
    expect(faults, service.currentState <= 1, "currentState is neither 0 nor 1");
}
void verify(Faults& faults, const CIM_BootFlags& flags) {
    expect(faults,
           flags.isSupported <= 1 && flags.isValid <= 1 && flags.isPersistent <= 1 && flags.device <= 15,
           "a flag is out of its range");
}
void verify(Faults& faults, const CIM_WatchdogTimer& timer) {
    expect(faults,
           timer.isSupported <= 1 && timer.isRunning <= 1 && timer.doesNotLog <= 1 && timer.use <= 7 &&
               timer.action <= 7 && timer.interrupt <= 7,
           "a field of the timer is out of its range");
}
void verify(Faults& faults, const CIM_FirmwareUpdate& update) {
    expect(faults, update.isSupported <= 1 && update.state <= CIM_FIRMWARE_FAILED && update.percent <= 100,
           "a field of the update is out of its range");
}
void verify(Faults& faults, const CIM_DeviceID& device) {
    expect(faults,
           device.deviceRevision <= 15 && device.firmwareMajor <= 127 && device.hasAuxiliary <= 1 &&
               device.manufacturerId <= 0xFFFFFF,
           "a field of the device is out of its range");
}
void verify(Faults& faults, const CIM_BondInfo& bond) {
    expect(faults, bond.enabled <= 1, "enabled is neither 0 nor 1");
}

// Counts of what is in another out-argument.
struct Limit {
    std::string_view hook;
    std::size_t parameter;
    std::uint64_t most;
};
constexpr Limit limits[] = {
    {"CIM_GetLANDestinationType_AddrTable", 3, CIM_MAX_LAN_DESTINATIONS},
    {"CIM_GetLANCount", 1, CIM_MAX_LANS},
    {"CIM_GetChannelNum", 2, CIM_MAX_LANS},
    {"CIM_GetVlanStatus", 1, 1},
    {"CIM_GetVlanStatus", 2, 0x0FFF},
    {"CIM_GetVlanStatus", 3, 7},
    {"CIM_GetLANEnable", 2, CIM_LAN_BOTH},
    {"LIBIPMI_HL_GetLANEnable", 2, CIM_LAN_BOTH},
    {"CIM_GetPEFTable", 2, 127},
    {"CIM_GetSELRecords", 2, logRoom},
    {"CIM_GetMaxNumUsers", 1, 63},
    {"CIM_GetOpenSessions", 2, CIM_MAX_OPEN_SESSIONS},
    {"CIM_GetStoredFirmware", 2, CIM_MAX_STORED_FIRMWARE},
};

// ---- Arguments

struct Making {
    const char* hook;
    IPMI20_SESSION_T* session;
    const HookCall::Pick& pick;
    std::size_t parameter = 0;
};

std::uint8_t anyByte(const HookCall::Pick& pick) {
    return static_cast<std::uint8_t>(pick(256));
}

// A number: mostly one that means something.
template <class Parameter>
class Argument {
public:
    explicit Argument(Making& making) {
        ++making.parameter;
        switch (making.pick(4)) {
        case 0:
            value_ = static_cast<Parameter>(
                making.pick(std::uint64_t{1} << std::min<std::size_t>(sizeof(Parameter) * 8, 32)));
            break;
        case 1:
            value_ = static_cast<Parameter>(1U << making.pick(7));
            break;
        default:
            value_ = static_cast<Parameter>(making.pick(4));
        }
    }
    Parameter get() const { return value_; }
    void check(Faults&) const {}

private:
    Parameter value_;
};

template <>
class Argument<int> {
public:
    explicit Argument(Making& making) { ++making.parameter; }
    int get() const { return timeout; }
    void check(Faults&) const {}
};

template <>
class Argument<IPMI20_SESSION_T*> {
public:
    explicit Argument(Making& making) : session_(making.session) { ++making.parameter; }
    IPMI20_SESSION_T* get() const { return session_; }
    void check(Faults&) const {}

private:
    IPMI20_SESSION_T* session_;
};

template <>
class Argument<const char*> {
public:
    explicit Argument(Making& making) {
        ++making.parameter;
        static const std::string texts[] = {
            "", "eva", std::string(16, 'n'), std::string(20, 'p'), std::string(400, 't'), "\xC3\xA4\xFF"};
        const std::uint64_t choice = making.pick(std::size(texts) + 1);
        if (choice < std::size(texts))
            text_ = texts[choice];
    }
    const char* get() const { return text_ ? text_->c_str() : nullptr; }
    void check(Faults&) const {}

private:
    std::optional<std::string> text_;
};

void close(CIM_ServiceSettings& settings) {
    settings.name[sizeof settings.name - 1] = '\0';
}
template <class In>
void close(In&) {}

// What the hook reads: an address, or as many numbers of sensors as any int says.
template <class Element>
class Argument<const Element*> {
    static constexpr std::size_t byteCount = timeout;

public:
    explicit Argument(Making& making) : elements_(sizeof(Element) == 1 ? byteCount : 1) {
        ++making.parameter;
        for (Element& element : elements_) {
            auto* const bytes = reinterpret_cast<std::uint8_t*>(&element);
            std::generate(bytes, bytes + sizeof element, [&] { return anyByte(making.pick); });
            close(element);
        }
    }
    const Element* get() const { return elements_.data(); }
    void check(Faults&) const {}

private:
    std::vector<Element> elements_;
};

// What the hook writes.
template <class Element>
class Argument<Element*> {
public:
    explicit Argument(Making& making)
        : hook_(making.hook), parameter_(making.parameter++), elements_(roomOf(hook_, parameter_)) {
        std::memset(static_cast<void*>(elements_.data()), 0xA5, elements_.size() * sizeof(Element));
        if (hook_ == std::string_view("CIM_GetSELRecords") && elements_.size() == 1)
            std::memcpy(static_cast<void*>(elements_.data()), &logRoom,
                        std::min(sizeof logRoom, sizeof(Element)));
    }
    Element* get() { return elements_.data(); }
    void check(Faults& faults) const {
        if constexpr (std::is_same_v<Element, char>)
            expect(faults, std::ranges::count(elements_, '\0') > 0, "a text has no end");
        else if constexpr (std::is_integral_v<Element>)
            for (const Limit& limit : limits)
                expect(faults,
                       limit.hook != hook_ || limit.parameter != parameter_ ||
                           static_cast<std::uint64_t>(elements_.front()) <= limit.most,
                       "a number is larger than it may be");
        else
            verify(faults, elements_.front());
    }

private:
    std::string_view hook_;
    std::size_t parameter_;
    std::vector<Element> elements_;
};

template <class... Parameters>
HookCall::Outcome callHook(const char* name, int (*hook)(Parameters...), IPMI20_SESSION_T* session,
                           const HookCall::Pick& pick) {
    Making making{name, session, pick};
    std::tuple<Argument<Parameters>...> arguments{Argument<Parameters>(making)...}; // in their order
    HookCall::Outcome outcome{std::apply([&](auto&... each) { return hook(each.get()...); }, arguments), {}};
    if (outcome.result == 0)
        std::apply([&](auto&... each) { (each.check(outcome.faults), ...); }, arguments);
    return outcome;
}

} // namespace

#define FORWARD(hook, failure, parameters, ...)                                                              \
    {#hook, [](IPMI20_SESSION_T* session, const HookCall::Pick& pick) {                                      \
         return callHook(#hook, &hook, session, pick);                                                       \
     }},
#define OPTIONAL FORWARD
#define TEXT(name)

std::span<const HookCall> hookCalls() {
    static constexpr HookCall all[] = {
#include "hook_functions.inc"
    };
    return all;
}
