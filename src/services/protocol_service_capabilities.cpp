// CIM_ProtocolServiceCapabilities: of the services that have no class of their own for it.
#include "services/service_capabilities.h"

constexpr const char* const g_ProtocolServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

constexpr char name[] = "CIM_ProtocolServiceCapabilities";

constexpr auto definition = ph::defineServiceCapabilities<name>(
    "CIM_EnabledLogicalElementCapabilities", "Get Service Configuration (OEM)",
    g_ProtocolServiceCapabilitiesKeyList, ph::serviceCapabilitiesProperties);

} // namespace

PH_EXPORT_CLASS_FAMILY(ProtocolServiceCapabilities, ProtocolServiceCapabilitiesRecord, definition)
