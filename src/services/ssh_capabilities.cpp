// CIM_SSHCapabilities: what the SSH service allows.
#include "services/service_capabilities.h"

constexpr const char* const g_SSHCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::ssh_capabilities {
namespace {

constexpr char name[] = "CIM_SSHCapabilities";

// Its configuration tells what is enabled, not what the server could do.
constexpr Property ownProperties[] = {
    PH_COMPUTED("SupportedSSHVersions", unknownList),
    PH_COMPUTED("SupportedEncryptionAlgorithms", unknownList),
};
constexpr auto properties = joined(serviceCapabilitiesProperties, ownProperties);

constexpr auto definition =
    defineServiceCapabilities<name>("CIM_ProtocolServiceCapabilities", "Get Service Configuration (OEM)",
                                    g_SSHCapabilitiesKeyList, properties);

} // namespace
} // namespace ph::ssh_capabilities

PH_EXPORT_CLASS_FAMILY(SSHCapabilities, ProtocolServiceCapabilitiesRecord, ph::ssh_capabilities::definition)
