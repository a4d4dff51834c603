// The channels for which other libraries have DHCP endpoints of their own.
#include "network/addressed_lans.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/guard.h"

namespace {

int createEndpoints(const CMPIBroker* broker, const CMPIContext* context) {
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    int result = 0;
    for (const auto& [lan, ipVersion] : ph::addressedLans(session.get()))
        if (PH_CreateDHCPProtocolEndpointInstance != nullptr &&
            PH_CreateDHCPProtocolEndpointInstance(broker, context, lan.interfaceName, lan.channel,
                                                  ipVersion) != 0)
            result = -1;
    return result;
}

} // namespace

int PH_Get_All_Lanchannels(const CMPIBroker* broker, const CMPIContext* context) {
    return ph::guarded(-1, [&] { return createEndpoints(broker, context); });
}
