// CIM_TelnetCapabilities: what the Telnet service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_TelnetCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

constexpr char name[] = "CIM_TelnetCapabilities";

// Nobody tells which terminals it knows.
constexpr ph::Property ownProperties[] = {
    PH_COMPUTED("SupportedTerminalModes", ph::unknownList),
    PH_COMPUTED("SupportedCharacterDisplayModes", ph::unknownList),
};
constexpr auto properties = ph::joined(ph::serviceCapabilitiesProperties, ownProperties);

constexpr auto definition =
    ph::defineServiceCapabilities<name>("CIM_ProtocolServiceCapabilities", "Get Service Configuration (OEM)",
                                        g_TelnetCapabilitiesKeyList, properties);

} // namespace

PH_EXPORT_CLASS_FAMILY(TelnetCapabilities, ProtocolServiceCapabilitiesRecord, definition)
