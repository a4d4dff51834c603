// Switching a service.
#include "provider_helper/services.h"
#include "services/service_record.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/dmtf_values.h"

#include <unistd.h>

namespace ph {
namespace {

constexpr unsigned int resetSeconds = 3; // a service that is reset stays off

// A service of the BMC and its settings, of which only the switch is changed.
class ServiceSwitch {
public:
    bool open(std::uint32_t service) {
        service_ = service;
        if (!session_.open() || CIM_GetServiceConf(session_.get(), service, &conf_, hookTimeout) != 0)
            return false;
        settings_ = settingsOf(conf_);
        return true;
    }

    bool change(std::uint16_t requestedState) {
        switch (requestedState) {
        case RequestedState::Enabled:
            return write(1);
        case RequestedState::Disabled:
            return write(0);
        case RequestedState::Reset:
            if (conf_.currentState == 0)
                return write(1);
            if (!write(0))
                return false;
            sleep(resetSeconds);
            return write(1) || write(1); // one lost message must not leave the service off
        default:
            return true;
        }
    }

private:
    bool write(std::uint8_t enable) {
        settings_.enable = enable;
        return CIM_SetServiceConf(session_.get(), service_, &settings_, hookTimeout) == 0;
    }

    IpmiSession session_;
    std::uint32_t service_ = 0;
    CIM_ServiceConf conf_{};
    CIM_ServiceSettings settings_{};
};

} // namespace
} // namespace ph

int PH_RequestStateChange_DB(uint16_t requestedState, const char* serviceName, char* message) {
    ph::Database database;
    if (!database.open(PH_CreateSmashDBHandle))
        return ph::explain(message, PH_SERVICE_MESSAGE_SIZE, "Internal Error : Failed to invoke method");
    return PH_Set_ProtocolService_EnabledState(serviceName, requestedState, message);
}

int PH_Set_ProtocolService_EnabledState(const char* serviceName, uint16_t requestedState, char* message) {
    const ph::Service* service = ph::findService(serviceName);
    if (service != nullptr && service->isClp())
        return PH_ChangeState_CLPProtocolService(requestedState, message);
    ph::ServiceSwitch serviceSwitch;
    if (!serviceSwitch.open(service != nullptr ? service->bit : std::uint32_t{CIM_SERVICE_WEB}) ||
        !serviceSwitch.change(requestedState))
        return ph::explain(message, PH_SERVICE_MESSAGE_SIZE, "Internal Error : Failed to invoke method");
    return 0;
}
