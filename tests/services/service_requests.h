// Requests to CIM_ProtocolService.
#pragma once

#include "ipmi/oem_commands.h"
#include "managed_bmc.h"
#include "provider_helper/services.h"

inline constexpr auto getConfiguration = ipmi::oem::getServiceConfiguration,
                      setConfiguration = ipmi::oem::setServiceConfiguration;

class ServiceRequests : public ManagedBmc {
protected:
    broker::ObjectPath path(const std::string& name) const {
        return pathOnProcessor("CIM_ProtocolService", "controller", name);
    }
    broker::Reply request(const char* service, std::uint16_t state) const {
        return services.invoke(path(service), "RequestStateChange", {{"RequestedState", number(state)}});
    }

    ClassRequests services{broker, PH_CLASS_FUNCTIONS(ProtocolService)};
};
