#include "virtual-bmc/device/services.h"

#include "ipmi/oem_commands.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <bit>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::size_t serviceNameSize = 16;

constexpr Choice serviceNames[] = {{0, "web"},      {1, "kvm"}, {2, "cd-media"}, {3, "fd-media"},
                                   {4, "hd-media"}, {5, "ssh"}, {6, "telnet"}};

// Finds the service of a mask; null for none or for several.
NetworkService* find(std::vector<NetworkService>& list, std::uint32_t mask) {
    const auto found = std::ranges::find(list, std::countr_zero(mask), &NetworkService::number);
    return std::has_single_bit(mask) && found != list.end() ? &*found : nullptr;
}

std::uint8_t getConfiguration(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    auto list = state.get<Services>().list;
    const NetworkService* const service = find(list, request.u32());
    if (service == nullptr)
        return completion::notPresent;
    const std::string_view name = service->name();
    answer.bytes({reinterpret_cast<const std::uint8_t*>(name.data()), name.size()})
        .fill(serviceNameSize - name.size(), 0)
        .u8(service->isEnabled)
        .u16(service->port)
        .u16(service->securePort)
        .u16(service->timeout)
        .u8(service->maxSessions)
        .u8(service->activeSessions);
    return completion::success;
}

std::uint8_t setConfiguration(State& state, ipmi::Reader request, ipmi::Writer&) {
    NetworkService* const service = find(state.edit<Services>().list, request.u32());
    if (service == nullptr)
        return completion::notPresent;
    const auto name = request.bytes(serviceNameSize);
    const std::uint8_t enable = request.u8();
    if (std::string(name.begin(), std::ranges::find(name, 0)) != service->name() || enable > 1)
        return completion::invalidDataField;
    service->isEnabled = enable != 0;
    service->port = request.u16();
    service->securePort = request.u16();
    service->timeout = request.u16();
    service->maxSessions = request.u8();
    if (!service->isEnabled)
        service->activeSessions = 0;
    return completion::success;
}

} // namespace

void NetworkService::fields(Fields& fields) {
    fields.choice("name", number, serviceNames);
    fields("enabled", isEnabled);
    fields("port", port);
    fields("securePort", securePort);
    fields("timeout", timeout);
    fields("maxSessions", maxSessions);
    fields("activeSessions", activeSessions);
}

const char* NetworkService::name() const {
    return nameOf(serviceNames, number);
}

std::vector<NetworkService> Services::everyService() {
    return {
        {.number = 0, .port = 80, .securePort = 443, .timeout = 1800, .maxSessions = 20},
        {.number = 1, .port = 5900, .securePort = 5901, .timeout = 1800, .maxSessions = 2},
        {.number = 2, .port = 5910, .securePort = 5911},
        {.number = 3, .port = 5912, .securePort = 5913},
        {.number = 4, .port = 5914, .securePort = 5915},
        {.number = 5, .securePort = 22, .timeout = 600, .maxSessions = 8},
        {.number = 6, .isEnabled = false, .port = 23, .timeout = 600, .maxSessions = 2},
    };
}

std::span<const Command> Services::commands() {
    static constexpr Command table[] = {
        {ipmi::oem::getServiceConfiguration, 4, getConfiguration},
        {ipmi::oem::setServiceConfiguration, 28, setConfiguration},
    };
    return table;
}

void Services::check(const Place& place) const {
    for (const NetworkService& service : list)
        if (&*std::ranges::find(list, service.number, &NetworkService::number) != &service)
            fail(place, std::string("there are two services '") + service.name() + "'");
}

Json Services::describe(const State&) const {
    Json json = Json::array();
    for (const NetworkService& service : list) {
        Json row = Json::object();
        row["name"] = service.name();
        row["enabled"] = service.isEnabled;
        row["port"] = service.port;
        row["securePort"] = service.securePort;
        row["timeout"] = service.timeout;
        row["maxSessions"] = service.maxSessions;
        row["activeSessions"] = service.activeSessions;
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
