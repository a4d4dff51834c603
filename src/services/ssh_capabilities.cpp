// CIM_SSHCapabilities: what the SSH service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_SSHCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

constexpr char name[] = "CIM_SSHCapabilities";

// Its configuration tells what is enabled, not what the server could do.
constexpr ph::Property ownProperties[] = {
    PH_COMPUTED("SupportedSSHVersions", ph::unknownList),
    PH_COMPUTED("SupportedEncryptionAlgorithms", ph::unknownList),
};
constexpr auto properties = ph::joined(ph::serviceCapabilitiesProperties, ownProperties);

constexpr auto definition =
    ph::defineServiceCapabilities<name>("CIM_ProtocolServiceCapabilities", "Get Service Configuration (OEM)",
                                        g_SSHCapabilitiesKeyList, properties);

} // namespace

PH_EXPORT_CLASS_FAMILY(SSHCapabilities, ProtocolServiceCapabilitiesRecord, definition)
