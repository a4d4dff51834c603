// CIM_CLPCapabilities: what the command-line protocol service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_CLPCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

constexpr char name[] = "CIM_CLPCapabilities";

constexpr auto definition = ph::defineServiceCapabilities<name>(
    "CIM_ProtocolServiceCapabilities", "one fixed instance; the daemon smashclpd is of this system",
    g_CLPCapabilitiesKeyList, ph::serviceCapabilitiesProperties);

} // namespace

PH_EXPORT_CLASS_FAMILY(CLPCapabilities, ProtocolServiceCapabilitiesRecord, definition)
