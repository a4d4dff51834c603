// CIM_CLPCapabilities: what the command-line protocol service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_CLPCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::clp_capabilities {
namespace {

constexpr char name[] = "CIM_CLPCapabilities";

constexpr auto definition = defineServiceCapabilities<name>(
    "CIM_ProtocolServiceCapabilities", "one fixed instance; the daemon smashclpd is of this system",
    g_CLPCapabilitiesKeyList, serviceCapabilitiesProperties);

} // namespace
} // namespace ph::clp_capabilities

PH_EXPORT_CLASS_FAMILY(CLPCapabilities, ProtocolServiceCapabilitiesRecord, ph::clp_capabilities::definition)
