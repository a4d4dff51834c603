// CIM_TelnetCapabilities: what the Telnet service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_TelnetCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::telnet_capabilities {
namespace {

constexpr char name[] = "CIM_TelnetCapabilities";

// Nobody tells which terminals it knows.
constexpr Property ownProperties[] = {
    PH_COMPUTED("SupportedTerminalModes", unknownList),
    PH_COMPUTED("SupportedCharacterDisplayModes", unknownList),
};
constexpr auto properties = joined(serviceCapabilitiesProperties, ownProperties);

constexpr auto definition =
    defineServiceCapabilities<name>("CIM_ProtocolServiceCapabilities", "Get Service Configuration (OEM)",
                                    g_TelnetCapabilitiesKeyList, properties);

} // namespace
} // namespace ph::telnet_capabilities

PH_EXPORT_CLASS_FAMILY(TelnetCapabilities, ProtocolServiceCapabilitiesRecord,
                       ph::telnet_capabilities::definition)
