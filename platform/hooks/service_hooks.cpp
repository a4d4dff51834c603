#include "hooks/oem.h"
#include "ipmi/oem_commands.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>

// Layouts shared with the library.
static_assert(offsetof(CIM_ServiceConf, currentState) == 17 && offsetof(CIM_ServiceConf, port) == 18 &&
              offsetof(CIM_ServiceConf, timeout) == 22 && sizeof(CIM_ServiceConf) == 26);
static_assert(offsetof(CIM_ServiceSettings, enable) == 17 && offsetof(CIM_ServiceSettings, port) == 18 &&
              offsetof(CIM_ServiceSettings, timeout) == 22 && sizeof(CIM_ServiceSettings) == 26);

namespace {
constexpr std::size_t nameSize = CIM_SERVICE_NAME_SIZE - 1;
}

int CIM_GetServiceConf(IPMI20_SESSION_T* session, uint32_t service, CIM_ServiceConf* conf, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(conf != nullptr);
        std::array<std::uint8_t, 4> request;
        const auto answer =
            hooks::runOem(hooks::sessionOf(session, timeout), ipmi::oem::getServiceConfiguration,
                          ipmi::Writer(request).u32(service).written());
        auto reader = answer.reader();
        *conf = {};
        const auto name = reader.bytes(nameSize);
        std::copy(name.begin(), std::find(name.begin(), name.end(), 0), conf->name);
        if (!std::ranges::all_of(std::string_view(conf->name), [](char c) { return c >= ' ' && c <= '~'; }))
            throw std::runtime_error("the name of the service is no text");
        conf->currentState = reader.u8() & 1;
        conf->port = reader.u16();
        conf->securePort = reader.u16();
        conf->timeout = reader.u16();
        conf->maxSessions = reader.u8();
        conf->activeSessions = reader.u8();
        answer.verify(reader);
    });
}

int CIM_SetServiceConf(IPMI20_SESSION_T* session, uint32_t service, const CIM_ServiceSettings* settings,
                       int timeout) {
    return hooks::guarded(__func__, [&] {
        if (settings == nullptr || settings->enable > 1)
            throw std::invalid_argument("no settings given, or a state that is none");
        const std::size_t length = strnlen(settings->name, nameSize);
        std::array<std::uint8_t, 28> request;
        ipmi::Writer writer(request);
        writer.u32(service)
            .bytes({reinterpret_cast<const std::uint8_t*>(settings->name), length})
            .fill(nameSize - length, 0)
            .u8(settings->enable)
            .u16(settings->port)
            .u16(settings->securePort)
            .u16(settings->timeout)
            .u8(settings->maxSessions);
        hooks::runOem(hooks::sessionOf(session, timeout), ipmi::oem::setServiceConfiguration,
                      writer.written());
    });
}
