// CIM_ProtocolServiceCapabilities: of the services that have no class of their own for it.
#include "services/service_capabilities.h"

constexpr const char* const g_ProtocolServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::protocol_service_capabilities {
namespace {

constexpr char name[] = "CIM_ProtocolServiceCapabilities";

constexpr auto definition = defineServiceCapabilities<name>(
    "CIM_EnabledLogicalElementCapabilities", "Get Service Configuration (OEM)",
    g_ProtocolServiceCapabilitiesKeyList, serviceCapabilitiesProperties);

} // namespace
} // namespace ph::protocol_service_capabilities

PH_EXPORT_CLASS_FAMILY(ProtocolServiceCapabilities, ProtocolServiceCapabilitiesRecord,
                       ph::protocol_service_capabilities::definition)
